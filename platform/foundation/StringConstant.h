// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSString.h"

namespace brindle {

/// A named string that needs no initialiser: it becomes the literal's object when somebody uses it.
/// `inline constexpr StringConstant<"MyNotification"> MyNotification;`
template <Text T> struct StringConstant {
    operator NSString*() const { return operator""_ns<T>(); }
    NSString* get() const { return *this; }
    NSString* operator->() const { return *this; }
};

}
