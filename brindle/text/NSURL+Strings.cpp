// SPDX-License-Identifier: Apache-2.0
#include "NSURL+Strings.h"

#include "foundation/NSArray.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    struct Strings {

        static Ref<NSString> domain(NSURL& self)
        {
            const Ref<NSString> host = self.host();
            const Ref<NSArray> labels = maybe(host)->componentsSeparatedByString("."_ns);
            const NSUInteger count = maybe(labels)->count();
            if (count < 2)
                return host;
            return NSString::cls().stringWithFormat(
                "%@.%@"_ns, labels->objectAtIndex(count - 2), labels->objectAtIndex(count - 1));
        }

        static void table(Builder& t) { t.methods({ { "domain", imp<domain> } }); }
    };

}
BRINDLE_EXTENSION(NSURL, Strings)

}
