// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "runtime/NSObject.h"

namespace brindle {

/// Answers whether the object runs another implementation than the ancestor that first defines the selector.
/// A selector that nobody answers counts as overridden.
inline bool isMethodOverridden(To<NSObject> object, SEL selector)
{
    return object.send<"isMethodOverridden:", bool>(selector);
}
/// Answers the highest ancestor, the class itself included, whose instances answer the selector; nil when instances of
/// the class do not.
inline Class* baseClassForSelector(To<Class> cls, SEL selector)
{
    return cls.send<"baseClassForSelector:", Class*>(selector);
}

}
