// SPDX-License-Identifier: Apache-2.0
#include "RasterTwin.h"

#include "quartz/raster/Fill.h"
#include "support/Numbers.h"

#include <array>
#include <limits>

namespace brindle::raster {

namespace {

    constexpr PixelRect kEverywhere { 0, 0, 1 << 20, 1 << 20 };

    int fillDifference(
        const DeviceRect& rect, const Color& color, Blend blend, PixelRect clip = { 0, 0, 40, 30 })
    {
        RasterTwin twin(40, 30);
        return twin.difference(
            [&](const Bitmap& bitmap) { fillRect(bitmap, rect, clip, color, blend); },
            [&](cairo_t* context) {
                cairo_rectangle(
                    context, clip.left, clip.top, clip.right - clip.left, clip.bottom - clip.top);
                cairo_clip(context);
                cairo_set_operator(
                    context, blend == Blend::copy ? CAIRO_OPERATOR_SOURCE : CAIRO_OPERATOR_OVER);
                cairo_set_source_rgba(context, color.red, color.green, color.blue, color.alpha);
                cairo_rectangle(context, rect.x, rect.y, rect.width, rect.height);
                cairo_fill(context);
            });
    }

    const Color kColors[] { { 1, 1, 1, 1 }, { 0, 0, 0, 0.5 }, { 0.2, 0.4, 0.9, 0.35 },
        { 0.9, 0.1, 0.3, 1 }, { 0.5, 0.5, 0.5, 0 } };

    const DeviceRect kRects[] { { 3, 4, 20, 10 }, { 0, 0, 40, 30 }, { 2.5, 3.5, 10, 8 },
        { 5.25, 6.75, 0.5, 12.125 }, { 5.25, 6.75, 0.5, 0.125 }, { -4.5, -2.25, 100, 100 },
        { 7.9, 8.9, 1.2, 1.2 }, { 10, 5.3, 13, 1 }, { 3.7, 5, 1.3, 9 } };

}

TEST(RasterFill, BlendsLikeCairo)
{
    for (const Color& color : kColors)
        for (const DeviceRect& rect : kRects)
            EXPECT_LE(fillDifference(rect, color, Blend::over), 1) << rect.x << ", " << color.alpha;
}

TEST(RasterFill, CopiesLikeCairo)
{
    for (const Color& color : kColors)
        for (const DeviceRect& rect : kRects)
            EXPECT_LE(fillDifference(rect, color, Blend::copy), 1) << rect.x << ", " << color.alpha;
}

TEST(RasterFill, ClipsLikeCairo)
{
    for (const DeviceRect& rect : kRects) {
        EXPECT_LE(fillDifference(rect, kColors[2], Blend::over, { 4, 5, 9, 8 }), 1) << rect.x;
        EXPECT_LE(fillDifference(rect, kColors[2], Blend::copy, { 5, 6, 6, 30 }), 1) << rect.x;
    }
}

TEST(RasterFill, EveryWidthIsFilledToItsEdge)
{
    for (int width = 1; width < 20; ++width)
        EXPECT_LE(fillDifference({ 1, 1, double(width), 3 }, kColors[1], Blend::over), 1);
}

TEST(RasterFill, HalfACoveredPixelTakesHalfTheColour)
{
    Pixel pixel = 0xFFFFFFFF;
    fillRect({ &pixel, 1, 1, 4 }, { 0.5, 0, 5, 1 }, kEverywhere, { 0, 0, 0, 1 }, Blend::over);
    EXPECT_EQ(pixel, 0xFF7F7F7Fu);
}

TEST(RasterFill, PixelsAroundTheRectangleStay)
{
    std::array<Pixel, 9> pixels {};
    fillRect({ pixels.data(), 3, 3, 12 }, { 1, 1, 1, 1 }, kEverywhere, { 1, 1, 1, 1 }, Blend::copy);
    EXPECT_EQ(pixels, (std::array<Pixel, 9> { 0, 0, 0, 0, 0xFFFFFFFF, 0, 0, 0, 0 }));
}

TEST(RasterFill, WiderRowsThanThePictureAreSkipped)
{
    std::array<Pixel, 8> pixels {};
    fillRect({ pixels.data(), 2, 2, 16 }, { 0, 0, 9, 9 }, kEverywhere, { 0, 0, 0, 1 }, Blend::copy);
    constexpr Pixel kBlack = 0xFF000000;
    EXPECT_EQ(pixels, (std::array<Pixel, 8> { kBlack, kBlack, 0, 0, kBlack, kBlack, 0, 0 }));
}

TEST(RasterFill, OddRectanglesDrawNothing)
{
    for (const DeviceRect& rect : { DeviceRect { 0, 0, -5, 5 }, DeviceRect { 0, 0, 0, 5 },
             DeviceRect { kNaN, 0, 5, 5 }, DeviceRect { 0, 0, kNaN, 5 },
             DeviceRect { kInfinity, 0, 5, 5 }, DeviceRect { -kInfinity, 0, kInfinity, 5 } }) {
        Pixel pixel = 1;
        fillRect({ &pixel, 1, 1, 4 }, rect, kEverywhere, { 1, 1, 1, 1 }, Blend::copy);
        EXPECT_EQ(pixel, 1u);
    }
}

TEST(RasterFill, EndlessRectangleFillsThePicture)
{
    Pixel pixel = 0;
    fillRect({ &pixel, 1, 1, 4 }, { -1e300, -1e300, 2e300, 2e300 }, kEverywhere, { 1, 1, 1, 1 },
        Blend::copy);
    EXPECT_EQ(pixel, 0xFFFFFFFFu);
}

TEST(RasterColor, IsMultipliedByAlphaAndClamped)
{
    EXPECT_EQ(pixelFromColor({ 1, 0.5, 0, 0.5 }), 0x80804000u);
    EXPECT_EQ(pixelFromColor({ 7, -1, 0, 9 }), 0xFFFF0000u);
    EXPECT_EQ(pixelFromColor({ std::numeric_limits<double>::quiet_NaN(), 0, 0, 1 }), 0xFF000000u);
}

TEST(RasterPlacement, ScalesAndMoves)
{
    const Placement placement { 2, -2, 10, 100 };
    const DeviceRect rect = placement.map(5, 10, 20, 30);
    EXPECT_EQ(rect.x, 20);
    EXPECT_EQ(rect.y, 20);
    EXPECT_EQ(rect.width, 40);
    EXPECT_EQ(rect.height, 60);
}

}
