// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

namespace brindle::raster {

/// One pixel: alpha in the top byte, then red, green, blue, each multiplied by alpha.
using Pixel = std::uint32_t;

/// A lent view of pixels; the owner of the memory outlives it.
/// - Shape: `height` rows, top row first, `stride` bytes apart (a multiple of 4); a pixel is a
///   native
///   32-bit word.
struct Bitmap {
    Pixel* pixels = nullptr;
    int width = 0;
    int height = 0;
    std::ptrdiff_t stride = 0; // bytes

    Pixel* row(int y) const
    {
        return reinterpret_cast<Pixel*>(reinterpret_cast<std::byte*>(pixels) + y * stride);
    }
};

/// A rectangle of whole pixels: `left` and `top` inside, `right` and `bottom` just outside. y down.
struct PixelRect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    constexpr bool isEmpty() const { return left >= right || top >= bottom; }
    friend bool operator==(const PixelRect&, const PixelRect&) = default;
};

/// The part that two rectangles share; empty when they share none.
constexpr PixelRect intersection(PixelRect a, PixelRect b)
{
    return { a.left > b.left ? a.left : b.left, a.top > b.top ? a.top : b.top,
        a.right < b.right ? a.right : b.right, a.bottom < b.bottom ? a.bottom : b.bottom };
}

constexpr PixelRect bounds(const Bitmap& bitmap) { return { 0, 0, bitmap.width, bitmap.height }; }

/// A rectangle in device pixels, y down; edges may lie inside pixels.
struct DeviceRect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
};

/// A colour with its parts from 0 to 1, not multiplied by alpha.
struct Color {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;
    friend bool operator==(const Color&, const Color&) = default;
};

/// Answers the pixel that shows a colour; parts outside 0 to 1 are clamped.
Pixel pixelFromColor(const Color& color);

/// How a source meets what is there: `copy` replaces it, `over` lies on top of it.
enum class Blend { copy, over };

/// Maps user space to device pixels by scaling and moving only. A negative scale mirrors.
struct Placement {
    double scaleX = 1;
    double scaleY = 1;
    double moveX = 0;
    double moveY = 0;

    DeviceRect map(double x, double y, double width, double height) const;
};

}
