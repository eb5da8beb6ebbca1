// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "runtime/NSObject.h"

namespace brindle {

class NSArray;

/// The protocol of classes whose objects have an identity: `t.conformsTo({"UniqueObjects"})`.
///
/// It has no operations. Automatic archiving codes the identity of such objects under the key "UUID".
BRINDLE_EXPORT Protocol* uniqueObjectsProtocol();

/// Answers the names of the properties that refer to objects with an identity; a class overrides it. The root answers nil.
/// Automatic archiving leaves these properties out: they are written as identities.
inline Ref<NSArray> UUIDProperties(To<Class> cls)
{
    return cls.send<"UUIDProperties", Ref<NSArray>>();
}

}
