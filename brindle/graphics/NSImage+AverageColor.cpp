// SPDX-License-Identifier: Apache-2.0
#include "NSImage+AverageColor.h"

#include "quartz/CGBitmapContext.h"
#include "runtime/Table.h"

#include <array>

namespace brindle {

namespace {

    struct x {

        static Ref<NSColor> average(NSObject&, CGImage* picture)
        {
            constexpr CGBitmapInfo kRedFirst
                = kCGImageAlphaPremultipliedLast | kCGBitmapByteOrder32Big;
            alignas(4) std::array<std::uint8_t, 4> rgba {};
            const auto space = Ref<CGColorSpace>::adopt(CGColorSpaceCreateDeviceRGB());
            const auto context = Ref<CGContext>::adopt(
                CGBitmapContextCreate(rgba.data(), 1, 1, 8, 4, space.get(), kRedFirst));
            CGContextDrawImage(context.get(), CGRectMake(0, 0, 1, 1), picture);
            const double alpha = rgba[3] / 255.0;
            const double weight = rgba[3] > 0 ? alpha : 1;
            const auto part = [&](std::size_t i) { return rgba[i] * weight / 255; };
            return NSColor::cls().colorWithRed_green_blue_alpha(part(0), part(1), part(2), alpha);
        }

        static void table(Builder& t)
        {
            t.methods({ { "averageColorFromCGImage:", imp<average> } });
        }
    };

    struct AverageColor {

        static Ref<NSColor> average(NSImage& self)
        {
            const Ref<CGImage> picture
                = self.CGImageForProposedRect_context_hints(nullptr, nullptr, nullptr);
            return averageColorFromCGImage(self, picture.get());
        }

        static void table(Builder& t) { t.methods({ { "averageColor", imp<average> } }); }
    };

}
BRINDLE_EXTENSION(NSObject, x)
BRINDLE_EXTENSION(NSImage, AverageColor)

}
