// SPDX-License-Identifier: Apache-2.0
#include "Pictures.h"

#include "appkit/NSBezierPath.h"
#include "appkit/NSColor.h"
#include "appkit/NSGradient.h"

namespace gallery {

using namespace brindle;

namespace {

    Ref<NSColor> hsb(double hue, double saturation, double brightness)
    {
        return NSColor::cls().colorWithCalibratedHue_saturation_brightness_alpha(
            hue, saturation, brightness, 1);
    }

    /// A rectangle whose places are told in parts of its sides.
    struct Canvas {
        NSRect rect;
        NSPoint at(double x, double y) const
        {
            return { rect.origin.x + x * rect.size.width, rect.origin.y + y * rect.size.height };
        }
        NSRect box(double x, double y, double width, double height) const
        {
            const NSPoint origin = at(x, y);
            return NSMakeRect(
                origin.x, origin.y, width * rect.size.width, height * rect.size.height);
        }
    };

    void fillGradient(NSBezierPath* path, NSColor* low, NSColor* high)
    {
        const auto gradient = alloc<NSGradient>()->initWithStartingColor_endingColor(low, high);
        gradient->drawInBezierPath_angle(path, 90);
    }

    /// Fills what lies below a curve from the left side to the right.
    void fillHill(
        const Canvas& c, double left, double top, double bend, double right, NSColor* color)
    {
        const auto hill = NSBezierPath::cls().bezierPath();
        hill->moveToPoint(c.at(0, 0));
        hill->lineToPoint(c.at(0, left));
        hill->curveToPoint_controlPoint1_controlPoint2(
            c.at(1, right), c.at(bend, top), c.at(bend + 0.2, top));
        hill->lineToPoint(c.at(1, 0));
        hill->closePath();
        color->setFill();
        hill->fill();
    }

    bool drawLandscape(NSRect rect)
    {
        const Canvas c { rect };
        const auto sky = NSBezierPath::cls().bezierPathWithRect(rect);
        fillGradient(sky.get(), hsb(0.11, 0.35, 1).get(), hsb(0.56, 0.5, 0.9).get());
        const double side = rect.size.height * 0.28;
        const NSPoint sun = c.at(0.76, 0.72);
        hsb(0.12, 0.55, 1)->setFill();
        NSBezierPath::cls()
            .bezierPathWithOvalInRect(NSMakeRect(sun.x - side / 2, sun.y - side / 2, side, side))
            ->fill();
        fillHill(c, 0.62, 0.72, 0.15, 0.25, hsb(0.53, 0.35, 0.55).get());
        fillHill(c, 0.2, 0.5, 0.55, 0.48, hsb(0.36, 0.5, 0.5).get());
        fillHill(c, 0.3, 0.2, 0.2, 0.1, hsb(0.28, 0.62, 0.38).get());
        return true;
    }

    bool drawBalloon(NSRect rect)
    {
        const Canvas c { rect };
        const auto hull = NSBezierPath::cls().bezierPath();
        hull->moveToPoint(c.at(0.4, 0.26));
        hull->curveToPoint_controlPoint1_controlPoint2(
            c.at(0.5, 1), c.at(-0.1, 0.55), c.at(0.02, 1));
        hull->curveToPoint_controlPoint1_controlPoint2(
            c.at(0.6, 0.26), c.at(0.98, 1), c.at(1.1, 0.55));
        hull->closePath();
        fillGradient(hull.get(), hsb(0.02, 0.75, 0.75).get(), hsb(0.07, 0.7, 0.98).get());
        const auto stripe = NSBezierPath::cls().bezierPath();
        stripe->moveToPoint(c.at(0.47, 0.26));
        stripe->curveToPoint_controlPoint1_controlPoint2(
            c.at(0.5, 1), c.at(0.24, 0.6), c.at(0.28, 1));
        stripe->curveToPoint_controlPoint1_controlPoint2(
            c.at(0.53, 0.26), c.at(0.72, 1), c.at(0.76, 0.6));
        stripe->closePath();
        hsb(0.12, 0.25, 1)->setFill();
        stripe->fill();
        hsb(0.08, 0.6, 0.45)->setFill();
        NSBezierPath::cls()
            .bezierPathWithRoundedRect_xRadius_yRadius(c.box(0.38, 0, 0.24, 0.17), 1.5, 1.5)
            ->fill();
        hsb(0.08, 0.4, 0.35)->setStroke();
        for (const double x : { 0.41, 0.59 })
            NSBezierPath::cls().strokeLineFromPoint_toPoint(c.at(x, 0.16), c.at(x, 0.27));
        return true;
    }

    Ref<NSImage> drawn(NSSize size, Stand stand, bool (*draw)(NSRect))
    {
        return NSImage::cls().imageWithSize_flipped_drawingHandler(
            size, stand == Stand::forFlippedViews, draw);
    }

}

Ref<NSImage> landscape(NSSize size, Stand stand) { return drawn(size, stand, drawLandscape); }
Ref<NSImage> balloon(NSSize size, Stand stand) { return drawn(size, stand, drawBalloon); }

}
