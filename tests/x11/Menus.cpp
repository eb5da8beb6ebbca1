// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSMenu.h"

#include <functional>
#include <vector>

#include "XDriver.h"
#include "appkit/NSApplication.h"
#include "appkit/NSScreen.h"
#include "appkit/NSWindow.h"
#include "foundation/NSRunLoop.h"
#include "foundation/NSTimer.h"
#include "support/ActionLog.h"
#include "support/Strings.h"

namespace brindle {
namespace {

    constexpr std::uint8_t kKeyDown = 116;
    constexpr std::uint8_t kKeyReturn = 36;
    constexpr std::uint8_t kKeyEscape = 9;

    /// A menu of two items that opens 100 points from the left and the top of a real screen.
    class MenuOnX : public testing::Test {
    protected:
        MenuOnX()
        {
            menu->setAutoenablesItems(false);
            log->setReaction([this](NSObject* sender) {
                chosen = utf8(static_cast<NSMenuItem*>(sender)->title());
            });
            for (NSString* title : { "One"_ns, "Two"_ns })
                menu->addItemWithTitle_action_keyEquivalent(title, selector<"act:">, nullptr)
                    ->setTarget(log.get());
        }
        ~MenuOnX() override
        {
            for (const Ref<NSTimer>& timer : timers)
                timer->invalidate();
            display::X11Test::endInstalled(display);
        }

        void at(double seconds, std::function<void()> step)
        {
            timers.push_back(NSTimer::cls().timerWithTimeInterval_repeats_block(
                seconds, false, [step = std::move(step)](NSTimer*) { step(); }));
            NSRunLoop::cls().mainRunLoop()->addTimer_forMode(
                timers.back().get(), NSEventTrackingRunLoopMode);
        }
        bool open()
        {
            at(8, [this] { menu->cancelTracking(); }); // whatever happens
            const CGFloat height = NSScreen::cls().mainScreen()->frame().size.height;
            return menu->popUpMenuPositioningItem_atLocation_inView(
                nullptr, { 100, height - 100 }, nullptr);
        }
        display::Display& display = *installDisplay(
            display::openDisplay(display::Choice::x11, display::processEnvironment(), [](auto) {}));
        Ref<NSApplication> application = NSApplication::cls().sharedApplication();
        display::XDriver driver;
        Ref<ActionLog> log = make<ActionLog>();
        Ref<NSMenu> menu = make<NSMenu>();
        std::vector<Ref<NSTimer>> timers;
        std::string chosen; // the title
    };

    TEST_F(MenuOnX, AClickChooses)
    {
        at(0.3, [this] { driver.click(130, 100 + 5 + 22 + 8); });
        EXPECT_TRUE(open());
        EXPECT_EQ(chosen, "Two");
    }

    TEST_F(MenuOnX, KeysReachItWhoeverHasTheFocus)
    {
        driver.stealFocus();
        at(0.3, [this] {
            driver.tap(kKeyDown);
            driver.tap(kKeyReturn);
        });
        EXPECT_TRUE(open());
        EXPECT_EQ(chosen, "One");
    }

    TEST_F(MenuOnX, AClickElsewhereClosesIt)
    {
        bool late = false;
        at(0.3, [this] { driver.click(500, 500); });
        at(3, [&] { late = true; });
        EXPECT_FALSE(open());
        EXPECT_FALSE(late);
    }

    TEST_F(MenuOnX, EscapeClosesIt)
    {
        bool late = false;
        at(0.3, [this] { driver.tap(kKeyEscape); });
        at(3, [&] { late = true; });
        EXPECT_FALSE(open());
        EXPECT_FALSE(late);
    }

    TEST_F(MenuOnX, OthersMayHaveThePointerAfterwards)
    {
        at(0.3, [this] { EXPECT_FALSE(driver.grabPointer()); });
        at(0.5, [this] { driver.tap(kKeyEscape); });
        open();
        driver.sync();
        EXPECT_TRUE(driver.grabPointer());
        driver.ungrabPointer();
    }

    TEST_F(MenuOnX, AnotherProgramsGrabDoesNotKeepItFromOpening)
    {
        ASSERT_TRUE(driver.grabPointer());
        at(0.6, [this] {
            driver.ungrabPointer();
            driver.sync();
            driver.click(130, 100 + 5 + 8);
        });
        EXPECT_TRUE(open());
        EXPECT_EQ(chosen, "One");
    }

}
}
