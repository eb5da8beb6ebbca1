// SPDX-License-Identifier: Apache-2.0
#include "NSImage+InvertImage.h"

#include "appkit/NSCIImageRep.h"
#include "appkit/NSColor.h"
#include "foundation/NSObject+KeyValueCoding.h"
#include "quartz/filters/CIContext.h"
#include "quartz/filters/CIFilter.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    /// A length as a whole number, rounded toward zero; 0 for what fits none.
    NSInteger wholePart(CGFloat length)
    {
        constexpr CGFloat kMost = 1 << 30;
        return length > 0 && length < kMost ? static_cast<NSInteger>(length) : 0;
    }

    struct InvertImage {

        static Ref<NSImage> inverted(NSImage& self)
        {
            const Ref<CIContext> context = CIContext::cls().contextWithOptions(nullptr);
            const Ref<CGImage> picture
                = self.CGImageForProposedRect_context_hints(nullptr, nullptr, nullptr);
            const Ref<CIImage> input = CIImage::cls().imageWithCGImage(picture.get());
            const Ref<CIFilter> filter = CIFilter::cls().filterWithName("CIColorInvert"_ns);
            filter->setDefaults();
            setValue_forKey(filter, input.get(), kCIInputImageKey);
            const auto output = cast<CIImage>(valueForKey(filter, kCIOutputImageKey));
            context->createCGImage_fromRect(output.get(), maybe(output)->extent());
            const Ref<NSCIImageRep> rep = NSCIImageRep::cls().imageRepWithCIImage(output.get());
            Ref<NSImage> result = alloc<NSImage>()->initWithSize(self.size());
            result->addRepresentation(rep.get());
            return result;
        }

        static Ref<NSBitmapImageRep> bitmap(NSImage& self)
        {
            const NSInteger width = wholePart(self.size().width);
            const NSInteger height = wholePart(self.size().height);
            if (width <= 0 || height <= 0)
                return nullptr;
            const auto rep
                = alloc<NSBitmapImageRep>()
                      ->initWithBitmapDataPlanes_pixelsWide_pixelsHigh_bitsPerSample_samplesPerPixel_hasAlpha_isPlanar_colorSpaceName_bytesPerRow_bitsPerPixel(
                          nullptr, width, height, 8, 4, true, false, NSDeviceRGBColorSpace,
                          width * 4, 32);
            const auto contexts = NSGraphicsContext::cls();
            const auto context = contexts.graphicsContextWithBitmapImageRep(rep.get());
            const GraphicsStateGuard saved;
            contexts.setCurrentContext(context.get());
            self.drawAtPoint_fromRect_operation_fraction(
                NSZeroPoint, NSZeroRect, NSCompositeCopy, 1);
            maybe(context)->flushGraphics();
            return rep;
        }

        static void table(Builder& t)
        {
            t.methods({
                { "invertedImage", imp<inverted> },
                { "bitmapImageRepresentation", imp<bitmap> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSImage, InvertImage)

}
