// SPDX-License-Identifier: Apache-2.0
#include "NSColorPrivate.h"
#include "NSGraphicsContext.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSColor::Methods<struct Drawing> {

    using Parts = NSColor::Methods<struct Parts>;

    static Ref<class CGColor> quartzColor(NSColor& self)
    {
        const Ref<NSColor> color = Parts::resolved(self);
        const CGFloat* c = color->components_;
        const auto device = [c](CGColorSpaceRef made) {
            const auto space = Ref<CGColorSpace>::adopt(made);
            return CGColorCreate(space.get(), c);
        };
        switch (color->space_) {
        case Space::calibratedRGB:
            return Ref<class CGColor>::adopt(CGColorCreateGenericRGB(c[0], c[1], c[2], c[3]));
        case Space::deviceRGB:
            return Ref<class CGColor>::adopt(device(CGColorSpaceCreateDeviceRGB()));
        case Space::calibratedWhite:
            return Ref<class CGColor>::adopt(CGColorCreateGenericGray(c[0], c[1]));
        case Space::deviceWhite:
            return Ref<class CGColor>::adopt(device(CGColorSpaceCreateDeviceGray()));
        default:
            return nullptr;
        }
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
