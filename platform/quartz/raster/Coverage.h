// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PixelMath.h"

namespace brindle::raster {

/// How a rectangle covers the pixels along one axis: in part at its first and last pixel, fully
/// between them. Parts count from 0 to 256, the steps that Cairo counts in.
struct EdgeCoverage {
    static constexpr int kFull = 256;

    int first = 0; // first pixel touched
    int end = 0; // one past the last
    int firstPart = kFull;
    int lastPart = kFull; // the same as firstPart when there is only one pixel

    bool isEmpty() const { return first >= end; }

    int partAt(int pixel) const
    {
        if (pixel == first)
            return firstPart;
        return pixel == end - 1 ? lastPart : kFull;
    }
};

/// Answers the coverage of a stretch, with its ends put on the nearest 1/256 of a pixel.
inline EdgeCoverage coverageOf(double start, double length)
{
    // Far beyond any bitmap, and small enough for the sums below.
    constexpr double kFarthest = 1 << 21;
    constexpr int kShift = 8;
    const auto onGrid = [](double value) {
        const double bounded
            = value > -kFarthest ? (value < kFarthest ? value : kFarthest) : -kFarthest;
        // Made positive first, because a conversion cuts towards zero and a call to floor is slow.
        return static_cast<int>((bounded + kFarthest) * EdgeCoverage::kFull + 0.5)
            - static_cast<int>(kFarthest) * EdgeCoverage::kFull;
    };
    if (!(length > 0) || !(start < start + length))
        return {};
    const int low = onGrid(start);
    const int high = onGrid(start + length);
    if (low >= high)
        return {};
    EdgeCoverage edges;
    edges.first = low >> kShift;
    edges.end = (high + EdgeCoverage::kFull - 1) >> kShift;
    const bool isSingle = edges.end - edges.first == 1;
    edges.firstPart = (isSingle ? high : (edges.first + 1) << kShift) - low;
    edges.lastPart = isSingle ? edges.firstPart : high - ((edges.end - 1) << kShift);
    return edges;
}

/// Answers the product of a part across and a part down as a byte.
inline Pixel coverageByte(int across, int down)
{
    const auto steps = static_cast<Pixel>((across * down + EdgeCoverage::kFull / 2) >> 8);
    return steps - (steps >> 8);
}

}
