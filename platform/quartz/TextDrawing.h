// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "CGContext.h"
#include "raster/Bitmap.h"
#include "text/Line.h"

namespace brindle::quartz {

/// Draws a shaped line, upright in flipped and unflipped spaces: letters are never mirrored.
///
/// Alpha, blend mode, clip and shadow of the state apply; the state's colours do not.
/// - baseline: where the line starts, user space.
BRINDLE_EXPORT void drawTextLine(
    CGContext* context, const text::Line& line, CGPoint baseline, const raster::Color& color);
BRINDLE_EXPORT void drawTextLine(
    CGContext* context, const text::Line& line, CGPoint baseline, CGColor* color);

/// Answers a colour's parts as RGB, bounded to 0 to 1; transparent for NULL.
BRINDLE_EXPORT raster::Color rasterColor(const CGColor* color);

}
