// SPDX-License-Identifier: Apache-2.0
#include "quartz/text/Truncation.h"

#include <string>

#include <gtest/gtest.h>

namespace brindle::text {

namespace {

    TruncatedLine truncated(std::u16string_view text, double width, TruncationPlace place)
    {
        const FontRun run { NSMakeRange(0, text.size()),
            { FontFace::named("LiberationMono"), 10 } };
        return shapeTruncatedLine(text, std::span(&run, 1), width, place);
    }

    double cells(double count)
    {
        const Font font { FontFace::named("LiberationMono"), 10 };
        return count * font.advance(font.face->glyphFor(U'n'));
    }

}

TEST(TextTruncation, TextThatFitsIsLeftAlone)
{
    const TruncatedLine line = truncated(u"abcdef", cells(6) + 0.01, TruncationPlace::tail);
    EXPECT_EQ(line.line.text(), u"abcdef");
    EXPECT_EQ(line.removed.length, 0u);
}

TEST(TextTruncation, TailGivesWay)
{
    const TruncatedLine line = truncated(u"abcdefgh", cells(4.5), TruncationPlace::tail);
    EXPECT_EQ(line.line.text(), u"abc…");
    EXPECT_EQ(line.removed, NSMakeRange(3, 5));
}

TEST(TextTruncation, HeadGivesWay)
{
    const TruncatedLine line = truncated(u"abcdefgh", cells(4.5), TruncationPlace::head);
    EXPECT_EQ(line.line.text(), u"…fgh");
    EXPECT_EQ(line.removed, NSMakeRange(0, 5));
}

TEST(TextTruncation, MiddleGivesWay)
{
    const TruncatedLine line = truncated(u"abcdefgh", cells(4.5), TruncationPlace::middle);
    EXPECT_EQ(line.line.text(), u"ab…h");
    EXPECT_EQ(line.removed, NSMakeRange(2, 5));
}

TEST(TextTruncation, KeepsAsMuchAsFits)
{
    const std::u16string text(200, u'n');
    for (const double room : { 1.5, 16.5, 17.5, 33.5, 100.5, 199.5 }) {
        const TruncatedLine line = truncated(text, cells(room), TruncationPlace::tail);
        EXPECT_EQ(line.line.text().size(), static_cast<std::size_t>(room));
    }
}

TEST(TextTruncation, WithoutRoomTheEllipsisStaysAlone)
{
    EXPECT_EQ(truncated(u"abc", 0, TruncationPlace::middle).line.text(), u"…");
    EXPECT_EQ(truncated(u"abc", -10, TruncationPlace::tail).line.text(), u"…");
}

TEST(TextTruncation, RemovesWholeCharacters)
{
    const TruncatedLine line
        = truncated(u"ae\u0301e\u0301e\u0301", cells(3.5), TruncationPlace::tail);
    EXPECT_EQ(line.line.text(), u"ae\u0301…");
}

TEST(TextTruncation, EllipsisTakesTheFontItStandsIn)
{
    const FontRun runs[] { { NSMakeRange(0, 4), { FontFace::named("LiberationMono"), 10 } },
        { NSMakeRange(4, 4), { FontFace::named("LiberationMono-Bold"), 10 } } };
    const TruncatedLine line
        = shapeTruncatedLine(u"abcdefgh", runs, cells(6.5), TruncationPlace::tail);
    EXPECT_EQ(line.line.text(), u"abcde…");
    ASSERT_EQ(line.line.runs().size(), 2u);
    EXPECT_EQ(line.line.runs()[1].range, NSMakeRange(4, 2));
    EXPECT_EQ(line.line.runs()[1].font.face->postScriptName(), "LiberationMono-Bold");
}

}
