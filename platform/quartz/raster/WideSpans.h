// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Bitmap.h"

/// The loops that touch most pixels, eight at a time. Where the processor can do eight in one step, it does.

namespace brindle::raster {

inline constexpr int kWide = 8;

/// Stores one pixel value all over a rectangle.
void fillWide(const Bitmap& bitmap, const PixelRect& rect, Pixel value);

/// Lays the first pixels of a row over another, in eights. Answers how many; the rest is the caller's.
int overWide(Pixel* row, const Pixel* source, int count);

/// Lays a colour over the first pixels of a row, in eights, as far as a mask lets it through. Answers how many.
int maskWide(Pixel* row, const std::uint8_t* coverage, int count, Pixel color);

}
