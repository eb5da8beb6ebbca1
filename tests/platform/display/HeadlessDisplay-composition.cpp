// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "display/headless/HeadlessDisplay.h"
#include "support/DisplayLog.h"

namespace brindle::display {
namespace {

    constexpr std::uint32_t kRed = 0xFFFF0000;
    constexpr std::uint32_t kBlue = 0xFF0000FF;
    constexpr std::uint32_t kGround = 0xFF102030;

    struct HeadlessComposition : testing::Test {
        HeadlessDisplay display { { HeadlessDisplay::screenOfSize(100, 80) } };

        HeadlessComposition() { display.setBackground(kGround); }

        std::unique_ptr<Surface> shown(CGRect frame, std::uint32_t color, bool opaque = true)
        {
            auto surface = display.createSurface({ .frame = frame, .opaque = opaque });
            surface->show();
            fill(*surface, color);
            return surface;
        }
    };

    TEST_F(HeadlessComposition, ShowsTheBackgroundWhereThereIsNoSurface)
    {
        EXPECT_EQ(display.snapshot().at(50, 40), kGround);
    }

    TEST_F(HeadlessComposition, TakesTheScreensSizeInDevicePixels)
    {
        display.setScreens({ HeadlessDisplay::screenOfSize(100, 80, 1.5) });
        EXPECT_EQ(display.snapshot().width, 150);
        EXPECT_EQ(display.snapshot().height, 120);
    }

    TEST_F(HeadlessComposition, PutsTheOriginAtTheBottomLeft)
    {
        const auto surface = shown({ { 10, 20 }, { 5, 4 } }, kRed);
        const Snapshot image = display.snapshot();
        EXPECT_EQ(image.at(10, 80 - 20 - 1), kRed);
        EXPECT_EQ(image.at(10, 80 - 20 - 4), kRed);
        EXPECT_EQ(image.at(10, 80 - 20), kGround);
        EXPECT_EQ(image.at(9, 80 - 20 - 1), kGround);
    }

    TEST_F(HeadlessComposition, LaysTheLaterShownSurfaceAbove)
    {
        const auto below = shown({ { 0, 0 }, { 20, 20 } }, kRed);
        const auto above = shown({ { 10, 10 }, { 20, 20 } }, kBlue);
        EXPECT_EQ(display.snapshot().at(15, 65), kBlue);
        EXPECT_EQ(display.snapshot().at(5, 75), kRed);
    }

    TEST_F(HeadlessComposition, MixesASurfaceThatIsNotOpaque)
    {
        const auto below = shown({ { 0, 0 }, { 20, 20 } }, kBlue);
        const auto above = shown({ { 0, 0 }, { 20, 20 } }, 0x80800000, false);
        EXPECT_EQ(display.snapshot().at(5, 75), 0xFF80007Fu);
    }

    TEST_F(HeadlessComposition, IgnoresTheAlphaOfAnOpaqueSurface)
    {
        const auto surface = shown({ { 0, 0 }, { 20, 20 } }, 0x00112233);
        EXPECT_EQ(display.snapshot().at(5, 75), 0xFF112233u);
    }

    TEST_F(HeadlessComposition, FadesAWholeSurface)
    {
        const auto surface = shown({ { 0, 0 }, { 20, 20 } }, kRed);
        surface->setAlpha(0);
        EXPECT_EQ(display.snapshot().at(5, 75), kGround);
    }

    TEST_F(HeadlessComposition, LeavesOutHiddenAndMinimisedSurfaces)
    {
        const auto hidden = shown({ { 0, 0 }, { 20, 20 } }, kRed);
        const auto minimised = shown({ { 30, 0 }, { 20, 20 } }, kRed);
        hidden->hide();
        minimised->minimise();
        EXPECT_EQ(display.snapshot().at(5, 75), kGround);
        EXPECT_EQ(display.snapshot().at(35, 75), kGround);
    }

    TEST_F(HeadlessComposition, ShowsThePartOfASurfaceThatLiesOnTheScreen)
    {
        const auto surface = shown({ { -10, -10 }, { 20, 20 } }, kRed);
        EXPECT_EQ(display.snapshot().at(9, 70), kRed);
        EXPECT_EQ(display.snapshot().at(10, 70), kGround);
    }

    TEST_F(HeadlessComposition, ShowsAMovedSurfaceAtItsNewPlaceWithoutAnotherPresent)
    {
        const auto surface = shown({ { 0, 0 }, { 10, 10 } }, kRed);
        surface->setFrame({ { 50, 50 }, { 10, 10 } });
        EXPECT_EQ(display.snapshot().at(55, 25), kRed);
        EXPECT_EQ(display.snapshot().at(5, 75), kGround);
    }

    TEST_F(HeadlessComposition, PresentsOnlyTheDamage)
    {
        const auto surface = shown({ { 0, 0 }, { 20, 20 } }, kRed);
        const SolidImage image({ 20, 20 }, kBlue);
        const PixelRect part { 2, 3, 4, 5 };
        surface->present(image.pixels(), { &part, 1 });
        const Snapshot own = display.snapshot(*surface);
        EXPECT_EQ(own.at(2, 3), kBlue);
        EXPECT_EQ(own.at(3, 4), kBlue);
        EXPECT_EQ(own.at(4, 4), kRed);
        EXPECT_EQ(own.at(1, 3), kRed);
    }

    TEST_F(HeadlessComposition, ClipsDamageToTheImage)
    {
        const auto surface = shown({ { 0, 0 }, { 20, 20 } }, kRed);
        const SolidImage image({ 20, 20 }, kBlue);
        const PixelRect part { -5, -5, 1000, 1000 };
        surface->present(image.pixels(), { &part, 1 });
        EXPECT_EQ(display.counters().presentedPixels, 800u);
    }

    TEST_F(HeadlessComposition, CountsPresentsThatShowSomething)
    {
        const auto surface = shown({ { 0, 0 }, { 20, 20 } }, kRed);
        const SolidImage image({ 20, 20 }, kBlue);
        surface->present(image.pixels(), {});
        EXPECT_EQ(display.counters().presents, 1u);
    }

    TEST_F(HeadlessComposition, RoundsASurfaceOfAFractionalScaleToWholePixels)
    {
        display.setScreens({ HeadlessDisplay::screenOfSize(100, 80, 1.25) });
        const auto surface = display.createSurface({ .frame = { { 1, 1 }, { 10, 10 } } });
        EXPECT_EQ(surface->pixelSize(), (PixelSize { 13, 13 }));
        EXPECT_EQ(surface->scale(), 1.25);
    }

    TEST_F(HeadlessComposition, ResamplesASurfaceOnAScreenOfAnotherScale)
    {
        Screen second = HeadlessDisplay::screenOfSize(100, 80, 2);
        second.frame.origin.x = 100;
        second.primary = false;
        display.setScreens({ HeadlessDisplay::screenOfSize(100, 80), second });
        const auto surface = shown({ { 80, 0 }, { 30, 10 } }, kRed);
        EXPECT_EQ(display.snapshot(0).at(99, 79), kRed);
        EXPECT_EQ(display.snapshot(1).at(19, 159), kRed);
        EXPECT_EQ(display.snapshot(1).at(20, 159), 0xFF102030u);
    }

    TEST_F(HeadlessComposition, HandsAScreenToTheImageWriter)
    {
        std::string written;
        display.setImageWriter([&](const Pixels& image, const std::string& path) {
            written = path + " " + std::to_string(image.width);
            return true;
        });
        EXPECT_TRUE(display.saveSnapshot("a.png"));
        EXPECT_EQ(written, "a.png 100");
    }

    TEST_F(HeadlessComposition, AnswersNoImageForAScreenThatDoesNotExist)
    {
        EXPECT_EQ(display.snapshot(7).width, 0);
        EXPECT_FALSE(display.saveSnapshot("a.png"));
    }

}
}
