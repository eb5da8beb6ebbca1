// SPDX-License-Identifier: Apache-2.0
#include "quartz/text/LineFiller.h"
#include "quartz/text/Shaper.h"
#include "quartz/text/Truncation.h"

#include <cmath>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "support/Memory.h"

namespace brindle::text {

namespace {

    Font font() { return { FontFace::named("Inter-Regular"), 13 }; }

    constexpr std::size_t kMany = 500'000; // a megabyte

    std::u16string repeated(std::u16string_view text, std::size_t units)
    {
        std::u16string result;
        while (result.size() < units)
            result += text;
        return result;
    }

}

TEST(TextHostile, MegabyteOfWordsIsShaped)
{
    const std::u16string text = repeated(u"lorem ipsum ", kMany);
    EXPECT_NEAR(shapeLine(text, font()).width(), measureLine(text, font()).width, 1e-3);
}

TEST(TextHostile, MegabyteWithoutASpaceIsShaped)
{
    const Line line = shapeLine(repeated(u"x", kMany), font());
    EXPECT_EQ(line.glyphs().size(), kMany);
}

TEST(TextHostile, MegabyteOfSpacesIsShaped)
{
    EXPECT_GT(measureLine(repeated(u" ", kMany), font()).width, 0);
}

TEST(TextHostile, AColumnThatEndsBeforeMegabytesOfTextIsMeasuredAlone)
{
    TabStop stop;
    stop.location = 100;
    stop.share = 1;
    stop.endsColumn = [](char16_t c) { return c == u'.'; };
    const auto widthOfColumn = [&stop](std::u16string_view text) {
        StyledRun run;
        run.range = NSMakeRange(0, text.size());
        run.font = font();
        return columnWidth(text, std::span(&run, 1), 0, stop, BaseDirection::leftToRight);
    };
    const std::u16string column = u"24.50 ";
    const std::u16string text = column + repeated(u"lorem ipsum ", 4 * kMany);
    const double wanted = widthOfColumn(column);
    test::forgetPeak();
    const std::size_t before = test::peakBytes();
    EXPECT_EQ(widthOfColumn(text), wanted);
    if (test::growthCanBeMeasured()) {
        EXPECT_LT(test::peakBytes() - before, std::size_t { 4 } << 20);
    }
}

TEST(TextHostile, ChangingDirectionAtEveryLetterIsShaped)
{
    const std::u16string text = repeated(u"aא", 100'000);
    EXPECT_EQ(shapeLine(text, font()).runs().size(), text.size());
}

TEST(TextHostile, TenThousandMarksAreOneCharacter)
{
    const std::u16string text = u"e" + repeated(u"\u0301\u0323", 10'000) + u"x";
    const Line line = shapeLine(text, font());
    EXPECT_DOUBLE_EQ(line.caretOffset(5000), 0);
    EXPECT_GT(line.caretOffset(text.size() - 1), 0);
}

TEST(TextHostile, DeepNestingOfDirectionsIsShaped)
{
    const std::u16string text = repeated(u"\u202B\u2067a", 30'000);
    EXPECT_TRUE(std::isfinite(shapeLine(text, font()).width()));
}

TEST(TextHostile, RandomUnitsKeepEveryCluster)
{
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        std::u16string text;
        for (std::size_t i = random() % 60; i > 0; --i)
            text += static_cast<char16_t>(random());
        const Line line = shapeLine(text, font());
        EXPECT_EQ(line.text(), text);
        for (const LineGlyph& glyph : line.glyphs())
            ASSERT_LT(glyph.cluster, text.size());
        for (std::size_t index = 0; index <= text.size(); ++index)
            ASSERT_TRUE(std::isfinite(line.caretOffset(index)));
    }
}

TEST(TextHostile, LongTextIsTruncatedToItsBeginning)
{
    const std::u16string text = repeated(u"lorem ipsum ", kMany);
    const FontRun run { NSMakeRange(0, text.size()), font() };
    const TruncatedLine line
        = shapeTruncatedLine(text, std::span(&run, 1), 200, TruncationPlace::tail);
    EXPECT_LE(line.line.width(), 200);
    EXPECT_GT(line.line.width(), 180);
}

TEST(TextHostile, ExtremeSizesMeasureWithoutTrouble)
{
    for (const double size : { 0.0, -12.0, 1e-300, 1e300 }) {
        const Line line = shapeLine(u"size", { font().face, size });
        EXPECT_EQ(line.glyphs().size(), 4u);
    }
}

TEST(TextHostile, ManyDifferentWordsStayInBoundedMemory)
{
    std::mt19937 random(11);
    std::u16string text;
    for (int word = 0; word < 40'000; ++word) {
        for (int letter = 0; letter < 9; ++letter)
            text += static_cast<char16_t>(u'a' + random() % 26);
        text += u' ';
    }
    EXPECT_GT(measureLine(text, font()).width, 0);
    EXPECT_LE(wordCacheState().bytes, 2u * 1024 * 1024);
}

}
