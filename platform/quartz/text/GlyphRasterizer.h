// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "FontFace.h"

namespace brindle::text {

/// A glyph's mask with the memory that holds it.
struct DrawnGlyph {
    std::vector<std::uint8_t> coverage;
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

}
