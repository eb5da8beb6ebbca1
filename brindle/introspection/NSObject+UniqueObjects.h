// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "UniqueObjects.h"
#include "foundation/NSString.h"
#include "foundation/NSUUID.h"

/// Objects with an identity: found by their UUID, saved class by class, their references to each other kept as UUIDs.
///
/// A class takes part with the protocol `UniqueObjects`; then its objects archive their UUID under the key "UUID". A
/// property that refers to other such objects is named by the class's `UUIDProperties`; its class codes these by
/// `encodeToUUIDsForPropertiesOf` and `decodeUUIDsForPropertiesOf` of `NSCoder+UniqueObjects.h`.
///
/// An object enters the registry when it gets its UUID and stays in it, owned, for the life of the process. To load
/// everything: `unarchiveUniqueObjects` of each class, then `loadObjectsForUUIDProperties` of each class, then
/// `UUIDPropertiesLoadedForAllClasses` of each class. To save: `archiveUniqueObjects` of each class.
/// Thread: main; there is no lock.

namespace brindle {

/// Answers the object's identity; one that has none gets a new random one and enters the registry.
inline Ref<NSUUID> UUID(To<NSObject> object) { return object.send<"UUID", Ref<NSUUID>>(); }
/// Gives the object an identity and puts it into its class's table.
///
/// Where that table has an object of this identity already, the receiver is a second copy of that one: it gets it as its
/// `realObject` and is neither registered nor given the identity.
/// - Raises: `NSInvalidArgumentException` for nil.
inline void setUUID(To<NSObject> object, NSUUID* identity) { object.send<"setUUID:">(identity); }
/// Answers the registered object that the receiver is a second copy of, else nil.
inline Ref<NSObject> realObject(To<NSObject> object)
{
    return object.send<"realObject", Ref<NSObject>>();
}
inline void setRealObject(To<NSObject> object, NSObject* real)
{
    object.send<"setRealObject:">(real);
}
/// Answers whether the object responds to the selector of that name, a getter.
inline bool hasProperty(To<NSObject> object, NSString* name)
{
    return object.send<"hasProperty:", bool>(name);
}
/// Does nothing; a hook for objects that set themselves up.
inline void setup(To<NSObject> object) { object.send<"setup">(); }

/// Answers the registered objects of exactly this class, in the order in which they came.
/// - Nil: when there never was one.
inline Ref<NSArray> uniqueObjects(To<Class> cls)
{
    return cls.send<"uniqueObjects", Ref<NSArray>>();
}
/// Stores the class's registered objects in the standard defaults under its name; nothing when there are none.
inline void archiveUniqueObjects(To<Class> cls) { cls.send<"archiveUniqueObjects">(); }
/// Reads them back; being decoded, they enter the registry.
inline void unarchiveUniqueObjects(To<Class> cls) { cls.send<"unarchiveUniqueObjects">(); }
/// Of an object: sets the properties whose UUIDs were read from an archive to the objects that these name; what nothing is
/// found for stays. Of a class: does that for each of its registered objects.
inline void loadObjectsForUUIDProperties(To<NSObject> object)
{
    object.send<"loadObjectsForUUIDProperties">();
}
/// Of an object: a hook for when all classes have their references. Of a class: sends it to each registered object.
inline void UUIDPropertiesLoadedForAllClasses(To<NSObject> object)
{
    object.send<"UUIDPropertiesLoadedForAllClasses">();
}

}
