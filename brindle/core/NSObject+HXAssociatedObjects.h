// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "runtime/NSObject.h"

/// Values that hang on any object under an address, most often that of a private static variable.

namespace brindle {

/// Attaches a value and keeps it; reading is atomic. Nil removes it.
inline void associateValue_withKey(To<NSObject> object, NSObject* value, const void* key)
{
    object.send<"associateValue:withKey:">(value, const_cast<void*>(key));
}
/// Attaches a value without keeping it: it must outlive its use, and nothing clears it when it goes.
/// - Nil: under a nil key nothing is attached.
inline void weaklyAssociateValue_withKey(To<NSObject> object, NSObject* value, const void* key)
{
    object.send<"weaklyAssociateValue:withKey:">(value, const_cast<void*>(key));
}
/// Answers the value, or nil.
inline Ref<NSObject> associatedValueForKey(To<NSObject> object, const void* key)
{
    return object.send<"associatedValueForKey:", Ref<NSObject>>(const_cast<void*>(key));
}

}
