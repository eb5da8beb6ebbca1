// SPDX-License-Identifier: Apache-2.0
#include "NSMutableArray+GWExtensions.h"

#include "runtime/Table.h"

namespace brindle {

namespace {

    struct MutableArrayExtensions {
        static bool add(NSMutableArray& self, NSObject* object)
        {
            if (self.containsObject(object))
                return false;
            self.addObject(object);
            return true;
        }
        static void insert(NSMutableArray& self, NSObject* object, NSUInteger index)
        {
            const Ref<NSObject> alive(object); // the array may be the only one that keeps it
            self.removeObject(object);
            self.insertObject_atIndex(object, index);
        }
        static void table(Builder& t)
        {
            t.methods({
                { "addObjectOnce:", imp<add> },
                { "insertObjectOnce:atIndex:", imp<insert> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSMutableArray, MutableArrayExtensions)

}
