// SPDX-License-Identifier: Apache-2.0
#include "PropertyListUID.h"

#include "NSString.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct PropertyListUID::Methods<struct Value> {

    static Ref<PropertyListUID> initWithUnsignedInteger(PropertyListUID& self, NSUInteger value)
    {
        if (!super<PropertyListUID, "init", Ref<NSObject>>(self))
            return nullptr;
        self.value_ = value;
        return &self;
    }
    static NSUInteger unsignedIntegerValue(PropertyListUID& self) { return self.value_; }
    static bool isEqual(PropertyListUID& self, NSObject* other)
    {
        return other && other->isKindOfClass(PropertyListUID::cls())
            && static_cast<PropertyListUID*>(other)->unsignedIntegerValue() == self.value_;
    }
    static NSUInteger hash(PropertyListUID& self) { return self.value_ + 1; }
    static Ref<NSObject> copyWithZone(PropertyListUID& self, void*) { return &self; }
    static Ref<NSString> description(PropertyListUID& self)
    {
        return stringFrom("{value = " + std::to_string(self.value_) + "}");
    }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        t.methods({
            { "initWithUnsignedInteger:", imp<initWithUnsignedInteger> },
            { "unsignedIntegerValue", imp<unsignedIntegerValue> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "copyWithZone:", imp<copyWithZone> },
            { "description", imp<description> },
        });
    }
};
BRINDLE_RECORD(PropertyListUID, Value)

}
