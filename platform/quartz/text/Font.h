// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "FontFace.h"

namespace brindle::text {

/// A face at a size. A value: copy it freely. Without a face everything measures zero.
///
/// Measures are points, ideal (not hinted, not rounded).
struct Font {
    const FontFace* face = nullptr;
    double size = 0; // points

    double ascender() const { return face ? face->metrics().ascender * size : 0; }
    /// Negative: how far the face reaches below the baseline.
    double descender() const { return face ? face->metrics().descender * size : 0; }
    double leading() const { return face ? face->metrics().leading * size : 0; }
    double capHeight() const { return face ? face->metrics().capHeight * size : 0; }
    double xHeight() const { return face ? face->metrics().xHeight * size : 0; }
    double advance(GlyphId glyph) const { return face ? face->advance(glyph) * size : 0; }

    /// The rectangle, from the glyph's origin, that holds any glyph of the font; y up.
    NSRect boundingBox() const
    {
        if (!face)
            return NSZeroRect;
        const NSRect box = face->metrics().boundingBox;
        return NSMakeRect(box.origin.x * size, box.origin.y * size, box.size.width * size,
            box.size.height * size);
    }

    friend bool operator==(const Font&, const Font&) = default;
};

}
