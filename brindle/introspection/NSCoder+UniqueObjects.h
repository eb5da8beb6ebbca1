// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSArray.h"
#include "foundation/NSCoder.h"
#include "foundation/NSUUID.h"

/// Writing references to objects as their identities; see `NSObject+UniqueObjects.h`. Thread: main.
///
/// What an archive holds under a key may be anything: what is no identity finds no object.

namespace brindle {

inline void encodeUUIDOfObject_forKey(To<NSCoder> coder, NSObject* object, NSString* key)
{
    coder.send<"encodeUUIDOfObject:forKey:">(object, key);
}
inline void encodeUUIDsFromObjects_forKey(To<NSCoder> coder, NSArray* objects, NSString* key)
{
    coder.send<"encodeUUIDsFromObjects:forKey:">(objects, key);
}
inline Ref<NSUUID> decodeUUIDForKey(To<NSCoder> coder, NSString* key)
{
    return coder.send<"decodeUUIDForKey:", Ref<NSUUID>>(key);
}
/// - Nil: when the coder has no value for the key.
inline Ref<NSArray> UUIDsForKey(To<NSCoder> coder, NSString* key)
{
    return coder.send<"UUIDsForKey:", Ref<NSArray>>(key);
}
/// Answers the registered object whose identity stands under the key, or nil.
inline Ref<NSObject> uniqueObjectForKey(To<NSCoder> coder, NSString* key)
{
    return coder.send<"uniqueObjectForKey:", Ref<NSObject>>(key);
}
/// Answers the registered objects whose identities stand under the key; see `uniqueObjectsFromUUIDs`.
/// - Nil: when the coder has no value for the key.
inline Ref<NSArray> uniqueObjectsForKey(To<NSCoder> coder, NSString* key)
{
    return coder.send<"uniqueObjectsForKey:", Ref<NSArray>>(key);
}

/// Writes each property that the object's class lists in `UUIDProperties` and that is not nil: the identity of the
/// object it refers to, or, where the property's type contains "Array", an array of identities.
inline void encodeToUUIDsForPropertiesOf(To<NSCoder> coder, NSObject* object)
{
    coder.send<"encodeToUUIDsForPropertiesOf:">(object);
}
/// Reads the identities of these properties and keeps them on the object for `loadObjectsForUUIDProperties`; empty arrays
/// are passed over. Nothing is looked up.
inline void decodeUUIDsForPropertiesOf(To<NSCoder> coder, NSObject* object)
{
    coder.send<"decodeUUIDsForPropertiesOf:">(object);
}
/// Reads these properties and sets the objects that are registered now. An empty array, and an object whose class is not
/// named in the property's type, leave the property as it is.
inline void decodeFromUUIDsForPropertiesOf(To<NSCoder> coder, NSObject* object)
{
    coder.send<"decodeFromUUIDsForPropertiesOf:">(object);
}

}
