// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>

#include "Coverage.h"
#include "Fill.h"
#include "Spans.h"

namespace brindle::raster {

/// What of a rectangle lies inside the clip: which pixels, and how far its edges cover them.
struct ClippedRect {
    EdgeCoverage across;
    EdgeCoverage down;
    PixelRect touched;
    int fullLeft = 0; // columns from here to fullRight are covered from side to side
    int fullRight = 0;
    int fullTop = 0; // rows from here to fullBottom are covered from top to bottom
    int fullBottom = 0;

    ClippedRect(const Bitmap& bitmap, const DeviceRect& rect, PixelRect clip)
        : across(coverageOf(rect.x, rect.width))
        , down(coverageOf(rect.y, rect.height))
        , touched(intersection({ across.first, down.first, across.end, down.end },
              intersection(clip, bounds(bitmap))))
        , fullLeft(touched.left)
        , fullRight(touched.right)
        , fullTop(touched.top)
        , fullBottom(touched.bottom)
    {
        leaveOutEdges(across, fullLeft, fullRight);
        leaveOutEdges(down, fullTop, fullBottom);
    }

    bool isEmpty() const { return across.isEmpty() || down.isEmpty() || touched.isEmpty(); }

private:
    static void leaveOutEdges(const EdgeCoverage& edges, int& start, int& end)
    {
        if (edges.firstPart < EdgeCoverage::kFull)
            start = std::max(start, edges.first + 1);
        if (edges.lastPart < EdgeCoverage::kFull)
            end = std::max(start, std::min(end, edges.end - 1));
    }
};

/// Blends one pixel value into a stretch of a row that is covered evenly.
inline void blendSpan(Pixel* row, int count, Pixel value, Pixel coverage, Blend blend)
{
    if (blend == Blend::copy && coverage < 255)
        mixSpan(row, count, value, coverage);
    else if (blend == Blend::copy || alphaOf(value) * coverage == 255 * 255)
        copySpan(row, count, value);
    else
        overSpan(row, count, coverage < 255 ? scaled(value, coverage) : value);
}

/// Blends one pixel value into a rectangle's part of a row.
inline void blendRow(Pixel* row, const ClippedRect& rect, int down, Pixel value, Blend blend)
{
    const PixelRect& touched = rect.touched;
    if (touched.left < rect.fullLeft)
        blendSpan(row + touched.left, 1, value, coverageByte(rect.across.firstPart, down), blend);
    if (rect.fullLeft < rect.fullRight)
        blendSpan(row + rect.fullLeft, rect.fullRight - rect.fullLeft, value,
            coverageByte(EdgeCoverage::kFull, down), blend);
    if (rect.fullRight < touched.right)
        blendSpan(row + rect.fullRight, 1, value, coverageByte(rect.across.lastPart, down), blend);
}

}
