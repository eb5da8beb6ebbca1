// SPDX-License-Identifier: Apache-2.0
#include "NSView+GWExtensions.h"

#include "appkit/NSImage.h"
#include "foundation/NSLog.h"
#include "quartz/CGBitmapContext.h"
#include "quartz/layers/CALayer.h"
#include "runtime/Table.h"

#include <limits>

namespace brindle {

namespace {

    struct GWExtensions {

        static bool visible(NSView& self) { return !self.isHidden(); }
        static void setVisible(NSView& self, bool visible) { self.setHidden(!visible); }

        // Toward zero. What is no number of pixels, as a negative size, makes no context.
        static std::size_t wholePixels(CGFloat extent)
        {
            constexpr CGFloat kMost = std::numeric_limits<std::int32_t>::max();
            return extent > 0 ? static_cast<std::size_t>(extent < kMost ? extent : kMost) : 0;
        }
        static Ref<CGImage> makeImageRef(NSView& self)
        {
            const Ref<CALayer> layer = self.layer();
            const CGSize size = maybe(layer)->bounds().size;
            const std::size_t width = wholePixels(size.width);
            const auto space
                = Ref<CGColorSpace>::adopt(CGColorSpaceCreateWithName(kCGColorSpaceGenericRGB));
            const auto context = Ref<CGContext>::adopt(
                CGBitmapContextCreate(nullptr, width, wholePixels(size.height), 8, width * 4,
                    space.get(), kCGImageAlphaPremultipliedLast));
            if (!context) {
                NSLog("Failed to create context."_ns);
                return nullptr;
            }
            maybe(layer->presentationLayer())->renderInContext(context.get());
            return Ref<CGImage>::adopt(CGBitmapContextCreateImage(context.get()));
        }
        static Ref<NSImage> image(NSView& self)
        {
            const Ref<CGImage> picture = brindle::makeImageRef(self);
            const NSSize size { static_cast<CGFloat>(CGImageGetWidth(picture.get())),
                static_cast<CGFloat>(CGImageGetHeight(picture.get())) };
            return alloc<NSImage>()->initWithCGImage_size(picture.get(), size);
        }

        static Ref<NSView> superviewOfClass(NSView& self, Class* cls)
        {
            Ref<NSView> view = self.superview();
            while (view && !view->isKindOfClass(cls))
                view = view->superview();
            return view;
        }

        static void table(Builder& t)
        {
            t.methods({
                { "visible", imp<visible> },
                { "setVisible:", imp<setVisible> },
                { "makeImageRef", imp<makeImageRef> },
                { "image", imp<image> },
                { "superviewOfClass:", imp<superviewOfClass> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSView, GWExtensions)

}
