// SPDX-License-Identifier: Apache-2.0
#include "quartz/TextDrawing.h"
#include "quartz/text/GlyphCache.h"
#include "quartz/text/Unicode.h"

#include "support/Pixels.h"

namespace brindle {

using namespace std::string_view_literals;
using test::Picture;

namespace {

    text::Line lineOf(std::u16string_view string, double size = 16)
    {
        return text::shapeLine(string, { text::FontFace::named("DejaVuSans"), size });
    }

    /// Answers for each run whether it is of coloured pictures: "p" or "s" for signs.
    std::string kindsOf(std::u16string_view string)
    {
        const text::Line line = lineOf(string);
        std::string kinds;
        for (const text::LineRun& run : line.runs())
            kinds += run.font.face->isColored() ? 'p' : 's';
        return kinds;
    }

    /// Answers how many glyphs show something.
    std::size_t visibleGlyphs(std::u16string_view string)
    {
        const text::Line line = lineOf(string);
        return static_cast<std::size_t>(std::ranges::count_if(
            line.glyphs(), [](const text::LineGlyph& glyph) { return glyph.advance > 0; }));
    }

    /// Answers how strongly a picture is coloured: the sum of the differences of its pixels' parts.
    int colorIn(const Picture& picture)
    {
        const Ref<CGImage> image = picture.image();
        int sum = 0;
        for (std::size_t y = 0; y < image->height(); ++y) {
            for (std::size_t x = 0; x < image->width(); ++x) {
                const test::Rgba pixel = test::pixelAt(image.get(), x, y);
                sum += std::abs(pixel.red - pixel.blue) + std::abs(pixel.green - pixel.blue);
            }
        }
        return sum;
    }

}

TEST(TextEmoji, ACharacterThatIsAPictureByItselfIsOne) { EXPECT_EQ(kindsOf(u"a😀b"), "sps"); }

TEST(TextEmoji, ASignStaysOneUnlessAPictureIsAskedFor)
{
    EXPECT_EQ(kindsOf(u"❤"), "s");
    EXPECT_EQ(kindsOf(u"❤\uFE0F"), "p");
}

TEST(TextEmoji, APictureBecomesASignWhereThatIsAskedFor) { EXPECT_EQ(kindsOf(u"⚡\uFE0E"), "s"); }

TEST(TextEmoji, DigitsAreNoPictures) { EXPECT_EQ(kindsOf(u"0123#*©®"), "s"); }

TEST(TextEmoji, ADigitOnAKeycapIsOnePicture)
{
    EXPECT_EQ(kindsOf(u"1\uFE0F\u20E3"), "p");
    EXPECT_EQ(visibleGlyphs(u"1\uFE0F\u20E3"), 1u);
}

TEST(TextEmoji, JoinedPeopleAreOnePicture)
{
    EXPECT_EQ(kindsOf(u"👩\u200D👩\u200D👧"), "p");
    EXPECT_EQ(visibleGlyphs(u"👩\u200D👩\u200D👧"), 1u);
}

TEST(TextEmoji, ASignJoinedToAPictureNeedsNoSelector)
{
    EXPECT_EQ(kindsOf(u"🤷\u200D♂"), "p");
    EXPECT_EQ(visibleGlyphs(u"🤷\u200D♂"), 1u);
}

TEST(TextEmoji, AToneOfSkinColoursItsHand) { EXPECT_EQ(visibleGlyphs(u"👍🏽"), 1u); }

TEST(TextEmoji, TwoLettersOfARegionAreAFlag) { EXPECT_EQ(visibleGlyphs(u"🇩🇪"), 1u); }

TEST(TextEmoji, LettersAfterAPictureAreInTheirOwnFont)
{
    const text::Line line = lineOf(u"😀1");
    ASSERT_EQ(line.runs().size(), 2u);
    EXPECT_EQ(line.runs()[1].font.face, text::FontFace::named("DejaVuSans"));
}

TEST(TextEmoji, OnlyPicturesByThemselvesCountAsSuch)
{
    for (const char32_t picture :
        U"⌚⏳◾☔♈♿⚓⚡⚪⚽⛄⛎⛔⛪⛲⛵⛺⛽✅✊✨❌❎❓❗➕➰➿⬛⭐⭕😀🃏🆎🧡"sv)
        EXPECT_TRUE(text::isPictureByItself(picture)) << std::hex << static_cast<unsigned>(picture);
    for (const char32_t sign : U"aé⌘⌥→✓☺❤✔⏏▶♥©™0漢🌶🕊"sv)
        EXPECT_FALSE(text::isPictureByItself(sign)) << std::hex << static_cast<unsigned>(sign);
}

TEST(TextEmoji, ThePictureIsAsLargeAsItsLetters)
{
    const text::FontFace& face = *lineOf(u"😀").runs().front().font.face;
    text::GlyphCache cache(1 << 20);
    const text::GlyphMask mask
        = text::GlyphCache::Session(cache).mask(face, face.glyphFor(U'😀'), 40, 0);
    EXPECT_EQ(mask.coverage, nullptr);
    ASSERT_NE(mask.pixels, nullptr);
    EXPECT_NEAR(mask.width, 40 * face.advance(face.glyphFor(U'😀')), 3);
    EXPECT_NEAR(mask.height, 47, 3);
    EXPECT_GE(cache.bytesInUse(), static_cast<std::size_t>(mask.width * mask.height) * 4);
}

TEST(TextEmoji, KeepsItsOwnColours)
{
    const Picture picture(30, 30);
    quartz::drawTextLine(picture, lineOf(u"😀"), { 4, 8 }, { 0, 0, 0, 1 });
    EXPECT_GT(colorIn(picture), 10000);
}

TEST(TextEmoji, FadesWithTheTextsColour)
{
    const Picture faint(30, 30);
    quartz::drawTextLine(faint, lineOf(u"😀"), { 4, 8 }, { 0, 0, 0, 0.5 });
    const Picture full(30, 30);
    quartz::drawTextLine(full, lineOf(u"😀"), { 4, 8 }, { 0, 0, 0, 1 });
    const Ref<CGImage> faintImage = faint.image();
    const Ref<CGImage> fullImage = full.image();
    EXPECT_NEAR(test::pixelAt(faintImage.get(), 14, 16).alpha, 128, 3);
    EXPECT_EQ(test::pixelAt(fullImage.get(), 14, 16).alpha, 255);
}

TEST(TextEmoji, LooksTheSameFlippedTurnedAndEnlarged)
{
    const text::Line line = lineOf(u"😀", 300);
    const Picture plain(400, 400);
    quartz::drawTextLine(plain, line, { 10, 80 }, { 0, 0, 0, 1 });
    const Picture flipped(400, 400);
    CGContextTranslateCTM(flipped, 0, 400);
    CGContextScaleCTM(flipped, 1, -1);
    quartz::drawTextLine(flipped, line, { 10, 320 }, { 0, 0, 0, 1 });
    EXPECT_GT(colorIn(plain), 1000000);
    EXPECT_TRUE(test::areAlike(plain.image().get(), flipped.image().get(), 2, "flipped-emoji"));
}

}
