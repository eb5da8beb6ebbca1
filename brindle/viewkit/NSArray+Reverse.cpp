// SPDX-License-Identifier: Apache-2.0
#include "NSArray+Reverse.h"

#include "foundation/NSEnumerator.h"
#include "foundation/NSMutableArray.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    struct Reverse {
        static Ref<NSArray> reversed(NSArray& self)
        {
            const Ref<NSMutableArray> all = NSMutableArray::cls().arrayWithCapacity(self.count());
            const Ref<NSEnumerator> backward = self.reverseObjectEnumerator();
            while (const Ref<NSObject> object = backward->nextObject())
                all->addObject(object.get());
            return all;
        }
        static void table(Builder& t) { t.methods({ { "reversedArray", imp<reversed> } }); }
    };

}
BRINDLE_EXTENSION(NSArray, Reverse)

}
