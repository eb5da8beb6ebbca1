// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>
#include <cstdlib>

#include <poll.h>

#include "XDriver.h"

namespace brindle::display {
namespace {

    constexpr CGRect kBar { { 0, 778 }, { 1280, 22 } };
    constexpr Strut kStrip { Strut::Edge::top, 22, 0, 1280 };
    constexpr std::uint32_t kRed = 0xFFFF0000;

    /// A panel of another program: a dock of its own connection, with what it reserves.
    class Panel {
    public:
        Panel(XDriver& driver, int y, int height, int reach)
            : driver_(driver)
            , window_(xcb_generate_id(driver.raw()))
        {
            const std::uint32_t black = 0xFF000000;
            xcb_create_window(driver.raw(), XCB_COPY_FROM_PARENT, window_, driver.root(), 0,
                static_cast<std::int16_t>(y), 1280, static_cast<std::uint16_t>(height), 0,
                XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL, &black);
            const std::array<std::uint32_t, 1> dock { driver.atom("_NET_WM_WINDOW_TYPE_DOCK") };
            driver.setProperty(window_, "_NET_WM_WINDOW_TYPE", "ATOM", dock);
            const std::array<std::uint32_t, 18> place { 1 }; // where the user wants it
            driver.setProperty(window_, "WM_NORMAL_HINTS", "WM_SIZE_HINTS", place);
            reserve(reach);
            xcb_map_window(driver.raw(), window_);
            driver.sync();
        }
        ~Panel()
        {
            xcb_destroy_window(driver_.raw(), window_);
            driver_.sync();
        }
        Panel(const Panel&) = delete;
        Panel& operator=(const Panel&) = delete;

        void reserve(int reach)
        {
            std::array<std::uint32_t, 12> strut {};
            strut[2] = static_cast<std::uint32_t>(reach);
            strut[9] = 1279;
            driver_.setProperty(window_, "_NET_WM_STRUT_PARTIAL", "CARDINAL", strut);
        }

    private:
        XDriver& driver_;
        xcb_window_t window_;
    };

    class X11ScreenEdge : public X11Test {
    protected:
        std::unique_ptr<Surface> makeBar()
        {
            auto made = shown({ .frame = kBar,
                .kind = SurfaceKind::dock,
                .level = 26,
                .acceptsFocus = false,
                .resizable = false,
                .title = "bar" });
            made->setStrut(kStrip);
            paint(*made);
            display->flush();
            return made;
        }
        static void paint(Surface& surface)
        {
            const PixelSize size = surface.pixelSize();
            const std::vector<std::uint32_t> words(
                static_cast<std::size_t>(size.width * size.height), kRed);
            const PixelRect all { 0, 0, size.width, size.height };
            surface.present({ words.data(), size.width, size.height,
                                static_cast<std::ptrdiff_t>(size.width) * 4 },
                std::span(&all, 1));
        }
        /// Reads events until something is so; not for ever.
        template <class Question> bool until(Question question)
        {
            for (int i = 0; i < 400; ++i) {
                Event event;
                while (display->pollEvent(event)) {
                    if (event.kind == Event::Kind::exposed && bar)
                        paint(*bar);
                }
                if (question())
                    return true;
                waits(20);
            }
            return false;
        }
        /// Waits for something to come; answers whether nothing did.
        bool waits(int milliseconds)
        {
            pollfd descriptor { display->fileDescriptor(), POLLIN, 0 };
            return poll(&descriptor, 1, milliseconds) == 0;
        }
        // The driver is another client: what the display says may reach the server later than what the driver asks.

        int topOf(const std::string& title)
        {
            const xcb_window_t window = windowOf(title);
            auto* const reply = xcb_translate_coordinates_reply(driver.raw(),
                xcb_translate_coordinates(driver.raw(), window, driver.root(), 0, 0), nullptr);
            const int top = reply ? reply->dst_y : -1;
            std::free(reply);
            return top;
        }
        std::uint32_t strutOf(const std::string& title)
        {
            const auto values = driver.property(windowOf(title), "_NET_WM_STRUT_PARTIAL");
            return values.size() == 12 ? values[2] : 0;
        }
        std::uint32_t workAreaTop()
        {
            const auto area = driver.property(driver.root(), "_NET_WORKAREA");
            return area.size() >= 4 ? area[1] : 0;
        }

        std::unique_ptr<Surface> bar;
    };

    TEST_F(X11ScreenEdge, IsReservedWhereSomebodyKeepsWindowsAway)
    {
        bar = makeBar();
        EXPECT_TRUE(until([&] { return strutOf("bar") == 22u; }));
        if (!hasManager()) {
            EXPECT_EQ(bar->strutStanding(), StrutStanding::noManager);
            return;
        }
        EXPECT_EQ(bar->strutStanding(), StrutStanding::atEdge);
        EXPECT_TRUE(until([&] { return workAreaTop() == 22; }));
        EXPECT_TRUE(until([&] { return topOf("bar") == 0; }));
    }

    TEST_F(X11ScreenEdge, IsGivenBackWithTheWindow)
    {
        bar = makeBar();
        if (hasManager()) {
            EXPECT_TRUE(until([&] { return workAreaTop() == 22; }));
        }
        bar.reset();
        display->flush();
        if (hasManager()) {
            EXPECT_TRUE(until([&] { return workAreaTop() == 0; }));
        }
        EXPECT_TRUE(until([&] { return windowOf("bar") == 0u; }));
    }

    TEST_F(X11ScreenEdge, HasRoomBelowAPanel)
    {
        if (!hasManager())
            return;
        const Panel panel(driver, 0, 24, 24);
        ASSERT_TRUE(until([&] { return workAreaTop() == 24; }));
        bar = makeBar();
        EXPECT_EQ(bar->strutStanding(), StrutStanding::belowPanel);
        EXPECT_EQ(bar->strutOffset(), 24);
        EXPECT_EQ(bar->frame(), kBar);
        EXPECT_TRUE(until([&] { return strutOf("bar") == 46u; }));
        EXPECT_TRUE(until([&] { return topOf("bar") == 24; }));
        EXPECT_TRUE(until([&] { return workAreaTop() == 46; }));
        EXPECT_TRUE(driver.pixelBecomes(600, 30, kRed & 0xFFFFFF));
    }

    TEST_F(X11ScreenEdge, TellsPlacesAsIfThePanelWereNotThere)
    {
        if (!hasManager())
            return;
        const Panel panel(driver, 0, 24, 24);
        ASSERT_TRUE(until([&] { return workAreaTop() == 24; }));
        bar = makeBar();
        ASSERT_TRUE(until([&] { return topOf("bar") == 24; }));
        driver.movePointer(600, 34); // 10 pixels into the bar
        const auto moved = waitFor(Event::Kind::pointerMoved, bar.get());
        ASSERT_TRUE(moved);
        EXPECT_EQ(moved->location, (CGPoint { 600, 12 }));
        EXPECT_EQ(moved->screenLocation, (CGPoint { 600, 790 }));
        EXPECT_EQ(display->pointerLocation(), (CGPoint { 600, 790 }));
    }

    TEST_F(X11ScreenEdge, TakesMenusAndChildrenAlong)
    {
        if (!hasManager())
            return;
        const Panel panel(driver, 0, 24, 24);
        ASSERT_TRUE(until([&] { return workAreaTop() == 24; }));
        bar = makeBar();
        const auto menu = shown({ .frame = { { 100, 578 }, { 150, 200 } },
            .kind = SurfaceKind::popup,
            .level = 101,
            .overrideRedirect = true,
            .acceptsFocus = false,
            .title = "menu",
            .transientFor = bar.get() });
        EXPECT_TRUE(until([&] { return topOf("menu") == 46; }));
        EXPECT_EQ(menu->frame(), (CGRect { { 100, 578 }, { 150, 200 } }));
    }

    TEST_F(X11ScreenEdge, MovesWhenThePanelComesAndGoes)
    {
        if (!hasManager())
            return;
        bar = makeBar();
        EXPECT_TRUE(until([&] { return workAreaTop() == 22; }));
        {
            const Panel panel(driver, 0, 30, 30);
            EXPECT_TRUE(until([&] { return topOf("bar") == 30; }));
            EXPECT_TRUE(until([&] { return strutOf("bar") == 52u; }));
        }
        EXPECT_TRUE(until([&] { return topOf("bar") == 0; }));
        EXPECT_TRUE(until([&] { return workAreaTop() == 22; }));
    }

    TEST_F(X11ScreenEdge, StaysWhereALaterPanelStandsBelowIt)
    {
        if (!hasManager())
            return;
        bar = makeBar();
        EXPECT_TRUE(until([&] { return workAreaTop() == 22; }));
        const Panel panel(driver, 22, 24, 46);
        EXPECT_TRUE(until([&] { return workAreaTop() == 46; }));
        EXPECT_TRUE(until([&] { return topOf("bar") == 0; }));
        EXPECT_TRUE(until([&] { return strutOf("bar") == 22u; }));
    }

    TEST_F(X11ScreenEdge, IsSharedByTwoPrograms)
    {
        if (!hasManager())
            return;
        bar = makeBar();
        EXPECT_TRUE(until([&] { return workAreaTop() == 22; }));
        auto first = std::move(display);
        auto firstBar = std::move(bar);
        reopen({});
        bar = shown({ .frame = kBar,
            .kind = SurfaceKind::dock,
            .level = 26,
            .acceptsFocus = false,
            .title = "second" });
        bar->setStrut(kStrip);
        display->flush();
        EXPECT_EQ(bar->strutStanding(), StrutStanding::atEdge);
        EXPECT_TRUE(until([&] { return strutOf("second") == 22u; }));
        bar.reset();
        firstBar.reset();
        retire(std::move(display));
        display = std::move(first);
    }

    TEST_F(X11ScreenEdge, StaysReservedWhileTheBarIsConcealed)
    {
        bar = makeBar();
        if (hasManager()) {
            EXPECT_TRUE(until([&] { return workAreaTop() == 22; }));
        }
        EXPECT_TRUE(driver.pixelBecomes(600, 10, kRed & 0xFFFFFF));
        bar->setConcealed(true);
        display->flush();
        EXPECT_TRUE(until([&] { return driver.pixel(600, 10) != (kRed & 0xFFFFFF); }));
        EXPECT_TRUE(until([&] { return strutOf("bar") == 22u; }));
        bar->setConcealed(false);
        EXPECT_TRUE(until([&] { return driver.pixel(600, 10) == (kRed & 0xFFFFFF); }));
    }

    TEST_F(X11ScreenEdge, LeavesThePointerToOthersWhileTheBarIsConcealed)
    {
        driver.movePointer(600, 300);
        bar = makeBar();
        if (hasManager()) { // it has put the window where it is to stay
            ASSERT_TRUE(until([&] { return workAreaTop() == 22; }));
        }
        driver.movePointer(600, 10);
        ASSERT_TRUE(waitFor(Event::Kind::pointerEntered, bar.get()));
        bar->setConcealed(true);
        display->flush();
        EXPECT_TRUE(waitFor(Event::Kind::pointerLeft, bar.get()));
    }

    TEST_F(X11ScreenEdge, CountsInPixelsWhereTheScreenHasMoreOfThem)
    {
        reopen({ { "BRINDLE_SCALE", "2" } });
        bar = shown({ .frame = { { 0, 378 }, { 640, 22 } },
            .kind = SurfaceKind::dock,
            .level = 26,
            .acceptsFocus = false,
            .title = "bar" });
        bar->setStrut(Strut { Strut::Edge::top, 22, 0, 640 });
        display->flush();
        const auto values = driver.property(windowOf("bar"), "_NET_WM_STRUT_PARTIAL");
        ASSERT_EQ(values.size(), 12u);
        EXPECT_EQ(values[2], 44u);
        EXPECT_EQ(values[8], 0u);
        EXPECT_EQ(values[9], 1279u);
    }

    TEST_F(X11ScreenEdge, IsQuietWhenNothingHappens)
    {
        bar = makeBar();
        if (hasManager()) {
            EXPECT_TRUE(until([&] { return workAreaTop() == 22; }));
        }
        bool quiet = false;
        for (int i = 0; i < 50 && !quiet; ++i) {
            Event event;
            while (display->pollEvent(event)) { }
            quiet = waits(200);
        }
        EXPECT_TRUE(quiet);
    }

}
}
