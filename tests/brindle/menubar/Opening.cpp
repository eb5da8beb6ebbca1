// SPDX-License-Identifier: Apache-2.0
#include "MenubarHosts.h"

#include "foundation/NSMutableArray.h"
#include "support/OpenMenu.h"

#include <gtest/gtest.h>

namespace brindle {
namespace {

    using test::BarDesk;
    using test::buttonTitled;
    using test::menuWithKey;

    constexpr char16_t kEscape = 0x1B;
    constexpr char16_t kReturn = u'\r';

    /// A bar with three menus of one item each.
    struct OpenBar : ::testing::Test {
        OpenBar()
        {
            desk.make(BRMenubarThemeCustom, BRMenubarSpacingNone).load();
            for (const auto& button : { file, edit, view })
                desk.bar->addMenubarView(button.get());
            desk.screen.process();
        }
        static NSRect onScreen(const Ref<BRCustomMenubarMenuButton>& button)
        {
            return button->window()->convertRectToScreen(
                button->convertRect_toView(button->bounds(), nullptr));
        }
        static NSPoint middleOf(const Ref<BRCustomMenubarMenuButton>& button)
        {
            const NSRect rect = onScreen(button);
            return { NSMidX(rect), NSMidY(rect) };
        }
        void click(const Ref<BRCustomMenubarMenuButton>& button)
        {
            desk.screen.pointer().click(middleOf(button));
        }
        /// Notes which buttons are lit when the script comes to this.
        void noteLit()
        {
            script.then([this] {
                lit += file->cell()->isHighlighted() ? "File " : "";
                lit += edit->cell()->isHighlighted() ? "Edit " : "";
                lit += view->cell()->isHighlighted() ? "View " : "";
                lit += "; ";
            });
        }

        BarDesk desk;
        MenuScript script { desk.screen };
        Ref<ActionLog> log = make<ActionLog>();
        Ref<BRCustomMenubarMenuButton> file
            = buttonTitled("File"_ns, menuWithKey("File"_ns, "f"_ns, log.get()).get());
        Ref<BRCustomMenubarMenuButton> edit
            = buttonTitled("Edit"_ns, menuWithKey("Edit"_ns, "e"_ns, log.get()).get());
        Ref<BRCustomMenubarMenuButton> view
            = buttonTitled("View"_ns, menuWithKey("View"_ns, "v"_ns, log.get()).get());
        std::string lit;
    };

    TEST_F(OpenBar, OpensTheMenuFivePointsBelowItsButton)
    {
        NSRect menu {};
        script.then([&] { menu = menuFrame(0); }).key(kEscape);
        click(edit);
        EXPECT_EQ(NSMinX(menu), NSMinX(onScreen(edit)));
        EXPECT_EQ(NSMaxY(menu), NSMinY(onScreen(edit)) - 5);
        EXPECT_TRUE(menuWindows().empty());
    }
    TEST_F(OpenBar, LightsTheButtonWhileItsMenuIsOpen)
    {
        noteLit();
        script.key(kEscape);
        click(edit);
        EXPECT_EQ(lit, "Edit ; ");
        EXPECT_FALSE(edit->cell()->isHighlighted());
    }
    TEST_F(OpenBar, SendsTheActionOfTheChosenItem)
    {
        script.key(NSDownArrowFunctionKey).key(kReturn);
        click(file);
        ASSERT_EQ(log->count_, 1);
        EXPECT_EQ(cast<NSMenuItem>(log->sender_)->menu(), file->menu());
    }
    TEST_F(OpenBar, GoesToTheButtonUnderThePointer)
    {
        script.move(middleOf(view));
        noteLit();
        script.key(kEscape);
        click(file);
        EXPECT_EQ(lit, "View ; ");
    }
    TEST_F(OpenBar, GoesToTheNextButtonsByArrowsAndRoundTheEnds)
    {
        script.key(NSRightArrowFunctionKey);
        noteLit();
        script.key(NSLeftArrowFunctionKey).key(NSLeftArrowFunctionKey);
        noteLit();
        script.key(kEscape);
        click(file);
        EXPECT_EQ(lit, "Edit ; View ; ");
    }
    TEST_F(OpenBar, PassesOverButtonsThatAreHiddenOrDisabled)
    {
        edit->setEnabled(false);
        script.key(NSRightArrowFunctionKey);
        noteLit();
        script.then([&] {
            edit->setEnabled(true);
            edit->setHidden(true);
        });
        script.key(NSLeftArrowFunctionKey);
        noteLit();
        script.key(kEscape);
        click(file);
        EXPECT_EQ(lit, "View ; File ; ");
    }
    TEST_F(OpenBar, LeavesTheKeyboardWithItsWindow)
    {
        desk.screen.window().makeKeyAndOrderFront(nullptr);
        bool key = false;
        script.then([&] { key = desk.screen.window().isKeyWindow(); }).key(kEscape);
        click(file);
        EXPECT_TRUE(key);
        EXPECT_TRUE(desk.screen.window().isKeyWindow());
    }
    TEST_F(OpenBar, OpensNothingByTheRightButton)
    {
        bool opened = false;
        script.then([&] { opened = !menuWindows().empty(); });
        desk.screen.pointer().click(middleOf(file), 1, 1);
        desk.screen.advance(0.1);
        EXPECT_FALSE(opened);
    }
    TEST_F(OpenBar, ClearsTheCellsMenuForARightPressAndTracksIt)
    {
        file->cell()->setMenu(file->menu().get());
        const Ref<NSEvent> press
            = NSEvent::cls()
                  .mouseEventWithType_location_modifierFlags_timestamp_windowNumber_context_eventNumber_clickCount_pressure(
                      NSRightMouseDown, {}, 0, 0, file->window()->windowNumber(), nullptr, 1, 1, 1);
        desk.screen.display().pressButton(1);
        desk.screen.display().releaseButton(1);
        file->mouseDown(press.get());
        EXPECT_EQ(file->cell()->menu(), nullptr);
        EXPECT_TRUE(menuWindows().empty());
    }
    TEST_F(OpenBar, TakesAMenuThatWasChangedSince)
    {
        click(file);
        file->setMenu(menuWithKey("Other"_ns, "o"_ns, log.get()).get());
        script.key(NSDownArrowFunctionKey).key(kReturn);
        click(file);
        EXPECT_EQ(utf8(cast<NSMenuItem>(log->sender_)->menu()->title()), "Other");
    }
    TEST_F(OpenBar, LetsAButtonWithoutAMenuToggle)
    {
        edit->setMenu(nullptr);
        edit->setToggleButton(true);
        edit->setTarget(log.get());
        edit->setAction(selector<"act:">);
        click(edit);
        EXPECT_EQ(edit->state(), NSOnState);
        EXPECT_EQ(log->count_, 1);
    }

    // ---- what goes away while a menu is open

    TEST_F(OpenBar, SurvivesTheLossOfTheButton)
    {
        script
            .then([&] {
                edit->removeFromSuperview();
                desk.bar->menubarViews()->removeObject(edit.get());
                edit = nullptr;
            })
            .key(NSRightArrowFunctionKey)
            .key(kEscape);
        click(edit);
        EXPECT_TRUE(menuWindows().empty());
    }
    TEST_F(OpenBar, SurvivesTheLossOfTheBar)
    {
        script.then([&] { desk.bar->close(); }).key(kEscape);
        click(edit);
        EXPECT_TRUE(menuWindows().empty());
        desk.bar->orderFront(nullptr);
        desk.screen.process();
    }
    TEST_F(OpenBar, SurvivesTheLossOfTheScreen)
    {
        script.then([&] { desk.screen.display().setScreens({}); }).key(kEscape);
        click(edit);
        EXPECT_TRUE(menuWindows().empty());
    }
    TEST_F(OpenBar, ClosesTheMenuWhenAnotherProgramGetsTheKeyboard)
    {
        desk.screen.window().makeKeyAndOrderFront(nullptr);
        desk.screen.process();
        bool stayed = false;
        script.then([&] { desk.screen.display().focus(nullptr); })
            .then([&] { stayed = !menuWindows().empty(); })
            .key(kEscape);
        click(edit);
        EXPECT_FALSE(stayed);
        EXPECT_TRUE(menuWindows().empty());
        EXPECT_FALSE(desk.bar->isVisible());
    }
    TEST_F(OpenBar, SurvivesASecondBarInTheMiddle)
    {
        script
            .then([&] {
                const Ref<BRCustomMenubar> other
                    = alloc<BRCustomMenubar>()->initWithMenubarTheme(BRMenubarThemeCustom);
                other->load();
                cast<NSWindow>(valueForKey(other, "menubarViewsWindow"_ns))->close();
                other->close();
            })
            .key(kEscape);
        click(edit);
        EXPECT_TRUE(menuWindows().empty());
    }

}
}
