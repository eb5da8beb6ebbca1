// SPDX-License-Identifier: Apache-2.0
#include "DamagePrivate.h"

#include <algorithm>
#include <cmath>

namespace brindle {

namespace {

    using display::PixelRect;
    PixelRect united(PixelRect a, PixelRect b)
    {
        return { std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
            std::max(a.bottom, b.bottom) };
    }
    double areaOf(PixelRect r) { return static_cast<double>(r.width()) * r.height(); }

    // Overlapping rectangles, and neighbours that waste at most a quarter, are better drawn as one.
    bool belongTogether(PixelRect a, PixelRect b)
    {
        return !intersection(a, b).isEmpty()
            || areaOf(united(a, b)) <= 1.25 * (areaOf(a) + areaOf(b));
    }

    // NaN and huge numbers end at the window's edge.
    int clamped(double value, int limit)
    {
        return value > 0 ? (value < limit ? static_cast<int>(value) : limit) : 0;
    }

}

void Damage::add(PixelRect rect)
{
    if (rect.isEmpty())
        return;
    for (std::size_t i = 0; i < rects_.size();) {
        if (!belongTogether(rects_[i], rect)) {
            ++i;
            continue;
        }
        rect = united(rects_[i], rect);
        rects_.remove(i);
        i = 0; // the larger one may reach others
    }
    if (rects_.isFull()) {
        for (const PixelRect& other : rects_.all())
            rect = united(rect, other);
        rects_.clear();
    }
    rects_.add(rect);
}

PixelRect Damage::pixelsOf(NSRect rect, double scale, display::PixelSize size)
{
    // A hair of rounding must not cost a row of pixels.
    constexpr double kHair = 1e-6;
    const double height = size.height;
    return { clamped(std::floor(NSMinX(rect) * scale + kHair), size.width),
        clamped(std::floor(height - NSMaxY(rect) * scale + kHair), size.height),
        clamped(std::ceil(NSMaxX(rect) * scale - kHair), size.width),
        clamped(std::ceil(height - NSMinY(rect) * scale - kHair), size.height) };
}

NSRect Damage::pointsOf(PixelRect rect, double scale, display::PixelSize size)
{
    return { { rect.left / scale, (size.height - rect.bottom) / scale },
        { rect.width() / scale, rect.height() / scale } };
}

}
