// SPDX-License-Identifier: Apache-2.0
#include "quartz/text/Line.h"
#include "quartz/text/Shaper.h"

#include <algorithm>
#include <string>
#include <thread>

#include <gtest/gtest.h>

namespace brindle::text {

namespace {

    Font liberation(double size = 2048) { return { FontFace::named("LiberationSans"), size }; }
    Font inter(double size = 13) { return { FontFace::named("Inter-Regular"), size }; }

    std::vector<double> places(const Line& line)
    {
        std::vector<double> result;
        for (const LineGlyph& glyph : line.glyphs())
            result.push_back(glyph.x);
        return result;
    }

    std::vector<std::uint32_t> clusters(const Line& line)
    {
        std::vector<std::uint32_t> result;
        for (const LineGlyph& glyph : line.glyphs())
            result.push_back(glyph.cluster);
        return result;
    }

}

TEST(TextShaping, WidthIsTheSumOfTheAdvances)
{
    EXPECT_DOUBLE_EQ(shapeLine(u"Hn", liberation()).width(), 1479 + 1139);
}

TEST(TextShaping, NeighboursAreKerned)
{
    const double apart
        = shapeLine(u"A", liberation()).width() + shapeLine(u"V", liberation()).width();
    EXPECT_DOUBLE_EQ(shapeLine(u"AV", liberation()).width(), apart - 152);
}

TEST(TextShaping, LetterBeforeASpaceIsKernedToo)
{
    EXPECT_DOUBLE_EQ(shapeLine(u"A n", liberation()).width(), 1366 + 569 + 1139 - 113);
}

TEST(TextShaping, SpaceBeforeALetterIsKernedToo)
{
    EXPECT_DOUBLE_EQ(shapeLine(u"n A", liberation()).width(), 1139 + 569 + 1366 - 113);
}

TEST(TextShaping, SizeScalesEveryPlaceExactly)
{
    const std::vector<double> small = places(shapeLine(u"Wolf AVATAR", liberation(13)));
    const std::vector<double> large = places(shapeLine(u"Wolf AVATAR", liberation(26)));
    ASSERT_EQ(small.size(), large.size());
    for (std::size_t i = 0; i < small.size(); ++i)
        EXPECT_DOUBLE_EQ(large[i], 2 * small[i]);
}

TEST(TextShaping, MeasuringAgreesWithShaping)
{
    for (const std::u16string_view text : { u"", u" ", u"Save As…", u"A n A  n", u"Привет, мир",
             u"one שלום two", u"tab\there", u"中文 fallback" }) {
        for (const Font& font : { inter(), liberation(11) }) {
            const LineMetrics measured = measureLine(text, font);
            const LineMetrics shaped = shapeLine(text, font).metrics();
            EXPECT_DOUBLE_EQ(measured.width, shaped.width);
            EXPECT_DOUBLE_EQ(measured.ascent, shaped.ascent);
            EXPECT_DOUBLE_EQ(measured.descent, shaped.descent);
        }
    }
}

TEST(TextShaping, EmptyTextHasTheHeightOfItsFont)
{
    const Line line = shapeLine(u"", inter(20));
    EXPECT_EQ(line.width(), 0);
    EXPECT_TRUE(line.glyphs().empty());
    EXPECT_DOUBLE_EQ(line.metrics().ascent, inter(20).ascender());
    EXPECT_DOUBLE_EQ(line.metrics().descent, -inter(20).descender());
}

TEST(TextShaping, WithoutAFaceALineIsEmpty)
{
    const Line line = shapeLine(u"text", Font {});
    EXPECT_EQ(line.width(), 0);
    EXPECT_TRUE(line.glyphs().empty());
    EXPECT_EQ(measureLine(u"text", Font {}).width, 0);
}

TEST(TextShaping, RightToLeftWordIsLaidFromItsEnd)
{
    const Line line = shapeLine(u"אבג", liberation());
    ASSERT_EQ(line.runs().size(), 1u);
    EXPECT_TRUE(line.runs()[0].rightToLeft);
    EXPECT_EQ(clusters(line), (std::vector<std::uint32_t> { 2, 1, 0 }));
}

TEST(TextShaping, RightToLeftSentenceKeepsItsWordsInOrder)
{
    const Line line = shapeLine(u"אב גד", liberation());
    EXPECT_EQ(clusters(line), (std::vector<std::uint32_t> { 4, 3, 2, 1, 0 }));
    EXPECT_TRUE(std::ranges::is_sorted(places(line)));
}

TEST(TextShaping, ForeignWordTurnsAroundInsideTheLine)
{
    const Line line = shapeLine(u"a אב c", liberation());
    EXPECT_EQ(clusters(line), (std::vector<std::uint32_t> { 0, 1, 3, 2, 4, 5 }));
}

TEST(TextShaping, BaseDirectionMovesTheClosingMark)
{
    EXPECT_EQ(clusters(shapeLine(u"ab!", liberation(), BaseDirection::leftToRight)).back(), 2u);
    EXPECT_EQ(clusters(shapeLine(u"ab!", liberation(), BaseDirection::rightToLeft)).front(), 2u);
}

TEST(TextShaping, RightToLeftLettersBeyondTheFirstPlaneAreTurned)
{
    // The letters of a Cypriot word, which no installed font need have.
    const Line line = shapeLine(u"a \U00010800\U00010801", liberation());
    ASSERT_EQ(line.runs().size(), 2u);
    EXPECT_TRUE(line.runs()[1].rightToLeft);
}

TEST(TextShaping, PunctuationStaysInTheLineOfItsFont)
{
    EXPECT_EQ(shapeLine(u"“Save As…” – it’s •", inter()).runs().size(), 1u);
}

TEST(TextShaping, ArabicLettersJoin)
{
    const Font font { FontFace::named("DejaVu Sans"), 2048 };
    const Line joined = shapeLine(u"بب", font);
    const Line alone = shapeLine(u"ب", font);
    ASSERT_EQ(joined.glyphs().size(), 2u);
    EXPECT_NE(joined.glyphs()[0].glyph, alone.glyphs()[0].glyph);
}

TEST(TextShaping, MissingCharactersComeFromAnotherFont)
{
    const Line line = shapeLine(u"a ב c", inter());
    ASSERT_EQ(line.runs().size(), 3u);
    EXPECT_EQ(line.runs()[1].font.face->postScriptName(), "DejaVuSans");
    for (const LineGlyph& glyph : line.glyphs())
        EXPECT_NE(glyph.glyph, 0u);
}

TEST(TextShaping, BoldTextFallsBackToABoldFont)
{
    const Line line = shapeLine(u"ב", Font { FontFace::named("Inter-Bold"), 13 });
    EXPECT_EQ(line.runs()[0].font.face->postScriptName(), "DejaVuSans-Bold");
}

TEST(TextShaping, LineIsAsTallAsItsTallestFont)
{
    const Line line = shapeLine(u"aב", inter());
    EXPECT_DOUBLE_EQ(line.metrics().ascent,
        std::max(inter().ascender(), Font { FontFace::named("DejaVuSans"), 13 }.ascender()));
}

TEST(TextShaping, CharacterThatNoFontHasKeepsItsOwnFont)
{
    const Line line = shapeLine(u"\U000F0000", inter());
    ASSERT_EQ(line.runs().size(), 1u);
    EXPECT_EQ(line.runs()[0].font.face, inter().face);
    EXPECT_EQ(line.glyphs()[0].glyph, 0u);
}

TEST(TextShaping, MarkStaysWithItsBase)
{
    const Line line = shapeLine(u"e\u0301x", inter());
    EXPECT_EQ(line.runs().size(), 1u);
    EXPECT_EQ(clusters(line).back(), 2u);
    EXPECT_DOUBLE_EQ(line.width(), shapeLine(u"éx", inter()).width());
}

TEST(TextShaping, ControlCharactersTakeNoRoom)
{
    const std::u16string_view text(u"a\0b\r\n\u0085", 6);
    EXPECT_DOUBLE_EQ(shapeLine(text, inter()).width(),
        shapeLine(u"a", inter()).width() + shapeLine(u"b", inter()).width());
    EXPECT_EQ(shapeLine(text, inter()).text(), text);
}

TEST(TextShaping, TabIsAsWideAsASpace)
{
    EXPECT_DOUBLE_EQ(shapeLine(u"\t", inter()).width(), shapeLine(u" ", inter()).width());
}

TEST(TextShaping, HalfAPairIsShownAndKept)
{
    const std::u16string text { u'a', char16_t { 0xD800 }, u'b', char16_t { 0xDC00 } };
    const Line line = shapeLine(text, inter());
    EXPECT_EQ(line.text(), text);
    EXPECT_EQ(clusters(line), (std::vector<std::uint32_t> { 0, 1, 2, 3 }));
}

TEST(TextShaping, FontsChangeWhereTheRunsSay)
{
    const FontRun runs[] { { NSMakeRange(0, 2), inter(10) }, { NSMakeRange(2, 2), inter(20) } };
    const Line line = shapeLine(u"abcd", runs);
    ASSERT_EQ(line.runs().size(), 2u);
    EXPECT_EQ(line.runs()[0].font.size, 10);
    EXPECT_EQ(line.runs()[1].range, NSMakeRange(2, 2));
    EXPECT_DOUBLE_EQ(line.runs()[1].x, line.runs()[0].width);
    EXPECT_DOUBLE_EQ(line.metrics().ascent, inter(20).ascender());
}

TEST(TextShaping, RunsBeyondTheTextAreCut)
{
    const FontRun runs[] { { NSMakeRange(1, ~NSUInteger { 0 }), inter(10) },
        { NSMakeRange(~NSUInteger { 0 }, 5), inter(20) } };
    const Line line = shapeLine(u"abc", runs);
    ASSERT_EQ(line.runs().size(), 1u);
    EXPECT_EQ(line.runs()[0].range, NSMakeRange(1, 2));
}

TEST(TextShaping, AnswerDoesNotDependOnWhatWasSeenBefore)
{
    const std::u16string_view sentence = u"A To P. L Y 10 x 20 -> (A) LT AV fi VA T a";
    clearWordCache();
    const std::vector<double> fresh = places(shapeLine(sentence, liberation()));
    EXPECT_EQ(places(shapeLine(sentence, liberation())), fresh);
    clearWordCache();
    for (std::size_t at = 0; at < sentence.size(); ++at)
        shapeLine(sentence.substr(at), liberation());
    EXPECT_EQ(places(shapeLine(sentence, liberation())), fresh);
}

TEST(TextShaping, ContextAcrossWordsDoesNotDependOnWhatWasSeenBefore)
{
    const std::u16string_view sentence = u"3 x 4 A - B ( A ) : 10 : 20 a -> b";
    clearWordCache();
    const Line fresh = shapeLine(sentence, inter());
    clearWordCache();
    for (std::size_t at = sentence.size(); at-- > 0;)
        shapeLine(sentence.substr(at), inter());
    const Line later = shapeLine(sentence, inter());
    EXPECT_EQ(places(later), places(fresh));
    for (std::size_t i = 0; i < fresh.glyphs().size(); ++i)
        EXPECT_EQ(later.glyphs()[i].glyph, fresh.glyphs()[i].glyph);
}

TEST(TextShaping, LongWordsAreShapedLikeShortOnes)
{
    const std::u16string word(600, u'n');
    EXPECT_DOUBLE_EQ(shapeLine(word + u" A", liberation()).width(), 600 * 1139 + 569 + 1366 - 113);
}

TEST(TextShaping, ThreadsMeasureTheSame)
{
    std::array<double, 4> widths {};
    const auto measure = [](double& width) {
        for (int round = 0; round < 50; ++round)
            width = measureLine(u"Several words, זה and עוד, measured at once", inter()).width;
    };
    std::vector<std::thread> threads;
    for (double& width : widths)
        threads.emplace_back(measure, std::ref(width));
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(std::ranges::count(widths, widths[0]), 4);
}

}
