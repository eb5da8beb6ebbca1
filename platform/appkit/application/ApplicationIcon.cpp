// SPDX-License-Identifier: Apache-2.0
#include "appkit/drawing/NSImagePrivate.h"

#include "appkit/NSBezierPath.h"
#include "appkit/NSColor.h"
#include "appkit/NSGradient.h"
#include "foundation/NSBundle.h"

namespace brindle {

namespace {

    constexpr CGFloat kSide = 64; // points; drawn anew for every size

    Ref<NSColor> shade(double red, double green, double blue)
    {
        return NSColor::cls().colorWithCalibratedRed_green_blue_alpha(red, green, blue, 1);
    }
    Ref<NSBezierPath> rounded(NSRect rect, CGFloat radius)
    {
        return NSBezierPath::cls().bezierPathWithRoundedRect_xRadius_yRadius(rect, radius, radius);
    }

    /// A window with a bar above it, for programs without a picture of their own.
    void drawIcon(NSRect rect)
    {
        const CGFloat unit = rect.size.width / kSide;
        const auto at = [&](double x, double y, double width, double height) {
            return NSMakeRect(
                NSMinX(rect) + x * unit, NSMinY(rect) + y * unit, width * unit, height * unit);
        };
        const Ref<NSGradient> body = alloc<NSGradient>()->initWithStartingColor_endingColor(
            shade(0.36, 0.56, 0.98).get(), shade(0.20, 0.28, 0.78).get());
        body->drawInBezierPath_angle(rounded(at(3, 3, 58, 58), 14 * unit).get(), 270);
        const Ref<NSColor> white = NSColor::cls().whiteColor();
        white->colorWithAlphaComponent(0.95)->set();
        rounded(at(12, 45, 40, 6), 3 * unit)->fill();
        rounded(at(12, 13, 40, 27), 5 * unit)->fill();
        shade(0.27, 0.42, 0.90)->set();
        for (const double x : { 17.0, 23.0, 29.0 })
            rounded(at(x, 33, 3.5, 3.5), 1.75 * unit)->fill();
        rounded(at(17, 25, 30, 3), 1.5 * unit)->fill();
        rounded(at(17, 19, 21, 3), 1.5 * unit)->fill();
    }

}

Ref<NSImage> applicationIcon()
{
    const Ref<NSBundle> bundle = NSBundle::cls().mainBundle();
    const Ref<NSObject> name = bundle->objectForInfoDictionaryKey("CFBundleIconFile"_ns);
    if (name && name->isKindOfClass(NSString::cls())) {
        const Ref<NSString> path = bundle->pathForImageResource(static_cast<NSString*>(name.get()));
        Ref<NSImage> image = path ? alloc<NSImage>()->initWithContentsOfFile(path.get()) : nullptr;
        if (image)
            return image;
    }
    return NSImage::cls().imageWithSize_flipped_drawingHandler(
        { kSide, kSide }, false, [](NSRect rect) {
            drawIcon(rect);
            return true;
        });
}

}
