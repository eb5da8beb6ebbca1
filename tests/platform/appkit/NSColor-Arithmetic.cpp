// SPDX-License-Identifier: Apache-2.0
// Conversions beside the published formulas, in both directions, over a fine grid.
#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "support/Colors.h"

namespace brindle {

namespace {

    constexpr int kSteps = 24;
    constexpr double kTolerance = 1e-12;

    double step(int i) { return static_cast<double>(i) / kSteps; }

    /// Visits every triple of the grid.
    template <class Visit> void overGrid(Visit visit)
    {
        for (int i = 0; i <= kSteps; ++i) {
            for (int j = 0; j <= kSteps; ++j) {
                for (int k = 0; k <= kSteps; ++k)
                    visit(step(i), step(j), step(k));
            }
        }
    }

    // CSS Color Module Level 4, 8.1, in its form for HSV: a component is v - v s max(0, min(k, 4 - k, 1)) with
    // k = (n + 6 h) mod 6 and n = 5 for red, 3 for green, 1 for blue.
    double publishedComponent(double n, double hue, double saturation, double value)
    {
        const double k = std::fmod(n + hue * 6, 6);
        return value - value * saturation * std::max(0.0, std::min({ k, 4 - k, 1.0 }));
    }

    // The hue by trigonometry would differ from the hexagon's; these are the hexagon's, as fractions of the circle.
    double publishedHue(double red, double green, double blue)
    {
        const double high = std::max({ red, green, blue });
        const double chroma = high - std::min({ red, green, blue });
        if (chroma == 0)
            return 0;
        if (high == red)
            return std::fmod((green - blue) / chroma + 6, 6) / 6;
        return high == green ? ((blue - red) / chroma + 2) / 6 : ((red - green) / chroma + 4) / 6;
    }

    /// How far two hues are apart, 0 and 1 being the same.
    double hueDistance(double a, double b)
    {
        const double plain = std::abs(a - b);
        return std::min(plain, 1 - plain);
    }

}

TEST(NSColorArithmetic, HSBBecomesRGBAsPublished)
{
    overGrid([](double hue, double saturation, double value) {
        const Ref<NSColor> color = hsb(hue, saturation, value);
        const auto expected
            = [&](double n) { return publishedComponent(n, hue, saturation, value); };
        ASSERT_NEAR(color->redComponent(), expected(5), kTolerance);
        ASSERT_NEAR(color->greenComponent(), expected(3), kTolerance);
        ASSERT_NEAR(color->blueComponent(), expected(1), kTolerance);
    });
}

TEST(NSColorArithmetic, RGBBecomesHSBAsPublished)
{
    overGrid([](double red, double green, double blue) {
        const Ref<NSColor> color = rgb(red, green, blue);
        const double high = std::max({ red, green, blue });
        const double low = std::min({ red, green, blue });
        ASSERT_EQ(color->brightnessComponent(), high);
        ASSERT_NEAR(color->saturationComponent(), high == 0 ? 0 : 1 - low / high, kTolerance);
        ASSERT_LT(hueDistance(color->hueComponent(), publishedHue(red, green, blue)), kTolerance);
    });
}

TEST(NSColorArithmetic, RGBComesBackFromHSB)
{
    overGrid([](double red, double green, double blue) {
        const Ref<NSColor> color = rgb(red, green, blue);
        const Ref<NSColor> back = hsb(
            color->hueComponent(), color->saturationComponent(), color->brightnessComponent());
        ASSERT_NEAR(back->redComponent(), red, kTolerance);
        ASSERT_NEAR(back->greenComponent(), green, kTolerance);
        ASSERT_NEAR(back->blueComponent(), blue, kTolerance);
    });
}

TEST(NSColorArithmetic, HueAndSaturationStayWithinTheirBounds)
{
    // Differences of the last bit beside red, where the hue turns over.
    const double less = std::nextafter(0.5, 0);
    for (const Ref<NSColor>& color : { rgb(1, less, 0.5), rgb(1, 0.5, less), rgb(0.5, less, less),
             rgb(0.5, less, 0.5), rgb(5e-324, 0, 0), rgb(1, 0, 5e-324) }) {
        EXPECT_GE(color->hueComponent(), 0);
        EXPECT_LE(color->hueComponent(), 1);
        EXPECT_GE(color->saturationComponent(), 0);
        EXPECT_LE(color->saturationComponent(), 1);
    }
}

TEST(NSColorArithmetic, HueOneIsHueZero) { EXPECT_TRUE(hsb(1, 1, 1)->isEqual(hsb(0, 1, 1).get())); }

TEST(NSColorArithmetic, PrimariesStandOnTheirHues)
{
    EXPECT_EQ(rgb(1, 0, 0)->hueComponent(), 0);
    EXPECT_EQ(rgb(1, 1, 0)->hueComponent(), 1.0 / 6);
    EXPECT_EQ(rgb(0, 1, 0)->hueComponent(), 2.0 / 6);
    EXPECT_EQ(rgb(0, 1, 1)->hueComponent(), 3.0 / 6);
    EXPECT_EQ(rgb(0, 0, 1)->hueComponent(), 4.0 / 6);
    EXPECT_EQ(rgb(1, 0, 1)->hueComponent(), 5.0 / 6);
}

TEST(NSColorArithmetic, WhiteComesBackFromRGBToTheLastBit)
{
    for (int i = 0; i <= 1000; ++i) {
        const Ref<NSColor> grey = NSColor::cls().colorWithCalibratedWhite_alpha(i / 1000.0, 0.3);
        const Ref<NSColor> back = grey->colorUsingColorSpaceName(NSCalibratedRGBColorSpace)
                                      ->colorUsingColorSpaceName(NSCalibratedWhiteColorSpace);
        ASSERT_TRUE(back->isEqual(grey.get()));
    }
}

TEST(NSColorArithmetic, RGBBecomesWhiteByTheWeightsOfTelevision)
{
    const auto white = [](const Ref<NSColor>& color) {
        return color->colorUsingColorSpaceName(NSCalibratedWhiteColorSpace)->whiteComponent();
    };
    EXPECT_EQ(white(rgb(1, 0, 0)), 0.299); // ITU-R BT.601
    EXPECT_EQ(white(rgb(0, 1, 0)), 0.587);
    EXPECT_EQ(white(rgb(0, 0, 1)), 0.114);
}

}
