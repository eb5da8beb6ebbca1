// SPDX-License-Identifier: Apache-2.0
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

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

}
