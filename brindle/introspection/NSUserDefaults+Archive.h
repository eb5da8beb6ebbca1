// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSMutableDictionary.h"
#include "foundation/NSUserDefaults.h"

/// Any object in the defaults or in a dictionary, as the data of a keyed archive.

namespace brindle {

/// Archives an object under a key; nil leaves what is there.
inline void archiveObject_forKey(To<NSUserDefaults> defaults, NSObject* object, NSString* key)
{
    defaults.send<"archiveObject:forKey:">(object, key);
}
inline void archiveObject_forKey(
    To<NSMutableDictionary> dictionary, NSObject* object, NSString* key)
{
    dictionary.send<"archiveObject:forKey:">(object, key);
}
/// Answers the object that was archived under the key; nil when there is no value.
/// - Raises: `NSInvalidArgumentException` when the value is no keyed archive: "*** -[NSKeyedUnarchiver
///   initForReadingWithData:]: incomprehensible archive (…)".
inline Ref<NSObject> unarchiveObjectForKey(To<NSUserDefaults> defaults, NSString* key)
{
    return defaults.send<"unarchiveObjectForKey:", Ref<NSObject>>(key);
}
inline Ref<NSObject> unarchiveObjectForKey(To<NSDictionary> dictionary, NSString* key)
{
    return dictionary.send<"unarchiveObjectForKey:", Ref<NSObject>>(key);
}

}
