// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "CGContext.h"

namespace brindle {

/// Makes a context that draws into memory: y up, one point a pixel, the first row of memory on top.
///
/// The memory is always current: it shows each operation as soon as that returns, and what the caller writes there
/// meanwhile is drawn upon. In the byte order B, G, R, A (premultiplied first, 32 little) drawing costs least.
/// - data: `height` rows; lent until the context goes. NULL makes zeroed memory that belongs to the context.
/// - bitsPerComponent: 8. - bytesPerRow: 0 with NULL data chooses; otherwise a multiple of 4.
/// - info: alpha premultiplied first or last, or skipped first or last; byte order default, 32 little or 32 big.
///   Default and 32 big store the components in the order of their names: 1 and 16385 are R, G, B, A.
/// - Nil: NULL when width or height is 0 or over 32767, the rows are too short, or the combination is another.
BRINDLE_EXPORT CGContextRef CGBitmapContextCreate(void* data, std::size_t width, std::size_t height,
    std::size_t bitsPerComponent, std::size_t bytesPerRow, CGColorSpaceRef space,
    CGBitmapInfo info);
/// Answers a picture of what the context shows now; later drawing does not change it.
/// - Nil: NULL for a NULL context.
BRINDLE_EXPORT CGImageRef CGBitmapContextCreateImage(CGContextRef context);
BRINDLE_EXPORT void* CGBitmapContextGetData(CGContextRef context);
BRINDLE_EXPORT std::size_t CGBitmapContextGetWidth(CGContextRef context);
BRINDLE_EXPORT std::size_t CGBitmapContextGetHeight(CGContextRef context);
BRINDLE_EXPORT std::size_t CGBitmapContextGetBitsPerComponent(CGContextRef context);
BRINDLE_EXPORT std::size_t CGBitmapContextGetBitsPerPixel(CGContextRef context);
BRINDLE_EXPORT std::size_t CGBitmapContextGetBytesPerRow(CGContextRef context);
BRINDLE_EXPORT CGColorSpaceRef CGBitmapContextGetColorSpace(CGContextRef context);
BRINDLE_EXPORT CGImageAlphaInfo CGBitmapContextGetAlphaInfo(CGContextRef context);
BRINDLE_EXPORT CGBitmapInfo CGBitmapContextGetBitmapInfo(CGContextRef context);

namespace quartz {

    /// Pixels that somebody else owns, as a window's surface hands them out.
    struct ForeignPixels {
        std::uint32_t* pixels
            = nullptr; // native words, alpha in the top byte, premultiplied; top row first
        int width = 0; // pixels
        int height = 0;
        std::ptrdiff_t stride = 0; // bytes, a multiple of 4
        double scale = 1; // pixels a point
    };

    /// Makes a context that draws into such pixels; its user space is points with y up.
    /// - Nil: nil without pixels or size. The pixels outlive the context.
    BRINDLE_EXPORT Ref<CGContext> contextForPixels(const ForeignPixels& pixels);

    /// Makes a context with transparent memory of its own in the fastest format.
    /// - width, height: pixels. - scale: pixels a point.
    BRINDLE_EXPORT Ref<CGContext> makeContext(int width, int height, double scale = 1);

}

}
