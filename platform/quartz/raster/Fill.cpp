// SPDX-License-Identifier: Apache-2.0
#include "Fill.h"

#include "Rows.h"

namespace brindle::raster {

namespace {

    /// Blends one pixel value into a block that is covered evenly; what is done is decided once for
    /// all rows.
    void blendBlock(
        const Bitmap& bitmap, const PixelRect& block, Pixel value, Pixel coverage, Blend blend)
    {
        const int count = block.right - block.left;
        if (count <= 0)
            return;
        if (coverage == 255 && (blend == Blend::copy || alphaOf(value) == 255))
            return fillWide(bitmap, block, value);
        const Pixel part = coverage < 255 ? scaled(value, coverage) : value;
        for (int y = block.top; y < block.bottom; ++y) {
            Pixel* row = bitmap.row(y) + block.left;
            if (blend == Blend::copy)
                mixSpan(row, count, value, coverage);
            else
                overSpan(row, count, part);
        }
    }

}

void fillRect(
    const Bitmap& bitmap, const DeviceRect& rect, PixelRect clip, const Color& color, Blend blend)
{
    const ClippedRect clipped(bitmap, rect, clip);
    if (clipped.isEmpty())
        return;
    const Pixel value = pixelFromColor(color);
    const auto fillRows = [&](int top, int bottom) {
        const auto fill = [&](int left, int right, int across) {
            blendBlock(bitmap, { left, top, right, bottom }, value,
                coverageByte(across, clipped.down.partAt(top)), blend);
        };
        fill(clipped.touched.left, clipped.fullLeft, clipped.across.firstPart);
        fill(clipped.fullLeft, clipped.fullRight, EdgeCoverage::kFull);
        fill(clipped.fullRight, clipped.touched.right, clipped.across.lastPart);
    };
    fillRows(clipped.touched.top, clipped.fullTop);
    fillRows(clipped.fullTop, clipped.fullBottom);
    fillRows(clipped.fullBottom, clipped.touched.bottom);
}

}
