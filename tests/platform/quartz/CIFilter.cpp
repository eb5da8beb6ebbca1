// SPDX-License-Identifier: Apache-2.0
#include "quartz/filters/CIFilter.h"

#include <gtest/gtest.h>

#include <cmath>

#include "foundation/NSArray.h"
#include "foundation/NSNumber.h"
#include "foundation/NSObject+KeyValueCoding.h"
#include "quartz/CGGeometry.h"
#include "quartz/filters/CIColor.h"
#include "quartz/filters/CIContext.h"
#include "support/Strings.h"

namespace brindle::test {

namespace {

    Ref<CIImage> plain(std::size_t width, std::size_t height, std::uint32_t word)
    {
        const auto picture = quartz::imageTaking(
            std::vector<std::uint32_t>(width * height, word), width, height, true);
        return CIImage::cls().imageWithCGImage(picture.get());
    }
    Ref<CIFilter> filter(NSString* name, const Ref<CIImage>& image)
    {
        const auto made = CIFilter::cls().filterWithName(name);
        made->setDefaults();
        setValue_forKey(made, image.get(), kCIInputImageKey);
        return made;
    }
    Ref<CGImage> rendered(const Ref<CIImage>& image)
    {
        return CIContext::cls().contextWithOptions(nullptr)->createCGImage_fromRect(
            image.get(), image->extent());
    }
    std::uint32_t firstPixel(const Ref<CIFilter>& made)
    {
        return rendered(made->outputImage())->pixels()[0];
    }

}

TEST(CIImage, HasTheExtentOfItsPicture)
{
    EXPECT_EQ(plain(3, 5, ~0u)->extent(), CGRectMake(0, 0, 3, 5));
    EXPECT_FALSE(CIImage::cls().imageWithCGImage(nullptr));
    EXPECT_FALSE(CIImage::cls().imageWithData(nullptr));
}

TEST(CIImage, IsTransparentOutsideOfItsExtent)
{
    const auto image = plain(2, 2, ~0u)->imageByCroppingToRect(CGRectMake(1, 1, 5, 5));
    EXPECT_EQ(image->extent(), CGRectMake(1, 1, 1, 1));
    const auto all
        = CIContext::cls().context()->createCGImage_fromRect(image.get(), CGRectMake(0, 0, 2, 2));
    EXPECT_EQ(std::vector(all->pixels(), all->pixels() + 4),
        (std::vector<std::uint32_t> { 0, ~0u, 0, 0 }));
}

TEST(CIContext, RefusesWhatMakesNoPicture)
{
    const auto context = CIContext::cls().context();
    const auto image = plain(2, 2, ~0u);
    EXPECT_FALSE(context->createCGImage_fromRect(nullptr, CGRectMake(0, 0, 1, 1)));
    EXPECT_FALSE(context->createCGImage_fromRect(image.get(), CGRectZero));
    EXPECT_FALSE(context->createCGImage_fromRect(image.get(), CGRectMake(0, 0, 1e6, 1e6)));
    EXPECT_FALSE(context->createCGImage_fromRect(image.get(), CGRectInfinite));
    EXPECT_FALSE(context->createCGImage_fromRect(image.get(), CGRectNull));
}

TEST(CIFilter, UnknownNamesAreNil)
{
    EXPECT_FALSE(CIFilter::cls().filterWithName("CINothing"_ns));
    EXPECT_FALSE(CIFilter::cls().filterWithName(nullptr));
}

TEST(CIFilter, WithoutAnImageHasNoOutput)
{
    const auto made = CIFilter::cls().filterWithName("CIColorInvert"_ns);
    EXPECT_FALSE(valueForKey(made, kCIOutputImageKey));
    setValue_forKey(made, "no image"_ns, kCIInputImageKey);
    EXPECT_FALSE(valueForKey(made, kCIOutputImageKey));
    EXPECT_FALSE(make<CIFilter>()->outputImage());
}

TEST(CIFilter, UnknownKeysRaise)
{
    const auto made = CIFilter::cls().filterWithName("CIColorInvert"_ns);
    EXPECT_TRUE(raisedBy([&] {
        setValue_forKey(made, "1"_ns, "inputRadius"_ns);
    }).starts_with("NSUnknownKeyException"));
    EXPECT_TRUE(
        raisedBy([&] { valueForKey(made, "nothing"_ns); }).starts_with("NSUnknownKeyException"));
}

TEST(CIFilter, InvertTakesColoursWithoutAlpha)
{
    EXPECT_EQ(firstPixel(filter("CIColorInvert"_ns, plain(1, 1, 0xFF204080))), 0xFFDFBF7Fu);
    EXPECT_EQ(firstPixel(filter("CIColorInvert"_ns, plain(1, 1, 0x80800000))), 0x80008080u);
}

TEST(CIFilter, ControlsAtTheirDefaultsChangeNothing)
{
    EXPECT_EQ(firstPixel(filter("CIColorControls"_ns, plain(1, 1, 0xFF204080))), 0xFF204080u);
}

TEST(CIFilter, ControlsWithoutSaturationAreGrey)
{
    const auto made = filter("CIColorControls"_ns, plain(1, 1, 0xFF00FF00));
    setValue_forKey(made, NSNumber::cls().numberWithDouble(0).get(), kCIInputSaturationKey);
    EXPECT_EQ(firstPixel(made), 0xFFB6B6B6u); // 0.7152
}

TEST(CIFilter, NumbersThatMakeNoSenseCountAsTheDefault)
{
    const auto made = filter("CIColorControls"_ns, plain(1, 1, 0xFF204080));
    setValue_forKey(made, "text"_ns, kCIInputContrastKey);
    setValue_forKey(made, NSNumber::cls().numberWithDouble(NAN).get(), kCIInputBrightnessKey);
    EXPECT_EQ(firstPixel(made), 0xFF204080u);
}

TEST(CIFilter, MonochromeTakesTheColour)
{
    const auto made = filter("CIColorMonochrome"_ns, plain(1, 1, ~0u));
    setValue_forKey(
        made, CIColor::cls().colorWithRed_green_blue(1, 0, 0.2).get(), kCIInputColorKey);
    EXPECT_EQ(firstPixel(made), 0xFFFF0033u);
}

TEST(CIFilter, SepiaWithoutIntensityChangesNothing)
{
    const auto made = filter("CISepiaTone"_ns, plain(1, 1, 0xFF204080));
    setValue_forKey(made, NSNumber::cls().numberWithDouble(0).get(), kCIInputIntensityKey);
    EXPECT_EQ(firstPixel(made), 0xFF204080u);
}

TEST(CIFilter, BlurGrowsThePictureAndKeepsItsWeight)
{
    const auto made = filter("CIGaussianBlur"_ns, plain(1, 1, ~0u));
    setValue_forKey(made, NSNumber::cls().numberWithDouble(2).get(), kCIInputRadiusKey);
    const auto output = made->outputImage();
    EXPECT_EQ(output->extent(), CGRectMake(-6, -6, 13, 13));
    const auto picture = rendered(output);
    const std::uint32_t middle = picture->pixels()[6 * 13 + 6] >> 24;
    EXPECT_NEAR(middle, 255 / (2 * 3.14159 * 4), 3);
    EXPECT_EQ(picture->pixels()[0], 0u);
}

TEST(CIFilter, FiltersFollowEachOther)
{
    auto image = plain(1, 1, 0xFF204080);
    for (int i = 0; i < 2000; ++i)
        image = filter("CIColorInvert"_ns, image)->outputImage();
    EXPECT_EQ(rendered(image)->pixels()[0], 0xFF204080u);
}

}
