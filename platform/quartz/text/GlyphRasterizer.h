// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "FontFace.h"

namespace brindle::text {

/// A glyph's mask with the memory that holds it.
struct DrawnGlyph {
    std::vector<std::uint8_t> coverage;
    std::vector<std::uint32_t> pixels; // of a coloured glyph, in place of coverage
    int width = 0;
    int height = 0;
    int left = 0;
    int top = 0;
};

/// Draws one glyph with exact coverage, unhinted.
///
/// Thread: one at a time for the whole process; the glyph cache's lock sees to that.
/// - pixelsPerEm64: device pixels an em, in 64ths.
/// - shift64: how far to the right of a whole pixel, in 64ths.
/// - Returns: an empty mask for a blank or unreadable glyph.
DrawnGlyph drawGlyph(const FontFace& face, GlyphId glyph, int pixelsPerEm64, int shift64);

/// A coloured glyph as its file holds it, with its place in parts of the em.
struct GlyphPicture {
    std::vector<std::uint32_t> pixels; // alpha in the top byte, the rest multiplied by it
    int width = 0;
    int height = 0;
    NSRect place; // from the glyph's origin, y up
};

/// Answers the picture of a coloured face's glyph.
///
/// Thread: as `drawGlyph`.
/// - pixelsPerEm: the size at which it will be shown; the next larger picture of the file is taken.
/// - Returns: an empty picture for a blank or unreadable glyph.
GlyphPicture readPicture(const FontFace& face, GlyphId glyph, double pixelsPerEm);

}
