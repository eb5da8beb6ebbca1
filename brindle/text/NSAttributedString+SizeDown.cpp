// SPDX-License-Identifier: Apache-2.0
#include "NSAttributedString+SizeDown.h"

#include "runtime/Table.h"

namespace brindle {

namespace {

    struct SizeDown {

        static NSInteger sizeDown(NSAttributedString&, NSSize, NSRect*) { return 0; }

        static void table(Builder& t)
        {
            t.methods({ { "sizeDownFontToFitIn:textBounds:", imp<sizeDown> } });
        }
    };

}
BRINDLE_EXTENSION(NSAttributedString, SizeDown)

}
