// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PixelMath.h"
#include "WideSpans.h"

namespace brindle::raster {

/// Stores one pixel value along a row.
inline void copySpan(Pixel* row, int count, Pixel value)
{
    const Pixels4 four = fourOf(value);
    int i = 0;
    for (; i + 4 <= count; i += 4)
        storePixels(row + i, four);
    for (; i < count; ++i)
        row[i] = value;
}

/// Lays one pixel value over a row.
inline void overSpan(Pixel* row, int count, Pixel value)
{
    const Pixels4 four = fourOf(value);
    const Parts8 rest = factorsFrom(fourOf(255 - alphaOf(value)));
    int i = 0;
    for (; i + 4 <= count; i += 4)
        storePixels(row + i, four + scaled(loadPixels(row + i), rest));
    for (; i < count; ++i)
        row[i] = over(value, row[i]);
}

/// Moves a row towards one pixel value: all the way at coverage 255, not at all at 0.
inline void mixSpan(Pixel* row, int count, Pixel value, Pixel coverage)
{
    const Pixel part = scaled(value, coverage);
    for (int i = 0; i < count; ++i)
        row[i] = part + scaled(row[i], 255 - coverage);
}

/// Lays a row of pixels over another, each multiplied by `alpha` / 255.
inline void overSpan(Pixel* row, int count, const Pixel* source, Pixel alpha)
{
    const Parts8 factor = factorsFrom(fourOf(alpha));
    int i = 0;
    if (alpha == 255)
        i = overWide(row, source, count);
    for (; i + 4 <= count; i += 4)
        storePixels(row + i, over(scaled(loadPixels(source + i), factor), loadPixels(row + i)));
    for (; i < count; ++i)
        row[i] = over(scaled(source[i], alpha), row[i]);
}

}
