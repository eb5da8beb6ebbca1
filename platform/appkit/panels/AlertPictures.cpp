// SPDX-License-Identifier: Apache-2.0
#include "NSAlertPrivate.h"
#include "appkit/NSBezierPath.h"
#include "appkit/NSColor.h"
#include "appkit/NSGradient.h"
#include "appkit/NSImage.h"

namespace brindle {

namespace {

    constexpr CGFloat kSide = 64;

    Ref<NSColor> rgb(int word)
    {
        return NSColor::cls().colorWithCalibratedRed_green_blue_alpha(
            (word >> 16 & 255) / 255.0, (word >> 8 & 255) / 255.0, (word & 255) / 255.0, 1);
    }
    /// Fills a shape with round corners, from one shade above to another below.
    void fillShape(NSBezierPath* shape, CGFloat corners, int above, int below)
    {
        shape->setLineJoinStyle(NSRoundLineJoinStyle);
        shape->setLineWidth(corners);
        rgb(below)->set();
        shape->stroke();
        alloc<NSGradient>()
            ->initWithStartingColor_endingColor(rgb(below).get(), rgb(above).get())
            ->drawInBezierPath_angle(shape, 90);
    }
    Ref<NSBezierPath> polygon(std::initializer_list<NSPoint> points)
    {
        Ref<NSBezierPath> path = NSBezierPath::cls().bezierPath();
        path->appendBezierPathWithPoints_count(
            std::data(points), static_cast<NSInteger>(points.size()));
        path->closePath();
        return path;
    }
    void fillOval(NSRect rect) { NSBezierPath::cls().bezierPathWithOvalInRect(rect)->fill(); }
    void fillBar(NSRect rect)
    {
        NSBezierPath::cls()
            .bezierPathWithRoundedRect_xRadius_yRadius(
                rect, rect.size.width / 2, rect.size.width / 2)
            ->fill();
    }

    void drawInformation()
    {
        const Ref<NSBezierPath> disc
            = NSBezierPath::cls().bezierPathWithOvalInRect({ { 6, 6 }, { 52, 52 } });
        fillShape(disc.get(), 1, 0x5A9BFF, 0x2468E5);
        rgb(0xFFFFFF)->set();
        fillBar({ { 28.75, 16 }, { 6.5, 22 } });
        fillOval({ { 28, 41.5 }, { 8, 8 } });
    }
    void drawCritical()
    {
        fillShape(polygon({ { 22, 8 }, { 42, 8 }, { 56, 22 }, { 56, 42 }, { 42, 56 }, { 22, 56 },
                              { 8, 42 }, { 8, 22 } })
                      .get(),
            6, 0xF4685E, 0xD2302A);
        rgb(0xFFFFFF)->set();
        fillBar({ { 28.5, 28 }, { 7, 22 } });
        fillOval({ { 28, 14 }, { 8, 8 } });
    }

}

Ref<NSImage> AlertAccess::iconFor(NSAlertStyle style)
{
    if (style != NSAlertStyleInformational && style != NSAlertStyleCritical)
        return NSImage::cls().imageNamed("NSApplicationIcon"_ns);
    const auto draw = style == NSAlertStyleCritical ? drawCritical : drawInformation;
    const NSCustomImageRep::Handler handler = [draw](NSRect) {
        draw();
        return true;
    };
    return NSImage::cls().imageWithSize_flipped_drawingHandler({ kSide, kSide }, false, handler);
}

}
