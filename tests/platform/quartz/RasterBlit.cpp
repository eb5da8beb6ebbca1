// SPDX-License-Identifier: Apache-2.0
#include "RasterTwin.h"

#include "quartz/raster/Blit.h"
#include "quartz/raster/Blur.h"

#include <limits>
#include <vector>

namespace brindle::raster {

namespace {

    constexpr int kSide = 17;
    constexpr PixelRect kAll { 0, 0, 40, 30 };

    std::vector<Pixel> sourcePixels()
    {
        std::vector<Pixel> pixels;
        for (int i = 0; i < kSide * kSide; ++i)
            pixels.push_back(pixelFromColor({ (i * 91 % 256) / 255.0, (i * 17 % 256) / 255.0,
                (i * 53 % 256) / 255.0, (i * 29 % 256) / 255.0 }));
        return pixels;
    }

    int imageDifference(int x, int y, PixelRect clip, Blend blend, double alpha)
    {
        std::vector<Pixel> pixels = sourcePixels();
        RasterTwin twin(40, 30);
        return twin.difference(
            [&](const Bitmap& bitmap) {
                drawImage(
                    bitmap, { pixels.data(), kSide, kSide, kSide * 4 }, x, y, clip, blend, alpha);
            },
            [&](cairo_t* context) {
                cairo_surface_t* image = cairo_image_surface_create_for_data(
                    reinterpret_cast<unsigned char*>(pixels.data()), CAIRO_FORMAT_ARGB32, kSide,
                    kSide, kSide * 4);
                cairo_rectangle(
                    context, clip.left, clip.top, clip.right - clip.left, clip.bottom - clip.top);
                cairo_clip(context);
                cairo_rectangle(context, x, y, kSide, kSide);
                cairo_clip(context);
                if (blend == Blend::copy) {
                    cairo_set_operator(context, CAIRO_OPERATOR_CLEAR);
                    cairo_paint(context);
                    cairo_set_operator(context, CAIRO_OPERATOR_OVER);
                }
                cairo_set_source_surface(context, image, x, y);
                cairo_paint_with_alpha(context, alpha);
                cairo_surface_destroy(image);
            });
    }

}

TEST(RasterImage, LiesOverTheGroundLikeCairos)
{
    for (const double alpha : { 1.0, 0.5, 0.2, 0.0 })
        EXPECT_LE(imageDifference(5, 6, kAll, Blend::over, alpha), 1) << alpha;
}

TEST(RasterImage, ReplacesTheGroundLikeCairos)
{
    for (const double alpha : { 1.0, 0.5, 0.2, 0.0 })
        EXPECT_LE(imageDifference(5, 6, kAll, Blend::copy, alpha), 1) << alpha;
}

TEST(RasterImage, IsCutAtTheEdgesAndTheClip)
{
    EXPECT_LE(imageDifference(-8, -3, kAll, Blend::over, 1), 1);
    EXPECT_LE(imageDifference(30, 25, kAll, Blend::over, 0.7), 1);
    EXPECT_LE(imageDifference(5, 6, { 8, 9, 13, 11 }, Blend::copy, 1), 1);
}

TEST(RasterImage, FarAwayDrawsNothing)
{
    Pixel pixel = 3;
    Pixel source = 0xFFFFFFFF;
    constexpr int kFar = std::numeric_limits<int>::max();
    for (const int x : { kFar, -kFar, 1, -1 })
        drawImage({ &pixel, 1, 1, 4 }, { &source, 1, 1, 4 }, x, 0, kAll, Blend::copy);
    EXPECT_EQ(pixel, 3u);
}

TEST(RasterMask, LetsTheColourThroughLikeCairos)
{
    constexpr int kStride = 20;
    std::vector<std::uint8_t> coverage(kStride * kSide);
    for (std::size_t i = 0; i < coverage.size(); ++i)
        coverage[i] = static_cast<std::uint8_t>(i % 3 == 0 ? 0 : (i % 3 == 1 ? 255 : i * 31));
    for (const Color& color :
        { Color { 0, 0, 0, 1 }, Color { 1, 1, 1, 0.85 }, Color { 0.2, 0.5, 1, 0.4 } }) {
        RasterTwin twin(40, 30);
        const int difference = twin.difference(
            [&](const Bitmap& bitmap) {
                drawMask(bitmap, { coverage.data(), kSide, kSide, kStride }, 7, 5, kAll,
                    pixelFromColor(color));
            },
            [&](cairo_t* context) {
                cairo_surface_t* mask = cairo_image_surface_create_for_data(
                    coverage.data(), CAIRO_FORMAT_A8, kSide, kSide, kStride);
                cairo_set_source_rgba(context, color.red, color.green, color.blue, color.alpha);
                cairo_mask_surface(context, mask, 7, 5);
                cairo_surface_destroy(mask);
            });
        EXPECT_LE(difference, 1) << color.alpha;
    }
}

TEST(RasterMask, LeavesOutOnlyWhatIsCoveredLater)
{
    constexpr int kWidth = 37;
    constexpr int kHeight = 9;
    std::vector<std::uint8_t> coverage(kWidth * kHeight);
    for (std::size_t i = 0; i < coverage.size(); ++i)
        coverage[i] = static_cast<std::uint8_t>(1 + i * 31 % 255);
    const std::vector<Stretch> rows { { 0, kWidth }, { 3, 30 }, { 0, 9 }, { 20, 22 }, { 5, 5 } };
    const Mask mask { coverage.data(), kWidth, kHeight, kWidth };
    const Pixel color = pixelFromColor({ 0.2, 0.5, 1, 0.6 });
    for (const int left : { -4, 2, 6 }) {
        const Cover cover { rows, left + 1, 6 };
        std::vector<Pixel> whole(40 * 30, 0xFF808080);
        std::vector<Pixel> around = whole;
        drawMask({ whole.data(), 40, 30, 160 }, mask, left, 4, kAll, color);
        drawMaskAround({ around.data(), 40, 30, 160 }, mask, left, 4, kAll, color, cover);
        std::size_t leftOut = 0;
        for (int y = 0; y < 30; ++y) {
            for (int x = 0; x < 40; ++x) {
                const auto place = static_cast<std::size_t>(y * 40 + x);
                const bool isCovered = y >= 6 && y < 11
                    && x >= left + 1 + rows[static_cast<std::size_t>(y - 6)].from
                    && x < left + 1 + rows[static_cast<std::size_t>(y - 6)].to;
                const bool isUntouched = isCovered && around[place] == 0xFF808080;
                leftOut += isUntouched;
                ASSERT_TRUE(isUntouched || around[place] == whole[place]) << x << ", " << y;
            }
        }
        EXPECT_GE(leftOut, 32u);
    }
}

TEST(RasterStencil, FindsTheLongestCoveredStretchOfEachRow)
{
    Stencil stencil { { 255, 255, 0, 255, 255, 255, 9, 255, 0, 0, 0, 0 }, 0, 0, 6, 2 };
    findSolid(stencil);
    ASSERT_EQ(stencil.solid.size(), 2u);
    EXPECT_EQ(stencil.solid[0].from, 3);
    EXPECT_EQ(stencil.solid[0].to, 6);
    EXPECT_EQ(stencil.solid[1].from, 1);
    EXPECT_EQ(stencil.solid[1].to, 2);
}

}
