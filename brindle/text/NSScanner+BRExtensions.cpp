// SPDX-License-Identifier: Apache-2.0
#include "NSScanner+BRExtensions.h"

#include "runtime/Table.h"

namespace brindle {

namespace {

    struct BRExtensions {

        static bool upTo(NSScanner& self, NSString* string)
        {
            return self.scanUpToString_intoString(string, nullptr);
        }
        static bool past(NSScanner& self, NSString* string)
        {
            return self.scanString_intoString(string, nullptr);
        }
        static bool upToAndPast(NSScanner& self, NSString* string)
        {
            scanUpToString(self, string);
            return !self.isAtEnd() && scanString(self, string);
        }
        static bool backTo(NSScanner& self, NSString* string)
        {
            if (!string)
                return false;
            const NSUInteger step = string->length();
            const Ref<NSString> text = self.string();
            while (true) {
                const NSUInteger location = self.scanLocation();
                self.setScanLocation(location - step);
                if (location == step)
                    return false;
                const Ref<NSString> here = text->substringWithRange({ self.scanLocation(), step });
                if (here->isEqualToString(string))
                    return true;
            }
        }

        static void table(Builder& t)
        {
            t.methods({
                { "scanUpToString:", imp<upTo> },
                { "scanString:", imp<past> },
                { "scanUpToAndPastString:", imp<upToAndPast> },
                { "scanBackToString:", imp<backTo> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSScanner, BRExtensions)

}
