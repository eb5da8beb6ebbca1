// SPDX-License-Identifier: Apache-2.0
#include "NSArray+UniqueObjects.h"

#include "NSObject+UniqueObjects.h"
#include "NSUUID+UniqueObjects.h"
#include "UniqueObjectsPrivate.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSObject+KeyValueCoding.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    struct ArrayUniqueObjects {
        static Ref<NSArray> identities(NSArray& self)
        {
            const auto all = NSMutableArray::cls().arrayWithCapacity(self.count());
            for (NSObject* object : self)
                all->addObject(UUID(object).get());
            return cast<NSArray>(all->copy());
        }
        static Ref<NSObject> found(NSObject* identity, Class* cls)
        {
            if (!cls)
                return uniqueobjects::objectFor(identity);
            return identity->isKindOfClass(NSUUID::cls())
                ? uniqueObjectOfClass(static_cast<NSUUID*>(identity), cls)
                : nullptr;
        }
        static Ref<NSMutableArray> objects(NSArray& self)
        {
            Ref<NSMutableArray> all = NSMutableArray::cls().arrayWithCapacity(self.count());
            Class* cls = nullptr;
            for (NSObject* identity : self) {
                const Ref<NSObject> object = found(identity, cls);
                if (!object)
                    continue;
                cls = object->classObject();
                all->addObject(object.get());
            }
            return all;
        }
        static Ref<NSObject> objectWith(NSArray& self, NSUUID* identity)
        {
            for (NSObject* object : self) {
                if (UUID(object)->isEqual(identity))
                    return object;
            }
            return nullptr;
        }
        static Ref<NSObject> objectWithValue(NSArray& self, NSObject* value, NSString* property)
        {
            for (NSObject* object : self) {
                if (hasProperty(object, property)
                    && maybe(valueForKey(object, property))->isEqual(value))
                    return object;
            }
            return nullptr;
        }
        static void table(Builder& t)
        {
            t.methods({
                { "UUIDs", imp<identities> },
                { "uniqueObjectsFromUUIDs", imp<objects> },
                { "objectWithUUID:", imp<objectWith> },
                { "objectWithUUID:inProperty:", imp<objectWithValue> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSArray, ArrayUniqueObjects)

}
