// SPDX-License-Identifier: Apache-2.0
#include "NSBundle+Brindle.h"

#include "runtime/Table.h"

namespace brindle {

namespace {

    struct Brindle {

        static Ref<NSBundle> frameworkBundle(Class&)
        {
            return NSBundle::cls().bundleWithIdentifier("org.brindle.Brindle"_ns);
        }

        static void table(Builder& t)
        {
            t.classMethods({ { "BrindleFrameworkBundle", imp<frameworkBundle> } });
        }
    };

}
BRINDLE_EXTENSION(NSBundle, Brindle)

}
