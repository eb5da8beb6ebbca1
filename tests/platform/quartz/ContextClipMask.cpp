// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "support/Pixels.h"

using namespace brindle;
using test::isNear;
using test::Picture;
using test::Rgba;

namespace {

/// Opaque at the left, half there in the middle, nothing at the right; 30 by 10.
Ref<CGImage> fadingMask()
{
    std::vector<std::uint32_t> pixels;
    for (int i = 0; i < 300; ++i)
        pixels.push_back(i % 30 < 10 ? 0xFF000000 : i % 30 < 20 ? 0x80000000 : 0);
    return quartz::imageFromPixels(pixels.data(), 30, 10, 120);
}

/// A grey picture of two pixels, black and white.
Ref<CGImage> grayMask()
{
    static const std::uint8_t bytes[] = { 0, 255 };
    const auto space = Ref<CGColorSpace>::adopt(CGColorSpaceCreateDeviceGray());
    const auto provider
        = Ref<CGDataProvider>::adopt(CGDataProviderCreateWithData(nullptr, bytes, 2, nullptr));
    return Ref<CGImage>::adopt(CGImageCreate(2, 1, 8, 8, 2, space.get(), kCGImageAlphaNone,
        provider.get(), nullptr, false, kCGRenderingIntentDefault));
}

constexpr CGRect kAll { { 0, 0 }, { 40, 10 } };

}

TEST(ContextClipMask, LetsThroughAsMuchAsThePictureIsOpaque)
{
    const Picture picture(40, 10);
    CGContextClipToMask(picture, CGRectMake(0, 0, 30, 10), fadingMask().get());
    CGContextFillRect(picture, kAll);
    EXPECT_EQ(picture.at(5, 5).alpha, 255);
    EXPECT_EQ(picture.at(15, 5).alpha, 128);
    EXPECT_EQ(picture.at(25, 5).alpha, 0);
    EXPECT_EQ(picture.at(35, 5).alpha, 0);
}

TEST(ContextClipMask, GreyPicturesLetThroughAsMuchAsTheyAreLight)
{
    const Picture picture(40, 10);
    CGContextSetInterpolationQuality(picture, kCGInterpolationNone);
    CGContextClipToMask(picture, kAll, grayMask().get());
    CGContextFillRect(picture, kAll);
    EXPECT_EQ(picture.at(5, 5).alpha, 0);
    EXPECT_EQ(picture.at(35, 5).alpha, 255);
}

TEST(ContextClipMask, HoldsForEveryRoad)
{
    const std::vector<std::uint32_t> white(400, 0xFFFFFFFF);
    const auto image = quartz::imageFromPixels(white.data(), 40, 10, 160);
    const auto expect = [&](void (*draw)(CGContextRef, CGImageRef), const char* what) {
        const Picture picture(40, 10);
        CGContextClipToMask(picture, CGRectMake(0, 0, 30, 10), fadingMask().get());
        draw(picture, image.get());
        EXPECT_EQ(picture.at(5, 5).alpha, 255) << what;
        EXPECT_EQ(picture.at(15, 5).alpha, 128) << what;
        EXPECT_EQ(picture.at(25, 5).alpha, 0) << what;
    };
    expect([](CGContextRef c, CGImageRef i) { CGContextDrawImage(c, kAll, i); }, "image");
    expect(
        [](CGContextRef c, CGImageRef) {
            CGContextAddEllipseInRect(c, CGRectMake(-100, -100, 300, 200));
            CGContextFillPath(c);
        },
        "path");
    expect(
        [](CGContextRef c, CGImageRef) {
            CGContextBeginTransparencyLayer(c, nullptr);
            CGContextFillRect(c, kAll);
            CGContextEndTransparencyLayer(c);
        },
        "group");
}

TEST(ContextClipMask, CopyLeavesWhatIsHeldBack)
{
    const Picture picture(40, 10);
    CGContextSetRGBFillColor(picture, 1, 0, 0, 1);
    CGContextFillRect(picture, kAll);
    CGContextClipToMask(picture, CGRectMake(0, 0, 30, 10), fadingMask().get());
    CGContextSetBlendMode(picture, kCGBlendModeCopy);
    CGContextSetRGBFillColor(picture, 0, 0, 0, 0);
    CGContextFillRect(picture, kAll);
    EXPECT_EQ(picture.at(5, 5).alpha, 0);
    EXPECT_PRED_FORMAT3(isNear, picture.at(15, 5), (Rgba { 127, 0, 0, 127 }), 1);
    EXPECT_EQ(picture.at(25, 5), (Rgba { 255, 0, 0, 255 }));
}

TEST(ContextClipMask, MasksWorkTogether)
{
    const Picture picture(40, 10);
    CGContextClipToMask(picture, CGRectMake(0, 0, 30, 10), fadingMask().get());
    CGContextClipToMask(picture, CGRectMake(-10, 0, 30, 10), fadingMask().get());
    CGContextFillRect(picture, kAll);
    EXPECT_EQ(picture.at(5, 5).alpha, 128);
    EXPECT_EQ(picture.at(15, 5).alpha, 0);
}

TEST(ContextClipMask, EndsWithTheSavedState)
{
    const Picture picture(40, 10);
    CGContextSaveGState(picture);
    CGContextClipToMask(picture, CGRectMake(0, 0, 30, 10), fadingMask().get());
    CGContextRestoreGState(picture);
    CGContextFillRect(picture, kAll);
    EXPECT_EQ(picture.at(35, 5).alpha, 255);
}

TEST(ContextClipMask, EmptyRectangleLeavesNothing)
{
    const Picture picture(40, 10);
    CGContextClipToMask(picture, CGRectMake(0, 0, 0, 10), fadingMask().get());
    CGContextFillRect(picture, kAll);
    EXPECT_EQ(picture.at(5, 5).alpha, 0);
    EXPECT_TRUE(CGRectIsNull(CGContextGetClipBoundingBox(picture)));
}

TEST(ContextClipMask, HoldsInForeignMemory)
{
    std::vector<std::uint32_t> memory(400, 0xFF0000FF); // R, G, B, A: red
    const auto space = Ref<CGColorSpace>::adopt(CGColorSpaceCreateDeviceRGB());
    const auto context = Ref<CGContext>::adopt(CGBitmapContextCreate(
        memory.data(), 40, 10, 8, 160, space.get(), kCGImageAlphaPremultipliedLast));
    CGContextClipToMask(context.get(), CGRectMake(0, 0, 30, 10), fadingMask().get());
    CGContextSetRGBFillColor(context.get(), 0, 0, 1, 1);
    CGContextFillRect(context.get(), kAll);
    EXPECT_EQ(memory[5], 0xFFFF0000);
    EXPECT_EQ(memory[15], 0xFF80007F);
    EXPECT_EQ(memory[25], 0xFF0000FF);
}
