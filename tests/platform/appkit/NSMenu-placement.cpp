// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "appkit/NSButton.h"
#include "appkit/menus/MenuLayoutPrivate.h"
#include "support/OpenMenu.h"

namespace brindle {

namespace {

    constexpr NSRect kScreen { { 0, 0 }, { 800, 600 } };
    constexpr NSSize kSize { 200, 300 };

    TEST(MenuPlacement, TheCornerLiesAtThePoint)
    {
        EXPECT_EQ(placeAtPoint(kSize, { 100, 500 }, kScreen), NSMakeRect(100, 200, 200, 300));
    }

    TEST(MenuPlacement, AtTheRightEdgeItSlides)
    {
        EXPECT_EQ(placeAtPoint(kSize, { 750, 500 }, kScreen), NSMakeRect(600, 200, 200, 300));
    }

    TEST(MenuPlacement, NearTheBottomItOpensUpward)
    {
        EXPECT_EQ(placeAtPoint(kSize, { 100, 100 }, kScreen), NSMakeRect(100, 100, 200, 300));
    }

    TEST(MenuPlacement, WhereItFitsNeitherWayItSlides)
    {
        EXPECT_EQ(placeAtPoint({ 200, 400 }, { 100, 300 }, kScreen), NSMakeRect(100, 0, 200, 400));
    }

    TEST(MenuPlacement, WhatIsTallerThanTheScreenIsAsTallAsIt)
    {
        EXPECT_EQ(placeAtPoint({ 200, 9000 }, { 100, 300 }, kScreen), NSMakeRect(100, 0, 200, 600));
    }

    TEST(MenuPlacement, ItStaysOnItsOwnScreen)
    {
        const NSRect left { { -1000, 200 }, { 1000, 700 } };
        EXPECT_EQ(placeAtPoint(kSize, { -50, 880 }, left), NSMakeRect(-200, 580, 200, 300));
    }

    TEST(MenuPlacement, BelowAButtonItNeverCoversIt)
    {
        const NSRect button { { 100, 250 }, { 80, 22 } };
        EXPECT_EQ(placeBelow({ 200, 200 }, button, 100, kScreen), NSMakeRect(100, 50, 200, 200));
        EXPECT_EQ(placeBelow(kSize, button, 100, kScreen), NSMakeRect(100, 272, 200, 300));
        EXPECT_EQ(placeBelow({ 200, 500 }, button, 100, kScreen), NSMakeRect(100, 272, 200, 328));
    }

    TEST(MenuPlacement, ASubmenuLiesBesideItsRow)
    {
        const NSRect parent { { 100, 200 }, { 200, 300 } };
        const NSRect row { { 100, 400 }, { 200, 22 } };
        EXPECT_EQ(placeBeside({ 150, 100 }, row, parent, kScreen),
            NSMakeRect(297, 422 + menus::kRim - 100, 150, 100));
    }

    TEST(MenuPlacement, ASubmenuGoesToTheLeftWhereTheRightIsFull)
    {
        const NSRect parent { { 580, 200 }, { 200, 300 } };
        const NSRect row { { 580, 400 }, { 200, 22 } };
        EXPECT_EQ(NSMinX(placeBeside({ 150, 100 }, row, parent, kScreen)), 433);
    }

    TEST(MenuPlacement, TheWayToASubmenuIsATriangle)
    {
        const NSRect child { { 300, 100 }, { 100, 200 } };
        EXPECT_TRUE(headsFor({ 200, 290 }, { 250, 200 }, child));
        EXPECT_FALSE(headsFor({ 200, 290 }, { 210, 200 }, child));
        EXPECT_FALSE(headsFor({ 200, 290 }, { 190, 280 }, child));
        EXPECT_FALSE(headsFor({ 200, 290 }, { 220, 320 }, child));
        const NSRect left { { 0, 100 }, { 100, 200 } };
        EXPECT_TRUE(headsFor({ 200, 290 }, { 150, 200 }, left));
        EXPECT_FALSE(headsFor({ 200, 290 }, { 250, 280 }, left));
    }

    std::string signsOf(NSString* key, NSEventModifierFlags flags,
        display::CommandKey command = display::CommandKey::super)
    {
        const Ref<NSMenuItem> item
            = alloc<NSMenuItem>()->initWithTitle_action_keyEquivalent("A"_ns, SEL {}, key);
        item->setKeyEquivalentModifierMask(flags);
        return utf8(stringFrom(std::u16string_view(keySigns(*item, command))));
    }

    TEST(MenuKeySigns, ComeInTheOrderOfTheKeyboard)
    {
        EXPECT_EQ(signsOf("k"_ns,
                      NSCommandKeyMask | NSShiftKeyMask | NSAlternateKeyMask | NSControlKeyMask),
            "⌃⌥⇧⌘K");
    }
    TEST(MenuKeySigns, AnUpperCaseLetterShowsShift)
    {
        EXPECT_EQ(signsOf("S"_ns, NSCommandKeyMask), "⇧⌘S");
    }
    TEST(MenuKeySigns, CommandOnTheControlKeyIsShownAsThat)
    {
        EXPECT_EQ(signsOf("s"_ns, NSCommandKeyMask, display::CommandKey::control), "⌃S");
        EXPECT_EQ(signsOf("s"_ns, NSControlKeyMask, display::CommandKey::control), "⌘S");
    }
    TEST(MenuKeySigns, KeysWithoutLettersHaveSigns)
    {
        EXPECT_EQ(signsOf("\r"_ns, 0), "↩");
        EXPECT_EQ(signsOf("\x08"_ns, NSCommandKeyMask), "⌘⌫");
        const unichar f12 = NSF1FunctionKey + 11;
        EXPECT_EQ(signsOf(stringFrom(std::u16string_view(&f12, 1)).get(), 0), "F12");
        const unichar left = NSLeftArrowFunctionKey;
        EXPECT_EQ(signsOf(stringFrom(std::u16string_view(&left, 1)).get(), 0), "←");
    }
    TEST(MenuKeySigns, NoKeyHasNone) { EXPECT_EQ(signsOf(nullptr, NSCommandKeyMask), ""); }

    // ---- on the screen

    struct MenuPlaceTest : testing::Test, MenuDesk {
        NSRect frameOf(NSMenu& opened, NSMenuItem* item, NSPoint place)
        {
            NSRect frame {};
            script.then([&] { frame = menuFrame(0); }).key(0x1B);
            opened.popUpMenuPositioningItem_atLocation_inView(item, place, nullptr);
            return frame;
        }
        const display::Screen left = display::HeadlessDisplay::screenOfSize(800, 600);

        void addScreenToTheRight()
        {
            display::Screen right = left;
            right.primary = false;
            right.frame.origin.x = right.visibleFrame.origin.x = 800;
            screen.display().setScreens({ left, right });
        }
        void fill(int count)
        {
            for (int i = 0; i < count; ++i)
                add(*menu, stringFrom("Item " + std::to_string(i)).get());
        }
    };

    TEST_F(MenuPlaceTest, TheMenuHangsFromThePlace)
    {
        const NSRect frame = frameOf(*menu, nullptr, { 100, 500 });
        EXPECT_EQ(NSMinX(frame), 100);
        EXPECT_EQ(NSMaxY(frame), 500);
        EXPECT_EQ(frame.size, menu->size());
    }

    TEST_F(MenuPlaceTest, AnItemComesToLieAtThePlace)
    {
        const NSRect frame = frameOf(*menu, last.get(), { 100, 300 });
        EXPECT_EQ(NSMaxY(frame), 300 + 5 + 3 * rowHeight() + 11);
    }

    TEST_F(MenuPlaceTest, AContextMenuOpensAtTheEvent)
    {
        NSRect frame {};
        script.then([&] { frame = menuFrame(0); }).key(0x1B);
        const Ref<NSEvent> event
            = NSEvent::cls()
                  .mouseEventWithType_location_modifierFlags_timestamp_windowNumber_context_eventNumber_clickCount_pressure(
                      NSRightMouseDown, { 250, 400 }, 0, 0, screen.window().windowNumber(), nullptr,
                      0, 1, 1);
        NSMenu::cls().popUpContextMenu_withEvent_forView(
            menu.get(), event.get(), screen.window().contentView().get());
        EXPECT_EQ(NSMinX(frame), 250);
        EXPECT_EQ(NSMaxY(frame), 400);
    }

    TEST_F(MenuPlaceTest, AMenuTallerThanTheScreenScrolls)
    {
        fill(200);
        std::string atEnd;
        NSRect frame {};
        script.then([&] { frame = menuFrame(0); }).key(NSEndFunctionKey);
        script.then([&] { atEnd = highlighted(*menu); }).key('\r');
        EXPECT_TRUE(open());
        EXPECT_EQ(frame.size.height, 600);
        EXPECT_EQ(atEnd, "Item 199");
        EXPECT_EQ(chosen(), "Item 199");
    }

    TEST_F(MenuPlaceTest, TheWheelScrollsALongMenu)
    {
        fill(200);
        std::string before;
        std::string after;
        script.move({ 150, 300 }).then([&] { before = highlighted(*menu); });
        script.scroll(-10 * rowHeight()).then([&] { after = highlighted(*menu); }).key(0x1B);
        open();
        EXPECT_EQ(std::stoi(after.substr(5)), std::stoi(before.substr(5)) + 10);
    }

    TEST_F(MenuPlaceTest, ThePointerOnAnArrowScrollsToTheEnd)
    {
        fill(60);
        script.move({ 150, 5 }).wait(10).move({ 150, 12 });
        script.wait(1).click({ 150, 20 });
        EXPECT_TRUE(open());
        EXPECT_EQ(chosen(), "Item 59");
    }

    TEST_F(MenuPlaceTest, ThePagesOfALongMenuAreTurned)
    {
        fill(200);
        std::string first;
        std::string second;
        script.key(NSHomeFunctionKey).key(NSPageDownFunctionKey);
        script.then([&] { first = highlighted(*menu); }).key(NSPageUpFunctionKey);
        script.then([&] { second = highlighted(*menu); }).key(0x1B);
        open();
        EXPECT_EQ(first.substr(0, 5), "Item ");
        EXPECT_EQ(second, "One");
    }

    TEST_F(MenuPlaceTest, TenThousandItemsOpenAndScroll)
    {
        fill(10000);
        script.key(NSEndFunctionKey).key('\r');
        EXPECT_TRUE(open());
        EXPECT_EQ(chosen(), "Item 9999");
    }

    TEST_F(MenuPlaceTest, EveryMonitorKeepsItsMenus)
    {
        addScreenToTheRight();
        const NSRect frame = frameOf(*menu, nullptr, { 1590, 500 });
        EXPECT_EQ(NSMaxX(frame), 1600);
        const NSRect edge = frameOf(*menu, nullptr, { 790, 500 });
        EXPECT_EQ(NSMaxX(edge), 800);
    }

    TEST_F(MenuPlaceTest, ItClosesWhenItsMonitorIsUnplugged)
    {
        addScreenToTheRight();
        bool stays = false;
        script.then([&] { screen.display().setScreens({ left }); })
            .then([&] { stays = !menuWindows().empty(); })
            .key(0x1B);
        EXPECT_FALSE(
            menu->popUpMenuPositioningItem_atLocation_inView(nullptr, { 1200, 500 }, nullptr));
        EXPECT_FALSE(stays);
    }

    TEST_F(MenuPlaceTest, ItClosesWhenItsMonitorGetsAnotherScale)
    {
        bool stays = false;
        display::Screen finer = left;
        finer.scale = 2;
        script.then([&] { screen.display().setScreens({ finer }); })
            .then([&] { stays = !menuWindows().empty(); })
            .key(0x1B);
        EXPECT_FALSE(
            menu->popUpMenuPositioningItem_atLocation_inView(nullptr, { 100, 500 }, nullptr));
        EXPECT_FALSE(stays);
    }

    TEST_F(MenuPlaceTest, ItStaysOpenWhenAnotherMonitorComesOrGoes)
    {
        bool stays = false;
        script.then([&] { addScreenToTheRight(); })
            .then([&] { screen.display().setScreens({ left }); })
            .then([&] { stays = !menuWindows().empty(); })
            .key(0x1B);
        menu->popUpMenuPositioningItem_atLocation_inView(nullptr, { 100, 500 }, nullptr);
        EXPECT_TRUE(stays);
    }

    TEST_F(MenuPlaceTest, TheRightButtonOpensTheMenuOfAView)
    {
        const Ref<NSView> view = screen.add<NSView>(NSMakeRect(300, 300, 100, 100));
        view->setMenu(menu.get());
        screen.pointer().press({ 350, 350 }, 1);
        script.release(1).key(NSDownArrowFunctionKey).key('\r');
        screen.process();
        EXPECT_EQ(chosen(), "One");
    }

    TEST_F(MenuPlaceTest, TheRightButtonOpensNoMenuOfAButton)
    {
        const Ref<NSButton> button = screen.add<NSButton>(NSMakeRect(300, 300, 100, 26));
        button->setMenu(menu.get());
        screen.pointer().click({ 350, 310 }, 1, 1);
        EXPECT_TRUE(menuWindows().empty());
    }

}

}
