// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSMutableDictionary.h"
#include "foundation/NSString.h"

namespace brindle {

class NSUUID;

namespace uniqueobjects {

    /// Answers the tables of all classes: class name to a table of NSUUID to object.
    NSMutableDictionary& registry();
    /// - Nil: when no object of exactly this class was ever registered.
    Ref<NSMutableDictionary> tableOf(Class* cls);
    /// Answers the object of an identity. - Nil: also when what is asked for is no identity, as archives may hold anything.
    Ref<NSObject> objectFor(const Ref<NSObject>& identity);

    /// Answers whether a property refers to several objects.
    /// - Raises: `NSInvalidArgumentException` when the object's class declares no such property.
    bool isToMany(NSObject* object, NSString* name);
    /// Keeps what an archive held for the property at an index of `UUIDProperties` until it is looked up.
    void keepIdentities(NSObject* object, NSUInteger index, NSObject* identities);
    Ref<NSObject> keptIdentities(NSObject* object, NSUInteger index);

}

}
