// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "XDriver.h"
#include "appkit/NSApplication.h"
#include "appkit/NSButton.h"
#include "appkit/NSScreen.h"
#include "appkit/NSWindow.h"
#include "controls/GWOverlayHoverView.h"
#include "controls/GWThemeFrameView.h"
#include "controls/OnOffSwitchControl.h"
#include "runtime/Table.h"
#include "support/LogSink.h"

namespace brindle {

/// Counts the actions that it gets.
class ActionCounter : public NSObject {
    BRINDLE_OBJECT(ActionCounter, NSObject)

public:
    int count_ = 0;
};
template <> struct ActionCounter::Methods<struct Counting> {
    static void act(ActionCounter& self, NSObject*) { ++self.count_; }
    static void table(Builder& t) { t.methods({ { "act:", imp<act> } }); }
};
BRINDLE_RECORD(ActionCounter, Counting)

namespace {

    using display::becomes;

    /// A window on the server of the environment, and the user's hands on that server.
    struct ControlsOnX : testing::Test {
        ControlsOnX()
        {
            driver.movePointer(5, 5);
            window->makeKeyAndOrderFront(nullptr);
            application->activateIgnoringOtherApps(true);
        }
        ~ControlsOnX() override
        {
            window->close();
            display::X11Test::endInstalled(display);
        }
        /// Runs the loop until something is true, a few seconds at most.
        /// Moves the pointer to a point of the window, in pixels of a screen without scale.
        void moveTo(NSPoint point)
        {
            const NSPoint on = window->convertPointToScreen(point);
            const auto height = NSScreen::cls().mainScreen()->frame().size.height;
            driver.movePointer(static_cast<int>(on.x), static_cast<int>(height - on.y));
        }
        /// Answers whether what was asked of the server came back: the pointer is where it was moved to.
        bool pointerCame(NSPoint point)
        {
            return becomes([&] {
                const NSPoint at = window->mouseLocationOutsideOfEventStream();
                return std::abs(at.x - point.x) < 2 && std::abs(at.y - point.y) < 2;
            });
        }

        display::Display& display = display::installX11();
        Ref<NSApplication> application = NSApplication::cls().sharedApplication();
        display::XDriver driver;
        Ref<NSWindow> window = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            NSMakeRect(200, 300, 300, 200), NSTitledWindowMask | NSResizableWindowMask,
            NSBackingStoreBuffered, true);
    };

    struct SwitchOnX : ControlsOnX {
        SwitchOnX()
        {
            control->setTarget(log.get());
            control->setAction(selector<"act:">);
            window->contentView()->addSubview(control.get());
            EXPECT_TRUE(becomes([&] { return application->isActive() && window->isKeyWindow(); }));
            clickUntilHeard();
        }
        // A manager may keep the first presses for itself.
        void clickUntilHeard()
        {
            const Ref<ActionCounter> heard = make<ActionCounter>();
            const Ref<NSButton> button
                = cast<NSButton>(alloc<NSButton>()->initWithFrame(NSMakeRect(10, 10, 80, 30)));
            button->setTarget(heard.get());
            button->setAction(selector<"act:">);
            window->contentView()->addSubview(button.get());
            for (int i = 0; i < 50 && heard->count_ == 0; ++i) {
                press({ 40, 25 });
                driver.button(1, false);
                becomes([&] { return heard->count_ > 0; }, 20);
            }
            EXPECT_GT(heard->count_, 0);
            button->removeFromSuperview();
        }
        void press(NSPoint point)
        {
            moveTo(point);
            EXPECT_TRUE(pointerCame(point));
            driver.button(1, true);
        }
        Ref<ActionCounter> log = make<ActionCounter>();
        Ref<OnOffSwitchControl> control = cast<OnOffSwitchControl>(
            alloc<OnOffSwitchControl>()->initWithFrame(NSMakeRect(100, 100, 60, 20)));
    };

    TEST_F(SwitchOnX, IsClicked)
    {
        press({ 110, 110 });
        driver.button(1, false);
        EXPECT_TRUE(becomes([&] { return log->count_ == 1; }));
        EXPECT_EQ(control->state(), NSOnState);
    }
    TEST_F(SwitchOnX, IsDragged)
    {
        press({ 110, 110 });
        for (int x = 112; x <= 150; x += 2)
            moveTo({ static_cast<CGFloat>(x), 110 });
        driver.button(1, false);
        EXPECT_TRUE(becomes([&] { return log->count_ == 1; }));
        EXPECT_EQ(control->state(), NSOnState);
    }
    TEST_F(SwitchOnX, ADragBackIntoItsHalfLeavesItAsItWas)
    {
        press({ 110, 110 });
        for (const int x : { 140, 150, 130, 118 })
            moveTo({ static_cast<CGFloat>(x), 110 });
        driver.button(1, false);
        EXPECT_TRUE(becomes([&] { return log->count_ == 1; }));
        EXPECT_EQ(control->state(), NSOffState);
    }

    TEST_F(ControlsOnX, TheStripOfAWindowFeelsThePointer)
    {
        const Ref<GWThemeFrameView> strip = make<GWThemeFrameView>();
        strip->setTitlebarOverlay(true);
        strip->setTitlebarOverlayHeight(40);
        window->contentView()->superview()->addSubview(strip.get());
        ASSERT_TRUE(becomes([&] { return application->isActive(); }));
        window->setContentSize(
            { 320, 200 }); // the strip's frame changes: it feels the pointer from now on
        const test::LogSink log;
        moveTo({ 160, NSMaxY(window->contentView()->superview()->bounds()) - 11 });
        EXPECT_TRUE(becomes([&] { return strip->overlayHoverView()->alphaValue() == 1; }));
        EXPECT_EQ(log.text(), "mouseEntered\n");
        moveTo({ 160, 20 });
        EXPECT_TRUE(becomes([&] { return strip->overlayHoverView()->alphaValue() == 0; }));
    }

}
}
