// SPDX-License-Identifier: Apache-2.0
#include "quartz/text/Line.h"

#include <gtest/gtest.h>

namespace brindle::text {

namespace {

    Line line(std::u16string_view text)
    {
        return shapeLine(text, { FontFace::named("DejaVuSans"), 20 });
    }

    double width(std::u16string_view text) { return line(text).width(); }

}

TEST(TextCaret, StandsAfterTheLettersBeforeIt)
{
    const Line abc = line(u"nmn");
    EXPECT_DOUBLE_EQ(abc.caretOffset(0), 0);
    EXPECT_DOUBLE_EQ(abc.caretOffset(1), width(u"n"));
    EXPECT_DOUBLE_EQ(abc.caretOffset(2), width(u"nm"));
    EXPECT_DOUBLE_EQ(abc.caretOffset(3), abc.width());
}

TEST(TextCaret, PlaceBeyondTheTextIsItsEnd)
{
    EXPECT_DOUBLE_EQ(line(u"nn").caretOffset(99), width(u"nn"));
    EXPECT_EQ(line(u"nn").indexAt(1e9), 2u);
    EXPECT_EQ(line(u"nn").indexAt(-1e9), 0u);
}

TEST(TextCaret, EmptyLineHasOnePlace)
{
    EXPECT_EQ(line(u"").caretOffset(0), 0);
    EXPECT_EQ(line(u"").indexAt(5), 0u);
}

TEST(TextCaret, ClickTakesTheNearerEdge)
{
    const Line text = line(u"nn");
    const double letter = width(u"n");
    EXPECT_EQ(text.indexAt(letter * 0.4), 0u);
    EXPECT_EQ(text.indexAt(letter * 0.6), 1u);
    EXPECT_EQ(text.indexAt(letter * 1.6), 2u);
}

TEST(TextCaret, NeverStandsInsideACharacter)
{
    const Line marked = line(u"ne\u0301n");
    EXPECT_DOUBLE_EQ(marked.caretOffset(2), marked.caretOffset(1));
    for (double x = 0; x < marked.width(); x += 0.25)
        EXPECT_NE(marked.indexAt(x), 2u);
}

TEST(TextCaret, NeverStandsInsideAPair)
{
    const Line pair = line(u"a\U0001D400b");
    EXPECT_DOUBLE_EQ(pair.caretOffset(2), pair.caretOffset(1));
    for (double x = 0; x < pair.width(); x += 0.25)
        EXPECT_NE(pair.indexAt(x), 2u);
}

TEST(TextCaret, DividesALigature)
{
    const Line ligature = line(u"nfi");
    ASSERT_EQ(ligature.glyphs().size(), 2u);
    const double start = ligature.caretOffset(1);
    EXPECT_DOUBLE_EQ(ligature.caretOffset(2), (start + ligature.caretOffset(3)) / 2);
}

TEST(TextCaret, BeginsAtTheRightOfARightToLeftWord)
{
    const Line hebrew = line(u"אבג");
    EXPECT_DOUBLE_EQ(hebrew.caretOffset(0), hebrew.width());
    EXPECT_NEAR(hebrew.caretOffset(3), 0, 1e-9);
    EXPECT_EQ(hebrew.indexAt(0), 3u);
    EXPECT_EQ(hebrew.indexAt(hebrew.width()), 0u);
}

TEST(TextCaret, EveryCharacterOfAMixedLineCanBeReached)
{
    const Line mixed = line(u"ab אבג cd");
    for (const std::size_t index : { 1u, 4u, 5u, 8u })
        EXPECT_EQ(mixed.indexAt(mixed.caretOffset(index)), index);
}

}
