// SPDX-License-Identifier: Apache-2.0
#include "NSColorPrivate.h"
#include "appkit/NSGraphicsContext.h"
#include "quartz/CGImage.h"
#include "quartz/CGPattern.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSColor::Methods<struct Drawing> {

    using Parts = NSColor::Methods<struct Parts>;

    static Ref<class CGColor> quartzColor(NSColor& self)
    {
        if (self.space_ != Space::named)
            return quartzColorOf(self);
        static constinit colors::PerSystemColor<class CGColor> kept;
        const appkit::Appearance look = appkit::appearance();
        return kept.at(self.systemIndex_, look, [&self, look] {
            const Ref<NSColor> color = Parts::resolvedIn(self, look);
            return quartzColorOf(*color);
        });
    }
    static Ref<class CGColor> quartzColorOf(NSColor& color)
    {
        const CGFloat* c = color.components_;
        const auto device = [c](CGColorSpaceRef made) {
            const auto space = Ref<CGColorSpace>::adopt(made);
            return CGColorCreate(space.get(), c);
        };
        switch (color.space_) {
        case Space::calibratedRGB:
            return Ref<class CGColor>::adopt(CGColorCreateGenericRGB(c[0], c[1], c[2], c[3]));
        case Space::deviceRGB:
            return Ref<class CGColor>::adopt(device(CGColorSpaceCreateDeviceRGB()));
        case Space::calibratedWhite:
            return Ref<class CGColor>::adopt(CGColorCreateGenericGray(c[0], c[1]));
        case Space::deviceWhite:
            return Ref<class CGColor>::adopt(device(CGColorSpaceCreateDeviceGray()));
        case Space::pattern:
            return patternColor(*color.pattern_);
        default:
            return nullptr;
        }
    }

    // The image is asked by messages: whatever has a size and a picture will do.
    static void drawTile(void* info, class CGContext* context)
    {
        auto& image = *static_cast<NSObject*>(info);
        const auto size = image.send<"size", NSSize>();
        const auto picture
            = image.send<"CGImageForProposedRect:context:hints:", Ref<class CGImage>>(
                static_cast<NSRect*>(nullptr), static_cast<NSGraphicsContext*>(nullptr),
                static_cast<NSObject*>(nullptr));
        CGContextDrawImage(context, { {}, size }, picture.get());
    }
    static Ref<class CGColor> patternColor(NSObject& image)
    {
        if (!image.respondsToSelector(selector<"size">)
            || !image.respondsToSelector(selector<"CGImageForProposedRect:context:hints:">))
            return nullptr;
        const auto size = image.send<"size", NSSize>();
        const CGPatternCallbacks callbacks { 0, drawTile,
            [](void* info) { release(static_cast<NSObject*>(info)); } };
        retain(&image); // by the pattern
        const auto pattern
            = Ref<CGPattern>::adopt(CGPatternCreate(&image, { {}, size }, CGAffineTransformIdentity,
                size.width, size.height, kCGPatternTilingConstantSpacing, true, &callbacks));
        if (!pattern)
            release(&image);
        const auto space = Ref<CGColorSpace>::adopt(CGColorSpaceCreatePattern(nullptr));
        const CGFloat alpha = 1;
        return Ref<class CGColor>::adopt(
            CGColorCreateWithPattern(space.get(), pattern.get(), &alpha));
    }

    static void setFill(NSColor& self)
    {
        CGContextSetFillColorWithColor(currentCGContext().get(), self.CGColor().get());
    }
    static void setStroke(NSColor& self)
    {
        CGContextSetStrokeColorWithColor(currentCGContext().get(), self.CGColor().get());
    }
    static void set(NSColor& self)
    {
        self.setFill();
        self.setStroke();
    }

    static void drawSwatch(NSColor& self, NSRect rect)
    {
        const GraphicsStateGuard saved;
        self.setFill();
        NSRectFillUsingOperation(rect, NSCompositeSourceOver);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "CGColor", imp<quartzColor> },
            { "setFill", imp<setFill> },
            { "setStroke", imp<setStroke> },
            { "set", imp<set> },
            { "drawSwatchInRect:", imp<drawSwatch> },
        });
    }
};
BRINDLE_RECORD(NSColor, Drawing)

}
