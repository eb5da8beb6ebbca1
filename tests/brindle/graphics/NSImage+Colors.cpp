// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "graphics/NSImage+AverageColor.h"
#include "graphics/NSImage+InvertImage.h"
#include "graphics/NSImage+TintImage.h"
#include "support/Colors.h"
#include "support/Focused.h"
#include "support/Pictures.h"
#include "support/Strings.h"

namespace brindle::test {

namespace {

    Ref<NSImage> imageOf(const Ref<CGImage>& picture)
    {
        return alloc<NSImage>()->initWithCGImage_size(picture.get(), NSZeroSize);
    }
    Ref<CGImage> pictureOf(const Ref<NSImage>& image)
    {
        return image->CGImageForProposedRect_context_hints(nullptr, nullptr, nullptr);
    }
    Ref<NSColor> deviceColor(double red, double green, double blue, double alpha = 1)
    {
        return NSColor::cls().colorWithDeviceRed_green_blue_alpha(red, green, blue, alpha);
    }
    /// Answers components as levels of 0 to 255.
    std::array<double, 4> levels(const Ref<NSColor>& color)
    {
        std::array<CGFloat, 4> parts {};
        color->getRed_green_blue_alpha(&parts[0], &parts[1], &parts[2], &parts[3]);
        for (CGFloat& part : parts)
            part *= 255;
        return parts;
    }

}

// ---- average

TEST(AverageColor, OfAnOpaqueImageIsTheMean)
{
    const auto color = levels(averageColor(imageOf(quarters())));
    // Of four quarters each colour has two at 255.
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_NEAR(color[i], 127.5, 0.51);
    EXPECT_EQ(color[3], 255);
}

TEST(AverageColor, OpaqueComponentsAreBytesOver255)
{
    const auto color = averageColor(imageOf(plainPicture(5, 7, 0xFF336699)));
    EXPECT_EQ(color->redComponent(), 0x33 / 255.0);
    EXPECT_EQ(color->greenComponent(), 0x66 / 255.0);
    EXPECT_EQ(color->blueComponent(), 0x99 / 255.0);
    EXPECT_EQ(color->alphaComponent(), 1);
}

TEST(AverageColor, WeighsTranslucentColoursTwice)
{
    // Red at half alpha is kept as 128, 0, 0, 128.
    const auto color = averageColor(imageOf(plainPicture(4, 4, 0x80800000)));
    EXPECT_EQ(color->alphaComponent(), 128 / 255.0);
    EXPECT_EQ(color->redComponent(), 128 * (128 / 255.0) / 255);
    EXPECT_EQ(color->greenComponent(), 0);
}

TEST(AverageColor, OfATransparentImageIsTransparent)
{
    EXPECT_EQ(rgbaText(averageColor(imageOf(plainPicture(3, 3, 0)))), "0 0 0 0");
}

TEST(AverageColor, OfNoPictureIsTransparent)
{
    EXPECT_EQ(rgbaText(averageColorFromCGImage("any object"_ns, nullptr)), "0 0 0 0");
    EXPECT_EQ(rgbaText(averageColor(make<NSImage>())), "0 0 0 0");
}

TEST(AverageColor, CountsEveryPixelOfALargeImage)
{
    std::vector<std::uint32_t> pixels(1000 * 1000, 0xFF000000);
    for (std::size_t i = 0; i < pixels.size(); i += 4)
        pixels[i] = 0xFFFFFFFF;
    const auto color
        = levels(averageColor(imageOf(quartz::imageTaking(std::move(pixels), 1000, 1000, true))));
    EXPECT_NEAR(color[0], 63.75, 0.8);
}

// ---- inversion

TEST(InvertImage, MakesEveryColourOneMinusItself)
{
    const auto inverted = invertedImage(imageOf(plainPicture(2, 2, 0xFF204080)));
    EXPECT_EQ(pictureOf(inverted)->pixels()[0], 0xFFDFBF7Fu);
}

TEST(InvertImage, KeepsAlphaAndInvertsWhatIsBelowIt)
{
    // Half white: black at half. Transparent stays so.
    EXPECT_EQ(pictureOf(invertedImage(imageOf(plainPicture(1, 1, 0x80808080))))->pixels()[0],
        0x80000000u);
    EXPECT_EQ(pictureOf(invertedImage(imageOf(plainPicture(1, 1, 0))))->pixels()[0], 0u);
}

TEST(InvertImage, TwiceIsTheImageAgain)
{
    const auto twice = invertedImage(invertedImage(imageOf(quarters())));
    EXPECT_EQ(shape(pictureOf(twice).get()), "rrgg/rrgg/bbww/bbww");
}

TEST(InvertImage, HasTheReceiversSize)
{
    const auto image = alloc<NSImage>()->initWithCGImage_size(quarters().get(), NSMakeSize(2, 3));
    EXPECT_EQ(invertedImage(image)->size(), NSMakeSize(2, 3));
    EXPECT_EQ(invertedImage(image)->representations()->count(), 1u);
}

TEST(InvertImage, IsDrawnAtItsSize)
{
    const Focused target(2, 2);
    const auto image = alloc<NSImage>()->initWithCGImage_size(
        plainPicture(4, 4, 0xFF00FFFF).get(), NSMakeSize(2, 2));
    invertedImage(image)->drawInRect(NSMakeRect(0, 0, 2, 2));
    EXPECT_EQ(shape(target), "rr/rr");
}

TEST(InvertImage, OfAnEmptyImageIsEmpty)
{
    const auto image = invertedImage(alloc<NSImage>()->initWithSize(NSMakeSize(3, 3)));
    EXPECT_EQ(image->size(), NSMakeSize(3, 3));
    EXPECT_EQ(image->representations()->count(), 0u);
}

// ---- bitmap

TEST(BitmapImageRepresentation, HoldsTheDrawnPixels)
{
    const auto rep = bitmapImageRepresentation(imageOf(quarters()));
    EXPECT_EQ(rep->pixelsWide(), 4);
    EXPECT_EQ(rep->pixelsHigh(), 4);
    EXPECT_EQ(rep->bytesPerRow(), 16);
    EXPECT_EQ(rep->bitsPerPixel(), 32);
    EXPECT_EQ(rep->samplesPerPixel(), 4);
    EXPECT_TRUE(rep->hasAlpha());
    EXPECT_EQ(utf8(rep->colorSpaceName()), "NSDeviceRGBColorSpace");
    const unsigned char* const bytes = rep->bitmapData();
    EXPECT_EQ(bytes[0], 255);
    EXPECT_EQ(bytes[1], 0);
    EXPECT_EQ(bytes[2], 0);
    EXPECT_EQ(bytes[3], 255);
    EXPECT_EQ(shape(rep->CGImage().get()), "rrgg/rrgg/bbww/bbww");
}

TEST(BitmapImageRepresentation, RoundsTheSizeDown)
{
    const auto image = imageOf(quarters());
    image->setSize(NSMakeSize(3.9, 2.1));
    const auto rep = bitmapImageRepresentation(image);
    EXPECT_EQ(rep->pixelsWide(), 3);
    EXPECT_EQ(rep->pixelsHigh(), 2);
}

TEST(BitmapImageRepresentation, IsNilForLessThanAPoint)
{
    const auto image = imageOf(quarters());
    for (const NSSize size : { NSMakeSize(0.9, 4), NSMakeSize(4, 0.5), NSMakeSize(-3, 4) }) {
        image->setSize(size);
        EXPECT_FALSE(bitmapImageRepresentation(image));
    }
    EXPECT_FALSE(bitmapImageRepresentation(make<NSImage>()));
}

TEST(BitmapImageRepresentation, LeavesTheCurrentContext)
{
    const Focused target(4, 4);
    const auto context = NSGraphicsContext::cls().currentContext();
    bitmapImageRepresentation(imageOf(quarters()));
    EXPECT_EQ(NSGraphicsContext::cls().currentContext(), context);
    EXPECT_EQ(shape(target), "..../..../..../....");
}

// ---- tint

TEST(TintImage, ColoursWhatIsCovered)
{
    std::vector<std::uint32_t> pixels { 0xFF000000, 0, 0, 0xFFFFFFFF };
    const auto image = imageOf(quartz::imageTaking(std::move(pixels), 2, 2, true));
    const auto tinted = imageTintedWithColor(image, deviceColor(1, 0, 0).get());
    EXPECT_EQ(shape(pictureOf(tinted).get()), "r./.r");
    EXPECT_EQ(shape(pictureOf(image).get()), "k./.w");
}

TEST(TintImage, KeepsTheAlphaOfHalfCoveredPixels)
{
    const auto tinted
        = imageTintedWithColor(imageOf(plainPicture(1, 1, 0x80000000)), deviceColor(1, 0, 0).get());
    EXPECT_EQ(pictureOf(tinted)->pixels()[0], 0x80800000u);
}

TEST(TintImage, TranslucentColourMixes)
{
    const auto tinted = imageTintedWithColor(
        imageOf(plainPicture(1, 1, 0xFFFFFFFF)), deviceColor(1, 0, 0, 0.5).get());
    EXPECT_PRED_FORMAT3(
        isNear, pixelAt(pictureOf(tinted).get(), 0, 0), (Rgba { 255, 127, 127, 255 }), 1);
}

TEST(TintImage, WithoutAColourIsACopy)
{
    const auto image = imageOf(quarters());
    const auto copy = imageTintedWithColor(image, nullptr);
    EXPECT_NE(copy, image);
    EXPECT_EQ(shape(pictureOf(copy).get()), "rrgg/rrgg/bbww/bbww");
}

TEST(TintImage, AnImageWithoutASizeRaises)
{
    EXPECT_TRUE(raisedBy([] {
        imageTintedWithColor(make<NSImage>(), deviceColor(1, 0, 0).get());
    }).starts_with("NSImageCacheException"));
}

}
