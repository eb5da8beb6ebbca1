// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KeyedArchiveHosts.h"
#include "foundation/NSData.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSMutableDictionary.h"
#include "foundation/NSNumber.h"
#include "foundation/NSPropertyListSerialization.h"
#include "foundation/PropertyListUID.h"

// What archives that nobody made by archiving are put together from.

namespace brindle {

inline auto listFormats() { return NSPropertyListSerialization::cls(); }
inline Ref<PropertyListUID> uid(NSUInteger value) { return makeUID(value); }
inline Ref<NSNumber> whole(NSInteger value) { return NSNumber::cls().numberWithInteger(value); }

inline void put(NSMutableDictionary& dictionary, NSString* key, const Ref<NSObject>& value)
{
    dictionary.setObject_forKey(value.get(), key);
}
inline void put(NSMutableDictionary& dictionary, NSString* key, NSString* value)
{
    dictionary.setObject_forKey(value, key);
}

}
