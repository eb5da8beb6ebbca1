// SPDX-License-Identifier: Apache-2.0
#include "RasterTwin.h"

#include "quartz/raster/Fill.h"

#include <array>
#include <limits>

namespace brindle::raster {

namespace {

    constexpr PixelRect kClip { 1, 2, 55, 47 };

    const GradientStop kTwo[] { { 0, { 0.9, 0.9, 0.95, 1 } }, { 1, { 0.5, 0.55, 0.6, 1 } } };
    const GradientStop kFaint[] { { 0, { 1, 0, 0, 0 } }, { 1, { 0, 0, 1, 0.8 } } };
    const GradientStop kInside[] { { 0.25, { 0, 1, 0, 0.5 } }, { 0.6, { 1, 1, 0, 1 } },
        { 0.8, { 0, 0, 0, 1 } } };
    const GradientStop kHard[] { { 0, { 1, 1, 1, 1 } }, { 0.5, { 0.8, 0.8, 0.8, 1 } },
        { 0.5, { 0.3, 0.3, 0.3, 1 } }, { 1, { 0.1, 0.1, 0.1, 1 } } };

    int gradientDifference(const DeviceRect& rect, const Gradient& gradient, Blend blend)
    {
        RasterTwin twin(60, 50);
        return twin.difference(
            [&](const Bitmap& bitmap) { fillGradient(bitmap, rect, kClip, gradient, blend); },
            [&](cairo_t* context) {
                cairo_rectangle(context, kClip.left, kClip.top, kClip.right - kClip.left,
                    kClip.bottom - kClip.top);
                cairo_clip(context);
                const bool isVertical = gradient.axis == GradientAxis::vertical;
                cairo_pattern_t* pattern = isVertical
                    ? cairo_pattern_create_linear(0, gradient.start, 0, gradient.end)
                    : cairo_pattern_create_linear(gradient.start, 0, gradient.end, 0);
                for (const GradientStop& stop : gradient.stops)
                    cairo_pattern_add_color_stop_rgba(pattern, stop.offset, stop.color.red,
                        stop.color.green, stop.color.blue, stop.color.alpha);
                cairo_set_operator(
                    context, blend == Blend::copy ? CAIRO_OPERATOR_SOURCE : CAIRO_OPERATOR_OVER);
                cairo_set_source(context, pattern);
                cairo_rectangle(context, rect.x, rect.y, rect.width, rect.height);
                cairo_fill(context);
                cairo_pattern_destroy(pattern);
            });
    }

    void expectTwins(std::span<const GradientStop> stops)
    {
        for (const GradientAxis axis : { GradientAxis::vertical, GradientAxis::horizontal }) {
            for (const Blend blend : { Blend::over, Blend::copy }) {
                EXPECT_LE(gradientDifference({ 3, 4, 45, 40 }, { axis, 4, 44, stops }, blend), 1);
                EXPECT_LE(
                    gradientDifference({ 3.5, 4.25, 45, 40 }, { axis, 10, 30.5, stops }, blend), 1);
                EXPECT_LE(gradientDifference({ 0, 0, 60, 50 }, { axis, 41, 7, stops }, blend), 1);
            }
        }
    }

}

TEST(RasterGradient, OpaqueColoursAreThoseOfCairo) { expectTwins(kTwo); }

TEST(RasterGradient, TransparentColoursAreThoseOfCairo) { expectTwins(kFaint); }

TEST(RasterGradient, EndColoursGoOnLikeCairos) { expectTwins(kInside); }

TEST(RasterGradient, TwoStopsAtOnePlaceMakeAHardEdge)
{
    std::array<Pixel, 4> pixels {};
    const Gradient gradient { GradientAxis::vertical, 0, 4, kHard };
    fillGradient({ pixels.data(), 1, 4, 4 }, { 0, 0, 1, 4 }, { 0, 0, 1, 4 }, gradient, Blend::copy);
    EXPECT_GT(pixels[1] & 0xFF, 0xC8u);
    EXPECT_LT(pixels[2] & 0xFF, 0x50u);
}

TEST(RasterGradient, SingleStopIsAPlainColour)
{
    Pixel pixel = 0;
    const Gradient gradient { GradientAxis::horizontal, 0, 1, std::span(kTwo, 1) };
    fillGradient({ &pixel, 1, 1, 4 }, { 0, 0, 1, 1 }, { 0, 0, 1, 1 }, gradient, Blend::over);
    EXPECT_EQ(pixel, pixelFromColor(kTwo[0].color));
}

TEST(RasterGradient, WithoutStopsOrLengthNothingIsDrawn)
{
    Pixel pixel = 5;
    const Bitmap bitmap { &pixel, 1, 1, 4 };
    const PixelRect clip { 0, 0, 1, 1 };
    fillGradient(bitmap, { 0, 0, 1, 1 }, clip, { GradientAxis::vertical, 0, 1, {} }, Blend::copy);
    fillGradient(bitmap, { 0, 0, 1, 1 }, clip, { GradientAxis::vertical, 1, 1, kTwo }, Blend::copy);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    fillGradient(
        bitmap, { 0, 0, 1, 1 }, clip, { GradientAxis::vertical, nan, 1, kTwo }, Blend::copy);
    EXPECT_EQ(pixel, 5u);
}

TEST(RasterGradient, ALengthTooSmallToDivideByIsNone)
{
    Pixel pixel = 5;
    const double least = std::numeric_limits<double>::denorm_min();
    for (const GradientAxis axis : { GradientAxis::vertical, GradientAxis::horizontal })
        fillGradient({ &pixel, 1, 1, 4 }, { 0, 0, 1, 1 }, { 0, 0, 1, 1 }, { axis, 0, least, kTwo },
            Blend::copy);
    EXPECT_EQ(pixel, 5u);
}

TEST(RasterGradient, FarAwayAxisStillAnswersTheEndColour)
{
    Pixel pixel = 0;
    const Gradient gradient { GradientAxis::vertical, 1e200, 2e200, kTwo };
    fillGradient({ &pixel, 1, 1, 4 }, { 0, 0, 1, 1 }, { 0, 0, 1, 1 }, gradient, Blend::copy);
    EXPECT_EQ(pixel, pixelFromColor(kTwo[0].color));
}

}
