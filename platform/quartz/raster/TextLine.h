// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Bitmap.h"
#include "quartz/text/Line.h"

namespace brindle::raster {

/// Answers whether `drawLine` can draw a line at a scale: very large letters are drawn as outlines
/// instead.
bool canDrawLine(const text::Line& line, double scale);

/// Draws a shaped line upright; runs that are too large for it are left out.
///
/// Across, glyphs keep their ideal places to a quarter of a device pixel; the baseline is put on
/// the nearest edge between pixel rows.
/// - x, y: device pixels of the line's origin on the baseline, y down.
/// - scale: device pixels a point.
void drawLine(const Bitmap& bitmap, const text::Line& line, double x, double y, double scale,
    PixelRect clip, const Color& color);

}
