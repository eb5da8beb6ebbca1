// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <utility>

#include "FewPrivate.h"
#include "display/Types.h"

namespace brindle {

/// The parts of a window that must be drawn anew: a few rectangles of device pixels that do not overlap.
///
/// Rectangles that touch are joined when that costs little; past a dozen all become one.
class Damage {
public:
    static constexpr std::size_t kMostRects = 12;
    using Rects = Few<display::PixelRect, kMostRects>;

    void add(display::PixelRect rect);
    bool isEmpty() const { return rects_.isEmpty(); }
    void clear() { rects_.clear(); }
    Rects take() { return std::exchange(rects_, {}); }
    std::span<const display::PixelRect> rects() const { return rects_.all(); }

    /// Answers the whole pixels that a rectangle of a window touches.
    /// - rect: points, y up. - scale: pixels a point. - size: of the window, in pixels.
    static display::PixelRect pixelsOf(NSRect rect, double scale, display::PixelSize size);
    /// Answers the rectangle in points, y up.
    static NSRect pointsOf(display::PixelRect rect, double scale, display::PixelSize size);

private:
    Rects rects_;
};

}
