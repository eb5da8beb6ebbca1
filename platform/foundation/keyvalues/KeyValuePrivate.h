// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "foundation/NSString.h"
#include "runtime/Runtime.h"

// What a key of a class leads to, found once and kept; how values cross between C and objects.

namespace brindle::keyvalue {

/// Where a key leads: to a method, or to a field of every object of the class.
struct Accessor {
    const char* type = ""; ///< the value's encoding; more may follow it, only the first type counts
    std::size_t typeLength = 0;
    IMP imp = nullptr; ///< nullptr: the field
    SEL sel;
    const Ivar* ivar = nullptr;
    Class* required
        = nullptr; ///< of what class an object must be that C code takes as its own kind
    bool isPlain = false; ///< whether the class leaves `valueForKey:` to the root

    std::string_view encoding() const { return { type, typeLength }; }
    friend bool operator==(const Accessor&, const Accessor&) = default;
};

enum class Direction { read, write };

/// Answers where a key leads for objects of this one's class; nullptr for nowhere. Good for the life of the process.
const Accessor* find(const NSObject* object, const NSString* key, Direction direction);

/// Answers the value an accessor leads to, as an object.
Ref<NSObject> read(NSObject& object, const Accessor& from);
/// Writes a value that is not nil, or any value of an object property.
void write(NSObject& object, const Accessor& to, NSObject* value, const NSString* key);
/// Answers whether nil has a meaning for the property.
inline bool takesNil(const Accessor& to)
{
    return *to.type == '@' || *to.type == '#' || to.required;
}

/// Answers "[<Class 0x…> ".
std::string placeOf(const NSObject& object);

}
