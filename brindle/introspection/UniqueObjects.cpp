// SPDX-License-Identifier: Apache-2.0
#include "UniqueObjects.h"

#include "foundation/NSArray.h"
#include "runtime/Runtime.h"

namespace brindle {

namespace {

    struct UniqueObjects {
        static Ref<NSArray> UUIDProperties(Class&) { return nullptr; }

        static void table(Builder& t)
        {
            t.classMethods({ { "UUIDProperties", imp<UUIDProperties> } });
        }
    };

}
BRINDLE_EXTENSION(NSObject, UniqueObjects)

Protocol* uniqueObjectsProtocol() { return objc_getProtocol("UniqueObjects"); }

}
