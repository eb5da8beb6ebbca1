// SPDX-License-Identifier: Apache-2.0
#include "BROSPanel.h"

#include "runtime/Table.h"

namespace brindle {

template <> struct BROSPanel::Methods<struct Basics> {

    static Ref<NSWindow> initWithContentRect(BROSPanel& self, NSRect content,
        NSWindowStyleMask style, NSBackingStoreType backing, bool defer)
    {
        if (!super<BROSPanel, "initWithContentRect:styleMask:backing:defer:", Ref<NSWindow>>(
                self, content, style, backing, defer))
            return nullptr;
        self._setup();
        return &self;
    }
    static void awakeFromNib(BROSPanel& self) { self._setup(); }
    static void setup(BROSPanel&) { }
    static bool canBecomeKey(BROSPanel&) { return false; }
    static bool canBecomeMain(BROSPanel&) { return true; }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithContentRect:styleMask:backing:defer:", imp<initWithContentRect> },
            { "awakeFromNib", imp<awakeFromNib> },
            { "_setup", imp<setup> },
            { "canBecomeKeyWindow", imp<canBecomeKey> },
            { "canBecomeMainWindow", imp<canBecomeMain> },
        });
    }
};
BRINDLE_RECORD(BROSPanel, Basics)

}
