// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSMutableDictionary.h"

/// A dictionary in place of the defaults: typed values by their keys.

namespace brindle {

/// The numbers are what the value itself answers, a string too: "42" is 42. Absent: 0 and NO.
/// - Raises: `NSInvalidArgumentException` for a value that knows no such number.
inline NSInteger integerForKey(To<NSDictionary> dictionary, NSString* key)
{
    return dictionary.send<"integerForKey:", NSInteger>(key);
}
inline float floatForKey(To<NSDictionary> dictionary, NSString* key)
{
    return dictionary.send<"floatForKey:", float>(key);
}
inline bool boolForKey(To<NSDictionary> dictionary, NSString* key)
{
    return dictionary.send<"boolForKey:", bool>(key);
}
/// Answers the value as it is; its class is not checked.
inline Ref<NSString> stringForKey(To<NSDictionary> dictionary, NSString* key)
{
    return dictionary.send<"stringForKey:", Ref<NSString>>(key);
}
/// Answers the value as it is; its class is not checked.
inline Ref<NSArray> arrayForKey(To<NSDictionary> dictionary, NSString* key)
{
    return dictionary.send<"arrayForKey:", Ref<NSArray>>(key);
}

inline void setInteger_forKey(To<NSMutableDictionary> dictionary, NSInteger value, NSString* key)
{
    dictionary.send<"setInteger:forKey:">(value, key);
}
inline void setFloat_forKey(To<NSMutableDictionary> dictionary, float value, NSString* key)
{
    dictionary.send<"setFloat:forKey:">(value, key);
}
inline void setBool_forKey(To<NSMutableDictionary> dictionary, bool value, NSString* key)
{
    dictionary.send<"setBool:forKey:">(value, key);
}

}
