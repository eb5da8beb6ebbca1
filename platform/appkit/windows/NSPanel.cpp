// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSPanel.h"

#include "NSWindowPrivate.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSPanel::Methods<struct Basics> {

    static Ref<NSWindow> initWithContentRect(NSPanel& self, NSRect content, NSWindowStyleMask style,
        NSBackingStoreType backing, bool defer)
    {
        const Ref<NSWindow> made
            = super<NSPanel, "initWithContentRect:styleMask:backing:defer:", Ref<NSWindow>>(
                self, content, style, backing, defer);
        if (made)
            made->setHidesOnDeactivate(true);
        return made;
    }
    // `canBecomeKeyWindow` stays the window's: extensions of NSWindow must reach panels as well.
    static bool canBecomeMain(NSPanel&) { return false; }
    static bool isFloating(NSPanel& self) { return self.floating_; }
    static void setFloating(NSPanel& self, bool floating)
    {
        self.floating_ = floating;
        self.setLevel(floating ? NSFloatingWindowLevel : NSNormalWindowLevel);
    }
    static bool keyOnlyIfNeeded(NSPanel& self) { return self.keyOnlyIfNeeded_; }
    static void setKeyOnlyIfNeeded(NSPanel& self, bool only) { self.keyOnlyIfNeeded_ = only; }
    static bool worksWhenModal(NSPanel& self) { return self.worksWhenModal_; }
    static void setWorksWhenModal(NSPanel& self, bool works) { self.worksWhenModal_ = works; }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithContentRect:styleMask:backing:defer:", imp<initWithContentRect> },
            { "canBecomeMainWindow", imp<canBecomeMain> },
            { "isFloatingPanel", imp<isFloating> },
            { "setFloatingPanel:", imp<setFloating> },
            { "becomesKeyOnlyIfNeeded", imp<keyOnlyIfNeeded> },
            { "setBecomesKeyOnlyIfNeeded:", imp<setKeyOnlyIfNeeded> },
            { "worksWhenModal", imp<worksWhenModal> },
            { "setWorksWhenModal:", imp<setWorksWhenModal> },
        });
    }
};
BRINDLE_RECORD(NSPanel, Basics)

}
