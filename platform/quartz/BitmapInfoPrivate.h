// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "CGImage.h"

namespace brindle {

/// What pictures of our own hold: words of alpha, red, green, blue, colours multiplied by alpha.
inline constexpr CGBitmapInfo kNativeInfo
    = kCGImageAlphaPremultipliedFirst | kCGBitmapByteOrder32Little;

}
