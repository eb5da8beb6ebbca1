// SPDX-License-Identifier: Apache-2.0
#include "NSObject+HXAssociatedObjects.h"

#include "runtime/Runtime.h"

namespace brindle {

namespace {

    struct HXAssociatedObjects {

        static void associateValue(NSObject& self, NSObject* value, void* key)
        {
            objc_setAssociatedObject(&self, key, value, OBJC_ASSOCIATION_RETAIN);
        }
        static void weaklyAssociateValue(NSObject& self, NSObject* value, void* key)
        {
            // Whoever has no key of its own would find what somebody else left behind, gone since.
            objc_setAssociatedObject(&self, key, key ? value : nullptr, OBJC_ASSOCIATION_ASSIGN);
        }
        static Ref<NSObject> associatedValueForKey(NSObject& self, void* key)
        {
            return objc_getAssociatedObject(&self, key);
        }

        static void table(Builder& t)
        {
            t.methods({
                { "associateValue:withKey:", imp<associateValue> },
                { "weaklyAssociateValue:withKey:", imp<weaklyAssociateValue> },
                { "associatedValueForKey:", imp<associatedValueForKey> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSObject, HXAssociatedObjects)

}
