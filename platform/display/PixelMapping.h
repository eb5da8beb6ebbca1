// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Types.h"
#include "runtime/Export.h"

namespace brindle::display {

/// The largest width, height or distance that is passed on; image sides end here too.
inline constexpr int kLargestPixel = 32767;

/// Rounds to the nearest whole number from -32767 to 32767, halves upward; NaN gives 0.
BRINDLE_EXPORT int saturatedPixel(double value);

/// Answers the size in pixels of a frame at a scale: rounded, from 1 to 32767.
BRINDLE_EXPORT PixelSize pixelSizeOf(CGSize size, double scale);

/// Takes points (y up, origin at the bottom-left of the primary screen) to device pixels (y down) and back.
struct BRINDLE_EXPORT PixelMapping {
    double scale = 1;
    int left = 0; ///< the primary screen's left edge in pixels
    int bottom = 0; ///< the primary screen's bottom edge in pixels, just outside

    /// Answers the pixels of a frame. Its corner is rounded once and its size once, so that a moved frame keeps its size.
    PixelRect pixels(CGRect frame) const;
    CGRect points(PixelRect rect) const;
    CGPoint points(double x, double y) const;
    friend bool operator==(const PixelMapping&, const PixelMapping&) = default;
};

}
