// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSPanel.h"
#include "runtime/Table.h"
#include "shell/BROSPanel.h"
#include "shell/OSWindow.h"
#include "support/HeadlessScreen.h"

#include <gtest/gtest.h>

namespace brindle {

// A host's subclass that counts how often it is set up.
class CountingWindow : public OSWindow {
    BRINDLE_OBJECT(CountingWindow, OSWindow)
public:
    int setups_ = 0;
};
template <> struct CountingWindow::Methods<struct Hook> {
    static void setup(CountingWindow& self) { ++self.setups_; }
    static void table(Builder& t) { t.methods({ { "_setup", imp<setup> } }); }
};
BRINDLE_RECORD(CountingWindow, Hook)

class CountingPanel : public BROSPanel {
    BRINDLE_OBJECT(CountingPanel, BROSPanel)
public:
    int setups_ = 0;
};
template <> struct CountingPanel::Methods<struct Hook> {
    static void setup(CountingPanel& self) { ++self.setups_; }
    static void table(Builder& t) { t.methods({ { "_setup", imp<setup> } }); }
};
BRINDLE_RECORD(CountingPanel, Hook)

namespace {

    template <class W> Ref<W> windowOf(NSWindowStyleMask style = NSBorderlessWindowMask)
    {
        return cast<W>(alloc<W>()->initWithContentRect_styleMask_backing_defer(
            NSMakeRect(10, 10, 100, 80), style, NSBackingStoreBuffered, true));
    }

    TEST(OSWindow, CanBecomeKeyAndMainWithoutABorder)
    {
        EXPECT_TRUE(windowOf<OSWindow>()->canBecomeKeyWindow());
        EXPECT_TRUE(windowOf<OSWindow>()->canBecomeMainWindow());
    }
    TEST(OSWindow, BecomesKeyAndMainWithoutABorder)
    {
        HeadlessScreen screen;
        const Ref<OSWindow> window = windowOf<OSWindow>();
        window->makeKeyAndOrderFront(nullptr);
        EXPECT_TRUE(window->isKeyWindow());
        EXPECT_TRUE(window->isMainWindow());
        window->close();
    }
    TEST(OSWindow, IsSetUpByItsInitialiser) { EXPECT_EQ(windowOf<CountingWindow>()->setups_, 1); }
    TEST(OSWindow, IsSetUpAgainWhenItWakes)
    {
        const Ref<CountingWindow> window = windowOf<CountingWindow>();
        window->awakeFromNib();
        EXPECT_EQ(window->setups_, 2);
    }
    TEST(BROSPanel, NeverBecomesKeyButMayBecomeMain)
    {
        for (const NSWindowStyleMask style : { NSBorderlessWindowMask, NSTitledWindowMask }) {
            EXPECT_FALSE(windowOf<BROSPanel>(style)->canBecomeKeyWindow());
            EXPECT_TRUE(windowOf<BROSPanel>(style)->canBecomeMainWindow());
        }
    }
    TEST(BROSPanel, StaysBehindTheKeyboardWhenItIsShownAsKey)
    {
        HeadlessScreen screen;
        const Ref<BROSPanel> panel = windowOf<BROSPanel>(NSTitledWindowMask);
        panel->makeKeyAndOrderFront(nullptr);
        EXPECT_FALSE(panel->isKeyWindow());
        EXPECT_TRUE(panel->isMainWindow());
        panel->close();
    }
    TEST(BROSPanel, IsSetUpByItsInitialiserAndWhenItWakes)
    {
        const Ref<CountingPanel> panel = windowOf<CountingPanel>();
        panel->awakeFromNib();
        EXPECT_EQ(panel->setups_, 2);
    }
    TEST(EveryWindow, CanBecomeKeyWhateverItsStyle)
    {
        EXPECT_TRUE(windowOf<NSWindow>()->canBecomeKeyWindow());
        EXPECT_TRUE(windowOf<NSPanel>()->canBecomeKeyWindow());
        EXPECT_TRUE(windowOf<NSWindow>(NSTitledWindowMask)->canBecomeKeyWindow());
    }
    TEST(EveryWindow, KeepsThePlatformsAnswerAboutMain)
    {
        HeadlessScreen screen;
        const Ref<NSWindow> window = windowOf<NSWindow>();
        window->orderFront(nullptr);
        EXPECT_FALSE(window->canBecomeMainWindow());
        window->close();
    }
    TEST(EveryWindow, IsLeftOutAsTheNextKeyWindowWhereItLetsThePointerThrough)
    {
        HeadlessScreen screen;
        const Ref<NSWindow> glass = windowOf<NSWindow>();
        glass->setIgnoresMouseEvents(true);
        glass->orderFront(nullptr);
        const Ref<NSWindow> window = windowOf<NSWindow>(NSTitledWindowMask);
        window->makeKeyAndOrderFront(nullptr);
        window->close();
        EXPECT_TRUE(screen.window().isKeyWindow());
        glass->close();
    }

}
}
