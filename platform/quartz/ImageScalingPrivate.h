// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "CGTypes.h"
#include "raster/Bitmap.h"

namespace brindle::quartz {

/// How an image lies along one axis of device space: from `from` to `to`, mirrored when `to` is the smaller.
struct Stretch {
    double from = 0;
    double to = 0;
};

enum class Sampling { nearest, linear, area };

/// An image at its new size; `left` and `top` are the device pixel of its first pixel.
struct ScaledImage {
    std::vector<raster::Pixel> pixels;
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;

    raster::Bitmap bitmap()
    {
        return { pixels.data(), width, height, static_cast<std::ptrdiff_t>(width) * 4 };
    }
};

/// Draws an image anew at the size and place where it will lie; its edges cover pixels in part.
/// - visible: only these pixels are made.
/// - sampling: `area` averages all pixels that are covered where the image gets smaller, and is `linear` elsewhere.
ScaledImage scaleImage(const raster::Bitmap& image, Stretch across, Stretch down,
    raster::PixelRect visible, Sampling sampling);

}
