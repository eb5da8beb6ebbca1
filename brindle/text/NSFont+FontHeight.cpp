// SPDX-License-Identifier: Apache-2.0
#include "NSFont+FontHeight.h"

#include "appkit/NSLayoutManager.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    struct FontHeight {

        static double fontHeight(NSFont& self)
        {
            return make<NSLayoutManager>()->defaultLineHeightForFont(&self) + 1.0;
        }

        static void table(Builder& t) { t.methods({ { "fontHeight", imp<fontHeight> } }); }
    };

}
BRINDLE_EXTENSION(NSFont, FontHeight)

}
