// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSMenu.h"

#include "XDriver.h"
#include "appkit/NSApplication.h"
#include "appkit/NSScreen.h"
#include "appkit/NSWindow.h"
#include "foundation/Clock.h"
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
            Clock::useSystem();
            display::X11Test::endInstalled(display);
        }

        bool open(double patience = 8)
        {
            tracking.at(patience, [this] { menu->cancelTracking(); }); // whatever happens
            const CGFloat height = NSScreen::cls().mainScreen()->frame().size.height;
            return menu->popUpMenuPositioningItem_atLocation_inView(
                nullptr, { 100, height - 100 }, nullptr);
        }
        /// Lets no time pass but what the loop waits for, once the menu has heard all that its opening brings along.
        void stopTheClock()
        {
            tracking.at(0.5, [] { Clock::useVirtual(); });
        }
        /// Answers whether the pointer is free for another program.
        bool pointerIsFree()
        {
            display.pointerLocation(); // an answer: the server has done what we asked for
            const bool isFree = driver.grabPointer();
            if (isFree)
                driver.ungrabPointer();
            return isFree;
        }
        display::Display& display = display::installX11();
        Ref<NSApplication> application = NSApplication::cls().sharedApplication();
        display::XDriver driver;
        Ref<ActionLog> log = make<ActionLog>();
        Ref<NSMenu> menu = make<NSMenu>();
        display::WhileTracking tracking;
        std::string chosen; // the title
    };

    TEST_F(MenuOnX, AClickChooses)
    {
        tracking.at(0.3, [this] { driver.click(130, 100 + 5 + 22 + 8); });
        EXPECT_TRUE(open());
        EXPECT_EQ(chosen, "Two");
    }

    TEST_F(MenuOnX, KeysReachItWhoeverHasTheFocus)
    {
        driver.stealFocus();
        tracking.at(0.3, [this] {
            driver.tap(kKeyDown);
            driver.tap(kKeyReturn);
        });
        EXPECT_TRUE(open());
        EXPECT_EQ(chosen, "One");
    }

    TEST_F(MenuOnX, AClickElsewhereClosesIt)
    {
        bool late = false;
        tracking.at(0.3, [this] { driver.click(500, 500); });
        tracking.at(3, [&] { late = true; });
        EXPECT_FALSE(open());
        EXPECT_FALSE(late);
    }

    TEST_F(MenuOnX, EscapeClosesIt)
    {
        bool late = false;
        tracking.at(0.3, [this] { driver.tap(kKeyEscape); });
        tracking.at(3, [&] { late = true; });
        EXPECT_FALSE(open());
        EXPECT_FALSE(late);
    }

    TEST_F(MenuOnX, OthersMayHaveThePointerAfterwards)
    {
        tracking.at(0.3, [this] { EXPECT_FALSE(driver.grabPointer()); });
        tracking.at(0.5, [this] { driver.tap(kKeyEscape); });
        open();
        driver.sync();
        EXPECT_TRUE(driver.grabPointer());
        driver.ungrabPointer();
    }

    // Or the screen could not be locked while a menu is open.
    TEST_F(MenuOnX, OthersMayHaveThePointerAfterAMinuteWithoutInput)
    {
        stopTheClock();
        bool before = true;
        bool after = false;
        tracking.at(50, [&] { before = pointerIsFree(); });
        tracking.at(70, [&] { after = pointerIsFree(); });
        open(71);
        EXPECT_FALSE(before);
        EXPECT_TRUE(after);
    }

    TEST_F(MenuOnX, TakesThePointerAgainWhenItIsMoved)
    {
        driver.movePointer(120, 110);
        stopTheClock();
        bool free = false;
        tracking.at(70, [&] {
            free = pointerIsFree();
            driver.movePointer(130, 120);
            display.pointerLocation(); // an answer: the server has told us
        });
        tracking.at(71, [&] { free = free && !pointerIsFree(); });
        open(72);
        EXPECT_TRUE(free);
    }

    TEST_F(MenuOnX, AnotherProgramsGrabDoesNotKeepItFromOpening)
    {
        ASSERT_TRUE(driver.grabPointer());
        tracking.at(0.6, [this] {
            driver.ungrabPointer();
            driver.sync();
            driver.click(130, 100 + 5 + 8);
        });
        EXPECT_TRUE(open());
        EXPECT_EQ(chosen, "One");
    }

}
}
