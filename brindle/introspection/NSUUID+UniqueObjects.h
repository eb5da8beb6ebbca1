// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSUUID.h"

/// The registered objects behind identities; see `NSObject+UniqueObjects.h`. Thread: main.

namespace brindle {

/// Answers the object registered under the identity, whatever its class; of several the one whose class was registered
/// first.
/// - Nil: when there is none.
inline Ref<NSObject> uniqueObject(To<NSUUID> identity)
{
    return identity.send<"uniqueObject", Ref<NSObject>>();
}
/// Answers the object of exactly this class.
inline Ref<NSObject> uniqueObjectOfClass(To<NSUUID> identity, Class* cls)
{
    return identity.send<"uniqueObjectOfClass:", Ref<NSObject>>(cls);
}

}
