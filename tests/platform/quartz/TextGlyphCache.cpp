// SPDX-License-Identifier: Apache-2.0
#include "quartz/text/GlyphCache.h"

#include <numeric>
#include <vector>

#include <gtest/gtest.h>

namespace brindle::text {

namespace {

    const FontFace& face() { return *FontFace::named("LiberationSans"); }

    std::vector<std::uint8_t> bytes(const GlyphMask& mask)
    {
        return { mask.coverage, mask.coverage + mask.width * mask.height };
    }

    double ink(const GlyphMask& mask)
    {
        const std::vector<std::uint8_t> all = bytes(mask);
        return std::accumulate(all.begin(), all.end(), 0.0) / 255;
    }

}

TEST(TextGlyphCache, FlatFootStandsOnTheBaseline)
{
    GlyphCache cache(1 << 20);
    GlyphCache::Session session(cache);
    const GlyphMask mask = session.mask(face(), face().glyphFor(U'H'), 20, 0);
    EXPECT_EQ(mask.top, mask.height);
    EXPECT_EQ(mask.height, 14);
}

TEST(TextGlyphCache, InkIsTheAreaOfTheOutline)
{
    GlyphCache cache(1 << 20);
    GlyphCache::Session session(cache);
    // The letter is one upright bar: 180 by 1484 units of 2048.
    const double area = 180.0 * 1484 * 20 * 20 / 2048 / 2048;
    EXPECT_NEAR(ink(session.mask(face(), face().glyphFor(U'l'), 20, 0)), area, 0.3);
}

TEST(TextGlyphCache, PositionsMoveTheInkByQuarters)
{
    GlyphCache cache(1 << 20);
    GlyphCache::Session session(cache);
    const auto middle = [&](int position) {
        const GlyphMask mask = session.mask(face(), face().glyphFor(U'l'), 20, position);
        double moment = 0;
        for (int y = 0; y < mask.height; ++y)
            for (int x = 0; x < mask.width; ++x)
                moment += (mask.left + x + 0.5) * mask.coverage[y * mask.width + x] / 255;
        return moment / ink(mask);
    };
    // Ink is counted at the middle of its pixel, which is not quite where it is.
    EXPECT_NEAR(middle(1) - middle(0), 0.25, 0.06);
    EXPECT_NEAR(middle(3) - middle(0), 0.75, 0.06);
}

TEST(TextGlyphCache, BlankGlyphHasNoMask)
{
    GlyphCache cache(1 << 20);
    GlyphCache::Session session(cache);
    EXPECT_EQ(session.mask(face(), face().glyphFor(U' '), 20, 0).coverage, nullptr);
    EXPECT_EQ(session.mask(face(), 0x7FFFFFFF, 20, 0).coverage, nullptr);
}

TEST(TextGlyphCache, SizeOfNothingDrawsNothing)
{
    GlyphCache cache(1 << 20);
    GlyphCache::Session session(cache);
    EXPECT_EQ(session.mask(face(), face().glyphFor(U'H'), 0, 0).coverage, nullptr);
    EXPECT_EQ(session.mask(face(), face().glyphFor(U'H'), -3, 0).coverage, nullptr);
}

TEST(TextGlyphCache, MaskIsDrawnOnce)
{
    GlyphCache cache(1 << 20);
    GlyphCache::Session session(cache);
    const GlyphId glyph = face().glyphFor(U'g');
    const std::uint8_t* first = session.mask(face(), glyph, 13, 2).coverage;
    EXPECT_EQ(session.mask(face(), glyph, 13, 2).coverage, first);
}

TEST(TextGlyphCache, FractionalSizesDiffer)
{
    GlyphCache cache(1 << 20);
    GlyphCache::Session session(cache);
    const GlyphId glyph = face().glyphFor(U'H');
    const double whole = ink(session.mask(face(), glyph, 13, 0));
    EXPECT_GT(ink(session.mask(face(), glyph, 13.5, 0)), whole);
}

TEST(TextGlyphCache, MemoryIsBounded)
{
    constexpr std::size_t kLimit = 64 * 1024;
    GlyphCache cache(kLimit);
    for (int size = 8; size < 60; ++size) {
        GlyphCache::Session session(cache);
        for (char32_t letter = U'A'; letter <= U'z'; ++letter)
            session.mask(face(), face().glyphFor(letter), size, size % GlyphCache::kPositions);
    }
    EXPECT_LE(cache.bytesInUse(), kLimit);
    EXPECT_GT(cache.bytesInUse(), 0u);
}

TEST(TextGlyphCache, ForgottenMaskIsDrawnTheSameAgain)
{
    GlyphCache cache(8 * 1024);
    std::vector<std::uint8_t> before;
    {
        GlyphCache::Session session(cache);
        before = bytes(session.mask(face(), face().glyphFor(U'R'), 24, 1));
        for (char32_t letter = U'a'; letter <= U'z'; ++letter)
            session.mask(face(), face().glyphFor(letter), 24, 0);
    }
    GlyphCache::Session session(cache);
    EXPECT_EQ(bytes(session.mask(face(), face().glyphFor(U'R'), 24, 1)), before);
}

}
