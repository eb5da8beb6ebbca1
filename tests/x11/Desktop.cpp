// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>

#include <sys/ptrace.h>
#include <unistd.h>

#include "XDriver.h"
#include "support/DisplayLog.h"

namespace brindle::display {
namespace {

    using X11Desktop = X11Test;

    constexpr CGRect kFrame { { 100, 200 }, { 300, 150 } };
    constexpr CGRect kBar { { 0, 778 }, { 1280, 22 } };

    SurfaceOptions popUp(CGRect frame, int level, std::string title)
    {
        return { .frame = frame,
            .kind = SurfaceKind::popup,
            .level = level,
            .overrideRedirect = true,
            .acceptsFocus = false,
            .title = std::move(title) };
    }

    TEST_F(X11Desktop, StacksPopUpsByLevel)
    {
        const auto high = shown(popUp(kFrame, 101, "high"));
        const auto low = shown(popUp({ { 50, 180 }, { 300, 150 } }, 24, "low"));
        low->raise();
        settle();
        const auto order = driver.stacking();
        EXPECT_LT(std::find(order.begin(), order.end(), windowOf("low")),
            std::find(order.begin(), order.end(), windowOf("high")));
        EXPECT_EQ(display->counters().errors, 0u);
    }

    TEST_F(X11Desktop, StacksDirectlyAboveAndBelowAnother)
    {
        const auto a = shown(popUp(kFrame, 0, "a"));
        const auto b = shown(popUp(kFrame, 0, "b"));
        const auto c = shown(popUp(kFrame, 0, "c"));
        c->stackBelow(*b);
        a->stackAbove(*c);
        settle();
        const auto order = driver.stacking();
        const auto place = [&](const char* title) {
            return std::find(order.begin(), order.end(), windowOf(title));
        };
        EXPECT_LT(place("c"), place("a"));
        EXPECT_LT(place("a"), place("b"));
    }

    TEST_F(X11Desktop, GivesTheFocusToWhatIsActivated)
    {
        const auto a = shown({ .frame = kFrame });
        const auto b = shown({ .frame = { { 500, 200 }, { 300, 150 } } });
        a->activate();
        EXPECT_TRUE(waitFor(Event::Kind::focusIn, a.get()));
        b->activate();
        EXPECT_TRUE(waitFor(Event::Kind::focusOut, a.get()));
        EXPECT_TRUE(waitFor(Event::Kind::focusIn, b.get()));
    }

    TEST_F(X11Desktop, GivesTheFocusToWhatWasActivatedTogetherWithShowing)
    {
        const auto surface = display->createSurface({ .frame = kFrame });
        surface->show();
        surface->activate();
        EXPECT_TRUE(waitFor(Event::Kind::focusIn, surface.get()));
    }

    TEST_F(X11Desktop, LetsTheManagerMoveAWindowOnlyWhereThereIsOne)
    {
        const auto surface = shown({ .frame = kFrame });
        fill(*surface, 0xFF336699);
        driver.movePointer(200, 500);
        driver.button(1, true);
        ASSERT_TRUE(waitFor(Event::Kind::pointerDown, surface.get()));
        ASSERT_EQ(surface->beginMove({ 200, 300 }), hasManager());
        settle();
        // The manager follows the pointer from the moment when it has read the request, and some count from where the
        // pointer is by then: so it goes to and fro, and the window is looked for on both sides.
        constexpr std::uint32_t kColor = 0x336699;
        bool moved = !hasManager();
        for (int i = 0; i < 100000 && !moved; ++i) {
            driver.movePointer(i % 2 ? 200 : 280, 500);
            moved = driver.pixel(402, 500) == kColor || driver.pixel(98, 500) == kColor;
        }
        EXPECT_TRUE(moved);
        driver.movePointer(330, 500); // neither of the places where it was
        driver.button(1, false);
        if (hasManager()) {
            EXPECT_TRUE(waitFor(Event::Kind::frameChanged, surface.get()));
        }
    }

    TEST_F(X11Desktop, LearnsOfTheReleaseEvenIfTheManagerNeverMovedAnything)
    {
        const auto surface = shown({ .frame = kFrame });
        driver.movePointer(200, 500);
        driver.button(1, true);
        ASSERT_TRUE(waitFor(Event::Kind::pointerDown, surface.get()));
        ASSERT_EQ(surface->beginResize(ResizeEdge::right, { 200, 300 }), hasManager());
        settle();
        driver.button(1, false);
        if (hasManager()) {
            EXPECT_TRUE(waitFor(Event::Kind::moveResizeEnded, surface.get()));
        } else {
            EXPECT_TRUE(waitFor(Event::Kind::pointerUp, surface.get()));
        }
    }

    TEST_F(X11Desktop, LetsTheManagerMoveNothingOnceTheButtonIsUp)
    {
        const auto surface = shown({ .frame = kFrame });
        driver.click(200, 500);
        ASSERT_TRUE(waitFor(Event::Kind::pointerDown, surface.get()));
        EXPECT_FALSE(surface->beginMove({ 200, 300 }));
    }

    TEST_F(X11Desktop, LooksForNoReleaseOnceAMovementIsOver)
    {
        const auto surface = shown({ .frame = kFrame });
        driver.movePointer(200, 500);
        driver.button(1, true);
        ASSERT_TRUE(waitFor(Event::Kind::pointerDown, surface.get()));
        surface->beginMove({ 200, 300 });
        settle();
        driver.button(1, false);
        waitFor(
            hasManager() ? Event::Kind::moveResizeEnded : Event::Kind::pointerUp, surface.get());
        driver.click(1200, 100);
        for (const Event& event : settle())
            EXPECT_NE(event.kind, Event::Kind::moveResizeEnded);
    }

    TEST_F(X11Desktop, ReservesTheTopForABarWhileItIsShown)
    {
        const double top = NSMaxY(display->screens()[0].visibleFrame);
        const auto bar = display->createSurface(
            { .frame = kBar, .kind = SurfaceKind::dock, .level = 26, .title = "bar" });
        bar->setStrut(Strut { Strut::Edge::top, 22, 0, 1280 });
        bar->show();
        waitFor(Event::Kind::exposed, bar.get());
        EXPECT_EQ(driver.property(windowOf("bar"), "_NET_WM_STRUT_PARTIAL"),
            (std::vector<std::uint32_t> { 0, 0, 22, 0, 0, 0, 0, 0, 0, 1279, 0, 0 }));
        EXPECT_EQ(driver.property(windowOf("bar"), "_NET_WM_STRUT"),
            (std::vector<std::uint32_t> { 0, 0, 22, 0 }));
        EXPECT_EQ(bar->frame(), kBar);
        if (hasManager()) {
            while (NSMaxY(display->screens()[0].visibleFrame) != top - 22)
                ASSERT_TRUE(waitFor(Event::Kind::screensChanged));
        }
        bar->hide();
        if (hasManager()) {
            while (NSMaxY(display->screens()[0].visibleFrame) != top)
                ASSERT_TRUE(waitFor(Event::Kind::screensChanged));
        }
        settle();
        EXPECT_TRUE(driver.property(windowOf("bar"), "_NET_WM_STRUT_PARTIAL").empty());
    }

    TEST_F(X11Desktop, DoesNotBelieveTheWorkAreaOfAManagerThatHasGone)
    {
        if (hasManager())
            return; // the living one's area is read in the test above
        const std::array<std::uint32_t, 4> area { 0, 100, 1280, 700 };
        const std::array<std::uint32_t, 1> gone { 0x123456 };
        driver.setProperty(driver.root(), "_NET_WORKAREA", "CARDINAL", area);
        driver.setProperty(driver.root(), "_NET_SUPPORTING_WM_CHECK", "WINDOW", gone);
        reopen({});
        EXPECT_EQ(display->screens()[0].visibleFrame, display->screens()[0].frame);
        const auto surface = shown({ .frame = kFrame });
        EXPECT_FALSE(surface->beginMove({ 200, 300 }));
        xcb_delete_property(driver.raw(), driver.root(), driver.atom("_NET_WORKAREA"));
        xcb_delete_property(driver.raw(), driver.root(), driver.atom("_NET_SUPPORTING_WM_CHECK"));
        driver.sync();
    }

    TEST_F(X11Desktop, AnswersThePing)
    {
        const auto surface = shown({ .frame = kFrame, .title = "ping" });
        const std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(driver.raw(), driver.root(), XCB_CW_EVENT_MASK, &mask);
        driver.sendProtocol(windowOf("ping"), "_NET_WM_PING");
        settle();
        driver.sync();
        bool answered = false;
        while (xcb_generic_event_t* event = xcb_poll_for_event(driver.raw())) {
            answered = answered || (event->response_type & 0x7F) == XCB_CLIENT_MESSAGE;
            std::free(event);
        }
        EXPECT_TRUE(answered);
    }

    TEST_F(X11Desktop, GrabsThePointerForAMenu)
    {
        const auto menu = shown(popUp(kFrame, 101, "menu"));
        ASSERT_TRUE(display->grab(*menu));
        driver.click(900, 100);
        const auto press = waitFor(Event::Kind::pointerDown, menu.get());
        ASSERT_TRUE(press);
        EXPECT_EQ(press->screenLocation, (CGPoint { 900, 700 }));
        EXPECT_EQ(press->location, (CGPoint { 800, 500 }));
        display->ungrab();
        EXPECT_TRUE(driver.grabPointer());
        driver.ungrabPointer();
    }

    TEST_F(X11Desktop, GetsNoGrabWhileAnotherProgramHasIt)
    {
        const auto menu = shown(popUp(kFrame, 101, "menu"));
        ASSERT_TRUE(driver.grabPointer());
        EXPECT_FALSE(display->grab(*menu));
        driver.ungrabPointer();
        EXPECT_TRUE(display->grab(*menu));
    }

    TEST_F(X11Desktop, GrabsNothingWhenTheUserForbidsIt)
    {
        reopen({ { "BRINDLE_NO_GRAB", "1" } });
        const auto menu = shown(popUp(kFrame, 101, "menu"));
        EXPECT_FALSE(display->grab(*menu));
        EXPECT_TRUE(driver.grabPointer());
        driver.ungrabPointer();
    }

    // A program that stands in a debugger would keep the whole desktop.
    TEST(X11DesktopDeathTest, GrabsNothingInADebugger)
    {
        const auto grabUnderWatch = [] {
            ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
            const auto display = openX11();
            const auto menu = display->createSurface(popUp(kFrame, 101, "menu"));
            menu->show();
            _exit(display->grab(*menu) ? 1 : 0);
        };
        EXPECT_EXIT(grabUnderWatch(), testing::ExitedWithCode(0), "");
    }

    TEST_F(X11Desktop, KnowsWhetherSomebodyBlendsWindows)
    {
        EXPECT_FALSE(display->blends());
        const xcb_window_t window = xcb_generate_id(driver.raw());
        xcb_create_window(driver.raw(), 0, window, driver.root(), -10, -10, 1, 1, 0,
            XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_set_selection_owner(
            driver.raw(), window, driver.atom("_NET_WM_CM_S0"), XCB_CURRENT_TIME);
        settle();
        EXPECT_TRUE(display->blends());
        xcb_destroy_window(driver.raw(), window);
        settle();
        EXPECT_FALSE(display->blends());
    }

    TEST_F(X11Desktop, TellsThatTheGrabWentWithItsSurface)
    {
        const auto menu = shown(popUp(kFrame, 101, "menu"));
        ASSERT_TRUE(display->grab(*menu));
        menu->hide();
        EXPECT_TRUE(waitFor(Event::Kind::grabLost, menu.get()));
    }

}
}
