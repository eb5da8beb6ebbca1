// SPDX-License-Identifier: Apache-2.0
#include "NSObject+UniqueObjects.h"

#include "NSArray+UniqueObjects.h"
#include "NSObject+PropertiesBR.h"
#include "NSUUID+UniqueObjects.h"
#include "NSUserDefaults+Archive.h"
#include "UniqueObjectsPrivate.h"
#include "core/NSObject+HXAssociatedObjects.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSObjCRuntime.h"
#include "foundation/NSObject+KeyValueCoding.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    // Values hang on objects under these addresses.
    char UUIDKey;
    char realObjectKey;
    char propertyUUIDKey;

    /// One key for each index. No variable lies where the top bit is set, so none is another's key.
    const void* propertyKeyAt(NSUInteger index)
    {
        constexpr std::uintptr_t kNowhere = std::uintptr_t { 1 } << 63;
        const std::uintptr_t base = reinterpret_cast<std::uintptr_t>(&propertyUUIDKey) | kNowhere;
        return reinterpret_cast<const void*>(base + index); // NOLINT: a key, nothing is there
    }

}

namespace uniqueobjects {

    NSMutableDictionary& registry()
    {
        static NSMutableDictionary* const tables = make<NSMutableDictionary>().leak();
        return *tables;
    }

    Ref<NSMutableDictionary> tableOf(Class* cls)
    {
        return cast<NSMutableDictionary>(registry().objectForKey(NSStringFromClass(cls).get()));
    }

    Ref<NSObject> objectFor(const Ref<NSObject>& identity)
    {
        return identity && identity->isKindOfClass(NSUUID::cls())
            ? uniqueObject(cast<NSUUID>(identity))
            : nullptr;
    }

    bool isToMany(NSObject* object, NSString* name)
    {
        return propertyTypeOfProperty(object, name)->containsString("Array"_ns);
    }

    void keepIdentities(NSObject* object, NSUInteger index, NSObject* identities)
    {
        associateValue_withKey(object, identities, propertyKeyAt(index));
    }
    Ref<NSObject> keptIdentities(NSObject* object, NSUInteger index)
    {
        return associatedValueForKey(object, propertyKeyAt(index));
    }

}

namespace {

    using namespace uniqueobjects;

    struct UniqueObjects {

        static void load(Class&) { registry(); }

        static Ref<NSArray> uniqueObjectsOf(Class& self)
        {
            return maybe(tableOf(&self))->allValues();
        }
        static void archive(Class& self)
        {
            archiveObject_forKey(NSUserDefaults::cls().standardUserDefaults(),
                uniqueObjects(self).get(), NSStringFromClass(&self).get());
        }
        static void unarchive(Class& self)
        {
            const Ref<NSObject> objects = unarchiveObjectForKey(
                NSUserDefaults::cls().standardUserDefaults(), NSStringFromClass(&self).get());
            if (!objects || !objects->isKindOfClass(NSArray::cls()))
                return;
            for (const NSObject* object : each(cast<NSArray>(objects)))
                object->classObject();
        }
        static Ref<NSArray> UUIDPropertiesOf(Class&) { return nullptr; }
        static void loadAll(Class& self)
        {
            for (NSObject* object : each(uniqueObjects(self)))
                if (!class_isMetaClass(object->isa_))
                    loadObjectsForUUIDProperties(object);
        }
        static void loadedAll(Class& self)
        {
            for (NSObject* object : each(uniqueObjects(self)))
                if (!class_isMetaClass(object->isa_))
                    UUIDPropertiesLoadedForAllClasses(object);
        }

        static Ref<NSUUID> identity(NSObject& self)
        {
            if (Ref<NSObject> known = associatedValueForKey(self, &UUIDKey))
                return cast<NSUUID>(known);
            Ref<NSUUID> made = NSUUID::cls().UUID();
            setUUID(self, made.get());
            return made;
        }
        static void setIdentity(NSObject& self, NSUUID* identity)
        {
            Ref<NSMutableDictionary> table = tableOf(self.classObject());
            if (const Ref<NSObject> registered = maybe(table)->objectForKey(identity)) {
                setRealObject(self, registered.get());
                return;
            }
            if (table) {
                table->setObject_forKey(&self, identity);
            } else {
                table = NSMutableDictionary::cls().dictionaryWithObject_forKey(&self, identity);
                registry().setObject_forKey(
                    table.get(), NSStringFromClass(self.classObject()).get());
            }
            associateValue_withKey(self, identity, &UUIDKey);
        }
        static Ref<NSObject> real(NSObject& self)
        {
            return associatedValueForKey(self, &realObjectKey);
        }
        static void setReal(NSObject& self, NSObject* object)
        {
            associateValue_withKey(self, object, &realObjectKey);
        }
        static bool hasProperty(NSObject& self, NSString* name)
        {
            return name && self.respondsToSelector(NSSelectorFromString(name));
        }
        static void setup(NSObject&) { }

        static void loadReferences(NSObject& self)
        {
            NSUInteger index = 0;
            for (NSString* name : each<NSString>(UUIDProperties(self.classObject()))) {
                const Ref<NSObject> kept = keptIdentities(&self, index++);
                if (!kept)
                    continue;
                const Ref<NSObject> found = kept->isKindOfClass(NSArray::cls())
                    ? Ref<NSObject>(uniqueObjectsFromUUIDs(cast<NSArray>(kept)))
                    : objectFor(kept);
                if (found)
                    setValue_forKey(self, found.get(), name);
            }
        }
        static void loaded(NSObject&) { }

        static void table(Builder& t)
        {
            t.classMethods({
                { "uniqueObjects", imp<uniqueObjectsOf> },
                { "archiveUniqueObjects", imp<archive> },
                { "unarchiveUniqueObjects", imp<unarchive> },
                { "UUIDProperties", imp<UUIDPropertiesOf> },
                { "loadObjectsForUUIDProperties", imp<loadAll> },
                { "UUIDPropertiesLoadedForAllClasses", imp<loadedAll> },
            });
            t.methods({
                { "UUID", imp<identity> },
                { "setUUID:", imp<setIdentity> },
                { "realObject", imp<real> },
                { "setRealObject:", imp<setReal> },
                { "hasProperty:", imp<hasProperty> },
                { "setup", imp<setup> },
                { "loadObjectsForUUIDProperties", imp<loadReferences> },
                { "UUIDPropertiesLoadedForAllClasses", imp<loaded> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSObject, UniqueObjects)

}
