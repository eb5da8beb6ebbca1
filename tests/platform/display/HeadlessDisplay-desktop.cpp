// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "display/headless/HeadlessDisplay.h"
#include "support/DisplayLog.h"

namespace brindle::display {
namespace {

    struct HeadlessDesktop : testing::Test {
        HeadlessDisplay display;
        std::unique_ptr<Surface> a
            = display.createSurface({ .frame = { { 10, 20 }, { 100, 100 } } });

        HeadlessDesktop()
        {
            a->show();
            drain(display);
        }
        std::string log() { return drainToText(display, { a.get() }); }
    };

    TEST_F(HeadlessDesktop, HasOneScreenByDefault)
    {
        ASSERT_EQ(display.screens().size(), 1u);
        EXPECT_EQ(display.screens()[0].frame, (CGRect { { 0, 0 }, { 1280, 800 } }));
        EXPECT_EQ(display.screens()[0].visibleFrame, display.screens()[0].frame);
        EXPECT_TRUE(display.screens()[0].primary);
        EXPECT_EQ(display.name(), "headless");
    }

    TEST_F(HeadlessDesktop, TellsWhenTheScreensChange)
    {
        display.setScreens({ HeadlessDisplay::screenOfSize(640, 480, 2) });
        EXPECT_EQ(log(), "screensChanged 0");
        EXPECT_EQ(a->scale(), 2);
    }

    TEST_F(HeadlessDesktop, AnswersASetFrameWithoutAnEvent)
    {
        a->setFrame({ { 5.25, 6.5 }, { 100, 100 } });
        EXPECT_EQ(a->frame(), (CGRect { { 5.25, 6.5 }, { 100, 100 } }));
        EXPECT_EQ(log(), "");
    }

    TEST_F(HeadlessDesktop, AsksForPixelsWhenTheSizeChanges)
    {
        a->setFrame({ { 5, 6 }, { 50, 100 } });
        EXPECT_EQ(log(), "exposed 1");
    }

    TEST_F(HeadlessDesktop, AsksForPixelsWhenASurfaceIsShown)
    {
        a->hide();
        a->show();
        a->show();
        EXPECT_EQ(log(), "exposed 1");
    }

    TEST_F(HeadlessDesktop, TellsAFrameThatTheUserChose)
    {
        display.setFrameByUser(*a, { { 1, 2 }, { 100, 100 } });
        const auto events = drain(display);
        ASSERT_EQ(events.size(), 1u);
        EXPECT_EQ(events[0].kind, Event::Kind::frameChanged);
        EXPECT_EQ(events[0].frame, a->frame());
    }

    TEST_F(HeadlessDesktop, HoldsTheUserToTheSizeLimits)
    {
        a->setSizeLimits({ 50, 60 }, { 200, 0 });
        display.setFrameByUser(*a, { { 0, 0 }, { 10, 10 } });
        EXPECT_EQ(a->frame().size, (CGSize { 50, 60 }));
        display.setFrameByUser(*a, { { 0, 0 }, { 1000, 1000 } });
        EXPECT_EQ(a->frame().size, (CGSize { 200, 1000 }));
    }

    TEST_F(HeadlessDesktop, LetsTheUserNotResizeWhatIsNotResizable)
    {
        a->setResizable(false);
        display.setFrameByUser(*a, { { 0, 0 }, { 10, 10 } });
        EXPECT_EQ(a->frame(), (CGRect { { 0, 0 }, { 100, 100 } }));
    }

    TEST_F(HeadlessDesktop, OnlyAsksToClose)
    {
        display.requestClose(*a);
        EXPECT_EQ(log(), "closeRequested 1");
        EXPECT_TRUE(a->isShown());
    }

    TEST_F(HeadlessDesktop, FillsTheScreenAndComesBack)
    {
        a->setFullScreen(true);
        EXPECT_EQ(a->frame(), display.screens()[0].frame);
        EXPECT_EQ(log(), "stateChanged 1, frameChanged 1, exposed 1");
        a->setFullScreen(false);
        EXPECT_EQ(a->frame(), (CGRect { { 10, 20 }, { 100, 100 } }));
    }

    TEST_F(HeadlessDesktop, ComesBackFromFullScreenToTheZoomedFrame)
    {
        a->setStrut(Strut { Strut::Edge::top, 22, 0, 1280 });
        a->setZoomed(true);
        a->setFullScreen(true);
        a->setFullScreen(false);
        EXPECT_EQ(a->frame(), (CGRect { { 0, 0 }, { 1280, 778 } }));
        a->setZoomed(false);
        EXPECT_EQ(a->frame(), (CGRect { { 10, 20 }, { 100, 100 } }));
    }

    TEST_F(HeadlessDesktop, RestoresAMinimisedSurfaceByShowingIt)
    {
        a->minimise();
        EXPECT_TRUE(a->isShown());
        EXPECT_EQ(display.stackingOrder().size(), 0u);
        a->show();
        EXPECT_FALSE(a->state().minimised);
        EXPECT_EQ(display.stackingOrder().size(), 1u);
    }

    TEST_F(HeadlessDesktop, TakesAStrutOffTheVisibleFrameWhileItsSurfaceIsShown)
    {
        a->setStrut(Strut { Strut::Edge::top, 22, 0, 1280 });
        EXPECT_EQ(display.screens()[0].visibleFrame, (CGRect { { 0, 0 }, { 1280, 778 } }));
        EXPECT_EQ(log(), "screensChanged 0");
        a->hide();
        EXPECT_EQ(display.screens()[0].visibleFrame, display.screens()[0].frame);
    }

    TEST_F(HeadlessDesktop, TakesAStrutAlongWhenTheUserMovesItsSurface)
    {
        Screen right = HeadlessDisplay::screenOfSize(1280, 800);
        right.frame.origin.x = right.visibleFrame.origin.x = 1280;
        display.setScreens({ HeadlessDisplay::screenOfSize(1280, 800), right });
        a->setStrut(Strut { Strut::Edge::top, 22, 0, 1280 });
        display.setFrameByUser(*a, { { 1300, 700 }, { 100, 100 } });
        EXPECT_EQ(display.screens()[0].visibleFrame, display.screens()[0].frame);
        EXPECT_EQ(display.screens()[1].visibleFrame.size.height, 778);
    }

    TEST_F(HeadlessDesktop, RemembersWhatASurfaceWasTold)
    {
        const auto bar = display.createSurface({ .kind = SurfaceKind::dock,
            .level = 26,
            .opaque = false,
            .title = "Bar",
            .transientFor = a.get() });
        const SurfaceDescription told = display.describe(*bar);
        EXPECT_EQ(told.kind, SurfaceKind::dock);
        EXPECT_EQ(told.level, 26);
        EXPECT_FALSE(told.opaque);
        EXPECT_EQ(told.title, "Bar");
        EXPECT_EQ(told.transientFor, a->id());
    }

    TEST_F(HeadlessDesktop, CountsBeeps)
    {
        display.beep();
        EXPECT_EQ(display.counters().beeps, 1u);
    }

    TEST_F(HeadlessDesktop, NeverGivesASurfaceNumberTwice)
    {
        const SurfaceId first = a->id();
        a.reset();
        HeadlessDisplay other;
        EXPECT_GT(other.createSurface({})->id(), first);
    }

    TEST_F(HeadlessDesktop, EndsWithOneDisconnectedEvent)
    {
        display.movePointer({ 50, 50 });
        display.disconnect();
        display.disconnect();
        display.pressButton();
        EXPECT_EQ(log(), "disconnected 0");
        EXPECT_FALSE(display.isConnected());
    }

    TEST_F(HeadlessDesktop, DoesNothingAfterTheEnd)
    {
        a->activate();
        display.disconnect();
        drain(display);
        const auto late = display.createSurface({ .frame = { { 0, 0 }, { 10, 10 } } });
        late->show();
        fill(*a, 0xFFFFFFFF);
        display.typeText(u"x");
        display.beep();
        EXPECT_FALSE(display.grab(*a));
        EXPECT_FALSE(late->isShown());
        EXPECT_EQ(log(), "");
        EXPECT_EQ(display.counters().presents, 0u);
        EXPECT_EQ(display.counters().beeps, 0u);
    }

    TEST(NoDisplay, WorksWithoutAnyScreen)
    {
        HeadlessDisplay display { std::vector<Screen> {} };
        EXPECT_EQ(display.name(), "none");
        EXPECT_TRUE(display.screens().empty());
        const auto surface = display.createSurface({ .frame = { { 0, 0 }, { 10, 10 } } });
        surface->show();
        surface->setZoomed(true);
        fill(*surface, 0xFF00FF00);
        EXPECT_EQ(surface->frame(), (CGRect { { 0, 0 }, { 10, 10 } }));
        EXPECT_EQ(display.snapshot(*surface).at(3, 3), 0xFF00FF00u);
        EXPECT_EQ(display.fileDescriptor(), -1);
    }

}
}
