// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSColor.h"

#include "runtime/NSException.h"

#include <gtest/gtest.h>

#include <cmath>

namespace brindle {

namespace {

    Ref<NSColor> rgb(double red, double green, double blue, double alpha = 1)
    {
        return NSColor::cls().colorWithCalibratedRed_green_blue_alpha(red, green, blue, alpha);
    }

}

TEST(NSColor, ClampsComponentsWhenMade)
{
    const Ref<NSColor> color = rgb(3.2, -1, NAN, 0.999);
    EXPECT_EQ(color->redComponent(), 1);
    EXPECT_EQ(color->greenComponent(), 0);
    EXPECT_EQ(color->blueComponent(), 0);
    EXPECT_EQ(color->alphaComponent(), 0.999);
}

TEST(NSColor, HueComesBackFromRGB)
{
    for (const double hue : { 0.0, 0.1, 1.0 / 3, 0.5, 0.7, 0.95 }) {
        const Ref<NSColor> color
            = NSColor::cls().colorWithCalibratedHue_saturation_brightness_alpha(hue, 0.8, 0.6, 1);
        EXPECT_NEAR(color->hueComponent(), hue, 1e-12);
        EXPECT_NEAR(color->saturationComponent(), 0.8, 1e-12);
        EXPECT_NEAR(color->brightnessComponent(), 0.6, 1e-12);
    }
}

TEST(NSColor, GreysHaveNoHueAndBlackNoSaturation)
{
    EXPECT_EQ(rgb(0.5, 0.5, 0.5)->hueComponent(), 0);
    EXPECT_EQ(rgb(0, 0, 0)->saturationComponent(), 0);
}

TEST(NSColor, WhiteSpacesHaveNoRed)
{
    try {
        NSColor::cls().blackColor()->redComponent();
        FAIL() << "black answered its red";
    } catch (const Exception& e) {
        EXPECT_STREQ(e.what(),
            "NSInvalidArgumentException: *** -redComponent not valid for the NSColor "
            "NSCalibratedWhiteColorSpace 0 1; need to first convert colorspace.");
    }
}

TEST(NSColor, ConvertsWhiteToEqualComponents)
{
    const Ref<NSColor> color
        = NSColor::cls().lightGrayColor()->colorUsingColorSpaceName(NSCalibratedRGBColorSpace);
    EXPECT_EQ(color->redComponent(), 2.0 / 3);
    EXPECT_EQ(color->blueComponent(), 2.0 / 3);
}

TEST(NSColor, ConvertsToItsOwnSpaceAsItself)
{
    const Ref<NSColor> color = rgb(0.1, 0.2, 0.3);
    EXPECT_EQ(color->colorUsingColorSpaceName(NSCalibratedRGBColorSpace), color);
    EXPECT_EQ(color->colorUsingColorSpaceName(NSDeviceRGBColorSpace)->greenComponent(), 0.2);
    EXPECT_FALSE(color->colorUsingColorSpaceName("Nowhere"_ns));
}

TEST(NSColor, IsEqualBySpaceAndComponents)
{
    EXPECT_TRUE(rgb(0.1, 0.2, 0.3)->isEqual(rgb(0.1, 0.2, 0.3).get()));
    EXPECT_FALSE(rgb(0, 0, 0)->isEqual(NSColor::cls().blackColor().get()));
}

TEST(NSColor, SystemColoursFollowTheAppearance)
{
    const Ref<NSColor> text = NSColor::cls().textColor();
    EXPECT_TRUE(NSNamedColorSpace->isEqual(text->colorSpaceName().get()));
    const auto brightness = [&text] {
        return text->colorUsingColorSpaceName(NSCalibratedRGBColorSpace)->brightnessComponent();
    };
    EXPECT_LT(brightness(), 0.3);
    appkit::setAppearance(appkit::Appearance::dark);
    EXPECT_GT(brightness(), 0.8);
    appkit::setAppearance(appkit::Appearance::light);
}

TEST(NSColor, QuartzColourComesBack)
{
    const Ref<NSColor> color = rgb(0.1, 0.2, 0.3, 0.4);
    EXPECT_TRUE(NSColor::cls().colorWithCGColor(color->CGColor().get())->isEqual(color.get()));
    EXPECT_FALSE(NSColor::cls().colorWithCGColor(nullptr));
}

TEST(NSColor, BlendsInRGB)
{
    const Ref<NSColor> mixed = NSColor::cls().blackColor()->blendedColorWithFraction_ofColor(
        0.25, NSColor::cls().redColor().get());
    EXPECT_EQ(mixed->redComponent(), 0.25);
    EXPECT_EQ(mixed->alphaComponent(), 1);
    EXPECT_FALSE(NSColor::cls().blackColor()->blendedColorWithFraction_ofColor(0.5, nullptr));
}

}
