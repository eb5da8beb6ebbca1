// SPDX-License-Identifier: Apache-2.0
#include "NSUUID+UniqueObjects.h"

#include "UniqueObjectsPrivate.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    struct UUIDUniqueObjects {
        static Ref<NSObject> uniqueObject(NSUUID& self)
        {
            const NSMutableDictionary& tables = uniqueobjects::registry();
            for (auto at = tables.begin(); at != tables.end(); ++at) {
                if (Ref<NSObject> found
                    = static_cast<NSMutableDictionary*>(at.value())->objectForKey(&self))
                    return found;
            }
            return nullptr;
        }
        static Ref<NSObject> uniqueObjectOfClass(NSUUID& self, Class* cls)
        {
            return maybe(uniqueobjects::tableOf(cls))->objectForKey(&self);
        }
        static void table(Builder& t)
        {
            t.methods({
                { "uniqueObject", imp<uniqueObject> },
                { "uniqueObjectOfClass:", imp<uniqueObjectOfClass> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSUUID, UUIDUniqueObjects)

}
