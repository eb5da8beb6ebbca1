// SPDX-License-Identifier: Apache-2.0
#include "OSWindow.h"

#include "runtime/Table.h"

namespace brindle {

template <> struct OSWindow::Methods<struct Basics> {

    static Ref<NSWindow> initWithContentRect(OSWindow& self, NSRect content,
        NSWindowStyleMask style, NSBackingStoreType backing, bool defer)
    {
        if (!super<OSWindow, "initWithContentRect:styleMask:backing:defer:", Ref<NSWindow>>(
                self, content, style, backing, defer))
            return nullptr;
        self._setup();
        return &self;
    }
    static void awakeFromNib(OSWindow& self) { self._setup(); }
    static void setup(OSWindow&) { }
    static bool canBecomeKey(OSWindow&) { return true; }
    static bool canBecomeMain(OSWindow&) { return true; }

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
BRINDLE_RECORD(OSWindow, Basics)

}
