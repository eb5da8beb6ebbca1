// SPDX-License-Identifier: Apache-2.0
#include "NSPopover+canBecomeKeyWindow.h"

#include "runtime/Table.h"

namespace brindle {

namespace {

    struct canBecomeKeyWindow {
        static void table(Builder&) { }
    };

}
BRINDLE_EXTENSION(NSPopover, canBecomeKeyWindow)

}
