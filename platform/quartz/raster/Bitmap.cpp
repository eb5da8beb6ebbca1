// SPDX-License-Identifier: Apache-2.0
#include "Bitmap.h"

#include "PixelMath.h"

#include <algorithm>
#include <cmath>

namespace brindle::raster {

Pixel pixelFromColor(const Color& color)
{
    const double alpha = clampedUnit(color.alpha);
    return packPixel(alpha, clampedUnit(color.red) * alpha, clampedUnit(color.green) * alpha,
        clampedUnit(color.blue) * alpha);
}

DeviceRect Placement::map(double x, double y, double width, double height) const
{
    const double left = x * scaleX + moveX;
    const double top = y * scaleY + moveY;
    const double right = (x + width) * scaleX + moveX;
    const double bottom = (y + height) * scaleY + moveY;
    return { std::min(left, right), std::min(top, bottom), std::abs(right - left),
        std::abs(bottom - top) };
}

}
