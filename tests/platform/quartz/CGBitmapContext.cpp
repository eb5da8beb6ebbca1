// SPDX-License-Identifier: Apache-2.0
#include "quartz/CGBitmapContext.h"

#include "support/Pixels.h"

#include <array>

namespace brindle {

namespace {

    Ref<CGColorSpace> rgbSpace() { return Ref<CGColorSpace>::adopt(CGColorSpaceCreateDeviceRGB()); }

    using Bytes = std::array<std::uint8_t, 4>;

    /// Draws orange over one pixel of memory in some order.
    Bytes drawn(CGBitmapInfo info, CGFloat alpha = 1, Bytes bytes = {})
    {
        const auto context = Ref<CGContext>::adopt(
            CGBitmapContextCreate(bytes.data(), 1, 1, 8, 4, rgbSpace().get(), info));
        CGContextSetRGBFillColor(context.get(), 1, 0.6, 0.2, alpha);
        CGContextFillRect(context.get(), CGRectMake(0, 0, 1, 1));
        return bytes;
    }

}

TEST(CGBitmapContext, RefusesWhatItCannotDrawInto)
{
    const Ref<CGColorSpace> space = rgbSpace();
    EXPECT_EQ(CGBitmapContextCreate(nullptr, 0, 5, 8, 0, space.get(), 1), nullptr);
    EXPECT_EQ(CGBitmapContextCreate(nullptr, 5, 0, 8, 0, space.get(), 1), nullptr);
    EXPECT_EQ(CGBitmapContextCreate(nullptr, 5, 5, 8, 16, space.get(), 1), nullptr);
    EXPECT_EQ(CGBitmapContextCreate(nullptr, 5, 5, 16, 40, space.get(), 1), nullptr);
    EXPECT_EQ(CGBitmapContextCreate(nullptr, 5, 5, 8, 20, nullptr, 1), nullptr);
    EXPECT_EQ(CGBitmapContextCreate(nullptr, 5, 5, 8, 20, space.get(), kCGImageAlphaLast), nullptr);
    EXPECT_EQ(CGBitmapContextCreate(nullptr, 1u << 20, 1, 8, 0, space.get(), 1), nullptr);
}

TEST(CGBitmapContext, StoresTheByteOrdersAsTheyAreNamed)
{
    EXPECT_EQ(drawn(16385), (Bytes { 255, 153, 51, 255 }));
    EXPECT_EQ(drawn(1), (Bytes { 255, 153, 51, 255 }));
    EXPECT_EQ(drawn(0x2002), (Bytes { 51, 153, 255, 255 }));
    EXPECT_EQ(drawn(0x4002), (Bytes { 255, 255, 153, 51 }));
    EXPECT_EQ(drawn(0x2001), (Bytes { 255, 51, 153, 255 }));
}

TEST(CGBitmapContext, BlendsOntoWhatTheMemoryHolds)
{
    const Bytes bytes = drawn(1, 0.5, { 0, 0, 255, 255 });
    EXPECT_NEAR(bytes[0], 128, 1);
    EXPECT_NEAR(bytes[1], 77, 1);
    EXPECT_NEAR(bytes[2], 153, 1);
    EXPECT_EQ(bytes[3], 255);
}

TEST(CGBitmapContext, FirstRowOfMemoryIsTheTop)
{
    std::array<std::uint32_t, 4> pixels {};
    const auto context = Ref<CGContext>::adopt(
        CGBitmapContextCreate(pixels.data(), 2, 2, 8, 8, rgbSpace().get(), 1));
    CGContextSetGrayFillColor(context.get(), 1, 1);
    CGContextFillRect(context.get(), CGRectMake(0, 1, 1, 1));
    EXPECT_EQ(pixels[0], 0xFFFFFFFFu);
    EXPECT_EQ(pixels[2], 0u);
}

TEST(CGBitmapContext, ImageIsASnapshot)
{
    const auto context
        = Ref<CGContext>::adopt(CGBitmapContextCreate(nullptr, 2, 2, 8, 0, rgbSpace().get(), 1));
    CGContextSetRGBFillColor(context.get(), 1, 0, 0, 1);
    CGContextFillRect(context.get(), CGRectMake(0, 0, 2, 2));
    const auto image = Ref<CGImage>::adopt(CGBitmapContextCreateImage(context.get()));
    CGContextClearRect(context.get(), CGRectMake(0, 0, 2, 2));
    EXPECT_EQ(test::pixelAt(image.get(), 0, 0), (test::Rgba { 255, 0, 0, 255 }));
    EXPECT_EQ(static_cast<std::uint8_t*>(CGBitmapContextGetData(context.get()))[3], 0);
}

TEST(CGBitmapContext, TellsItsMeasures)
{
    const auto context
        = Ref<CGContext>::adopt(CGBitmapContextCreate(nullptr, 3, 2, 8, 0, rgbSpace().get(), 1));
    EXPECT_EQ(CGBitmapContextGetWidth(context.get()), 3u);
    EXPECT_EQ(CGBitmapContextGetHeight(context.get()), 2u);
    EXPECT_EQ(CGBitmapContextGetBytesPerRow(context.get()), 12u);
    EXPECT_EQ(CGBitmapContextGetBitmapInfo(context.get()), 1u);
}

}
