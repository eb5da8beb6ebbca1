// SPDX-License-Identifier: Apache-2.0
#include "quartz/raster/TextLine.h"

#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

namespace brindle::raster {

namespace {

    constexpr Pixel kWhite = 0xFFFFFFFF;
    constexpr Color kBlack { 0, 0, 0, 1 };

    text::Line line(std::u16string_view text, double size = 20)
    {
        return text::shapeLine(text, { text::FontFace::named("LiberationSans"), size });
    }

    /// A white page to write on.
    struct Page {
        int width = 200;
        int height = 60;
        std::vector<Pixel> pixels
            = std::vector<Pixel>(static_cast<std::size_t>(width * height), kWhite);

        Bitmap bitmap() { return { pixels.data(), width, height, width * 4 }; }
        PixelRect all() const { return { 0, 0, width, height }; }

        /// The smallest rectangle around everything that was written.
        PixelRect ink() const
        {
            PixelRect result { width, height, 0, 0 };
            for (int y = 0; y < height; ++y) {
                for (int x = 0; x < width; ++x) {
                    if (pixels[static_cast<std::size_t>(y * width + x)] == kWhite)
                        continue;
                    result = { std::min(result.left, x), std::min(result.top, y),
                        std::max(result.right, x + 1), std::max(result.bottom, y + 1) };
                }
            }
            return result;
        }
    };

}

TEST(RasterTextLine, LettersStandOnTheBaseline)
{
    Page page;
    drawLine(page.bitmap(), line(u"HIE"), 10, 40, 1, page.all(), kBlack);
    EXPECT_EQ(page.ink().bottom, 40);
    EXPECT_EQ(page.ink().top, 26);
}

TEST(RasterTextLine, BaselineGoesToTheNearestRow)
{
    Page page;
    drawLine(page.bitmap(), line(u"HIE"), 10, 40.4, 1, page.all(), kBlack);
    EXPECT_EQ(page.ink().bottom, 40);
    Page lower;
    drawLine(lower.bitmap(), line(u"HIE"), 10, 40.6, 1, lower.all(), kBlack);
    EXPECT_EQ(lower.ink().bottom, 41);
}

TEST(RasterTextLine, SmallTextAtALargeScaleIsLargeText)
{
    Page scaled;
    drawLine(scaled.bitmap(), line(u"Scale", 12), 10, 40, 1.5, scaled.all(), kBlack);
    Page large;
    drawLine(large.bitmap(), line(u"Scale", 18), 10, 40, 1, large.all(), kBlack);
    EXPECT_EQ(scaled.pixels, large.pixels);
}

TEST(RasterTextLine, WholePixelsMoveThePictureUnchanged)
{
    Page page;
    drawLine(page.bitmap(), line(u"Move"), 10.25, 40, 1, page.all(), kBlack);
    Page moved;
    drawLine(moved.bitmap(), line(u"Move"), 13.25, 40, 1, moved.all(), kBlack);
    std::rotate(page.pixels.begin(), page.pixels.end() - 3, page.pixels.end());
    EXPECT_EQ(page.pixels, moved.pixels);
}

TEST(RasterTextLine, QuartersOfAPixelCount)
{
    Page page;
    drawLine(page.bitmap(), line(u"l"), 10, 40, 1, page.all(), kBlack);
    Page moved;
    drawLine(moved.bitmap(), line(u"l"), 10.25, 40, 1, moved.all(), kBlack);
    EXPECT_NE(page.pixels, moved.pixels);
}

TEST(RasterTextLine, NothingIsWrittenOutsideTheClip)
{
    Page page;
    const PixelRect clip { 20, 30, 40, 36 };
    drawLine(page.bitmap(), line(u"Clipped text"), 10, 40, 1, clip, kBlack);
    EXPECT_EQ(intersection(page.ink(), clip), page.ink());
    EXPECT_FALSE(page.ink().isEmpty());
}

TEST(RasterTextLine, ClippedPartIsThatOfTheWholeLine)
{
    const PixelRect clip { 33, 0, 71, 60 };
    Page whole;
    drawLine(whole.bitmap(), line(u"Clipped text"), 10, 40, 1, whole.all(), kBlack);
    Page part;
    drawLine(part.bitmap(), line(u"Clipped text"), 10, 40, 1, clip, kBlack);
    for (int y = 0; y < whole.height; ++y)
        for (int x = clip.left; x < clip.right; ++x)
            ASSERT_EQ(part.bitmap().row(y)[x], whole.bitmap().row(y)[x]);
}

TEST(RasterTextLine, FarAwayAndOddPlacesDrawNothing)
{
    Page page;
    for (const double place : { 1e9, -1e9, 1e300, std::numeric_limits<double>::quiet_NaN() }) {
        drawLine(page.bitmap(), line(u"far"), place, 40, 1, page.all(), kBlack);
        drawLine(page.bitmap(), line(u"far"), 10, place, 1, page.all(), kBlack);
    }
    EXPECT_TRUE(page.ink().isEmpty());
}

TEST(RasterTextLine, VeryLargeLettersAreLeftToOutlines)
{
    EXPECT_TRUE(canDrawLine(line(u"x", 20), 2));
    EXPECT_FALSE(canDrawLine(line(u"x", 200), 2));
    EXPECT_FALSE(canDrawLine(line(u"x", 20), std::numeric_limits<double>::quiet_NaN()));
    Page page;
    drawLine(page.bitmap(), line(u"x", 200), 10, 40, 2, page.all(), kBlack);
    EXPECT_TRUE(page.ink().isEmpty());
}

TEST(RasterTextLine, LightTextOnDarkIsTheNegativeOfDarkOnLight)
{
    Page dark;
    drawLine(dark.bitmap(), line(u"Even"), 10, 40, 1, dark.all(), kBlack);
    Page light;
    std::ranges::fill(light.pixels, 0xFF000000);
    drawLine(light.bitmap(), line(u"Even"), 10, 40, 1, light.all(), { 1, 1, 1, 1 });
    for (std::size_t i = 0; i < dark.pixels.size(); ++i)
        ASSERT_NEAR(255.0 - (dark.pixels[i] & 0xFF), light.pixels[i] & 0xFF, 1);
}

}
