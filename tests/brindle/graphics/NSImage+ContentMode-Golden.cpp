// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSGraphicsContext.h"
#include "graphics/NSImage+ContentMode.h"
#include "support/Golden.h"
#include "support/Pictures.h"

namespace brindle::test {

namespace {

    constexpr int kColumns = 7;
    constexpr double kCellWidth = 48;
    constexpr double kCellHeight = 44;
    constexpr NSSize kFrame { 27, 22 };
    constexpr int kWidth = static_cast<int>(kColumns * kCellWidth);
    constexpr int kHeight = static_cast<int>(4 * kCellHeight);

    /// Answers a picture of four colours with a dark edge of one pixel; the upper left quarter is red.
    Ref<NSImage> framedQuarters(std::size_t width, std::size_t height)
    {
        std::vector<std::uint32_t> pixels;
        for (std::size_t y = 0; y < height; ++y) {
            for (std::size_t x = 0; x < width; ++x) {
                const bool isEdge = x == 0 || y == 0 || x + 1 == width || y + 1 == height;
                const bool isLeft = x < width / 2;
                const std::uint32_t upper = isLeft ? 0xFFD04030u : 0xFF40A050u;
                const std::uint32_t lower = isLeft ? 0xFF3060C0u : 0xFFF0D040u;
                pixels.push_back(isEdge ? 0xFF303030u : y < height / 2 ? upper : lower);
            }
        }
        return alloc<NSImage>()->initWithCGImage_size(
            quartz::imageTaking(std::move(pixels), width, height, true).get(), NSZeroSize);
    }

    /// Draws an image in every mode, two rows from a place on.
    void drawModes(CGContextRef context, const Ref<NSImage>& image, double top)
    {
        for (int mode = 0; mode <= BRContentModeBottomRight; ++mode) {
            const NSRect frame = { { (mode % kColumns) * kCellWidth + 10.5,
                                       top + mode / kColumns * kCellHeight + 11 },
                kFrame };
            CGContextSetGrayFillColor(context, 0.85, 1);
            CGContextFillRect(context, frame);
            drawInRect_contentMode(image, frame, mode);
        }
    }

    void expectModes(const std::string& name, bool flipped)
    {
        expectSheet(name, kWidth, kHeight, [&](CGContextRef context) {
            if (flipped)
                flip(context, kHeight);
            NSGraphicsContext::cls().setCurrentContext(
                NSGraphicsContext::cls()
                    .graphicsContextWithGraphicsPort_flipped(context, flipped)
                    .get());
            drawModes(context, framedQuarters(38, 29), 0);
            drawModes(context, framedQuarters(14, 11), 2 * kCellHeight);
            NSGraphicsContext::cls().setCurrentContext(nullptr);
        });
    }

    TEST(Golden, ContentModesWithYUp) { expectModes("content-modes", false); }
    TEST(Golden, ContentModesWithYDown) { expectModes("content-modes-flipped", true); }

}

}
