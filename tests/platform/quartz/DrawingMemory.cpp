// SPDX-License-Identifier: Apache-2.0
#include "quartz/DrawingMemory.h"

#include <gtest/gtest.h>

#include "quartz/text/GlyphCache.h"

namespace brindle {

namespace {

    void drawLetters(double firstSize, int sizes)
    {
        const text::FontFace& face = *text::FontFace::named("LiberationSans");
        text::GlyphCache::Session session(text::GlyphCache::shared());
        for (int size = 0; size < sizes; ++size) {
            for (char32_t letter = U'a'; letter <= U'z'; ++letter)
                session.mask(face, face.glyphFor(letter), firstSize + size / 8.0, 0);
        }
    }

}

TEST(DrawingMemory, GrowsWithLettersOfANewSize)
{
    const std::size_t before = drawingMemoryInUse();
    drawLetters(101.5, 1);
    EXPECT_GT(drawingMemoryInUse(), before + 26 * 128);
}

TEST(DrawingMemory, IsBounded)
{
    drawLetters(60, 400);
    EXPECT_LT(drawingMemoryInUse(), std::size_t { 12 } << 20);
}

}
