// SPDX-License-Identifier: Apache-2.0
#include "NSString+EQPropertyKVC.h"

#include "runtime/Table.h"

namespace brindle {

namespace {

    struct EQPropertyKVC {
        static Ref<NSString> propertyStyleString(NSString& self)
        {
            const Ref<NSString> first = self.substringToIndex(1)->lowercaseString();
            return first->stringByAppendingString(self.substringFromIndex(1).get());
        }
        static void table(Builder& t)
        {
            t.methods({ { "propertyStyleString", imp<propertyStyleString> } });
        }
    };

}
BRINDLE_EXTENSION(NSString, EQPropertyKVC)

}
