// SPDX-License-Identifier: Apache-2.0
#include "Drawing.h"

#include <algorithm>
#include <cmath>

#include "Palette.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/NSMutableParagraphStyle.h"
#include "appkit/NSStringDrawing.h"
#include "core/BRGeometry.h"
#include "foundation/NSMutableDictionary.h"
#include "quartz/CGContext.h"

namespace gallery {

using namespace brindle;

namespace {

    Ref<NSDictionary> attributes(Style style, NSColor* color)
    {
        return NSDictionary::cls().dictionaryWithObjectsAndKeys(fontOf(style).get(),
            static_cast<NSString*>(NSFontAttributeName), color,
            static_cast<NSString*>(NSForegroundColorAttributeName));
    }

    /// Moves code onto the line of the captions beside it.
    NSPoint onLineOfCaptions(NSPoint place, Style style)
    {
        if (style == Style::code)
            place.y += fontOf(Style::caption)->ascender() - fontOf(style)->ascender();
        return place;
    }

    void addRounded(CGContextRef context, NSRect r, double radius)
    {
        const double limit = std::min(radius, std::min(r.size.width, r.size.height) / 2);
        CGContextBeginPath(context);
        CGContextMoveToPoint(context, NSMidX(r), NSMinY(r));
        CGContextAddArcToPoint(context, NSMaxX(r), NSMinY(r), NSMaxX(r), NSMaxY(r), limit);
        CGContextAddArcToPoint(context, NSMaxX(r), NSMaxY(r), NSMinX(r), NSMaxY(r), limit);
        CGContextAddArcToPoint(context, NSMinX(r), NSMaxY(r), NSMinX(r), NSMinY(r), limit);
        CGContextAddArcToPoint(context, NSMinX(r), NSMinY(r), NSMaxX(r), NSMinY(r), limit);
        CGContextClosePath(context);
    }

    Ref<CGContext> current()
    {
        return maybe(NSGraphicsContext::cls().currentContext())->CGContext();
    }

}

Ref<NSFont> fontOf(Style style)
{
    const auto fonts = NSFont::cls();
    switch (style) {
    case Style::title:
        return fonts.boldSystemFontOfSize(24);
    case Style::heading:
        return fonts.boldSystemFontOfSize(13);
    case Style::caption:
        return fonts.systemFontOfSize(11);
    case Style::group:
        return fonts.boldSystemFontOfSize(11);
    case Style::code:
        return fonts.userFixedPitchFontOfSize(11);
    case Style::figure:
        return fonts.boldSystemFontOfSize(20);
    case Style::body:
        break;
    }
    return fonts.systemFontOfSize(13);
}

void drawText(NSString* text, NSPoint place, Style style, NSColor* color)
{
    drawAtPoint_withAttributes(
        text, onLineOfCaptions(place, style), attributes(style, color).get());
}

void drawFitted(NSString* text, NSPoint place, double width, Style style, NSColor* color)
{
    const NSSize size = sizeOf(text, style);
    if (size.width <= width)
        return drawText(text, place, style, color);
    const auto cut = make<NSMutableParagraphStyle>();
    cut->setLineBreakMode(NSLineBreakByTruncatingTail);
    const auto all = cast<NSMutableDictionary>(attributes(style, color)->mutableCopy());
    all->setObject_forKey(cut.get(), NSParagraphStyleAttributeName);
    drawInRect_withAttributes(
        text, { onLineOfCaptions(place, style), { width, size.height } }, all.get());
}

NSSize sizeOf(NSString* text, Style style)
{
    return sizeWithAttributes(text, attributes(style, NSColor::cls().blackColor().get()).get());
}

void drawCentered(NSString* text, NSRect rect, Style style, NSColor* color)
{
    const NSSize size = sizeOf(text, style);
    const NSPoint place { rect.origin.x + BRGetMidXRectAndSize(rect, size),
        rect.origin.y + BRGetMidYRectAndSize(rect, size) };
    drawText(text, place, style, color);
}

NSRect labelled(NSString* label, NSRect cell)
{
    constexpr double kHeight = 18;
    cell.size.height -= kHeight;
    drawCentered(label, NSMakeRect(cell.origin.x, NSMaxY(cell), cell.size.width, kHeight),
        Style::caption, palette().quietText.get());
    return cell;
}

void fillRounded(NSRect rect, double radius, NSColor* color)
{
    const Ref<CGContext> context = current();
    color->setFill();
    addRounded(context.get(), rect, radius);
    CGContextFillPath(context.get());
}

void strokeRounded(NSRect rect, double radius, NSColor* color)
{
    const Ref<CGContext> context = current();
    color->setStroke();
    CGContextSetLineWidth(context.get(), 1);
    addRounded(context.get(), inset(rect, 0.5), radius - 0.5);
    CGContextStrokePath(context.get());
}

void drawArrow(NSPoint from, NSPoint to, NSColor* color)
{
    constexpr double kHead = 5;
    const double length = std::max(std::hypot(to.x - from.x, to.y - from.y), 1.0);
    const NSPoint ahead { (to.x - from.x) / length * kHead, (to.y - from.y) / length * kHead };
    const Ref<CGContext> context = current();
    color->setStroke();
    CGContextSetLineWidth(context.get(), 1.25);
    CGContextBeginPath(context.get());
    CGContextMoveToPoint(context.get(), from.x, from.y);
    CGContextAddLineToPoint(context.get(), to.x, to.y);
    CGContextMoveToPoint(context.get(), to.x - ahead.x - ahead.y, to.y - ahead.y + ahead.x);
    CGContextAddLineToPoint(context.get(), to.x, to.y);
    CGContextAddLineToPoint(context.get(), to.x - ahead.x + ahead.y, to.y - ahead.y - ahead.x);
    CGContextStrokePath(context.get());
}

void fill(NSRect rect, NSColor* color)
{
    color->setFill();
    NSRectFillUsingOperation(rect, NSCompositeSourceOver);
}

}
