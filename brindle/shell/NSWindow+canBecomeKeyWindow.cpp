// SPDX-License-Identifier: Apache-2.0
#include "NSWindow+canBecomeKeyWindow.h"

#include "runtime/Table.h"

namespace brindle {

namespace {

    struct canBecomeKeyWindow {

        static bool canBecomeKey(NSWindow&) { return true; }

        static void table(Builder& t)
        {
            t.methods({ { "canBecomeKeyWindow", imp<canBecomeKey> } });
        }
    };

}
BRINDLE_EXTENSION(NSWindow, canBecomeKeyWindow)

}
