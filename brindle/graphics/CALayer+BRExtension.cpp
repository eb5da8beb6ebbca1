// SPDX-License-Identifier: Apache-2.0
#include "CALayer+BRExtension.h"

#include "runtime/Table.h"

namespace brindle {

namespace {

    // The narrow setters send the wide ones, which a host may replace.
    struct FrameParts {
        static CGPoint origin(CALayer& self) { return self.frame().origin; }
        static void setOrigin(CALayer& self, CGPoint origin)
        {
            self.setFrame({ origin, self.frame().size });
        }
        static CGSize size(CALayer& self) { return self.frame().size; }
        static void setSize(CALayer& self, CGSize size)
        {
            self.setFrame({ self.frame().origin, size });
        }

        static double originX(CALayer& self) { return self.frame().origin.x; }
        static void setOriginX(CALayer& self, double x)
        {
            setFrameOrigin(self, { x, self.frame().origin.y });
        }
        static double originY(CALayer& self) { return self.frame().origin.y; }
        static void setOriginY(CALayer& self, double y)
        {
            setFrameOrigin(self, { frameOriginX(self), y });
        }
        static double width(CALayer& self) { return self.frame().size.width; }
        static void setWidth(CALayer& self, double width)
        {
            setFrameSize(self, { width, self.frame().size.height });
        }
        static double height(CALayer& self) { return self.frame().size.height; }
        static void setHeight(CALayer& self, double height)
        {
            setFrameSize(self, { self.frame().size.width, height });
        }

        static void table(Builder& t)
        {
            t.methods({
                { "frameOrigin", imp<origin> },
                { "setFrameOrigin:", imp<setOrigin> },
                { "frameSize", imp<size> },
                { "setFrameSize:", imp<setSize> },
                { "frameOriginX", imp<originX> },
                { "setFrameOriginX:", imp<setOriginX> },
                { "frameOriginY", imp<originY> },
                { "setFrameOriginY:", imp<setOriginY> },
                { "frameSizeWidth", imp<width> },
                { "setFrameSizeWidth:", imp<setWidth> },
                { "frameSizeHeight", imp<height> },
                { "setFrameSizeHeight:", imp<setHeight> },
            });
        }
    };

}
BRINDLE_EXTENSION(CALayer, FrameParts)

}
