// SPDX-License-Identifier: Apache-2.0
#include "quartz/TextDrawing.h"

#include "support/Pixels.h"

namespace brindle {

using test::Picture;

namespace {

    text::Line lineOf(std::u16string_view string, double size)
    {
        return text::shapeLine(string, { text::FontFace::system(400, text::Slant::upright), size });
    }

    /// Answers how much ink lies in the rows from `top` to `bottom`.
    int inkBetween(const Picture& picture, int top, int bottom)
    {
        const Ref<CGImage> image = picture.image();
        int ink = 0;
        for (std::size_t y = static_cast<std::size_t>(top); y < static_cast<std::size_t>(bottom);
             ++y) {
            for (std::size_t x = 0; x < image->width(); ++x)
                ink += test::pixelAt(image.get(), x, y).alpha;
        }
        return ink;
    }

}

TEST(TextDrawing, LooksTheSameFlippedAndUnflipped)
{
    const text::Line line = lineOf(u"Lighthouse", 16);
    const Picture plain(100, 30);
    quartz::drawTextLine(plain, line, { 2, 10 }, { 0, 0, 0, 1 });
    const Picture flipped(100, 30);
    CGContextTranslateCTM(flipped, 0, 30);
    CGContextScaleCTM(flipped, 1, -1);
    quartz::drawTextLine(flipped, line, { 2, 20 }, { 0, 0, 0, 1 });
    EXPECT_GT(inkBetween(plain, 0, 30), 1000);
    EXPECT_TRUE(test::areAlike(plain.image().get(), flipped.image().get(), 0, "flipped-text"));
}

TEST(TextDrawing, OutlinesStandUprightToo)
{
    // The bar of an L lies at the foot.
    const text::Line line = lineOf(u"L", 400);
    const Picture picture(400, 400);
    quartz::drawTextLine(picture, line, { 0, 0 }, { 0, 0, 0, 1 });
    EXPECT_GT(inkBetween(picture, 370, 400), 2 * inkBetween(picture, 200, 230));
    const Picture flipped(400, 400);
    CGContextTranslateCTM(flipped, 0, 400);
    CGContextScaleCTM(flipped, 1, -1);
    quartz::drawTextLine(flipped, line, { 0, 400 }, { 0, 0, 0, 1 });
    EXPECT_TRUE(test::areAlike(picture.image().get(), flipped.image().get(), 1, "flipped-outline"));
}

TEST(TextDrawing, ObeysAlphaAndARoundClip)
{
    const text::Line line = lineOf(u"MMMM", 16);
    const Picture whole(60, 30);
    quartz::drawTextLine(whole, line, { 2, 10 }, { 0, 0, 0, 1 });
    const Picture faded(60, 30);
    CGContextSetAlpha(faded, 0.5);
    quartz::drawTextLine(faded, line, { 2, 10 }, { 0, 0, 0, 1 });
    const Picture clipped(60, 30);
    CGContextAddEllipseInRect(clipped, CGRectMake(0, 0, 30, 30));
    CGContextClip(clipped);
    quartz::drawTextLine(clipped, line, { 2, 10 }, { 0, 0, 0, 1 });
    const int ink = inkBetween(whole, 0, 30);
    EXPECT_NEAR(inkBetween(faded, 0, 30), ink / 2.0, ink * 0.02);
    EXPECT_LT(inkBetween(clipped, 0, 30), ink * 3 / 4);
    EXPECT_GT(inkBetween(clipped, 0, 30), ink / 4);
}

}
