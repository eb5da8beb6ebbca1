// SPDX-License-Identifier: Apache-2.0
#include "NSImage+TintImage.h"

#include "appkit/NSColor.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    struct TintImage {

        static Ref<NSImage> tinted(NSImage& self, NSColor* color)
        {
            Ref<NSImage> tinted = cast<NSImage>(self.copy());
            if (!color)
                return tinted;
            const GraphicsStateGuard saved; // also when drawing raises
            tinted->lockFocus();
            color->set();
            NSRectFillUsingOperation({ NSZeroPoint, self.size() }, NSCompositeSourceAtop);
            tinted->unlockFocus();
            return tinted;
        }

        static void table(Builder& t) { t.methods({ { "imageTintedWithColor:", imp<tinted> } }); }
    };

}
BRINDLE_EXTENSION(NSImage, TintImage)

}
