// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>

#include "Bitmap.h"

namespace brindle::raster {

/// Draws an image at its own size, one source pixel on one device pixel.
///
/// The image must not share memory with the bitmap.
/// - x, y: device pixel of the image's top left pixel.
/// - alpha: 0 to 1, multiplies the image; with `copy` it also multiplies what is stored.
void drawImage(const Bitmap& bitmap, const Bitmap& image, int x, int y, PixelRect clip, Blend blend,
    double alpha = 1);

/// A picture of coverage, one byte a pixel, 0 to 255.
/// - Shape: `height` rows, top row first, `stride` bytes apart.
struct Mask {
    const std::uint8_t* coverage = nullptr;
    int width = 0;
    int height = 0;
    std::ptrdiff_t stride = 0;
};

/// Lays a colour over the bitmap where a mask lets it through.
/// - x, y: device pixel of the mask's top left.
void drawMask(const Bitmap& bitmap, const Mask& mask, int x, int y, PixelRect clip, Pixel color);

/// A stretch of a row, as first pixel and end.
struct Stretch {
    int from = 0;
    int to = 0;
};

/// Parts of rows that somebody will cover anyway: one stretch a row, counted from `left` and `top`.
struct Cover {
    std::span<const Stretch> rows;
    int left = 0;
    int top = 0;
};

/// The same, but leaves out what is covered later as far as that saves work.
void drawMaskAround(const Bitmap& bitmap, const Mask& mask, int x, int y, PixelRect clip,
    Pixel color, const Cover& cover);

}
