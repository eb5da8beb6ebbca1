// SPDX-License-Identifier: Apache-2.0
#include "quartz/text/WordCache.h"

#include <string>

#include <gtest/gtest.h>

namespace brindle::text {

namespace {

    WordKey key(std::u16string_view text, bool beforeSpace = false)
    {
        return { { nullptr, kLatin, false }, beforeSpace, text };
    }

    void insert(WordCache& cache, const WordKey& word, std::int64_t advance,
        std::span<const ShapedGlyph> glyphs)
    {
        cache.insert(word, WordCache::hashOf(word), { 0, advance }, glyphs);
    }

    const CachedWord* find(WordCache& cache, const WordKey& word)
    {
        return cache.find(word, WordCache::hashOf(word));
    }

    std::u16string numbered(std::size_t number)
    {
        std::u16string word = u"word";
        for (const char digit : std::to_string(number))
            word += static_cast<char16_t>(digit);
        return word;
    }

}

TEST(TextWordCache, AnswersWhatWasPutIn)
{
    WordCache cache;
    const ShapedGlyph glyphs[] { { 7, 0, 100, 1, 2 }, { 8, 1, 50, 0, 0 } };
    insert(cache, key(u"ab"), 150, glyphs);
    const CachedWord* word = find(cache, key(u"ab"));
    ASSERT_NE(word, nullptr);
    EXPECT_EQ(word->advances.whole, 150);
    ASSERT_EQ(word->glyphs.size(), 2u);
    EXPECT_EQ(word->glyphs[1].glyph, 8u);
}

TEST(TextWordCache, KeepsItsOwnCopyOfTheText)
{
    WordCache cache;
    std::u16string text = u"abc";
    insert(cache, key(text), 1, {});
    text = u"xyz";
    EXPECT_NE(find(cache, key(u"abc")), nullptr);
    EXPECT_EQ(find(cache, key(u"xyz")), nullptr);
}

TEST(TextWordCache, TellsStylesAndSurroundingsApart)
{
    WordCache cache;
    insert(cache, key(u"A"), 1, {});
    insert(cache, key(u"A", true), 2, {});
    EXPECT_EQ(find(cache, key(u"A"))->advances.whole, 1);
    EXPECT_EQ(find(cache, key(u"A", true))->advances.whole, 2);
    EXPECT_EQ(find(cache, { { nullptr, kLatin, true }, false, u"A" }), nullptr);
    EXPECT_EQ(find(cache, { { nullptr, 0x41726162, false }, false, u"A" }), nullptr);
}

TEST(TextWordCache, PassesOverVeryLongWords)
{
    WordCache cache;
    const std::u16string word(WordCache::kLongestWord + 1, u'a');
    insert(cache, key(word), 1, {});
    EXPECT_EQ(find(cache, key(word)), nullptr);
}

TEST(TextWordCache, MemoryIsBounded)
{
    WordCache cache;
    const std::vector<ShapedGlyph> glyphs(40);
    for (std::size_t i = 0; i < 100'000; ++i)
        insert(cache, key(numbered(i)), 1, glyphs);
    EXPECT_LE(cache.byteCount(), 2u * 1024 * 1024);
    EXPECT_NE(find(cache, key(numbered(99'999))), nullptr);
    EXPECT_EQ(find(cache, key(numbered(0))), nullptr);
}

TEST(TextWordCache, ForgottenWordsGiveTheirMemoryToNewOnes)
{
    WordCache cache;
    const std::vector<ShapedGlyph> glyphs(40);
    std::size_t number = 0;
    const auto fill = [&](std::size_t words) {
        for (const std::size_t end = number + words; number < end; ++number)
            insert(cache, key(numbered(number)), 1, glyphs);
        return cache.byteCount();
    };
    const std::size_t full = fill(20'000);
    EXPECT_EQ(fill(1), full);
    EXPECT_EQ(fill(777), full);
    EXPECT_EQ(fill(20'000), full);
}

TEST(TextWordCache, WordsInUseSurvive)
{
    WordCache cache;
    insert(cache, key(u"often"), 42, {});
    for (std::size_t i = 0; i < 50'000; ++i) {
        insert(cache, key(numbered(i)), 1, {});
        ASSERT_NE(find(cache, key(u"often")), nullptr);
    }
    EXPECT_EQ(find(cache, key(u"often"))->advances.whole, 42);
}

TEST(TextWordCache, ClearingForgetsEverything)
{
    WordCache cache;
    insert(cache, key(u"a"), 1, {});
    cache.clear();
    EXPECT_EQ(find(cache, key(u"a")), nullptr);
    EXPECT_EQ(cache.wordCount(), 0u);
    EXPECT_EQ(cache.byteCount(), 0u);
}

}
