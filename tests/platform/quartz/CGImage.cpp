// SPDX-License-Identifier: Apache-2.0
#include "quartz/CGImage.h"

#include "support/Numbers.h"
#include "support/Pixels.h"

#include <cmath>
#include <limits>

namespace brindle {

using test::areAlike;
using test::isNear;
using test::Picture;
using test::pixelAt;
using test::Rgba;

namespace {

    /// Red above, blue below.
    Ref<CGImage> twoRows()
    {
        const std::uint32_t pixels[] { 0xFFFF0000, 0xFFFF0000, 0xFF0000FF, 0xFF0000FF };
        return quartz::imageFromPixels(pixels, 2, 2, 8);
    }

    Ref<CGImage> checkers(std::size_t side)
    {
        std::vector<std::uint32_t> pixels(side * side);
        for (std::size_t i = 0; i < pixels.size(); ++i)
            pixels[i] = (i + i / side) % 2 ? 0xFFFFFFFF : 0xFF000000;
        return quartz::imageFromPixels(
            pixels.data(), side, side, static_cast<std::ptrdiff_t>(side * 4));
    }

}

TEST(CGImage, IsDrawnUprightInAnUnflippedContext)
{
    const Picture picture(4, 4);
    CGContextDrawImage(picture, CGRectMake(1, 1, 2, 2), twoRows().get());
    EXPECT_EQ(picture.at(1, 1), (Rgba { 255, 0, 0, 255 }));
    EXPECT_EQ(picture.at(1, 2), (Rgba { 0, 0, 255, 255 }));
}

TEST(CGImage, StandsOnItsHeadInAFlippedContext)
{
    const Picture picture(2, 2);
    CGContextTranslateCTM(picture, 0, 2);
    CGContextScaleCTM(picture, 1, -1);
    CGContextDrawImage(picture, CGRectMake(0, 0, 2, 2), twoRows().get());
    EXPECT_EQ(picture.at(0, 0), (Rgba { 0, 0, 255, 255 }));
}

TEST(CGImage, OnePixelIsTheAverageOfAll)
{
    const Picture picture(1, 1);
    CGContextDrawImage(picture, CGRectMake(0, 0, 1, 1), twoRows().get());
    EXPECT_PRED_FORMAT3(isNear, picture.at(0, 0), (Rgba { 128, 0, 128, 255 }), 1);
    const Picture large(1, 1);
    CGContextDrawImage(large, CGRectMake(0, 0, 1, 1), checkers(101).get());
    EXPECT_PRED_FORMAT3(isNear, large.at(0, 0), (Rgba { 127, 127, 127, 255 }), 2);
}

TEST(CGImage, NoInterpolationKeepsHardPixels)
{
    const Picture picture(8, 8);
    CGContextSetInterpolationQuality(picture, kCGInterpolationNone);
    CGContextDrawImage(picture, CGRectMake(0, 0, 8, 8), twoRows().get());
    EXPECT_EQ(picture.at(3, 3), (Rgba { 255, 0, 0, 255 }));
    EXPECT_EQ(picture.at(3, 4), (Rgba { 0, 0, 255, 255 }));
}

TEST(CGImage, EnlargedEdgesStaySolid)
{
    const Picture picture(8, 8);
    CGContextDrawImage(picture, CGRectMake(0, 0, 8, 8), twoRows().get());
    EXPECT_EQ(picture.at(0, 0), (Rgba { 255, 0, 0, 255 }));
    EXPECT_EQ(picture.at(7, 7), (Rgba { 0, 0, 255, 255 }));
}

TEST(CGImage, TurnedImageFallsWhereItsRectangleFalls)
{
    const Picture picture(8, 8);
    CGContextTranslateCTM(picture, 8, 0);
    CGContextRotateCTM(picture, M_PI / 2);
    CGContextDrawImage(picture, CGRectMake(0, 0, 8, 8), twoRows().get());
    // A quarter turn to the left puts the top on the left.
    EXPECT_PRED_FORMAT3(isNear, picture.at(1, 4), (Rgba { 255, 0, 0, 255 }), 2);
    EXPECT_PRED_FORMAT3(isNear, picture.at(6, 4), (Rgba { 0, 0, 255, 255 }), 2);
}

TEST(CGImage, IsMadeFromRawBytes)
{
    const std::uint8_t bytes[] { 200, 100, 50, 128 };
    const auto space = Ref<CGColorSpace>::adopt(CGColorSpaceCreateDeviceRGB());
    const auto provider
        = Ref<CGDataProvider>::adopt(CGDataProviderCreateWithData(nullptr, bytes, 4, nullptr));
    const auto image = Ref<CGImage>::adopt(CGImageCreate(1, 1, 8, 32, 4, space.get(),
        kCGImageAlphaLast, provider.get(), nullptr, false, kCGRenderingIntentDefault));
    ASSERT_TRUE(image);
    EXPECT_EQ(pixelAt(image.get(), 0, 0), (Rgba { 100, 50, 25, 128 }));
    EXPECT_EQ(CGImageCreate(2, 1, 8, 32, 8, space.get(), kCGImageAlphaLast, provider.get(), nullptr,
                  false, kCGRenderingIntentDefault),
        nullptr);
}

TEST(CGImage, KeepsItsBitsOfAPixelHoweverItsRowsArePadded)
{
    const std::uint8_t bytes[16] {};
    const auto space = Ref<CGColorSpace>::adopt(CGColorSpaceCreateDeviceRGB());
    const auto provider
        = Ref<CGDataProvider>::adopt(CGDataProviderCreateWithData(nullptr, bytes, 16, nullptr));
    for (const std::size_t bits : { 24u, 32u }) {
        const auto image = Ref<CGImage>::adopt(CGImageCreate(2, 2, 8, bits, 8, space.get(),
            bits == 24 ? kCGImageAlphaNone : kCGImageAlphaNoneSkipLast, provider.get(), nullptr,
            false, kCGRenderingIntentDefault));
        ASSERT_TRUE(image);
        EXPECT_EQ(CGImageGetBitsPerPixel(image.get()), bits);
    }
    EXPECT_EQ(CGImageGetBitsPerPixel(twoRows().get()), 32u);
}

TEST(CGImage, SurvivesBeingWrittenAsPNG)
{
    const std::uint32_t pixels[] { 0xFFFF0000, 0x80400020, 0, 0xFF0A0B0C };
    const Ref<CGImage> image = quartz::imageFromPixels(pixels, 2, 2, 8);
    const std::string bytes = quartz::encodePNG(image.get());
    const quartz::ImageFile read
        = quartz::decodeImage({ reinterpret_cast<const std::byte*>(bytes.data()), bytes.size() });
    EXPECT_TRUE(areAlike(read.image.get(), image.get(), 1, "png"));
    EXPECT_EQ(read.dotsPerInch, 72);
}

TEST(CGImage, HasNoPartOfASizeThatIsNoNumber)
{
    const Ref<CGImage> image = twoRows();
    for (const CGRect& part : { CGRectMake(0, 0, kNaN, 1), CGRectMake(0, 0, 1, kNaN),
             CGRectMake(kNaN, 0, 1, 1), CGRectMake(0, 0, 0, 1) })
        EXPECT_EQ(CGImageCreateWithImageInRect(image.get(), part), nullptr);
}

TEST(CGImage, SurvivesBeingWrittenAsJPEG)
{
    const std::vector<std::uint32_t> pixels(64, 0xFF336699);
    const Ref<CGImage> image = quartz::imageFromPixels(pixels.data(), 8, 8, 32);
    const std::string bytes = quartz::encodeJPEG(image.get(), 1);
    const quartz::ImageFile read
        = quartz::decodeImage({ reinterpret_cast<const std::byte*>(bytes.data()), bytes.size() });
    EXPECT_TRUE(areAlike(read.image.get(), image.get(), 3, "jpeg"));
}

TEST(CGImage, BrokenFilesMakeNoImage)
{
    std::string bytes = quartz::encodePNG(checkers(32).get());
    for (const std::size_t length : { 0u, 7u, 9u, 30u, 60u }) {
        const std::string cut = bytes.substr(0, length);
        EXPECT_FALSE(
            quartz::decodeImage({ reinterpret_cast<const std::byte*>(cut.data()), cut.size() })
                .image);
    }
    const std::string noise = "\xFF\xD8\xFF this is no picture";
    EXPECT_FALSE(
        quartz::decodeImage({ reinterpret_cast<const std::byte*>(noise.data()), noise.size() })
            .image);
    EXPECT_FALSE(quartz::readImage("no such file").image);
}

}
