// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSColor.h"
#include "appkit/NSScreen.h"
#include "appkit/NSWindow+ScreenEdge.h"
#include "runtime/Runtime.h"
#include "support/HeadlessScreen.h"

#include <gtest/gtest.h>

#include <cmath>

namespace brindle {
namespace {

    struct ScreenEdge : ::testing::Test {
        ScreenEdge() { bar->setHidesOnDeactivate(true); }
        ~ScreenEdge() override { bar->close(); }

        static Ref<NSWindow> window(NSRect frame, NSWindowLevel level)
        {
            Ref<NSWindow> made = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
                frame, NSBorderlessWindowMask, NSBackingStoreBuffered, true);
            made->setLevel(level);
            made->setBackgroundColor(
                NSColor::cls().colorWithCalibratedRed_green_blue_alpha(1, 0, 0, 1).get());
            return made;
        }
        static double visibleTop() { return NSMaxY(NSScreen::cls().mainScreen()->visibleFrame()); }
        /// A screen whose own panel takes some of the top.
        void addPanel(double height)
        {
            auto described = display::HeadlessDisplay::screenOfSize(400, 300, 1);
            described.visibleFrame.size.height -= height;
            screen.display().setScreens({ described });
            screen.process();
        }
        bool isRedAt(int x, int fromTop)
        {
            return (screen.pixels().at(x, fromTop) & 0xFFFFFF) == 0xFF0000;
        }

        HeadlessScreen screen { 400, 300 };
        Ref<NSWindow> bar = window(NSMakeRect(0, 278, 400, 22), 26);
    };

    TEST_F(ScreenEdge, IsNotReservedByWindowsThatDoNotAsk)
    {
        bar->orderFront(nullptr);
        EXPECT_EQ(visibleTop(), 300);
        EXPECT_EQ(screenEdgeStanding(*bar), NSScreenEdgeNotReserved);
    }
    TEST_F(ScreenEdge, IsReservedWhileTheWindowIsShown)
    {
        setReservedScreenEdge(*bar, 22);
        EXPECT_EQ(visibleTop(), 300);
        bar->orderFront(nullptr);
        EXPECT_EQ(visibleTop(), 278);
        EXPECT_EQ(screenEdgeStanding(*bar), NSScreenEdgeReserved);
        bar->orderOut(nullptr);
        EXPECT_EQ(visibleTop(), 300);
        EXPECT_EQ(screenEdgeStanding(*bar), NSScreenEdgeNotReserved);
    }
    TEST_F(ScreenEdge, IsReservedByPartOfTheWindow)
    {
        bar->setFrame_display(NSMakeRect(0, 270, 400, 30), true);
        setReservedScreenEdge(*bar, 22);
        bar->orderFront(nullptr);
        EXPECT_EQ(visibleTop(), 278);
    }
    TEST_F(ScreenEdge, IsGivenBackWhenNothingIsReservedAnyMore)
    {
        setReservedScreenEdge(*bar, 22);
        bar->orderFront(nullptr);
        setReservedScreenEdge(*bar, 0);
        EXPECT_EQ(visibleTop(), 300);
    }
    TEST_F(ScreenEdge, RefusesHeightsThatAreNone)
    {
        for (const double height : { -1.0, 0.0, std::nan(""), HUGE_VAL }) {
            setReservedScreenEdge(*bar, height);
            EXPECT_EQ(reservedScreenEdge(*bar), 0);
        }
    }
    TEST_F(ScreenEdge, IsNotReservedByAWindowInTheMiddleOfTheScreen)
    {
        setReservedScreenEdge(*bar, 22);
        bar->setFrameOrigin({ 0, 100 });
        bar->orderFront(nullptr);
        EXPECT_EQ(visibleTop(), 300);
    }
    TEST_F(ScreenEdge, FollowsTheWindow)
    {
        setReservedScreenEdge(*bar, 22);
        bar->orderFront(nullptr);
        bar->setFrame_display(NSMakeRect(0, 260, 400, 40), true);
        EXPECT_EQ(visibleTop(), 278);
        bar->setFrame_display(NSMakeRect(0, 100, 400, 22), true);
        EXPECT_EQ(visibleTop(), 300);
    }
    TEST_F(ScreenEdge, LetsTheWindowStandBelowAPanel)
    {
        addPanel(24);
        setReservedScreenEdge(*bar, 22);
        bar->orderFront(nullptr);
        EXPECT_EQ(bar->frame(), NSMakeRect(0, 278, 400, 22));
        EXPECT_EQ(screenEdgeStanding(*bar), NSScreenEdgeBelowPanel);
        EXPECT_EQ(screenEdgeOffset(*bar), 24);
        EXPECT_EQ(visibleTop(), 254);
        EXPECT_FALSE(isRedAt(10, 10));
        EXPECT_TRUE(isRedAt(10, 30));
    }
    TEST_F(ScreenEdge, MovesChildrenAlong)
    {
        addPanel(24);
        setReservedScreenEdge(*bar, 22);
        const Ref<NSWindow> child = window(NSMakeRect(100, 278, 50, 22), 27);
        child->setBackgroundColor(
            NSColor::cls().colorWithCalibratedRed_green_blue_alpha(0, 1, 0, 1).get());
        bar->orderFront(nullptr);
        bar->addChildWindow_ordered(child.get(), NSWindowAbove);
        EXPECT_EQ(screen.pixels().at(110, 30) & 0xFFFFFF, 0x00FF00u);
        EXPECT_EQ(child->frame(), NSMakeRect(100, 278, 50, 22));
    }
    TEST_F(ScreenEdge, TellsPlacesOfEventsAsIfThereWereNoPanel)
    {
        addPanel(24);
        setReservedScreenEdge(*bar, 22);
        bar->orderFront(nullptr);
        screen.pointer().moveTo({ 10, 270 - 5 });
        const Ref<NSEvent> event = screen.application().currentEvent();
        EXPECT_EQ(event->window(), bar);
        EXPECT_EQ(event->locationInWindow(), NSMakePoint(10, 11));
        EXPECT_EQ(NSEvent::cls().mouseLocation(), NSMakePoint(10, 289));
    }
    TEST_F(ScreenEdge, FollowsAPanelThatComes)
    {
        setReservedScreenEdge(*bar, 22);
        bar->orderFront(nullptr);
        addPanel(30);
        EXPECT_EQ(screenEdgeOffset(*bar), 30);
        EXPECT_EQ(visibleTop(), 248);
    }
    TEST_F(ScreenEdge, StaysReservedWhileTheApplicationIsInactive)
    {
        setReservedScreenEdge(*bar, 22);
        bar->orderFront(nullptr);
        screen.application().deactivate();
        EXPECT_FALSE(bar->isVisible());
        EXPECT_EQ(visibleTop(), 278);
        EXPECT_FALSE(isRedAt(10, 10));
    }
    TEST_F(ScreenEdge, IsNotHitWhileTheApplicationIsInactive)
    {
        setReservedScreenEdge(*bar, 22);
        bar->orderFront(nullptr);
        screen.application().deactivate();
        EXPECT_NE(screen.display().surfaceAt({ 10, 290 }), 0u);
        screen.window().orderOut(nullptr);
        EXPECT_EQ(screen.display().surfaceAt({ 10, 290 }), 0u);
    }
    TEST_F(ScreenEdge, ShowsTheWindowAgainWithTheApplication)
    {
        setReservedScreenEdge(*bar, 22);
        bar->orderFront(nullptr);
        screen.application().deactivate();
        screen.application().activateIgnoringOtherApps(true);
        EXPECT_TRUE(bar->isVisible());
        EXPECT_TRUE(isRedAt(10, 10));
        EXPECT_EQ(visibleTop(), 278);
    }
    TEST_F(ScreenEdge, IsGivenBackByOrderingOutWhileTheApplicationIsInactive)
    {
        setReservedScreenEdge(*bar, 22);
        bar->orderFront(nullptr);
        screen.application().deactivate();
        bar->orderOut(nullptr);
        EXPECT_EQ(visibleTop(), 300);
        screen.application().activateIgnoringOtherApps(true);
        EXPECT_FALSE(bar->isVisible());
    }
    TEST_F(ScreenEdge, IsGivenBackWhenTheApplicationHides)
    {
        setReservedScreenEdge(*bar, 22);
        bar->orderFront(nullptr);
        screen.application().hide(nullptr);
        EXPECT_EQ(visibleTop(), 300);
        screen.application().unhide(nullptr);
        EXPECT_EQ(visibleTop(), 278);
    }
    TEST_F(ScreenEdge, SurvivesALossOfAllScreens)
    {
        setReservedScreenEdge(*bar, 22);
        bar->orderFront(nullptr);
        screen.display().setScreens({});
        screen.process();
        EXPECT_EQ(screenEdgeOffset(*bar), 0);
        EXPECT_EQ(screenEdgeStanding(*bar), NSScreenEdgeNotReserved);
    }

    // ---- windows of this kind and the keyboard

    TEST_F(ScreenEdge, LeavesTheKeyboardWhereItIsWhenABarIsPressed)
    {
        screen.window().makeKeyAndOrderFront(nullptr);
        bar->orderFront(nullptr);
        screen.pointer().click({ 10, 290 });
        EXPECT_TRUE(screen.window().isKeyWindow());
        EXPECT_FALSE(bar->isKeyWindow());
    }
    TEST_F(ScreenEdge, DoesNotMakeABarKeyWhenTheKeyWindowCloses)
    {
        screen.window().makeKeyAndOrderFront(nullptr);
        bar->orderFront(nullptr);
        screen.window().orderOut(nullptr);
        EXPECT_EQ(screen.application().keyWindow(), nullptr);
    }

}
}
