// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSColor.h"

#include "foundation/NSArray.h"
#include "support/Colors.h"
#include "support/Focused.h"
#include "support/Strings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace brindle {

namespace {

    /// A colour without components in any space.
    Ref<NSColor> pattern()
    {
        return NSColor::cls().colorWithPatternImage(reinterpret_cast<NSImage*>("image"_ns));
    }

    Ref<NSColor> inSpace(const Ref<NSColor>& color, NSString* space)
    {
        return color->colorUsingColorSpaceName(space);
    }

    /// Makes the process dark while it lives.
    struct DarkAppearance {
        DarkAppearance() { appkit::setAppearance(appkit::Appearance::dark); }
        ~DarkAppearance() { appkit::setAppearance(appkit::Appearance::light); }
    };

    /// The contrast of two opaque colours, 1 to 21, as WCAG 2.1 defines it.
    double contrast(const Ref<NSColor>& a, const Ref<NSColor>& b)
    {
        const auto light = [](const Ref<NSColor>& color) {
            const Ref<NSColor> c = inSpace(color, NSCalibratedRGBColorSpace);
            const auto linear = [](double part) {
                return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
            };
            return 0.2126 * linear(c->redComponent()) + 0.7152 * linear(c->greenComponent())
                + 0.0722 * linear(c->blueComponent());
        };
        return (std::max(light(a), light(b)) + 0.05) / (std::min(light(a), light(b)) + 0.05);
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
    const Ref<NSColor> black = NSColor::cls().blackColor();
    EXPECT_EQ(raisedBy([&] { black->redComponent(); }),
        "NSInvalidArgumentException: *** -redComponent not valid for the NSColor "
        "NSCalibratedWhiteColorSpace 0 1; need to first convert colorspace.");
    EXPECT_NE(raisedBy([&] { black->hueComponent(); }), "");
    EXPECT_NE(
        raisedBy([&] { black->getRed_green_blue_alpha(nullptr, nullptr, nullptr, nullptr); }), "");
}

TEST(NSColor, RGBSpacesHaveNoWhite)
{
    EXPECT_EQ(raisedBy([] { rgb(0.5, 0.25, 1)->whiteComponent(); }),
        "NSInvalidArgumentException: *** -whiteComponent not valid for the NSColor "
        "NSCalibratedRGBColorSpace 0.5 0.25 1 1; need to first convert colorspace.");
}

TEST(NSColor, NamedColoursAndPatternsHaveAlphaOnly)
{
    const Ref<NSColor> named = NSColor::cls().secondaryLabelColor();
    EXPECT_EQ(named->alphaComponent(), 0x99 / 255.0);
    EXPECT_EQ(raisedBy([&] { named->redComponent(); }),
        "NSInvalidArgumentException: *** -redComponent not valid for the NSColor NSNamedColorSpace "
        "System secondaryLabelColor; need to first convert colorspace.");
    EXPECT_NE(raisedBy([&] { named->numberOfComponents(); }), "");
    EXPECT_EQ(pattern()->alphaComponent(), 1);
    EXPECT_NE(raisedBy([] { pattern()->getComponents(nullptr); }), "");
    EXPECT_NE(raisedBy([] { rgb(0, 0, 0)->patternImage(); }), "");
}

TEST(NSColor, ReadsAllComponentsAtOnce)
{
    CGFloat c[4] {};
    hsb(0.5, 1, 0.5, 0.25)->getHue_saturation_brightness_alpha(&c[0], &c[1], &c[2], &c[3]);
    EXPECT_EQ(c[0], 0.5);
    EXPECT_EQ(c[1], 1);
    EXPECT_EQ(c[2], 0.5);
    EXPECT_EQ(c[3], 0.25);
    NSColor::cls().colorWithWhite_alpha(0.1, 0.2)->getWhite_alpha(&c[0], nullptr);
    EXPECT_EQ(c[0], 0.1);
    rgb(0.1, 0.2, 0.3, 0.4)->getComponents(c);
    EXPECT_EQ(c[2], 0.3);
    EXPECT_EQ(c[3], 0.4);
}

TEST(NSColor, CountsItsNumbers)
{
    EXPECT_EQ(rgb(0, 0, 0)->numberOfComponents(), 4);
    EXPECT_EQ(NSColor::cls().blackColor()->numberOfComponents(), 2);
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

TEST(NSColor, EqualColoursHaveOneHash)
{
    EXPECT_EQ(rgb(0.1, 0.2, 0.3)->hash(), rgb(0.1, 0.2, 0.3)->hash());
    EXPECT_EQ(rgb(-0.0, 0, 0)->hash(), rgb(0, 0, 0)->hash());
    EXPECT_TRUE(rgb(-0.0, 0, 0)->isEqual(rgb(0, 0, 0).get()));
}

TEST(NSColor, IsNotEqualToOtherObjects)
{
    EXPECT_FALSE(rgb(0, 0, 0)->isEqual("black"_ns));
    EXPECT_FALSE(rgb(0, 0, 0)->isEqual(nullptr));
}

TEST(NSColor, IsItsOwnCopy)
{
    const Ref<NSColor> color = rgb(0.1, 0.2, 0.3);
    EXPECT_EQ(color->copy(), color);
}

TEST(NSColor, ConstantsAreOneObjectEach)
{
    EXPECT_EQ(NSColor::cls().blackColor(), NSColor::cls().blackColor());
    EXPECT_EQ(NSColor::cls().brownColor(), NSColor::cls().brownColor());
}

TEST(NSColor, GreysStandInTheWhiteSpaceAndPrimariesInRGB)
{
    EXPECT_EQ(textOf(NSColor::cls().clearColor()), "NSCalibratedWhiteColorSpace 0 0");
    EXPECT_EQ(textOf(NSColor::cls().darkGrayColor()), "NSCalibratedWhiteColorSpace 0.333333 1");
    EXPECT_EQ(textOf(NSColor::cls().orangeColor()), "NSCalibratedRGBColorSpace 1 0.5 0 1");
}

TEST(NSColor, DescribesNamesAndPatterns)
{
    EXPECT_EQ(textOf(NSColor::cls().textColor()), "NSNamedColorSpace System textColor");
    EXPECT_EQ(textOf(pattern()), "NSPatternColorSpace image");
}

TEST(NSColor, PatternsConvertToNothing)
{
    EXPECT_FALSE(inSpace(pattern(), NSCalibratedRGBColorSpace));
    EXPECT_FALSE(inSpace(pattern(), nullptr));
    EXPECT_FALSE(inSpace(rgb(0, 0, 0), NSPatternColorSpace));
    EXPECT_FALSE(inSpace(rgb(0, 0, 0), NSNamedColorSpace));
    EXPECT_FALSE(pattern()->CGColor());
    EXPECT_FALSE(NSColor::cls().colorWithPatternImage(nullptr));
}

TEST(NSColor, SpacesAreFoundByTheTextOfTheirName)
{
    const Ref<NSString> name
        = NSString::cls().stringWithFormat("NSDevice%@"_ns, "RGBColorSpace"_ns);
    EXPECT_EQ(
        textOf(inSpace(rgb(0.1, 0.2, 0.3), name.get())), "NSDeviceRGBColorSpace 0.1 0.2 0.3 1");
}

TEST(NSColor, NoSpaceNameMeansCalibratedRGB)
{
    EXPECT_EQ(
        textOf(inSpace(NSColor::cls().whiteColor(), nullptr)), "NSCalibratedRGBColorSpace 1 1 1 1");
}

TEST(NSColor, AnotherAlphaKeepsSpaceAndNumbers)
{
    EXPECT_EQ(textOf(NSColor::cls().grayColor()->colorWithAlphaComponent(0.25)),
        "NSCalibratedWhiteColorSpace 0.5 0.25");
    EXPECT_EQ(textOf(rgb(0.1, 0.2, 0.3)->colorWithAlphaComponent(7)),
        "NSCalibratedRGBColorSpace 0.1 0.2 0.3 1");
    const Ref<NSColor> image = pattern();
    EXPECT_EQ(image->colorWithAlphaComponent(0.5), image);
}

TEST(NSColor, HighlightAndShadowBlendWithTheColoursOfTheseNames)
{
    EXPECT_EQ(rgbaText(rgb(0, 0.5, 1)->highlightWithLevel(0.5)), "0.5 0.75 1 1");
    EXPECT_EQ(rgbaText(rgb(0, 0.5, 1)->shadowWithLevel(0.5)), "0 0.25 0.5 1");
}

// ---- system colours

TEST(NSColorSystem, ColoursFollowTheAppearance)
{
    const Ref<NSColor> text = NSColor::cls().textColor();
    const auto brightness
        = [&text] { return inSpace(text, NSCalibratedRGBColorSpace)->brightnessComponent(); };
    EXPECT_LT(brightness(), 0.3);
    const DarkAppearance dark;
    EXPECT_GT(brightness(), 0.8);
}

TEST(NSColorSystem, AnotherAlphaKeepsTheLookOfNow)
{
    const Ref<NSColor> light = NSColor::cls().textColor()->colorWithAlphaComponent(0.5);
    const DarkAppearance dark;
    EXPECT_LT(light->brightnessComponent(), 0.3);
}

TEST(NSColorSystem, ColoursAreFoundByName)
{
    EXPECT_EQ(NSColor::cls().colorWithCatalogName_colorName("System"_ns, "linkColor"_ns),
        NSColor::cls().linkColor());
    EXPECT_EQ(utf8(NSColor::cls().linkColor()->colorNameComponent()), "linkColor");
    EXPECT_EQ(utf8(NSColor::cls().linkColor()->catalogNameComponent()), "System");
}

TEST(NSColorSystem, UnknownNamesAndCataloguesHaveNoColour)
{
    EXPECT_FALSE(NSColor::cls().colorWithCatalogName_colorName("System"_ns, "release"_ns));
    EXPECT_FALSE(NSColor::cls().colorWithCatalogName_colorName("System"_ns, nullptr));
    EXPECT_FALSE(NSColor::cls().colorWithCatalogName_colorName(nullptr, "linkColor"_ns));
    EXPECT_FALSE(NSColor::cls().colorWithCatalogName_colorName("Mine"_ns, "linkColor"_ns));
}

TEST(NSColorSystem, OtherColoursHaveNoName)
{
    EXPECT_EQ(raisedBy([] { rgb(0, 0, 0)->colorNameComponent(); }),
        "NSInvalidArgumentException: *** -colorNameComponent not valid for the NSColor "
        "NSCalibratedRGBColorSpace 0 0 0 1; need to first convert colorspace.");
    EXPECT_NE(raisedBy([] { rgb(0, 0, 0)->catalogNameComponent(); }), "");
}

TEST(NSColorSystem, RowsAlternateBetweenTwoGrounds)
{
    const Ref<NSArray> rows = NSColor::cls().controlAlternatingRowBackgroundColors();
    ASSERT_EQ(rows->count(), 2u);
    EXPECT_EQ(rows->objectAtIndex(0), NSColor::cls().controlBackgroundColor());
    EXPECT_TRUE(rows->isEqual(NSColor::cls().alternatingContentBackgroundColors().get()));
}

TEST(NSColorSystem, TextIsReadOnItsGroundsInBothAppearances)
{
    const auto check = [] {
        const auto& colors = NSColor::cls();
        for (const Ref<NSColor>& ground : { colors.textBackgroundColor(),
                 colors.controlBackgroundColor(), colors.windowBackgroundColor(),
                 colors.controlColor(), colors.alternatingContentBackgroundColor() }) {
            EXPECT_GE(contrast(colors.textColor(), ground), 7) << textOf(ground);
            EXPECT_GE(contrast(colors.controlTextColor(), ground), 7) << textOf(ground);
        }
        EXPECT_GE(contrast(colors.selectedTextColor(), colors.selectedTextBackgroundColor()), 7);
        EXPECT_GE(contrast(colors.selectedControlTextColor(), colors.selectedControlColor()), 7);
        EXPECT_GE(contrast(colors.headerTextColor(), colors.headerColor()), 7);
        EXPECT_GE(contrast(colors.unemphasizedSelectedTextColor(),
                      colors.unemphasizedSelectedTextBackgroundColor()),
            7);
        EXPECT_GE(
            contrast(colors.selectedMenuItemTextColor(), colors.selectedMenuItemColor()), 4.5);
        EXPECT_GE(contrast(colors.linkColor(), colors.textBackgroundColor()), 4.5);
    };
    check();
    const DarkAppearance dark;
    check();
}

// ---- Quartz and drawing

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

TEST(NSColor, QuartzColoursKeepTheirSpace)
{
    for (const Ref<NSColor>& color :
        { NSColor::cls().colorWithDeviceRed_green_blue_alpha(0.1, 0.2, 0.3, 0.4),
            NSColor::cls().colorWithDeviceWhite_alpha(0.5, 0.6),
            NSColor::cls().colorWithCalibratedWhite_alpha(0.5, 0.6) })
        EXPECT_TRUE(NSColor::cls().colorWithCGColor(color->CGColor().get())->isEqual(color.get()))
            << textOf(color);
}

TEST(NSColor, SystemColoursHaveTheQuartzColourOfNow)
{
    const DarkAppearance dark;
    EXPECT_EQ(
        CGColorGetComponents(NSColor::cls().controlColor()->CGColor().get())[0], 0x43 / 255.0);
}

TEST(NSColor, SetIsTheFillAndTheStrokeColour)
{
    const test::Focused picture(8, 8);
    NSColor::cls().redColor()->set();
    NSRectFill(NSMakeRect(0, 0, 4, 8));
    CGContextStrokeRectWithWidth(picture, NSMakeRect(4, 0, 4, 8), 8);
    EXPECT_EQ(picture.at(1, 1), (test::Rgba { 255, 0, 0, 255 }));
    EXPECT_EQ(picture.at(6, 1), (test::Rgba { 255, 0, 0, 255 }));
}

TEST(NSColor, FillAndStrokeAreSetApart)
{
    const test::Focused picture(8, 8);
    NSColor::cls().redColor()->setFill();
    NSColor::cls().blueColor()->setStroke();
    NSRectFill(NSMakeRect(0, 0, 4, 8));
    CGContextStrokeRectWithWidth(picture, NSMakeRect(6, 0, 2, 8), 2);
    EXPECT_EQ(picture.at(1, 1), (test::Rgba { 255, 0, 0, 255 }));
    EXPECT_EQ(picture.at(6, 1), (test::Rgba { 0, 0, 255, 255 }));
}

TEST(NSColor, SwatchBlendsAndLeavesTheColourAsItWas)
{
    const test::Focused picture(4, 4);
    NSColor::cls().blueColor()->set();
    NSRectFill(NSMakeRect(0, 0, 4, 4));
    rgb(1, 0, 0, 0.5)->drawSwatchInRect(NSMakeRect(0, 0, 2, 4));
    EXPECT_PRED_FORMAT3(test::isNear, picture.at(0, 0), (test::Rgba { 128, 0, 127, 255 }), 1);
    NSRectFill(NSMakeRect(0, 0, 4, 4));
    EXPECT_EQ(picture.at(0, 0), (test::Rgba { 0, 0, 255, 255 }));
}

}
