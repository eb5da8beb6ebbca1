// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSArray.h"
#include "foundation/NSString.h"
#include "foundation/NSUUID.h"

/// Lists of objects and of their identities; see `NSObject+UniqueObjects.h`. Thread: main.

namespace brindle {

/// Answers the identity of each element, in order; an element without one gets one.
inline Ref<NSArray> UUIDs(To<NSArray> objects) { return objects.send<"UUIDs", Ref<NSArray>>(); }
/// Answers the objects of a list of identities, in order, without those that nothing is found for.
///
/// All are of one class: that of the first object that is found.
/// - Returns: a new mutable array.
inline Ref<NSMutableArray> uniqueObjectsFromUUIDs(To<NSArray> identities)
{
    return identities.send<"uniqueObjectsFromUUIDs", Ref<NSMutableArray>>();
}
/// Answers the first element of an identity, or nil; elements that are asked and have none get one.
inline Ref<NSObject> objectWithUUID(To<NSArray> objects, NSUUID* identity)
{
    return objects.send<"objectWithUUID:", Ref<NSObject>>(identity);
}
/// Answers the first element that has the property and whose value of it is equal to `value`, or nil.
inline Ref<NSObject> objectWithUUID_inProperty(
    To<NSArray> objects, NSObject* value, NSString* property)
{
    return objects.send<"objectWithUUID:inProperty:", Ref<NSObject>>(value, property);
}

}
