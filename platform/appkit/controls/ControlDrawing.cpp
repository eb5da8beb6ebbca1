// SPDX-License-Identifier: Apache-2.0
#include "ControlDrawingPrivate.h"

#include "ShortenedTextPrivate.h"
#include "appkit/NSColor.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/NSImage.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/NSWindow.h"
#include "appkit/drawing/SystemColorsPrivate.h"
#include "foundation/NSAttributedString.h"
#include "foundation/NSDictionary.h"
#include "quartz/CGContext.h"

#include <algorithm>
#include <cmath>

namespace brindle::controls {

namespace {

    constexpr Shade kBlack { 0, 0, 0, 1 };
    constexpr Shade kWhite { 1, 1, 1, 1 };

    void setFill(CGContext* c, Shade s)
    {
        CGContextSetRGBFillColor(c, s.red, s.green, s.blue, s.alpha);
    }
    void addRounded(CGContext* c, NSRect r, CGFloat radius)
    {
        const CGFloat fits = std::min({ radius, r.size.width / 2, r.size.height / 2 });
        if (!(fits > 0))
            return CGContextAddRect(c, r);
        CGContextMoveToPoint(c, NSMidX(r), NSMinY(r));
        CGContextAddArcToPoint(c, NSMaxX(r), NSMinY(r), NSMaxX(r), NSMidY(r), fits);
        CGContextAddArcToPoint(c, NSMaxX(r), NSMaxY(r), NSMidX(r), NSMaxY(r), fits);
        CGContextAddArcToPoint(c, NSMinX(r), NSMaxY(r), NSMinX(r), NSMidY(r), fits);
        CGContextAddArcToPoint(c, NSMinX(r), NSMinY(r), NSMidX(r), NSMinY(r), fits);
        CGContextClosePath(c);
    }

    /// The face of a bezel; what is pressed or under the pointer is darker by day and lighter by night.
    Shade faceOf(const Look& look)
    {
        const bool accent = look.accented && look.active && look.enabled;
        Shade face
            = shadeOf(accent ? NSColor::cls().controlAccentColor() : NSColor::cls().controlColor());
        if (look.accented && !accent)
            face = mixed(face, isDark() ? kWhite : kBlack, look.enabled ? 0.14 : 0.08);
        const Shade away = isDark() && !accent ? kWhite : kBlack;
        if (look.pressed)
            face = mixed(face, away, accent ? 0.20 : 0.13);
        else if (look.hovered && look.enabled)
            face = mixed(face, away, accent ? 0.07 : 0.045);
        if (!look.enabled)
            face = faded(face, face.alpha * (isDark() ? 0.45 : 0.5));
        return face;
    }
    Shade edgeOf(const Look& look)
    {
        const double strength = look.enabled ? 1 : 0.55;
        if (look.accented && look.active && look.enabled)
            return { 0, 0.05, 0.25, isDark() ? 0.55 : 0.36 };
        return { 0, 0, 0.03, (isDark() ? 0.62 : 0.24) * strength };
    }

}

Shade shadeOf(const Ref<NSColor>& color)
{
    const Ref<NSColor> rgb
        = color ? color->colorUsingColorSpaceName(NSCalibratedRGBColorSpace) : nullptr;
    Shade shade;
    maybe(rgb)->getRed_green_blue_alpha(&shade.red, &shade.green, &shade.blue, &shade.alpha);
    return shade;
}
Shade faded(Shade shade, double alpha)
{
    shade.alpha = alpha;
    return shade;
}
Shade mixed(Shade shade, Shade other, double part)
{
    const auto mix = [part](double a, double b) { return a + (b - a) * part; };
    return { mix(shade.red, other.red), mix(shade.green, other.green), mix(shade.blue, other.blue),
        shade.alpha };
}
bool isDark() { return appkit::appearance() == appkit::Appearance::dark; }

CGFloat pixel()
{
    const Ref<CGContext> c = currentCGContext();
    const CGFloat side
        = CGContextConvertRectToDeviceSpace(c.get(), NSMakeRect(0, 0, 1, 1)).size.height;
    return side > 0 ? 1 / side : 1;
}
NSRect onPixels(NSRect rect)
{
    const CGFloat p = pixel();
    const CGFloat left = std::round(NSMinX(rect) / p) * p;
    const CGFloat low = std::round(NSMinY(rect) / p) * p;
    return NSMakeRect(
        left, low, std::round(rect.size.width / p) * p, std::round(rect.size.height / p) * p);
}

namespace {

    /// - width: of the edge alone; 0 fills it all.
    void paintWhole(CGContext* c, NSRect rect, CGFloat radius, CGFloat width)
    {
        CGContextBeginPath(c);
        addRounded(c, rect, radius);
        if (width > 0)
            addRounded(c, NSInsetRect(rect, width, width), radius - width);
        CGContextEOFillPath(c);
    }

    // The corners are those of a small square, which the context remembers; a large shape would be made anew each time.
    void paintInParts(CGContext* c, NSRect rect, CGFloat radius, CGFloat width, CGFloat reach)
    {
        const CGFloat p = pixel();
        const auto whole = [p](CGFloat place) { return std::round(place / p) * p; };
        const CGFloat left = whole(NSMinX(rect) + reach);
        const CGFloat right = whole(NSMaxX(rect) - reach);
        const CGFloat low = whole(NSMinY(rect) + reach);
        const CGFloat high = whole(NSMaxY(rect) - reach);
        for (const bool atRight : { false, true }) {
            for (const bool atTop : { false, true }) {
                const GraphicsStateGuard saved;
                CGContextClipToRect(c,
                    NSMakeRect(atRight ? right : left - 2 * reach, atTop ? high : low - 2 * reach,
                        2 * reach, 2 * reach));
                paintWhole(c,
                    NSMakeRect(atRight ? NSMaxX(rect) - 2 * reach : NSMinX(rect),
                        atTop ? NSMaxY(rect) - 2 * reach : NSMinY(rect), 2 * reach, 2 * reach),
                    radius, width);
            }
        }
        const CGFloat wide = width > 0 ? width : left - NSMinX(rect);
        const CGFloat tall = width > 0 ? width : low - NSMinY(rect);
        const CGFloat wideAtRight = width > 0 ? width : NSMaxX(rect) - right;
        const CGFloat tallAtTop = width > 0 ? width : NSMaxY(rect) - high;
        CGContextFillRect(c, NSMakeRect(left, NSMinY(rect), right - left, tall));
        CGContextFillRect(c, NSMakeRect(left, NSMaxY(rect) - tallAtTop, right - left, tallAtTop));
        CGContextFillRect(c, NSMakeRect(NSMinX(rect), low, wide, high - low));
        CGContextFillRect(c, NSMakeRect(NSMaxX(rect) - wideAtRight, low, wideAtRight, high - low));
        if (width <= 0)
            CGContextFillRect(c, NSMakeRect(left, low, right - left, high - low));
    }

    void paintRounded(NSRect rect, CGFloat radius, CGFloat width, Shade shade)
    {
        constexpr CGFloat kLarge = 128 * 128; // pixels
        const Ref<CGContext> c = currentCGContext();
        setFill(c.get(), shade);
        const CGFloat p = pixel();
        const CGFloat reach = (std::ceil((std::max(radius, 0.0) + width) / p) + 1) * p;
        const CGAffineTransform turn = CGContextGetCTM(c.get());
        const bool isUpright = turn.b == 0 && turn.c == 0;
        if (isUpright && rect.size.width * rect.size.height > kLarge * p * p
            && std::min(rect.size.width, rect.size.height) > 4 * reach)
            paintInParts(c.get(), rect, radius, width, reach);
        else
            paintWhole(c.get(), rect, radius, width);
    }

}

void fillRounded(NSRect rect, CGFloat radius, Shade shade) { paintRounded(rect, radius, 0, shade); }
void frameRounded(NSRect rect, CGFloat radius, CGFloat width, Shade shade)
{
    if (width > 0)
        paintRounded(rect, radius, width, shade);
}
void strokeLine(const NSPoint* points, std::size_t count, CGFloat width, Shade s)
{
    const Ref<CGContext> c = currentCGContext();
    CGContextSaveGState(c.get());
    CGContextSetRGBStrokeColor(c.get(), s.red, s.green, s.blue, s.alpha);
    CGContextSetLineWidth(c.get(), width);
    CGContextSetLineCap(c.get(), kCGLineCapRound);
    CGContextSetLineJoin(c.get(), kCGLineJoinRound);
    CGContextBeginPath(c.get());
    CGContextAddLines(c.get(), points, count);
    CGContextStrokePath(c.get());
    CGContextRestoreGState(c.get());
}
void drawRing(NSRect rect, CGFloat radius)
{
    frameRounded(NSInsetRect(rect, -kRingRoom, -kRingRoom), radius + kRingRoom, kRingRoom,
        shadeOf(NSColor::cls().keyboardFocusIndicatorColor()));
}

void drawBezel(NSRect rect, CGFloat radius, const Look& look)
{
    const CGFloat p = pixel();
    // A soft line below lifts the button from its ground.
    if (look.enabled && !look.pressed)
        fillRounded(NSOffsetRect(rect, 0, 1), radius, faded(kBlack, isDark() ? 0.22 : 0.07));
    fillRounded(rect, radius, faceOf(look));
    frameRounded(rect, radius, p, edgeOf(look));
    if (isDark() && look.enabled && !look.pressed)
        frameRounded(NSInsetRect(rect, p, p), radius - p, p, faded(kWhite, 0.07));
}
void drawMarkBody(NSRect rect, CGFloat radius, const Look& look)
{
    Look body = look;
    fillRounded(rect, radius, faceOf(body));
    Shade edge = edgeOf(body);
    if (!look.accented)
        edge.alpha = std::min(1.0, edge.alpha * (isDark() ? 1 : 1.45));
    frameRounded(rect, radius, std::max(pixel(), 0.75), edge);
    if (isDark() && !look.accented && look.enabled)
        frameRounded(NSInsetRect(rect, 1, 1), radius - 1, pixel(), faded(kWhite, 0.10));
}
void drawWell(NSRect rect, CGFloat radius, const Look& look, Shade ground)
{
    fillRounded(rect, radius, ground);
    frameRounded(rect, radius, pixel(), edgeOf({ .enabled = look.enabled }));
}
void drawImage(NSImage* image, NSRect rect, Shade ink, double alpha)
{
    const bool tints = image->isTemplate();
    if (!tints && alpha == 1)
        return image->drawInRect(rect);
    const Ref<CGContext> c = currentCGContext();
    const GraphicsStateGuard saved;
    CGContextSetAlpha(c.get(), alpha);
    CGContextBeginTransparencyLayer(c.get(), nullptr);
    image->drawInRect(rect);
    if (tints) {
        CGContextSetBlendMode(c.get(), kCGBlendModeSourceAtop);
        setFill(c.get(), ink);
        CGContextFillRect(c.get(), rect);
    }
    CGContextEndTransparencyLayer(c.get());
}
Shade inkOn(const Look& look)
{
    if (look.accented && look.active && look.enabled)
        return shadeOf(NSColor::cls().alternateSelectedControlTextColor());
    return shadeOf(look.enabled ? NSColor::cls().controlTextColor()
                                : NSColor::cls().disabledControlTextColor());
}

namespace {

    struct Line {
        Ref<NSString> text;
        Ref<NSDictionary> attributes;
        NSSize size;
    };
    Line lineOf(NSAttributedString* text)
    {
        Line line;
        if (!text || text->length() == 0)
            return line;
        line.text = text->string();
        line.attributes = text->attributesAtIndex_effectiveRange(0, nullptr);
        line.size = sizeWithAttributes(line.text, line.attributes.get());
        return line;
    }

}

Ref<NSString> shortened(NSString& text, NSDictionary* attributes, CGFloat room)
{
    const auto isTooWide = [&](const Ref<NSString>& part) {
        return sizeWithAttributes(part, attributes).width > room;
    };
    // A long text shows by its beginning that it is too wide; the rest of it is not looked at.
    constexpr NSUInteger kGlance = 512;
    NSUInteger tooLong = kGlance;
    while (tooLong < text.length() && !isTooWide(text.substringToIndex(tooLong)))
        tooLong *= 2;
    if (tooLong >= text.length()) {
        tooLong = text.length();
        if (!isTooWide(&text))
            return &text;
    }
    const auto cut = [&](NSUInteger length) {
        return text.substringToIndex(length)->stringByAppendingString("…"_ns);
    };
    NSUInteger fits = 0;
    while (fits + 1 < tooLong) {
        const NSUInteger middle = (fits + tooLong) / 2;
        (isTooWide(cut(middle)) ? tooLong : fits) = middle;
    }
    return cut(text.length() > 0 ? text.rangeOfComposedCharacterSequenceAtIndex(fits).location : 0);
}

NSSize sizeOf(NSAttributedString* text)
{
    const NSSize size = lineOf(text).size;
    return { std::ceil(size.width), std::ceil(size.height) };
}
NSRect drawText(NSAttributedString* text, NSRect rect, NSTextAlignment alignment)
{
    Line line = lineOf(text);
    if (!line.text || !(rect.size.width > 0))
        return {};
    if (line.size.width > rect.size.width + 0.5) {
        line.text = shortened(*line.text, line.attributes.get(), rect.size.width);
        line.size = sizeWithAttributes(line.text, line.attributes.get());
    }
    const CGFloat room = std::max(0.0, rect.size.width - line.size.width);
    const CGFloat left = alignment == NSTextAlignmentRight ? room
        : alignment == NSTextAlignmentCenter               ? room / 2
                                                           : 0;
    const CGFloat p = pixel();
    const NSPoint at { std::round((NSMinX(rect) + left) / p) * p,
        std::round((NSMidY(rect) - line.size.height / 2) / p) * p };
    drawAtPoint_withAttributes(line.text, at, line.attributes.get());
    return { at, line.size };
}

bool isActive(NSView* view) { return maybe(maybe(view)->window())->isKeyWindow(); }

}
