// SPDX-License-Identifier: Apache-2.0
#include "PixelMapping.h"

#include <algorithm>
#include <cmath>

namespace brindle::display {

int saturatedPixel(double value)
{
    if (std::isnan(value))
        return 0;
    const double limit = kLargestPixel;
    return static_cast<int>(std::floor(std::clamp(value, -limit, limit) + 0.5));
}

PixelSize pixelSizeOf(CGSize size, double scale)
{
    return { std::max(1, saturatedPixel(size.width * scale)),
        std::max(1, saturatedPixel(size.height * scale)) };
}

PixelRect PixelMapping::pixels(CGRect frame) const
{
    const PixelSize size = pixelSizeOf(frame.size, scale);
    const int x = saturatedPixel(left + frame.origin.x * scale);
    const int y = saturatedPixel(bottom - (frame.origin.y + frame.size.height) * scale);
    return { x, y, x + size.width, y + size.height };
}

CGRect PixelMapping::points(PixelRect rect) const
{
    return { points(rect.left, rect.bottom), { rect.width() / scale, rect.height() / scale } };
}

CGPoint PixelMapping::points(double x, double y) const
{
    return { (x - left) / scale, (bottom - y) / scale };
}

}
