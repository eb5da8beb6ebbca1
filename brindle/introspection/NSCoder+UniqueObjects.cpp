// SPDX-License-Identifier: Apache-2.0
#include "NSCoder+UniqueObjects.h"

#include "NSArray+UniqueObjects.h"
#include "NSObject+PropertiesBR.h"
#include "NSObject+UniqueObjects.h"
#include "UniqueObjectsPrivate.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSObject+KeyValueCoding.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    using namespace uniqueobjects;

    struct CoderUniqueObjects {
        static void encodeOne(NSCoder& self, NSObject* object, NSString* key)
        {
            self.encodeObject_forKey(UUID(object).get(), key);
        }
        static void encodeMany(NSCoder& self, NSArray* objects, NSString* key)
        {
            self.encodeObject_forKey(UUIDs(objects).get(), key);
        }
        static Ref<NSUUID> decodeOne(NSCoder& self, NSString* key)
        {
            return cast<NSUUID>(self.decodeObjectForKey(key));
        }
        static Ref<NSArray> decodeMany(NSCoder& self, NSString* key)
        {
            return self.containsValueForKey(key) ? cast<NSArray>(self.decodeObjectForKey(key))
                                                 : nullptr;
        }
        static Ref<NSObject> objectForKey(NSCoder& self, NSString* key)
        {
            return objectFor(decodeUUIDForKey(self, key));
        }
        /// Answers an array of identities, else nil.
        static Ref<NSArray> arrayForKey(NSCoder& self, NSString* key)
        {
            Ref<NSArray> identities = UUIDsForKey(self, key);
            return identities && identities->isKindOfClass(NSArray::cls()) ? identities : nullptr;
        }
        static Ref<NSArray> objectsForKey(NSCoder& self, NSString* key)
        {
            return uniqueObjectsFromUUIDs(arrayForKey(self, key));
        }

        static void encodeProperties(NSCoder& self, NSObject* object)
        {
            for (NSString* name : each<NSString>(UUIDProperties(maybe(object)->classObject()))) {
                const Ref<NSObject> value = valueForKey(object, name);
                if (!value)
                    continue;
                if (isToMany(object, name))
                    encodeUUIDsFromObjects_forKey(self, cast<NSArray>(value.get()), name);
                else
                    encodeUUIDOfObject_forKey(self, value.get(), name);
            }
        }
        static void decodeIdentities(NSCoder& self, NSObject* object)
        {
            NSUInteger index = 0;
            for (NSString* name : each<NSString>(UUIDProperties(maybe(object)->classObject()))) {
                Ref<NSObject> identities;
                if (!isToMany(object, name))
                    identities = decodeUUIDForKey(self, name);
                else if (const Ref<NSArray> many = arrayForKey(self, name); many && many->count())
                    identities = many;
                if (identities)
                    keepIdentities(object, index, identities.get());
                ++index;
            }
        }
        static void setIfNamed(NSObject* object, const Ref<NSObject>& value, NSString* name)
        {
            if (value && property_isOfClass(object, name, value->classObject()))
                setValue_forKey(object, value.get(), name);
        }
        static void decodeProperties(NSCoder& self, NSObject* object)
        {
            for (NSString* name : each<NSString>(UUIDProperties(maybe(object)->classObject()))) {
                if (!isToMany(object, name)) {
                    setIfNamed(object, uniqueObjectForKey(self, name), name);
                    continue;
                }
                const Ref<NSArray> many = uniqueObjectsForKey(self, name);
                if (!many || !many->count())
                    continue;
                // The type names what the property is to hold: an array that changes, or one that does not.
                const bool isMutable = property_isOfClass(object, name, NSMutableArray::cls());
                setIfNamed(object, isMutable ? Ref<NSObject>(many) : many->copy(), name);
            }
        }

        static void table(Builder& t)
        {
            t.methods({
                { "encodeUUIDOfObject:forKey:", imp<encodeOne> },
                { "encodeUUIDsFromObjects:forKey:", imp<encodeMany> },
                { "decodeUUIDForKey:", imp<decodeOne> },
                { "UUIDsForKey:", imp<decodeMany> },
                { "uniqueObjectForKey:", imp<objectForKey> },
                { "uniqueObjectsForKey:", imp<objectsForKey> },
                { "encodeToUUIDsForPropertiesOf:", imp<encodeProperties> },
                { "decodeUUIDsForPropertiesOf:", imp<decodeIdentities> },
                { "decodeFromUUIDsForPropertiesOf:", imp<decodeProperties> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSCoder, CoderUniqueObjects)

}
