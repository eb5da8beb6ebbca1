// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "quartz/text/FontFacePrivate.h"
#include "quartz/text/LetterPairs.h"
#include "quartz/text/Line.h"
#include "quartz/text/Shaper.h"

namespace brindle::text {

namespace {

    /// A glyph of a line, to be compared exactly.
    std::vector<std::array<double, 5>> glyphsOf(std::u16string_view text, const Font& font)
    {
        std::vector<std::array<double, 5>> glyphs;
        const Line line = shapeLine(text, font);
        for (const LineGlyph& glyph : line.glyphs())
            glyphs.push_back({ static_cast<double>(glyph.glyph), static_cast<double>(glyph.cluster),
                glyph.x, glyph.y, glyph.advance });
        return glyphs;
    }

    /// What the shaping library makes of each word, or part of a very long one, with the spaces before it and one
    /// character behind it.
    std::vector<std::array<double, 5>> shapedGlyphsOf(std::u16string_view text, const Font& font)
    {
        std::vector<std::array<double, 5>> glyphs;
        const double unit = font.size / font.face->unitsPerEm();
        const HarfBuzz<hb_buffer_t> buffer(BRINDLE_HARFBUZZ(hb_buffer_create)());
        std::int64_t pen = 0;
        for (std::size_t start = 0, end = 0; start < text.size(); start = end) {
            const std::size_t word = text.find_first_not_of(u' ', start);
            end = std::min(text.find(u' ', std::min(word, text.size())), text.size());
            if (word != text.npos)
                end = std::min(end, word + kLongestSegment);
            const int length = static_cast<int>(std::min(end + 1, text.size()) - start);
            BRINDLE_HARFBUZZ(hb_buffer_clear_contents)(buffer.get());
            BRINDLE_HARFBUZZ(hb_buffer_set_script)(buffer.get(), HB_SCRIPT_LATIN);
            BRINDLE_HARFBUZZ(hb_buffer_set_direction)(buffer.get(), HB_DIRECTION_LTR);
            BRINDLE_HARFBUZZ(hb_buffer_add_utf16)
            (buffer.get(), reinterpret_cast<const std::uint16_t*>(&text[start]), length, 0, length);
            hb_font_t* const shaping = font.face->handles().shaping(*font.face);
            BRINDLE_HARFBUZZ(hb_shape)(shaping, buffer.get(), nullptr, 0);
            unsigned count = 0;
            const auto* infos = BRINDLE_HARFBUZZ(hb_buffer_get_glyph_infos)(buffer.get(), &count);
            const auto* places
                = BRINDLE_HARFBUZZ(hb_buffer_get_glyph_positions)(buffer.get(), &count);
            for (unsigned i = 0; i < count && infos[i].cluster < end - start; ++i) {
                glyphs.push_back({ static_cast<double>(infos[i].codepoint),
                    static_cast<double>(start + infos[i].cluster),
                    static_cast<double>(pen + places[i].x_offset) * unit, places[i].y_offset * unit,
                    places[i].x_advance * unit });
                pen += places[i].x_advance;
            }
        }
        return glyphs;
    }

    /// Words with many letters that faces join or exchange, and signs between them.
    std::vector<std::u16string> randomTexts(std::size_t count)
    {
        std::mt19937 random(7);
        const auto below = [&random](std::size_t limit) { return random() % limit; };
        constexpr std::u16string_view kOften = u"fiflffiTAVLYVAPor..,-10x:()'\"  ";
        std::vector<std::u16string> texts(count);
        for (std::u16string& text : texts) {
            for (std::size_t length = 1 + below(12); length > 0; --length)
                text += below(3) ? kOften[below(kOften.size())]
                                 : static_cast<char16_t>(u' ' + below(0x7F - 0x20));
        }
        return texts;
    }

    class TextLetterPairsOf : public testing::TestWithParam<const char*> {
    protected:
        /// In the face's own units, so that nothing is rounded.
        Font font() const
        {
            const FontFace* const face = FontFace::named(GetParam());
            return { face, face ? face->unitsPerEm() : 0 };
        }
    };

}

TEST_P(TextLetterPairsOf, SetWordsAsShapingDoes)
{
    const Font font = this->font();
    ASSERT_NE(font.face, nullptr);
    clearWordCache();
    for (const std::u16string& text : randomTexts(600)) {
        const auto expected = shapedGlyphsOf(text, font);
        ASSERT_EQ(glyphsOf(text, font), expected) << std::string(text.begin(), text.end());
        double width = 0;
        for (const auto& glyph : expected)
            width += glyph[4];
        ASSERT_DOUBLE_EQ(measureLine(text, font).width, width);
    }
}

TEST_P(TextLetterPairsOf, SetTheLongestWordsAsShapingDoes)
{
    const Font font = this->font();
    ASSERT_NE(font.face, nullptr);
    std::u16string text(300, u' ');
    for (const std::u16string& part : randomTexts(2400)) {
        std::ranges::copy_if(
            part, std::back_inserter(text), [](char16_t unit) { return unit != u' '; });
    }
    ASSERT_GT(text.size(), 2 * kLongestSegment);
    clearWordCache();
    const auto expected = shapedGlyphsOf(text, font);
    EXPECT_EQ(glyphsOf(text, font), expected);
    double width = 0;
    for (const auto& glyph : expected)
        width += glyph[4];
    EXPECT_DOUBLE_EQ(measureLine(text, font).width, width);
}

INSTANTIATE_TEST_SUITE_P(Faces, TextLetterPairsOf,
    testing::Values("LiberationSans", "LiberationSans-Bold", "LiberationSerif-Italic",
        "LiberationMono", "Inter-Regular", "DejaVuSans", "DejaVuSerif", "DejaVuSansMono"));

TEST(TextLetterPairs, AskShapingForNoWordOfPlainLetters)
{
    const Font font { FontFace::named("LiberationSans"), 13 };
    clearWordCache();
    const std::uint64_t misses = wordCacheState().misses;
    measureLine(u"one two three, To AVOID (10 + 20)  ", font);
    EXPECT_EQ(wordCacheState().misses, misses);
    measureLine(u"d\u00E9j\u00E0", font);
    EXPECT_EQ(wordCacheState().misses, misses + 1);
}

TEST(TextLetterPairs, AskShapingForNoWordHoweverLong)
{
    const Font font { FontFace::named("LiberationSans"), 13 };
    const std::u16string text(2 * kLongestSegment + 1, u'x');
    clearWordCache();
    const std::uint64_t hits = wordCacheState().hits;
    EXPECT_NEAR(measureLine(text, font).width,
        measureLine(u"x", font).width * static_cast<double>(text.size()), 1e-6);
    EXPECT_EQ(wordCacheState().hits, hits + 4);
}

TEST(TextLetterPairs, LeaveLettersThatAFaceJoinsToShaping)
{
    const Font font { FontFace::named("DejaVuSans"), 13 };
    clearWordCache();
    EXPECT_EQ(shapeLine(u"fi", font).glyphs().size(), 1u);
    EXPECT_EQ(shapeLine(u"fi", font).glyphs().size(), 1u);
}

TEST(TextLetterPairs, KeepNoWordsOfPlainLetters)
{
    clearWordCache();
    measureLine(u"the quick brown fox", { FontFace::named("LiberationSans"), 13 });
    EXPECT_EQ(wordCacheState().words, 0u);
    measureLine(u"d\u00E9j\u00E0 vu", { FontFace::named("LiberationSans"), 13 });
    EXPECT_EQ(wordCacheState().words, 1u);
}

namespace {

    /// Every plain letter beside every other.
    std::u16string allPairs()
    {
        std::u16string text;
        for (char16_t first = u' '; first < 0x7F; ++first) {
            for (char16_t second = u' '; second < 0x7F; ++second)
                text += { first, second };
            text += u' ';
        }
        return text;
    }

}

TEST(TextLetterTables, StayWithinBoundedMemoryOverManyFonts)
{
    clearWordCache();
    const std::u16string text = allPairs();
    std::size_t fonts = 0;
    for (const std::string& name : FontFace::installedNames()) {
        measureLine(text, { FontFace::named(name), 13 });
        ++fonts;
        EXPECT_LE(wordCacheState().bytes, 2u * 1024 * 1024);
    }
    EXPECT_GT(fonts, 30u) << "too few to tell";
    clearWordCache();
}

TEST(TextLetterTables, CountInTheBytesOfTheWordCache)
{
    clearWordCache();
    EXPECT_EQ(wordCacheState().bytes, 0u);
    measureLine(u"one two three", { FontFace::named("LiberationSans"), 13 });
    const std::size_t some = wordCacheState().bytes;
    EXPECT_GT(some, 0u);
    measureLine(u"quick brown fox", { FontFace::named("LiberationSans"), 13 });
    EXPECT_GT(wordCacheState().bytes, some);
    EXPECT_EQ(wordCacheState().words, 0u);
}

TEST(TextLetterTables, ForgetWhatIsTooMuchAndReadItAgain)
{
    const FontFace& one = *FontFace::named("LiberationSans");
    const FontFace& other = *FontFace::named("LiberationSerif");
    const auto width = [](LetterPairs& pairs) {
        PieceMeasures measures;
        return pairs.measure(u"word", 0, measures) ? measures.advances.whole : -1;
    };
    LetterTables tables(1); // whatever comes to stand beside a face is too much
    const std::size_t empty = tables.of(one).byteCount();
    const std::int64_t known = width(tables.of(one));
    EXPECT_GT(known, 0);
    const std::size_t alone = tables.byteCount();
    EXPECT_GT(alone, empty);
    tables.of(other);
    EXPECT_EQ(tables.of(one).byteCount(), empty);
    EXPECT_EQ(width(tables.of(one)), known);
    EXPECT_EQ(tables.byteCount(), alone);
}

TEST(TextLetterTables, KeepSeveralFontsThatHaveRoom)
{
    const FontFace& one = *FontFace::named("LiberationSans");
    const FontFace& other = *FontFace::named("LiberationSerif");
    LetterTables tables(100'000);
    LetterPairs* const first = &tables.of(one);
    tables.of(other);
    EXPECT_EQ(&tables.of(one), first);
    EXPECT_EQ(tables.byteCount(), first->byteCount() + tables.of(other).byteCount());
    tables.clear();
    EXPECT_EQ(tables.byteCount(), 0u);
}

}
