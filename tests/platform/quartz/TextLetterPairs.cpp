// SPDX-License-Identifier: Apache-2.0
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

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

    class TextLetterPairs : public testing::TestWithParam<const char*> {
    protected:
        Font font() const { return { FontFace::named(GetParam()), 2048 }; }
    };

}

TEST_P(TextLetterPairs, SetWordsAsShapingDoes)
{
    const Font font = this->font();
    ASSERT_NE(font.face, nullptr);
    const std::vector<std::u16string> texts = randomTexts(200);
    std::vector<std::vector<std::array<double, 5>>> shaped;
    for (const std::u16string& text : texts) {
        clearWordCache(); // nothing is known of any pair
        shaped.push_back(glyphsOf(text, font));
    }
    for (const std::u16string& text : texts)
        shapeLine(text, font);
    for (std::size_t i = 0; i < texts.size(); ++i) {
        ASSERT_EQ(glyphsOf(texts[i], font), shaped[i])
            << std::string(texts[i].begin(), texts[i].end());
        double width = 0;
        for (const auto& glyph : shaped[i])
            width += glyph[4];
        ASSERT_DOUBLE_EQ(measureLine(texts[i], font).width, width);
    }
}

INSTANTIATE_TEST_SUITE_P(OfFaces, TextLetterPairs,
    testing::Values("LiberationSans", "LiberationSans-Bold", "LiberationSerif-Italic",
        "LiberationMono", "Inter-Regular", "DejaVuSans", "DejaVuSerif", "DejaVuSansMono"));

TEST(TextLetterPairsLearning, AskShapingForWordsOfNewPairsOnly)
{
    const Font font { FontFace::named("LiberationSans"), 13 };
    clearWordCache();
    measureLine(u"one two three", font);
    const std::uint64_t misses = wordCacheState().misses;
    EXPECT_GT(misses, 0u);
    measureLine(u"onee nee two", font); // new words, of pairs that were there
    EXPECT_EQ(wordCacheState().misses, misses + 1) << "ee before a space is new";
    measureLine(u"tree", font);
    EXPECT_EQ(wordCacheState().misses, misses + 2);
    measureLine(u"tree", font);
    EXPECT_EQ(wordCacheState().misses, misses + 2);
}

TEST(TextLetterPairsLearning, LeaveLettersThatAFaceJoinsToIt)
{
    const Font font { FontFace::named("DejaVuSans"), 13 };
    clearWordCache();
    for (const char16_t* text : { u"af", u"ia", u"f f", u"i fa", u"if" })
        measureLine(text, font);
    EXPECT_EQ(shapeLine(u"fi", font).glyphs().size(), 1u);
    EXPECT_EQ(shapeLine(u"fi", font).glyphs().size(), 1u);
}

TEST(TextLetterPairsLearning, KeepNoWordsOfPlainLetters)
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

TEST(TextLetterTables, ForgetWhatIsTooMuchAndLearnItAgain)
{
    const FontFace& one = *FontFace::named("LiberationSans");
    const FontFace& other = *FontFace::named("LiberationSerif");
    const auto knows = [](LetterPairs& pairs, std::u16string_view text) {
        PieceMeasures measures;
        return pairs.measure(text, 0, measures);
    };
    const auto learn = [](LetterPairs& pairs, const FontFace& face, std::u16string_view text) {
        std::vector<ShapedGlyph> glyphs;
        for (const char16_t letter : text)
            glyphs.push_back({ face.glyphFor(letter), 0, 500, 0, 0 });
        return pairs.learn(text, glyphs);
    };
    LetterTables tables(1); // whatever comes to stand beside a face is too much
    ASSERT_TRUE(learn(tables.of(one), one, u"word"));
    EXPECT_TRUE(knows(tables.of(one), u"word"));
    const std::size_t alone = tables.byteCount();
    EXPECT_FALSE(knows(tables.of(other), u"word"));
    EXPECT_FALSE(knows(tables.of(one), u"word"));
    EXPECT_LT(tables.byteCount(), alone);
    ASSERT_TRUE(learn(tables.of(one), one, u"word"));
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
    EXPECT_EQ(tables.byteCount(), 2 * first->byteCount());
    tables.clear();
    EXPECT_EQ(tables.byteCount(), 0u);
}

}
