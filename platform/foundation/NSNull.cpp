// SPDX-License-Identifier: Apache-2.0
#include "NSNull.h"

#include "NSString.h"
#include "runtime/Runtime.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSNull::Methods<struct NullObject> {

    static Ref<NSNull> null(Class&)
    {
        static NSNull* const only = [] {
            auto* const object = static_cast<NSNull*>(class_createInstance(classOf<NSNull>()));
            headerOf(object).count.store(ObjectHeader::kImmortal, std::memory_order_relaxed);
            return object;
        }();
        return only;
    }
    /// However one is made, it is the same.
    static Ref<NSObject> alloc(Class& self) { return null(self); }
    static Ref<NSString> description(NSNull&) { return "<null>"_ns; }
    static Ref<NSObject> copyWithZone(NSNull& self, void*) { return &self; }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        t.classMethods({
            { "null", imp<null> },
            { "alloc", imp<alloc> },
        });
        t.methods({
            { "description", imp<description> },
            { "copyWithZone:", imp<copyWithZone> },
        });
    }
};
BRINDLE_RECORD(NSNull, NullObject)

}
