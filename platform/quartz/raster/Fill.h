// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>

#include "Bitmap.h"

namespace brindle::raster {

/// Fills a rectangle with one colour. Edges inside a pixel cover it in part, in steps of 1/256.
/// - clip: whole device pixels; the bitmap's own bounds always clip too.
void fillRect(
    const Bitmap& bitmap, const DeviceRect& rect, PixelRect clip, const Color& color, Blend blend);

/// A colour on a gradient's way from 0 to 1. Stops are in order; two at one place make a hard edge.
struct GradientStop {
    double offset = 0;
    Color color;
    friend bool operator==(const GradientStop&, const GradientStop&) = default;
};

enum class GradientAxis { horizontal, vertical };

/// A gradient along one axis; beyond its ends the end colours go on.
struct Gradient {
    GradientAxis axis = GradientAxis::vertical;
    double start = 0; // device pixels on the axis where offset 0 lies
    double end = 0; // where offset 1 lies; may be smaller than start
    std::span<const GradientStop> stops;
};

/// Fills a rectangle with a gradient. No stops or no length draws nothing.
void fillGradient(const Bitmap& bitmap, const DeviceRect& rect, PixelRect clip,
    const Gradient& gradient, Blend blend);

}
