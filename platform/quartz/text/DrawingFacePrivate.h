// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "FontFacePrivate.h"
#include "GlyphRasterizer.h"

namespace brindle::text {

/// Answers a face as the drawing library sees it, opened when it is asked for first.
/// - Nil: null when the file cannot be read.
FT_Face drawingFace(const FontFace& face);

/// Draws one glyph of a coloured face at a size.
/// - shift: how far to the right of a whole pixel, 0 to 1.
DrawnGlyph drawPicture(const FontFace& face, GlyphId glyph, double pixelsPerEm, double shift);

}
