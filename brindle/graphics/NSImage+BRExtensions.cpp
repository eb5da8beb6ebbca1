// SPDX-License-Identifier: Apache-2.0
#include "NSImage+BRExtensions.h"

#include "core/NSBundle+Brindle.h"
#include "foundation/NSLog.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    struct ImageExtensions {

        static Ref<NSImage> fromBundle(Class& self, NSString* name, NSBundle* bundle)
        {
            const Ref<NSString> path = maybe(bundle)->pathForImageResource(name);
            if (!path)
                return nullptr;
            return cast<NSImage>(self.send<"alloc", Ref<NSObject>>())
                ->initWithContentsOfFile(path.get());
        }
        static Ref<NSImage> fromBrindle(Class& self, NSString* name)
        {
            return imageNamed_fromBundle(self, name, BrindleFrameworkBundle(NSBundle::cls()).get());
        }

        static Ref<NSImage> resized(NSImage& self, NSSize size)
        {
            if (!self.isValid()) {
                NSLog("Invalid Image"_ns);
                return nullptr;
            }
            Ref<NSImage> result = alloc<NSImage>()->initWithSize(size);
            const GraphicsStateGuard saved; // also when drawing raises
            result->lockFocus();
            self.setSize(size);
            NSGraphicsContext::cls().currentContext()->setImageInterpolation(
                NSImageInterpolationHigh);
            self.drawAtPoint_fromRect_operation_fraction(
                NSZeroPoint, { NSZeroPoint, size }, NSCompositeCopy, 1);
            result->unlockFocus();
            return result;
        }

        static void table(Builder& t)
        {
            t.classMethods({
                { "imageNamed:fromBundle:", imp<fromBundle> },
                { "imageNamedFromBrindle:", imp<fromBrindle> },
            });
            t.methods({ { "resizeImageToNewSize:", imp<resized> } });
        }
    };

}
BRINDLE_EXTENSION(NSImage, ImageExtensions)

}
