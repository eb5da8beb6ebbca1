// SPDX-License-Identifier: Apache-2.0
#include "NSColor+StandardUIColors.h"

#include "runtime/Table.h"

namespace brindle {

namespace {

    struct StandardUIColors {

        static Ref<NSColor> sourceListSelection(Class&)
        {
            return NSColor::cls().colorWithWhite_alpha(0.86, 1);
        }

        static void table(Builder& t)
        {
            t.classMethods({ { "graySourceListSelectColor", imp<sourceListSelection> } });
        }
    };

}
BRINDLE_EXTENSION(NSColor, StandardUIColors)

}
