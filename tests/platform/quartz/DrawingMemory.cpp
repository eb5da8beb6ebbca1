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

TEST(DrawingMemory, CountsLettersThatWereDrawn)
{
    drawLetters(60, 400);
    EXPECT_GT(drawingMemoryInUse(), std::size_t { 1 } << 20);
}

TEST(DrawingMemory, IsBounded)
{
    drawLetters(60, 400);
    EXPECT_LT(drawingMemoryInUse(), std::size_t { 12 } << 20);
}

}
