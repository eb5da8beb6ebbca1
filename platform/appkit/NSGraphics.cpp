// SPDX-License-Identifier: Apache-2.0
#include "NSGraphics.h"

#include "NSColor.h"
#include "foundation/NSGeometry.h"

#include <algorithm>

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
    };

    const NSObject* objectOf(const NSImage* image)
    {
        return reinterpret_cast<const NSObject*>(image);
    }

    CGFloat lengthOf(const NSImage* image, bool vertical)
    {
        const NSSize size = image ? objectOf(image)->send<"size", NSSize>() : NSSize {};
        return vertical ? size.height : size.width;
    }

    void drawPart(const NSImage* image, NSRect rect, const BarStyle& style)
    {
        if (image && !NSIsEmptyRect(rect))
            objectOf(image)->send<"drawInRect:fromRect:operation:fraction:respectFlipped:hints:">(
                rect, NSRect {}, style.operation, style.alpha, true,
                static_cast<NSObject*>(nullptr));
    }

}

void NSDrawThreePartImage(NSRect frame, NSImage* startCap, NSImage* centerFill, NSImage* endCap,
    bool vertical, NSCompositingOperation operation, CGFloat alpha, bool flipped)
{
    const BarStyle style { operation, alpha };
    // A bar that stands begins at the top, which is the greatest y unless the space is flipped.
    const NSRectEdge startEdge = !vertical ? NSMinXEdge : flipped ? NSMinYEdge : NSMaxYEdge;
    const NSRectEdge endEdge = !vertical ? NSMaxXEdge : flipped ? NSMaxYEdge : NSMinYEdge;
    NSRect start;
    NSRect end;
    NSRect middle = frame;
    NSDivideRect(middle, &start, &middle, lengthOf(startCap, vertical), startEdge);
    NSDivideRect(middle, &end, &middle, lengthOf(endCap, vertical), endEdge);
    drawPart(startCap, start, style);
    drawPart(centerFill, middle, style);
    drawPart(endCap, end, style);
}

}
