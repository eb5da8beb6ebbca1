// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>
#include <cmath>

#include "appkit/NSGraphicsContext.h"
#include "graphics/NSImage+ContentMode.h"
#include "graphics/NSImage+InvertImage.h"
#include "graphics/NSImage+TintImage.h"
#include "support/Colors.h"
#include "support/Golden.h"

namespace brindle::test {

namespace {

    constexpr std::size_t kSide = 36;

    /// Answers a disc that turns from orange to blue, and fades at its lower end.
    Ref<NSImage> disc()
    {
        std::vector<std::uint32_t> pixels;
        constexpr double kRadius = kSide / 2.0 - 1;
        for (std::size_t y = 0; y < kSide; ++y) {
            for (std::size_t x = 0; x < kSide; ++x) {
                const double dx = static_cast<double>(x) + 0.5 - kSide / 2.0;
                const double dy = static_cast<double>(y) + 0.5 - kSide / 2.0;
                const double inside = std::clamp(kRadius - std::hypot(dx, dy) + 0.5, 0.0, 1.0);
                const double across = static_cast<double>(x) / kSide;
                const double alpha = inside * (1 - 0.7 * static_cast<double>(y) / kSide);
                const auto part = [alpha](double value) {
                    return static_cast<std::uint32_t>(value * alpha * 255 + 0.5);
                };
                pixels.push_back(part(1) << 24 | part(1 - 0.8 * across) << 16
                    | part(0.6 - 0.2 * across) << 8 | part(0.1 + 0.8 * across));
            }
        }
        return alloc<NSImage>()->initWithCGImage_size(
            quartz::imageTaking(std::move(pixels), kSide, kSide, true).get(), NSZeroSize);
    }

    Ref<NSColor> color(double red, double green, double blue, double alpha)
    {
        return NSColor::cls().colorWithCalibratedRed_green_blue_alpha(red, green, blue, alpha);
    }

}

TEST(Golden, TintedAndInvertedImages)
{
    expectSheet("tinted-inverted", 220, 52, [](CGContextRef context) {
        const std::array images { disc(),
            imageTintedWithColor(disc(), color(0.1, 0.6, 0.3, 0.5).get()),
            imageTintedWithColor(disc(), color(0.1, 0.6, 0.3, 1).get()), invertedImage(disc()),
            invertedImage(imageTintedWithColor(disc(), color(0.1, 0.6, 0.3, 1).get())) };
        NSGraphicsContext::cls().setCurrentContext(
            NSGraphicsContext::cls().graphicsContextWithGraphicsPort_flipped(context, false).get());
        for (std::size_t i = 0; i < images.size(); ++i)
            drawInRect_contentMode(images[i],
                NSMakeRect(8 + 42 * static_cast<double>(i), 8, kSide, kSide),
                BRContentModeScaleToFill);
        NSGraphicsContext::cls().setCurrentContext(nullptr);
    });
}

}
