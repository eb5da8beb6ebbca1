// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSBundle.h"

namespace brindle {

/// Answers the host application's bundle.
/// - Nil: when the application has no bundle identifier, or has not been made.
inline Ref<NSBundle> appBundle(To<Class> cls) { return cls.send<"appBundle", Ref<NSBundle>>(); }

}
