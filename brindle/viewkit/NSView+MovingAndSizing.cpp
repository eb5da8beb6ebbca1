// SPDX-License-Identifier: Apache-2.0
#include "NSView+MovingAndSizing.h"

#include "runtime/Table.h"

namespace brindle {

namespace {

    struct MovingAndSizing {

        static double originX(NSView& self) { return self.frame().origin.x; }
        static double originY(NSView& self) { return self.frame().origin.y; }
        static double width(NSView& self) { return self.frame().size.width; }
        static double height(NSView& self) { return self.frame().size.height; }

        static void setOriginX(NSView& self, double x)
        {
            self.setFrameOrigin({ x, self.frame().origin.y });
        }
        static void setOriginY(NSView& self, double y)
        {
            self.setFrameOrigin({ frameOriginX(self), y });
        }
        static void setWidth(NSView& self, double width)
        {
            self.setFrameSize({ width, self.frame().size.height });
        }
        static void setHeight(NSView& self, double height)
        {
            self.setFrameSize({ self.frame().size.width, height });
        }

        static void table(Builder& t)
        {
            t.methods({
                { "frameOriginX", imp<originX> },
                { "frameOriginY", imp<originY> },
                { "frameSizeWidth", imp<width> },
                { "frameSizeHeight", imp<height> },
                { "setFrameOriginX:", imp<setOriginX> },
                { "setFrameOriginY:", imp<setOriginY> },
                { "setFrameSizeWidth:", imp<setWidth> },
                { "setFrameSizeHeight:", imp<setHeight> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSView, MovingAndSizing)

}
