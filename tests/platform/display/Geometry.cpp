// SPDX-License-Identifier: Apache-2.0
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "display/PixelMapping.h"
#include "display/Strut.h"

namespace brindle::display {
namespace {

    TEST(PixelMapping, TurnsTheAxisOver)
    {
        const PixelMapping mapping { 1, 0, 800 };
        EXPECT_EQ(mapping.pixels({ { 10, 20 }, { 30, 40 } }), (PixelRect { 10, 740, 40, 780 }));
    }

    TEST(PixelMapping, CountsFromThePrimaryScreen)
    {
        const PixelMapping mapping { 1, 1920, 1080 };
        EXPECT_EQ(mapping.pixels({ { 0, 0 }, { 10, 10 } }), (PixelRect { 1920, 1070, 1930, 1080 }));
    }

    TEST(PixelMapping, KeepsTheSizeOfAMovedFrame)
    {
        const PixelMapping mapping { 1.25, 0, 800 };
        for (double x = 0; x < 4; x += 0.125)
            EXPECT_EQ(mapping.pixels({ { x, x }, { 10, 10 } }).width(), 13) << x;
    }

    TEST(PixelMapping, ComesBackToThePixelsItCameFrom)
    {
        const PixelMapping mapping { 1.5, 100, 901 };
        const PixelRect rect { 17, 23, 118, 242 };
        EXPECT_EQ(mapping.pixels(mapping.points(rect)), rect);
    }

    TEST(PixelMapping, SaturatesWhatIsNoNumberOrTooLarge)
    {
        const double nan = std::numeric_limits<double>::quiet_NaN();
        EXPECT_EQ(saturatedPixel(nan), 0);
        EXPECT_EQ(saturatedPixel(1e300), 32767);
        EXPECT_EQ(saturatedPixel(-INFINITY), -32767);
        EXPECT_EQ(pixelSizeOf({ nan, -5 }, 1), (PixelSize { 1, 1 }));
    }

    TEST(PixelMapping, RoundsHalvesUpward)
    {
        EXPECT_EQ(saturatedPixel(2.5), 3);
        EXPECT_EQ(saturatedPixel(-2.5), -2);
    }

    TEST(Strut, TakesItsPartOfTheVisibleFrame)
    {
        const CGRect screen { { 0, 0 }, { 100, 80 } };
        EXPECT_EQ(frameWithoutStrut(screen, screen, { Strut::Edge::top, 22, 0, 100 }),
            (CGRect { { 0, 0 }, { 100, 58 } }));
        EXPECT_EQ(frameWithoutStrut(screen, screen, { Strut::Edge::left, 10, 0, 80 }),
            (CGRect { { 10, 0 }, { 90, 80 } }));
    }

    TEST(Strut, TakesNothingWhereSomebodyTookMore)
    {
        const CGRect screen { { 0, 0 }, { 100, 80 } };
        const CGRect visible { { 0, 0 }, { 100, 50 } };
        EXPECT_EQ(frameWithoutStrut(screen, visible, { Strut::Edge::top, 22, 0, 100 }), visible);
    }

    constexpr PixelMapping kPlain { 1, 0, 800 };
    constexpr PixelRect kScreen { 0, 0, 1280, 800 };

    TEST(StrutValues, ReserveTheTopOfTheOnlyScreen)
    {
        const auto values
            = strutValues({ Strut::Edge::top, 22, 0, 1280 }, { kScreen }, 0, { 1280, 800 }, kPlain);
        EXPECT_EQ(values, (StrutValues { 0, 0, 22, 0, 0, 0, 0, 0, 0, 1279, 0, 0 }));
    }

    TEST(StrutValues, AreDevicePixels)
    {
        const PixelMapping twice { 2, 0, 800 };
        const auto values
            = strutValues({ Strut::Edge::top, 22, 0, 640 }, { kScreen }, 0, { 1280, 800 }, twice);
        EXPECT_EQ(values, (StrutValues { 0, 0, 44, 0, 0, 0, 0, 0, 0, 1279, 0, 0 }));
    }

    TEST(StrutValues, CountFromTheDesktopsEdgeOnALowerScreen)
    {
        // Side by side, the right one smaller and aligned at the bottom.
        const std::vector<PixelRect> screens { kScreen, { 1280, 300, 2080, 800 } };
        const auto values
            = strutValues({ Strut::Edge::top, 22, 1280, 2080 }, screens, 1, { 2080, 800 }, kPlain);
        EXPECT_EQ(values, (StrutValues { 0, 0, 322, 0, 0, 0, 0, 0, 1280, 2079, 0, 0 }));
    }

    TEST(StrutValues, AreNotSetUnderAnotherScreen)
    {
        const std::vector<PixelRect> screens { { 0, 0, 1280, 800 }, { 0, 800, 1280, 1600 } };
        EXPECT_FALSE(
            strutValues({ Strut::Edge::top, 22, 0, 1280 }, screens, 1, { 1280, 1600 }, kPlain));
    }

    TEST(StrutValues, KeepToTheSpanOfTheirScreen)
    {
        const std::vector<PixelRect> screens { kScreen, { 1280, 0, 2560, 800 } };
        const auto values = strutValues(
            { Strut::Edge::bottom, 10, -500, 9000 }, screens, 0, { 2560, 800 }, kPlain);
        EXPECT_EQ(values, (StrutValues { 0, 0, 0, 10, 0, 0, 0, 0, 0, 0, 0, 1279 }));
    }

    TEST(StrutValues, AreNotSetForNoThicknessAndNoScreen)
    {
        EXPECT_FALSE(
            strutValues({ Strut::Edge::top, 0, 0, 10 }, { kScreen }, 0, { 1280, 800 }, kPlain));
        EXPECT_FALSE(
            strutValues({ Strut::Edge::top, 9, 0, 10 }, { kScreen }, 4, { 1280, 800 }, kPlain));
    }

}
}
