// SPDX-License-Identifier: Apache-2.0
#include "NSObject+PropertiesBR.h"

#include "NSObject+EQProperties.h"
#include "foundation/NSObjCRuntime.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    struct PropertiesBR {
        static Ref<NSString> propertyTypeOfProperty(NSObject& self, NSString* name)
        {
            return NSString::cls().stringWithUTF8String(typeOfPropertyNamed(self, name));
        }
        static bool propertyIsOfClass(NSObject& self, NSString* name, Class* cls)
        {
            return brindle::propertyTypeOfProperty(self, name)
                ->containsString(NSStringFromClass(cls).get());
        }
        static void table(Builder& t)
        {
            t.methods({
                { "propertyTypeOfProperty:", imp<propertyTypeOfProperty> },
                { "property:isOfClass:", imp<propertyIsOfClass> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSObject, PropertiesBR)

}
