// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "MenuLayoutPrivate.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/controls/ControlDrawingPrivate.h"
#include "quartz/CGBitmapContext.h"
#include "quartz/CGColorSpace.h"
#include "quartz/CGContext.h"

namespace brindle::menus {

namespace {

    constexpr CGFloat kSpread = 5; // points, of the bell curve
    constexpr CGFloat kDrop = 3;
    constexpr CGFloat kOut = 12; // so far around what casts it the shadow is seen
    constexpr CGFloat kCorner
        = kOut + kRadius + kDrop + 1; // from there on it is the same along a side
    constexpr CGFloat kRepeated = 64; // of a side
    constexpr CGFloat kTile = 2 * kCorner + kRepeated;

    // Rings of one point, the fainter the farther out: a blur of a whole menu would take longer than all the rest.
    void drawRings(NSRect cast)
    {
        const double strength = controls::isDark() ? 0.55 : 0.30;
        for (CGFloat out = kOut - 1; out > -kDrop; --out) {
            const double share = std::erfc((out - 0.5) / (kSpread * std::numbers::sqrt2)) / 2;
            controls::frameRounded(
                NSInsetRect(cast, -out, -out), kRadius + out, 1, { 0, 0, 0, strength * share });
        }
    }

    Ref<CGImage> makeTile(CGFloat pixel)
    {
        const CGFloat pixels = std::round(kTile / pixel);
        const auto space = Ref<CGColorSpace>::adopt(CGColorSpaceCreateDeviceRGB());
        const auto context = Ref<CGContext>::adopt(CGBitmapContextCreate(nullptr,
            static_cast<std::size_t>(pixels), static_cast<std::size_t>(pixels), 8, 0, space.get(),
            kCGImageAlphaPremultipliedFirst | kCGBitmapByteOrder32Little));
        const GraphicsStateGuard saved;
        const NSGraphicsContext::Meta contexts = NSGraphicsContext::cls();
        contexts.setCurrentContext(
            contexts.graphicsContextWithGraphicsPort_flipped(context.get(), false).get());
        CGContextScaleCTM(context.get(), 1 / pixel, 1 / pixel);
        drawRings(NSInsetRect(NSMakeRect(0, 0, kTile, kTile), kOut, kOut));
        return Ref<CGImage>::adopt(CGBitmapContextCreateImage(context.get()));
    }

    /// The shadow of a small menu, made anew for another look or scale. Those of others are put together of its parts.
    const Ref<CGImage>& tile()
    {
        struct Made {
            Ref<CGImage> image;
            bool dark = false;
            CGFloat pixel = 0;
        };
        static auto* const made = new Made; // drawn with until the process ends
        const bool dark = controls::isDark();
        const CGFloat pixel = controls::pixel();
        if (!made->image || made->dark != dark || made->pixel != pixel)
            *made = { makeTile(pixel), dark, pixel };
        return made->image;
    }

    /// A part of a side: where it lies, and where in the tile.
    struct Part {
        CGFloat from = 0;
        CGFloat length = 0;
        CGFloat inTile = 0;
        bool isCorner = false;
    };
    std::vector<Part> partsOf(CGFloat from, CGFloat length)
    {
        const CGFloat last = from + length - kCorner;
        std::vector<Part> parts { { from, kCorner, 0, true },
            { last, kCorner, kTile - kCorner, true } };
        for (CGFloat at = from + kCorner; at < last; at += kRepeated)
            parts.push_back({ at, std::min(kRepeated, last - at), kCorner, false });
        return parts;
    }

}

void drawShadow(NSRect body)
{
    const NSRect cast = NSOffsetRect(body, 0, kDrop);
    const NSRect all = NSInsetRect(cast, -kOut, -kOut);
    if (std::min(all.size.width, all.size.height) < 2 * kCorner)
        return drawRings(cast);
    const Ref<CGImage>& picture = tile();
    const Ref<CGContext> c = currentCGContext();
    const GraphicsStateGuard upright; // as the tile is; upside down the shadow is the same
    CGContextTranslateCTM(c.get(), 0, 2 * NSMidY(all));
    CGContextScaleCTM(c.get(), 1, -1);
    const std::vector<Part> rows = partsOf(NSMinY(all), all.size.height);
    for (const Part& column : partsOf(NSMinX(all), all.size.width)) {
        for (const Part& row : rows) {
            if (!column.isCorner && !row.isCorner)
                continue; // below the menu
            const GraphicsStateGuard saved;
            CGContextClipToRect(
                c.get(), NSMakeRect(column.from, row.from, column.length, row.length));
            CGContextDrawImage(c.get(),
                NSMakeRect(column.from - column.inTile, row.from - row.inTile, kTile, kTile),
                picture.get());
        }
    }
}

}
