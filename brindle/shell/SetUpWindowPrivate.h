// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSWindow.h"
#include "runtime/Table.h"

namespace brindle::shell {

/// The operations of a window class with a hook for setting up and fixed answers about key and main.
template <class Window, bool kBecomesKey> struct SetUpWindow {

    static Ref<NSWindow> initWithContentRect(Window& self, NSRect content, NSWindowStyleMask style,
        NSBackingStoreType backing, bool defer)
    {
        if (!super<Window, "initWithContentRect:styleMask:backing:defer:", Ref<NSWindow>>(
                self, content, style, backing, defer))
            return nullptr;
        self._setup();
        return &self;
    }
    static void awakeFromNib(Window& self) { self._setup(); }
    static void setup(Window&) { }
    static bool becomesKey(Window&) { return kBecomesKey; }
    static bool becomesMain(Window&) { return true; }

    static void declare(Builder& t)
    {
        t.methods({
            { "initWithContentRect:styleMask:backing:defer:", imp<initWithContentRect> },
            { "awakeFromNib", imp<awakeFromNib> },
            { "_setup", imp<setup> },
            { "canBecomeKeyWindow", imp<becomesKey> },
            { "canBecomeMainWindow", imp<becomesMain> },
        });
    }
};

}
