// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSGraphics.h"

#include "appkit/NSColor.h"
#include "foundation/NSGeometry.h"

#include <algorithm>
#include <array>

namespace brindle {

void NSRectFillListWithColors(const NSRect* rects, NSColor* const* colors, NSInteger count)
{
    NSRectFillListWithColorsUsingOperation(rects, colors, count, NSCompositeCopy);
}

void NSRectFillListWithColorsUsingOperation(
    const NSRect* rects, NSColor* const* colors, NSInteger count, NSCompositingOperation operation)
{
    const GraphicsStateGuard saved;
    for (NSInteger i = 0; rects && colors && i < count; ++i) {
        maybe(colors[i])->setFill();
        if (colors[i])
            NSRectFillUsingOperation(rects[i], operation);
    }
}

void NSRectFillListWithGrays(const NSRect* rects, const CGFloat* grays, NSInteger count)
{
    const Ref<CGContext> port = currentCGContext();
    const GraphicsStateGuard saved;
    for (NSInteger i = 0; rects && grays && i < count; ++i) {
        CGContextSetGrayFillColor(port.get(), grays[i], 1);
        NSRectFill(rects[i]);
    }
}

void NSDottedFrameRect(NSRect rect)
{
    const NSRect inside = NSInsetRect(CGRectStandardize(rect), 0.5, 0.5);
    if (CGRectIsEmpty(inside))
        return;
    const Ref<CGContext> port = currentCGContext();
    const GraphicsStateGuard saved;
    constexpr CGFloat kDots[] = { 1, 1 };
    CGContextSetLineDash(port.get(), 0.5, kDots, 2);
    CGContextSetLineCap(port.get(), kCGLineCapButt);
    CGContextStrokeRectWithWidth(port.get(), inside, 1);
}

NSRect NSDrawTiledRects(
    NSRect bounds, NSRect clip, const NSRectEdge* sides, const CGFloat* grays, NSInteger count)
{
    const GraphicsStateGuard saved;
    if (!NSIsEmptyRect(clip))
        NSRectClip(clip);
    NSRect rest = bounds;
    for (NSInteger i = 0; sides && grays && i < count; ++i) {
        NSRect slice;
        NSDivideRect(rest, &slice, &rest, 1, sides[i]);
        NSRectFillListWithGrays(&slice, grays + i, 1);
    }
    return rest;
}

// ---- images; asked by messages for what they know

namespace {

    /// How the parts of a bar are drawn.
    struct BarStyle {
        NSCompositingOperation operation;
        CGFloat alpha;
        bool flipped;
    };

    const NSObject* objectOf(const NSImage* image)
    {
        return reinterpret_cast<const NSObject*>(image);
    }

    NSSize sizeOf(const NSImage* image)
    {
        return image ? objectOf(image)->send<"size", NSSize>() : NSSize {};
    }

    /// - source: of the image, its origin at the lower left; the zero rectangle for all of it.
    void drawPart(const NSImage* image, NSRect rect, const BarStyle& style, NSRect source = {})
    {
        if (image && !NSIsEmptyRect(rect))
            objectOf(image)->send<"drawInRect:fromRect:operation:fraction:respectFlipped:hints:">(
                rect, source, style.operation, style.alpha, true, static_cast<NSObject*>(nullptr));
    }

    /// Answers how long the tiles of a side are: its whole length where tiles would look the same, or come in numbers that
    /// nobody can tell apart.
    CGFloat tileLength(CGFloat own, CGFloat whole, bool tiles)
    {
        constexpr CGFloat kMostTiles = 512;
        return tiles && own > 1 && whole / own <= kMostTiles ? own : whole;
    }

    /// Fills a rectangle with an image side by side, from the top left; in the other direction it is stretched.
    void tilePart(const NSImage* image, NSRect rect, const BarStyle& style, bool across, bool down)
    {
        const NSSize size = sizeOf(image);
        if (NSIsEmptyRect(rect) || !(size.width > 0 && size.height > 0))
            return;
        const CGFloat width = tileLength(size.width, rect.size.width, across);
        const CGFloat height = tileLength(size.height, rect.size.height, down);
        for (CGFloat y = 0; y < rect.size.height; y += height) {
            for (CGFloat x = 0; x < rect.size.width; x += width) {
                const NSSize shown { std::min(width, rect.size.width - x),
                    std::min(height, rect.size.height - y) };
                const CGFloat top
                    = style.flipped ? NSMinY(rect) + y : NSMaxY(rect) - y - shown.height;
                const NSSize part { size.width * shown.width / width,
                    size.height * shown.height / height };
                drawPart(image, { { NSMinX(rect) + x, top }, shown }, style,
                    { { 0, size.height - part.height }, part });
            }
        }
    }

    /// Three images in a row, or one below the other.
    struct Bar {
        NSImage* start;
        NSImage* fill;
        NSImage* end;
    };

    /// Cuts a rectangle into start, middle and end. A bar that stands begins at the top, which is the greatest y unless the
    /// space is flipped.
    std::array<NSRect, 3> cutIntoThree(
        NSRect rect, CGFloat start, CGFloat end, bool vertical, bool flipped)
    {
        const NSRectEdge startEdge = !vertical ? NSMinXEdge : flipped ? NSMinYEdge : NSMaxYEdge;
        const NSRectEdge endEdge = !vertical ? NSMaxXEdge : flipped ? NSMaxYEdge : NSMinYEdge;
        std::array<NSRect, 3> parts { NSRect {}, rect, NSRect {} };
        NSDivideRect(parts[1], &parts[0], &parts[1], start, startEdge);
        NSDivideRect(parts[1], &parts[2], &parts[1], end, endEdge);
        return parts;
    }

}

void NSDrawThreePartImage(NSRect frame, NSImage* startCap, NSImage* centerFill, NSImage* endCap,
    bool vertical, NSCompositingOperation operation, CGFloat alpha, bool flipped)
{
    const BarStyle style { operation, alpha, flipped };
    const auto lengthOf = [vertical](const NSImage* image) {
        return vertical ? sizeOf(image).height : sizeOf(image).width;
    };
    const auto [start, middle, end]
        = cutIntoThree(frame, lengthOf(startCap), lengthOf(endCap), vertical, flipped);
    drawPart(startCap, start, style);
    tilePart(centerFill, middle, style, !vertical, vertical);
    drawPart(endCap, end, style);
}

void NSDrawNinePartImage(NSRect frame, NSImage* topLeftCorner, NSImage* topEdgeFill,
    NSImage* topRightCorner, NSImage* leftEdgeFill, NSImage* centerFill, NSImage* rightEdgeFill,
    NSImage* bottomLeftCorner, NSImage* bottomEdgeFill, NSImage* bottomRightCorner,
    NSCompositingOperation operation, CGFloat alpha, bool flipped)
{
    const BarStyle style { operation, alpha, flipped };
    const std::array<Bar, 3> bars { Bar { topLeftCorner, topEdgeFill, topRightCorner },
        Bar { leftEdgeFill, centerFill, rightEdgeFill },
        Bar { bottomLeftCorner, bottomEdgeFill, bottomRightCorner } };
    const auto rows = cutIntoThree(
        frame, sizeOf(topLeftCorner).height, sizeOf(bottomLeftCorner).height, true, flipped);
    for (std::size_t row = 0; row < bars.size(); ++row) {
        const bool isMiddle = row == 1;
        const auto [start, middle, end] = cutIntoThree(
            rows[row], sizeOf(topLeftCorner).width, sizeOf(topRightCorner).width, false, flipped);
        tilePart(bars[row].start, start, style, false, isMiddle);
        tilePart(bars[row].fill, middle, style, true, isMiddle);
        tilePart(bars[row].end, end, style, false, isMiddle);
    }
}

}
