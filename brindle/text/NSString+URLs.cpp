// SPDX-License-Identifier: Apache-2.0
#include "NSString+URLs.h"

#include "runtime/Table.h"

namespace brindle {

namespace {

    struct URLs {

        static Ref<NSURL> URLValue(NSString& self)
        {
            if (self.containsString(" "_ns))
                return nullptr;
            const Ref<NSString> lower = self.lowercaseString();
            if (lower->hasPrefix("http://"_ns) || lower->hasPrefix("https://"_ns))
                return NSURL::cls().URLWithString(&self);
            return NSURL::cls().URLWithString(
                NSString::cls().stringWithFormat("http://%@"_ns, &self).get());
        }
        static bool containsString(NSString& self, NSString* text)
        {
            return self.rangeOfString_options(text, NSCaseInsensitiveSearch).location
                != static_cast<NSUInteger>(NSNotFound);
        }

        static void table(Builder& t)
        {
            t.methods({
                { "URLValue", imp<URLValue> },
                { "containsString:", imp<containsString> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSString, URLs)

}
