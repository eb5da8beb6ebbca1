// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <cstring>

#include "Bitmap.h"

namespace brindle::raster {

/// 0 to 1; anything that is not a number is 0.
constexpr double clampedUnit(double value) { return value > 0 ? (value < 1 ? value : 1) : 0; }

constexpr Color clamped(const Color& color)
{
    return { clampedUnit(color.red), clampedUnit(color.green), clampedUnit(color.blue),
        clampedUnit(color.alpha) };
}

/// Packs parts from 0 to 1, already multiplied by alpha.
constexpr Pixel packPixel(double alpha, double red, double green, double blue)
{
    const auto byte = [](double part) { return static_cast<Pixel>(part * 255 + 0.5); };
    return byte(alpha) << 24 | byte(red) << 16 | byte(green) << 8 | byte(blue);
}

constexpr Pixel alphaOf(Pixel pixel) { return pixel >> 24; }

/// A pixel with no part greater than its alpha.
constexpr Pixel bounded(Pixel pixel)
{
    const Pixel alpha = alphaOf(pixel);
    const auto part = [=](int shift) {
        const Pixel value = pixel >> shift & 0xFF;
        return (value < alpha ? value : alpha) << shift;
    };
    return alpha << 24 | part(16) | part(8) | part(0);
}

/// A pixel whose four parts are multiplied by `factor` / 255, rounded to the nearest.
constexpr Pixel scaled(Pixel pixel, Pixel factor)
{
    constexpr Pixel kEven = 0x00FF00FF;
    constexpr Pixel kHalf = 0x00800080;
    Pixel even = (pixel & kEven) * factor + kHalf;
    Pixel odd = (pixel >> 8 & kEven) * factor + kHalf;
    even = ((even >> 8 & kEven) + even) >> 8 & kEven;
    odd = ((odd >> 8 & kEven) + odd) & 0xFF00FF00;
    return even | odd;
}

constexpr Pixel over(Pixel source, Pixel destination)
{
    return source + scaled(destination, 255 - alphaOf(source));
}

// Four pixels at once, in the compiler's own vectors: they need no particular instruction set, and
// do not wait for an optimiser to see through a loop whose length it does not know.
using Pixels4 = std::uint32_t __attribute__((vector_size(16)));
using Parts8 = std::uint16_t __attribute__((vector_size(16)));

inline Pixels4 loadPixels(const Pixel* from)
{
    Pixels4 pixels;
    std::memcpy(&pixels, from, sizeof pixels);
    return pixels;
}

inline void storePixels(Pixel* to, Pixels4 pixels) { std::memcpy(to, &pixels, sizeof pixels); }

inline Pixels4 fourOf(Pixel pixel) { return Pixels4 { pixel, pixel, pixel, pixel }; }

/// Eight products of two bytes divided by 255, rounded to the nearest, in the high bytes; the low
/// bytes are rubbish.
inline Parts8 dividedInHighByte(Parts8 products)
{
    const Parts8 t = products + static_cast<std::uint16_t>(128);
    return t + (t >> 8);
}

/// Every part multiplied by its pixel's factor / 255; a factor stands in both halves of the pixel's
/// word.
inline Pixels4 scaled(Pixels4 pixels, Parts8 factors)
{
    const Parts8 words = reinterpret_cast<Parts8>(pixels);
    const Parts8 even
        = dividedInHighByte((words & static_cast<std::uint16_t>(0xFF)) * factors) >> 8;
    const Parts8 odd
        = dividedInHighByte((words >> 8) * factors) & static_cast<std::uint16_t>(0xFF00);
    return reinterpret_cast<Pixels4>(even | odd);
}

/// The same value, 0 to 255, in both halves of each pixel's word.
inline Parts8 factorsFrom(Pixels4 values)
{
    return reinterpret_cast<Parts8>(values | values << 16);
}

inline Pixels4 over(Pixels4 source, Pixels4 destination)
{
    return source + scaled(destination, factorsFrom(~source >> 24));
}

}
