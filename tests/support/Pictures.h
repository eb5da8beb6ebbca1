// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSImage.h"
#include "support/Pixels.h"

/// Small pictures for tests, and pictures as text.

namespace brindle::test {

/// Answers a picture of one colour.
inline Ref<CGImage> plainPicture(std::size_t width, std::size_t height, std::uint32_t word = ~0u)
{
    return quartz::imageTaking(
        std::vector<std::uint32_t>(width * height, word), width, height, true);
}

/// Answers a picture of 4 by 4 pixels: red, green; blue, white, each 2 by 2.
inline Ref<CGImage> quarters()
{
    std::vector<std::uint32_t> pixels;
    for (const auto& [left, right] : { std::pair { 0xFFFF0000u, 0xFF00FF00u },
             { 0xFFFF0000u, 0xFF00FF00u }, { 0xFF0000FFu, ~0u }, { 0xFF0000FFu, ~0u } })
        pixels.insert(pixels.end(), { left, left, right, right });
    return quartz::imageTaking(std::move(pixels), 4, 4, true);
}
inline Ref<NSImage> quartersImage()
{
    return alloc<NSImage>()->initWithCGImage_size(quarters().get(), NSZeroSize);
}

/// Answers a picture as rows of letters, the top one first: r, g, b, w for full colours, k for black, "." for nothing, "?"
/// for any other pixel.
inline std::string shape(const CGImage* image)
{
    std::string rows;
    for (std::size_t y = 0; image && y < image->height(); ++y) {
        rows += y ? "/" : "";
        for (std::size_t x = 0; x < image->width(); ++x) {
            switch (image->pixels()[y * image->width() + x]) {
            case 0xFFFF0000:
                rows += 'r';
                break;
            case 0xFF00FF00:
                rows += 'g';
                break;
            case 0xFF0000FF:
                rows += 'b';
                break;
            case 0xFFFFFFFF:
                rows += 'w';
                break;
            case 0xFF000000:
                rows += 'k';
                break;
            case 0:
                rows += '.';
                break;
            default:
                rows += '?';
            }
        }
    }
    return rows;
}
inline std::string shape(const Picture& picture) { return shape(picture.image().get()); }

/// Turns a context's y downward, as a flipped view does.
inline void flip(CGContext* context, double height)
{
    CGContextTranslateCTM(context, 0, height);
    CGContextScaleCTM(context, 1, -1);
}

}
