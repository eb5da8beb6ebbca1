// SPDX-License-Identifier: Apache-2.0
#include <array>

#include "XDriver.h"
#include "support/DisplayLog.h"

namespace brindle::display {
namespace {

    using X11Windows = X11Test;

    constexpr CGRect kWindowFrame { { 100, 200 }, { 300, 150 } };

    TEST_F(X11Windows, KnowTheServersScreen)
    {
        EXPECT_EQ(display->name(), "x11");
        EXPECT_EQ(complaints, "");
        ASSERT_EQ(display->screens().size(), 1u);
        EXPECT_EQ(display->screens()[0].frame, (CGRect { { 0, 0 }, { 1280, 800 } }));
        EXPECT_TRUE(display->screens()[0].primary);
        EXPECT_FALSE(display->screens()[0].name.empty());
    }

    TEST_F(X11Windows, CostNothingBeforeTheyAreShown)
    {
        const auto surface = display->createSurface({ .frame = kWindowFrame, .title = "deferred" });
        surface->setTitle("still deferred");
        surface->setFrame({ { 0, 0 }, { 10, 10 } });
        settle();
        EXPECT_EQ(windowOf("still deferred"), XCB_NONE);
    }

    TEST_F(X11Windows, AppearAtTheirFrameWithTheirPixels)
    {
        const auto surface = shown({ .frame = kWindowFrame, .title = "pixels" });
        fill(*surface, 0xFF336699);
        settle();
        EXPECT_EQ(surface->frame(), kWindowFrame);
        EXPECT_EQ(driver.pixel(100, 800 - 200 - 1), 0x336699u);
        EXPECT_EQ(driver.pixel(399, 800 - 350), 0x336699u);
        EXPECT_NE(driver.pixel(400, 800 - 350), 0x336699u);
        EXPECT_NE(driver.pixel(100, 800 - 350 - 1), 0x336699u);
    }

    TEST_F(X11Windows, ShowOnlyTheDamage)
    {
        const auto surface = shown({ .frame = kWindowFrame });
        fill(*surface, 0xFF336699);
        const SolidImage image(surface->pixelSize(), 0xFFFF0000);
        const std::array<PixelRect, 2> parts { { { 10, 20, 30, 40 }, { 50, 20, 60, 900 } } };
        surface->present(image.pixels(), parts);
        settle();
        EXPECT_EQ(driver.pixel(110, 450 + 20), 0xFF0000u);
        EXPECT_EQ(driver.pixel(129, 450 + 39), 0xFF0000u);
        EXPECT_EQ(driver.pixel(130, 450 + 39), 0x336699u);
        EXPECT_EQ(driver.pixel(159, 450 + 149), 0xFF0000u);
        EXPECT_EQ(display->counters().presentedPixels, 300u * 150 + 20 * 20 + 10 * 130);
    }

    TEST_F(X11Windows, TakeImagesLargerThanTheSharedMemory)
    {
        const auto surface = shown({ .frame = { { 40, 60 }, { 1200, 700 } } });
        std::vector<std::uint32_t> words(1200 * 700);
        for (std::size_t i = 0; i < words.size(); ++i)
            words[i] = 0xFF000000 | static_cast<std::uint32_t>(i / 1200);
        const PixelRect all { 0, 0, 1200, 700 };
        surface->present({ words.data(), 1200, 700, 4800 }, { &all, 1 });
        settle();
        for (const int y : { 0, 1, 349, 436, 437, 438, 699 })
            EXPECT_EQ(driver.pixel(600, 40 + y), static_cast<std::uint32_t>(y));
    }

    TEST_F(X11Windows, ReportNoErrorsInAnOrdinaryLife)
    {
        auto surface = shown({ .frame = kWindowFrame, .title = "ordinary" });
        fill(*surface, 0xFF336699);
        surface->setTitle("ordinary life");
        surface->setFrame({ { 50, 50 }, { 200, 100 } });
        surface->raise();
        surface->setCursor(Cursor::pointingHand);
        surface->setCursor(Cursor::hidden);
        surface->setAlpha(0.5);
        surface->setAlpha(1);
        surface->hide();
        surface.reset();
        display->beep();
        settle();
        EXPECT_EQ(display->counters().errors, 0u);
        EXPECT_EQ(display->counters().malformed, 0u);
    }

    TEST_F(X11Windows, FollowAFrameThatTheProgramSets)
    {
        const auto surface = shown({ .frame = kWindowFrame });
        surface->setFrame({ { 300, 300 }, { 120, 80 } });
        waitFor(Event::Kind::exposed, surface.get());
        fill(*surface, 0xFF123456);
        settle();
        EXPECT_EQ(surface->frame(), (CGRect { { 300, 300 }, { 120, 80 } }));
        EXPECT_TRUE(driver.pixelBecomes(300, 499, 0x123456));
        EXPECT_TRUE(driver.pixelBecomes(419, 420, 0x123456));
    }

    TEST_F(X11Windows, TellAFrameThatSomebodyElseSets)
    {
        const auto surface = shown({ .frame = kWindowFrame, .title = "moved" });
        const std::array<std::uint32_t, 4> values { 10, 20, 200, 100 };
        xcb_configure_window(driver.raw(), windowOf("moved"),
            XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH
                | XCB_CONFIG_WINDOW_HEIGHT,
            values.data());
        driver.sync();
        const CGRect wanted { { 10, 800 - 20 - 100 }, { 200, 100 } };
        while (surface->frame() != wanted)
            ASSERT_TRUE(waitFor(Event::Kind::frameChanged, surface.get()));
    }

    TEST_F(X11Windows, TellThatTheUserWantsToCloseThem)
    {
        const auto surface = shown({ .frame = kWindowFrame, .title = "closed" });
        driver.sendProtocol(windowOf("closed"), "WM_DELETE_WINDOW");
        EXPECT_TRUE(waitFor(Event::Kind::closeRequested, surface.get()));
        EXPECT_TRUE(surface->isShown());
    }

    TEST_F(X11Windows, SurviveThatSomebodyElseDestroysThem)
    {
        const auto surface = shown({ .frame = kWindowFrame, .title = "destroyed" });
        xcb_destroy_window(driver.raw(), windowOf("destroyed"));
        driver.sync();
        EXPECT_TRUE(waitFor(Event::Kind::closeRequested, surface.get()));
        EXPECT_FALSE(surface->isShown());
        fill(*surface, 0xFF000000);
        surface->setTitle("again");
        surface->show();
        EXPECT_TRUE(waitFor(Event::Kind::exposed, surface.get()));
        EXPECT_NE(windowOf("again"), XCB_NONE);
    }

    TEST_F(X11Windows, SurviveThatTheyAreDestroyedAgainAndAgain)
    {
        const auto surface = display->createSurface({ .frame = kWindowFrame, .title = "victim" });
        for (int round = 0; round < 30; ++round) {
            surface->show();
            ASSERT_TRUE(waitFor(Event::Kind::exposed, surface.get()));
            fill(*surface, 0xFF336699);
            xcb_destroy_window(driver.raw(), windowOf("victim"));
            driver.sync();
            // The server has destroyed it; we have not heard of that yet.
            fill(*surface, 0xFF993366);
            surface->setFrame({ { 100.0 + round, 200 }, { 300, 150 } });
            surface->raise();
            surface->activate();
            surface->setTitle("victim");
            ASSERT_TRUE(waitFor(Event::Kind::closeRequested, surface.get()));
        }
        settle();
        EXPECT_TRUE(display->isConnected());
        EXPECT_GT(display->counters().errors, 0u);
    }

    TEST_F(X11Windows, SurviveThatEverythingTheyUseIsFreed)
    {
        const auto surface = shown({ .frame = kWindowFrame, .title = "freed" });
        surface->setCursor(Cursor::wait);
        fill(*surface, 0xFF336699);
        settle();
        const xcb_window_t window = windowOf("freed");
        for (std::uint32_t id = window - 20; id < window + 20; ++id) {
            xcb_free_pixmap(driver.raw(), id);
            xcb_free_gc(driver.raw(), id);
            xcb_free_cursor(driver.raw(), id);
            xcb_free_colormap(driver.raw(), id);
        }
        driver.sync();
        fill(*surface, 0xFF993366);
        settle();
        EXPECT_TRUE(display->isConnected());
        EXPECT_GT(display->counters().errors, 0u) << "at least the graphics context is missing";
        surface->hide();
        surface->show();
        EXPECT_TRUE(waitFor(Event::Kind::exposed, surface.get()));
    }

    TEST_F(X11Windows, SayWhoTheyAre)
    {
        const auto surface
            = shown({ .frame = kWindowFrame, .kind = SurfaceKind::utility, .title = "hints" });
        const xcb_window_t window = windowOf("hints");
        EXPECT_EQ(driver.property(window, "_NET_WM_PID").size(), 1u);
        EXPECT_EQ(driver.property(window, "_NET_WM_WINDOW_TYPE"),
            std::vector { driver.atom("_NET_WM_WINDOW_TYPE_UTILITY") });
        EXPECT_EQ(driver.property(window, "_MOTIF_WM_HINTS"),
            (std::vector<std::uint32_t> { 2, 0, 0, 0, 0 }));
        EXPECT_EQ(driver.property(window, "WM_PROTOCOLS").size(), 3u);
    }

    TEST_F(X11Windows, NameTheirParent)
    {
        const auto parent = shown({ .frame = kWindowFrame, .title = "parent" });
        const auto child = shown({ .frame = kWindowFrame,
            .kind = SurfaceKind::dialog,
            .title = "child",
            .transientFor = parent.get() });
        EXPECT_EQ(driver.property(windowOf("child"), "WM_TRANSIENT_FOR"),
            std::vector { windowOf("parent") });
    }

    TEST_F(X11Windows, HaveAlphaOnlyWhenTheyAreNotOpaque)
    {
        const auto opaque = shown({ .frame = kWindowFrame, .title = "opaque" });
        const auto clear = shown({ .frame = kWindowFrame, .opaque = false, .title = "clear" });
        EXPECT_EQ(driver.depth(windowOf("opaque")), 24);
        EXPECT_EQ(driver.depth(windowOf("clear")), 32);
        opaque->setOpaque(false);
        waitFor(Event::Kind::exposed, opaque.get());
        EXPECT_EQ(driver.depth(windowOf("opaque")), 32);
    }

    TEST_F(X11Windows, GoAwayWhenHiddenAndComeBack)
    {
        const auto surface = shown({ .frame = kWindowFrame });
        fill(*surface, 0xFF336699);
        surface->hide();
        EXPECT_FALSE(surface->isShown());
        surface->show();
        ASSERT_TRUE(waitFor(Event::Kind::exposed, surface.get()));
        fill(*surface, 0xFF993366);
        settle();
        EXPECT_EQ(surface->frame(), kWindowFrame);
        EXPECT_EQ(driver.pixel(200, 500), 0x993366u);
    }

    TEST_F(X11Windows, FillTheScreenAndComeBack)
    {
        const auto surface = shown({ .frame = kWindowFrame });
        surface->setFullScreen(true);
        while (surface->frame() != display->screens()[0].frame)
            ASSERT_TRUE(waitFor(Event::Kind::frameChanged, surface.get()));
        while (!surface->state().fullScreen)
            ASSERT_TRUE(waitFor(Event::Kind::stateChanged, surface.get()));
        surface->setFullScreen(false);
        while (surface->frame() != kWindowFrame)
            ASSERT_TRUE(waitFor(Event::Kind::frameChanged, surface.get()));
    }

    TEST_F(X11Windows, ZoomAndComeBack)
    {
        const auto surface = shown({ .frame = kWindowFrame });
        surface->setZoomed(true);
        while (surface->frame() != display->screens()[0].visibleFrame)
            ASSERT_TRUE(waitFor(Event::Kind::frameChanged, surface.get()));
        while (!surface->state().zoomed)
            ASSERT_TRUE(waitFor(Event::Kind::stateChanged, surface.get()));
        surface->setZoomed(false);
        while (surface->frame() != kWindowFrame)
            ASSERT_TRUE(waitFor(Event::Kind::frameChanged, surface.get()));
    }

    TEST_F(X11Windows, MinimiseAndComeBackWhenShown)
    {
        const auto surface = shown({ .frame = kWindowFrame });
        surface->minimise();
        while (!surface->state().minimised)
            ASSERT_TRUE(waitFor(Event::Kind::stateChanged, surface.get()));
        EXPECT_TRUE(surface->isShown());
        surface->show();
        while (surface->state().minimised)
            ASSERT_TRUE(waitFor(Event::Kind::stateChanged, surface.get()));
        EXPECT_TRUE(surface->isShown());
    }

    TEST_F(X11Windows, SurviveASenselessStateProperty)
    {
        const auto surface = shown({ .frame = kWindowFrame, .title = "odd" });
        const xcb_window_t window = windowOf("odd");
        for (const char* name : { "_NET_WM_STATE", "WM_STATE" }) {
            xcb_change_property(driver.raw(), XCB_PROP_MODE_REPLACE, window, driver.atom(name),
                XCB_ATOM_STRING, 8, 3, "odd");
        }
        settle();
        EXPECT_EQ(surface->state(), SurfaceState {});
        EXPECT_EQ(display->counters().malformed > 0, hasManager());
    }

    TEST_F(X11Windows, AreDrawnInDevicePixels)
    {
        reopen({ { "BRINDLE_SCALE", "1.5" } });
        EXPECT_EQ(display->screens()[0].scale, 1.5);
        EXPECT_EQ(display->screens()[0].frame.size, (CGSize { 1280 / 1.5, 800 / 1.5 }));
        const auto surface = shown({ .frame = { { 100, 100 }, { 101, 51 } } });
        EXPECT_EQ(surface->pixelSize(), (PixelSize { 152, 77 }));
        EXPECT_EQ(surface->frame(), (CGRect { { 100, 100 }, { 101, 51 } }));
        fill(*surface, 0xFF336699);
        settle();
        EXPECT_EQ(driver.pixel(150, 649), 0x336699u);
    }

    TEST_F(X11Windows, FollowTheResourcesScaleWhileTheyAreShown)
    {
        const auto surface = shown({ .frame = { { 100, 100 }, { 100, 50 } } });
        const std::string resources = "Xcursor.size: 24\nXft.dpi:\t144\n";
        xcb_change_property(driver.raw(), XCB_PROP_MODE_REPLACE, driver.root(),
            XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING, 8,
            static_cast<std::uint32_t>(resources.size()), resources.data());
        driver.sync();
        EXPECT_TRUE(waitFor(Event::Kind::screensChanged));
        EXPECT_EQ(surface->scale(), 1.5);
        EXPECT_EQ(surface->frame(), (CGRect { { 100, 100 }, { 100, 50 } }));
        EXPECT_EQ(surface->pixelSize(), (PixelSize { 150, 75 }));
        xcb_delete_property(driver.raw(), driver.root(), XCB_ATOM_RESOURCE_MANAGER);
        driver.sync();
        EXPECT_TRUE(waitFor(Event::Kind::screensChanged));
    }

}
}
