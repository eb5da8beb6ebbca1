// SPDX-License-Identifier: Apache-2.0
#include "graphics/NSColor+DKAdditions.h"

#include <cmath>
#include <iterator>
#include <limits>

#include <gtest/gtest.h>

#include "runtime/Runtime.h"
#include "support/Colors.h"
#include "support/Strings.h"

namespace brindle {

namespace {

    NSColor::Meta colors() { return NSColor::cls(); }

    /// A colour without components in any space.
    Ref<NSColor> pattern()
    {
        return colors().colorWithPatternImage(reinterpret_cast<NSImage*>("image"_ns));
    }

    void expectSpace(const Ref<NSColor>& color, const NSString* space)
    {
        EXPECT_EQ(utf8(color->colorSpaceName()), utf8(space));
    }

}

// ---- greys

TEST(ColourGreys, StandInCalibratedRGB)
{
    EXPECT_EQ(rgbaText(rgbWhite(colors())), "1 1 1 1");
    EXPECT_EQ(rgbaText(rgbBlack(colors())), "0 0 0 1");
    EXPECT_EQ(rgbaText(rgbGrey(colors(), 0.3)), "0.3 0.3 0.3 1");
    EXPECT_EQ(rgbaText(rgbGrey_withAlpha(colors(), 0.3, 0.7)), "0.3 0.3 0.3 0.7");
    EXPECT_EQ(rgbaText(veryLightGrey(colors())), "0.9 0.9 0.9 1");
    expectSpace(rgbWhite(colors()), NSCalibratedRGBColorSpace);
}

TEST(ColourGreys, AreBoundedWhenMade)
{
    EXPECT_EQ(rgbaText(rgbGrey_withAlpha(colors(), 1.5, -1)), "1 1 1 0");
}

TEST(ColourGreys, FollowAColoursLuminosityButNotItsAlpha)
{
    EXPECT_EQ(rgbaText(rgbGreyWithLuminosityFrom_withAlpha(colors(), rgb(1, 0, 0, 0.1).get(), 0.4)),
        "0.212671 0.212671 0.212671 0.4");
}

TEST(ColourGreys, OfNoColourAreBlack)
{
    EXPECT_EQ(rgbaText(rgbGreyWithLuminosityFrom_withAlpha(colors(), nullptr, 1)), "0 0 0 1");
}

// ---- hexadecimal text

TEST(ColourHex, LettersOfBothCasesAreWhiteWithAlpha1)
{
    EXPECT_EQ(rgbaText(colorWithHexString(colors(), "#FFFFFF"_ns)), "1 1 1 1");
    EXPECT_EQ(rgbaText(colorWithHexString(colors(), "#ffffff"_ns)), "1 1 1 1");
    expectSpace(colorWithHexString(colors(), "#fFfFfF"_ns), NSCalibratedRGBColorSpace);
}

TEST(ColourHex, LettersCountTenToFifteen)
{
    const Ref<NSColor> color = colorWithHexString(colors(), "#abCDef"_ns);
    EXPECT_EQ(color->redComponent(), 0xab / 255.0);
    EXPECT_EQ(color->greenComponent(), 0xcd / 255.0);
    EXPECT_EQ(color->blueComponent(), 0xef / 255.0);
}

TEST(ColourHex, ADigitCountsItsCharacterCode)
{
    const Ref<NSColor> color = colorWithHexString(colors(), "#a0a9f0"_ns);
    EXPECT_EQ(color->redComponent(), (160 + 48) / 255.0);
    EXPECT_EQ(color->greenComponent(), (160 + 57) / 255.0);
    EXPECT_EQ(color->blueComponent(), 1); // (240 + 48) / 255
}

TEST(ColourHex, DigitsInFrontGoBeyondWhite)
{
    EXPECT_EQ(rgbaText(colorWithHexString(colors(), "#000000"_ns)), "1 1 1 1");
    EXPECT_EQ(rgbaText(colorWithHexString(colors(), "#0a0a0a"_ns)), "1 1 1 1");
}

TEST(ColourHex, OtherCharactersAreNotRefused)
{
    const Ref<NSColor> color = colorWithHexString(colors(), "#ag a!z"_ns);
    EXPECT_EQ(color->redComponent(), (160 + 16) / 255.0);
    EXPECT_EQ(color->greenComponent(), 1); // a blank is 16 * 32
    EXPECT_EQ(color->blueComponent(), 1); // "!" is 16 * 33
}

TEST(ColourHex, PunctuationBehindNineCountsFromTheLetters)
{
    // ":" is 58, the first that is not taken for a digit: 58 - 87 is below 0.
    EXPECT_EQ(colorWithHexString(colors(), "#f:ffff"_ns)->redComponent(), (240 - 29) / 255.0);
    EXPECT_EQ(colorWithHexString(colors(), "#:fffff"_ns)->redComponent(), 0);
}

TEST(ColourHex, BytesBeyondASCIIAreNegative)
{
    // "é" is C3 A9, -61 and -87 as signed bytes; it fills the first component.
    EXPECT_EQ(rgbaText(colorWithHexString(colors(), "#éffffff"_ns)), "0 1 1 1");
    // "fé" is 66 C3: 240 - 61, and A9 stands in front of the next component.
    EXPECT_EQ(colorWithHexString(colors(), "#féfffff"_ns)->redComponent(), (240 - 61) / 255.0);
    EXPECT_EQ(colorWithHexString(colors(), "#féfffff"_ns)->greenComponent(), 0);
}

TEST(ColourHex, CharactersBehindTheSeventhAreIgnored)
{
    EXPECT_EQ(rgbaText(colorWithHexString(colors(), "#ffffff00"_ns)), "1 1 1 1");
    EXPECT_EQ(rgbaText(colorWithHexString(colors(), "#aaaaaa, and more"_ns)),
        rgbaText(colorWithHexString(colors(), "#aaaaaa"_ns)));
}

TEST(ColourHex, RefusesNilShortTextsAndAnotherFirstCharacter)
{
    EXPECT_FALSE(colorWithHexString(colors(), nullptr));
    EXPECT_FALSE(colorWithHexString(colors(), ""_ns));
    EXPECT_FALSE(colorWithHexString(colors(), "#fF8"_ns));
    EXPECT_FALSE(colorWithHexString(colors(), "#fffff"_ns));
    EXPECT_FALSE(colorWithHexString(colors(), "ffffff#"_ns));
    EXPECT_FALSE(colorWithHexString(colors(), " #ffffff"_ns));
    EXPECT_FALSE(colorWithHexString(colors(), "\uFF03ffffff"_ns)); // a full-width number sign
}

TEST(ColourHex, LengthIsCountedInUnitsNotInBytes)
{
    EXPECT_FALSE(colorWithHexString(colors(), "#éééé"_ns)); // 5 units, 9 bytes
    EXPECT_TRUE(colorWithHexString(colors(), "#ff\U0001F3A8ff"_ns)); // a pair counts as two
}

TEST(ColourHex, ComponentsBehindAnEndInTheTextAreZero)
{
    const auto read = [](const unichar(&units)[7]) {
        const Ref<NSString> text = NSString::cls().stringWithCharacters_length(units, 7);
        return colorWithHexString(colors(), text.get());
    };
    EXPECT_EQ(rgbaText(read({ '#', 'f', 'f', 0, 'f', 'f', 'f' })), "1 0 0 1");
    const Ref<NSColor> withinGreen = read({ '#', 'f', 'f', 'a', 0, 'f', 'f' });
    EXPECT_EQ(withinGreen->greenComponent(), 160 / 255.0);
    EXPECT_EQ(withinGreen->blueComponent(), 0);
    EXPECT_EQ(withinGreen->alphaComponent(), 1);
}

TEST(ColourHex, WritesTwoUpperCaseDigitsAComponentWithoutAlpha)
{
    EXPECT_EQ(utf8(hexString(rgb(1, 1, 1))), "#FFFFFF");
    EXPECT_EQ(utf8(hexString(rgb(0, 10 / 255.0, 171 / 255.0, 0.2))), "#000AAB");
}

TEST(ColourHex, WritesEveryByteBack)
{
    for (int byte = 0; byte < 256; ++byte) {
        char expected[8];
        std::snprintf(expected, sizeof expected, "#%02X%02X%02X", byte, byte, byte);
        EXPECT_EQ(utf8(hexString(rgbGrey(colors(), byte / 255.0))), expected);
    }
}

TEST(ColourHex, WritesComponentsRoundedDown)
{
    EXPECT_EQ(utf8(hexString(rgb(0.5, 0.999, std::nextafter(1.0, 0)))), "#7FFEFE");
}

TEST(ColourHex, WritesWhiteSpaceAndSystemColours)
{
    EXPECT_EQ(utf8(hexString(colors().whiteColor())), "#FFFFFF");
    EXPECT_EQ(utf8(hexString(colors().grayColor())), "#7F7F7F");
    EXPECT_EQ(utf8(hexString(colors().textColor())).size(), 7u);
}

TEST(ColourHex, WritesZeroesForWhatCannotBeConverted)
{
    EXPECT_EQ(utf8(hexString(pattern())), "#000000");
}

TEST(ColourHex, ReadsBackWhatItWroteInLetters)
{
    for (int high = 10; high < 16; ++high) {
        for (int low = 10; low < 16; ++low) {
            const double part = (high * 16 + low) / 255.0;
            const Ref<NSString> text = hexString(rgbGrey(colors(), part));
            EXPECT_EQ(utf8(hexString(colorWithHexString(colors(), text.get()))), utf8(text));
        }
    }
}

// ---- lightness

TEST(ColourLightness, WeighsTheComponents)
{
    EXPECT_EQ(luminosity(rgb(1, 0, 0)), 0.212671);
    EXPECT_EQ(luminosity(rgb(0, 1, 0)), 0.71516);
    EXPECT_EQ(luminosity(rgb(0, 0, 1)), 0.072169);
    EXPECT_EQ(luminosity(rgb(0.1, 0.2, 0.3)), 0.212671 * 0.1 + 0.71516 * 0.2 + 0.072169 * 0.3);
}

TEST(ColourLightness, IgnoresAlpha) { EXPECT_EQ(luminosity(rgb(1, 0, 0, 0)), 0.212671); }

TEST(ColourLightness, ConvertsWhiteSpaceColours)
{
    EXPECT_EQ(luminosity(colors().whiteColor()), 1);
    EXPECT_EQ(luminosity(colors().clearColor()), 0);
}

TEST(ColourLightness, IsZeroForWhatCannotBeConverted)
{
    EXPECT_EQ(luminosity(pattern()), 0);
    EXPECT_EQ(luminosity(Ref<NSColor>()), 0);
}

TEST(ColourLightness, AsAGreyIsOpaque)
{
    EXPECT_EQ(rgbaText(colorWithLuminosity(rgb(0, 1, 0, 0.3))), "0.71516 0.71516 0.71516 1");
}

TEST(ColourLightness, ContrastIsBlackFromAHalfOn)
{
    EXPECT_EQ(luminosity(rgb(0.5, 0.5, 0.5)), 0.5);
    const Ref<NSColor> contrast = contrastingColor(colors(), rgb(0.5, 0.5, 0.5).get());
    EXPECT_TRUE(contrast->isEqual(colors().blackColor().get()));
    EXPECT_TRUE(contrastingColor(rgb(0.499, 0.5, 0.5))->isEqual(colors().whiteColor().get()));
}

TEST(ColourLightness, ContrastStandsInTheWhiteSpace)
{
    expectSpace(contrastingColor(rgb(1, 1, 1)), NSCalibratedWhiteColorSpace);
    EXPECT_TRUE(contrastingColor(rgb(0, 0, 1))->isEqual(colors().whiteColor().get()));
}

TEST(ColourLightness, ContrastOfNoColourIsWhite)
{
    EXPECT_TRUE(contrastingColor(colors(), nullptr)->isEqual(colors().whiteColor().get()));
}

TEST(ColourLightness, InversionKeepsAlpha)
{
    EXPECT_EQ(rgbaText(invertedColor(rgb(0.25, 0, 1, 0.3))), "0.75 1 0 0.3");
    EXPECT_EQ(rgbaText(invertedColor(colors().clearColor())), "1 1 1 0");
}

TEST(ColourLightness, LighterIsOnTheWayToWhite)
{
    EXPECT_EQ(rgbaText(lighterColorWithLevel(colors().blackColor(), 0.5)), "0.5 0.5 0.5 1");
    EXPECT_EQ(rgbaText(lighterColorWithLevel(rgb(0.5, 0, 1, 0.4), 0.5)), "0.75 0.5 1 0.4");
}

TEST(ColourLightness, DarkerIsOnTheWayToBlack)
{
    EXPECT_EQ(rgbaText(darkerColorWithLevel(rgb(0.5, 0, 1, 0.4), 0.5)), "0.25 0 0.5 0.4");
}

TEST(ColourLightness, LevelsEndAtTheColourAndAtWhiteOrBlackWithItsAlpha)
{
    const Ref<NSColor> color = rgb(0.3, 0.6, 0.9, 0.4);
    EXPECT_EQ(rgbaText(lighterColorWithLevel(color, 0)), "0.3 0.6 0.9 0.4");
    EXPECT_EQ(rgbaText(darkerColorWithLevel(color, 0)), "0.3 0.6 0.9 0.4");
    EXPECT_EQ(rgbaText(lighterColorWithLevel(color, 1)), "1 1 1 0.4");
    EXPECT_EQ(rgbaText(darkerColorWithLevel(color, 1)), "0 0 0 0.4");
}

TEST(ColourLightness, LevelsBeyondOneAreBoundedByTheColour)
{
    EXPECT_EQ(rgbaText(lighterColorWithLevel(rgb(0.5, 0.5, 0.5), 3)), "1 1 1 1");
    EXPECT_EQ(rgbaText(lighterColorWithLevel(rgb(0.5, 0.5, 0.5), -3)), "0 0 0 1");
}

// ---- mixtures

TEST(ColourInterpolation, EndsAtTheConvertedColours)
{
    const Ref<NSColor> from = rgb(0.1, 0.2, 0.3, 0.4);
    const Ref<NSColor> to = colors().whiteColor();
    const auto at = [&](double value) {
        return colorByInterpolatingFrom_to_atValue(colors(), from.get(), to.get(), value);
    };
    EXPECT_EQ(at(-1), from);
    EXPECT_EQ(at(0), from);
    EXPECT_EQ(rgbaText(at(1)), "1 1 1 1");
    EXPECT_EQ(rgbaText(at(2)), "1 1 1 1");
}

TEST(ColourInterpolation, MixesEveryComponentWithAlpha)
{
    EXPECT_EQ(rgbaText(interpolatedColorToColor_atValue(
                  rgb(0, 1, 0.5, 0), rgb(1, 0, 0.5, 1).get(), 0.25)),
        "0.25 0.75 0.5 0.25");
}

TEST(ColourInterpolation, IsExactToTheLastBit)
{
    const double v = 0.3;
    const Ref<NSColor> mixed = colorByInterpolatingFrom_to_atValue(
        colors(), rgb(0.1, 0.7, 0.9, 0.6).get(), rgb(0.8, 0.2, 0.4, 0.5).get(), v);
    EXPECT_EQ(mixed->redComponent(), 0.8 * v + 0.1 * (1 - v));
    EXPECT_EQ(mixed->greenComponent(), 0.2 * v + 0.7 * (1 - v));
    EXPECT_EQ(mixed->blueComponent(), 0.4 * v + 0.9 * (1 - v));
    EXPECT_EQ(mixed->alphaComponent(), 0.5 * v + 0.6 * (1 - v));
}

TEST(ColourInterpolation, MixesNothingWithZeroes)
{
    EXPECT_FALSE(colorByInterpolatingFrom_to_atValue(colors(), nullptr, rgb(1, 1, 1).get(), 0));
    EXPECT_FALSE(colorByInterpolatingFrom_to_atValue(colors(), rgb(1, 1, 1).get(), nullptr, 1));
    EXPECT_EQ(rgbaText(interpolatedColorToColor_atValue(rgb(1, 0.5, 0), pattern().get(), 0.5)),
        "0.5 0.25 0 0.5");
}

TEST(ColourInterpolation, ByNoNumberIsClear)
{
    EXPECT_EQ(rgbaText(interpolatedColorToColor_atValue(
                  rgb(1, 1, 1), rgb(1, 1, 1).get(), std::numeric_limits<double>::quiet_NaN())),
        "0 0 0 0");
}

TEST(ColourBlend, AmountsChooseAmongComponents)
{
    const double amounts[] { 0, 1, 0.5, 0.25 };
    EXPECT_EQ(rgbaText(colorWithRGBBlendFrom_blendingAmounts(
                  rgb(0.1, 0.2, 0.5, 0), rgb(0.9, 0.8, 1, 1).get(), amounts)),
        "0.1 0.8 0.75 0.25");
}

TEST(ColourBlend, AmountsAreNotBounded)
{
    const double amounts[] { 2, -1, 0, 0 };
    EXPECT_EQ(rgbaText(colorWithRGBBlendFrom_blendingAmounts(
                  rgb(0.25, 0.25, 0.25), rgb(0.5, 0.125, 1).get(), amounts)),
        "0.75 0.375 0.25 1");
}

TEST(ColourBlend, WithoutAmountsTheReceiverStays)
{
    EXPECT_EQ(rgbaText(colorWithRGBBlendFrom_blendingAmounts(
                  rgb(0.25, 0.5, 0.75), rgb(0.5, 0.125, 1).get(), nullptr)),
        "0.25 0.5 0.75 1");
    EXPECT_EQ(rgbaText(colorWithHSBBlendFrom_blendingAmounts(
                  rgb(1, 0, 0), rgb(0.5, 0.125, 1).get(), nullptr)),
        "1 0 0 1");
}

TEST(ColourBlend, ConvertsBothColours)
{
    EXPECT_EQ(rgbaText(colorWithRGBAverageFrom(colors().blackColor(), colors().whiteColor().get())),
        "0.5 0.5 0.5 1");
    expectSpace(colorWithRGBAverageFrom(colors().blackColor(), colors().whiteColor().get()),
        NSCalibratedRGBColorSpace);
    EXPECT_EQ(rgbaText(colorWithHSBAverageFrom(colors().blackColor(), colors().whiteColor().get())),
        "0.5 0.5 0.5 1");
}

TEST(ColourBlend, AverageIsByHalves)
{
    EXPECT_EQ(rgbaText(colorWithRGBAverageFrom(rgb(0, 0.5, 1, 0), rgb(0.5, 0.5, 0, 1).get())),
        "0.25 0.5 0.5 0.5");
}

TEST(ColourBlend, HueIsAPlainNumber)
{
    const Ref<NSColor> mixed = colorWithHSBAverageFrom(hsb(0.95, 1, 1), hsb(0.05, 1, 1).get());
    EXPECT_NEAR(mixed->hueComponent(), 0.5, 1e-12);
}

TEST(ColourBlend, HSBAmountsChooseAmongComponents)
{
    const double amounts[] { 1, 0, 0.5, 0.25 };
    const Ref<NSColor> mixed = colorWithHSBBlendFrom_blendingAmounts(
        hsb(0.25, 0.5, 0.5, 0), hsb(0.75, 1, 1, 1).get(), amounts);
    EXPECT_NEAR(mixed->hueComponent(), 0.75, 1e-12);
    EXPECT_NEAR(mixed->saturationComponent(), 0.5, 1e-12);
    EXPECT_EQ(mixed->brightnessComponent(), 0.75);
    EXPECT_EQ(mixed->alphaComponent(), 0.25);
}

TEST(ColourBlend, NoColourCountsAsZeroes)
{
    EXPECT_EQ(rgbaText(colorWithRGBAverageFrom(rgb(1, 0.5, 0), nullptr)), "0.5 0.25 0 0.5");
    EXPECT_EQ(rgbaText(colorWithHSBAverageFrom(pattern(), nullptr)), "0 0 0 0");
}

TEST(ColourHue, ComesFromTheOther)
{
    const Ref<NSColor> color = colorWithHueFrom(hsb(0.1, 0.5, 0.75, 0.4), hsb(0.6, 1, 1).get());
    EXPECT_NEAR(color->hueComponent(), 0.6, 1e-12);
    EXPECT_NEAR(color->saturationComponent(), 0.5, 1e-12);
    EXPECT_EQ(color->brightnessComponent(), 0.75);
    EXPECT_EQ(color->alphaComponent(), 0.4);
}

TEST(ColourHue, ComesFromTheOtherWithItsSaturation)
{
    const Ref<NSColor> color
        = colorWithHueAndSaturationFrom(hsb(0.1, 0.5, 0.75, 0.4), hsb(0.6, 0.8, 1).get());
    EXPECT_NEAR(color->hueComponent(), 0.6, 1e-12);
    EXPECT_NEAR(color->saturationComponent(), 0.8, 1e-12);
    EXPECT_EQ(color->brightnessComponent(), 0.75);
    EXPECT_EQ(color->alphaComponent(), 0.4);
}

TEST(ColourHue, IsNotReadFromWhiteSpaces)
{
    const Ref<NSColor> black = colors().blackColor();
    const Ref<NSColor> red = colors().redColor();
    const std::string refusal
        = " not valid for the NSColor NSCalibratedWhiteColorSpace 0 1; need to first convert "
          "colorspace.";
    EXPECT_EQ(raisedBy([&] { colorWithHueFrom(red, black.get()); }),
        "NSInvalidArgumentException: *** -hueComponent" + refusal);
    EXPECT_NE(raisedBy([&] { colorWithHueFrom(black, red.get()); }), "");
    EXPECT_NE(raisedBy([&] { colorWithHueAndSaturationFrom(red, black.get()); }), "");
    EXPECT_NE(raisedBy([&] { colorWithHueAndSaturationFrom(black, red.get()); }), "");
}

TEST(ColourHue, IsReadFromDeviceColoursAsTheyAre)
{
    const Ref<NSColor> device = colors().colorWithDeviceRed_green_blue_alpha(0, 0, 1, 1);
    const Ref<NSColor> blue = colorWithHueFrom(colors().redColor(), device.get());
    EXPECT_NEAR(blue->hueComponent(), 2.0 / 3, 1e-12);
    expectSpace(blue, NSCalibratedRGBColorSpace);
}

TEST(ColourHue, OfNoColourIsRed)
{
    EXPECT_EQ(rgbaText(colorWithHueFrom(rgb(0, 0, 1), nullptr)), "1 0 0 1");
    EXPECT_EQ(rgbaText(colorWithHueAndSaturationFrom(rgb(0, 0, 1), nullptr)), "1 1 1 1");
}

// ---- elsewhere

TEST(ColourOfAWavelength, IsNilForEveryNumber)
{
    for (const double length : { 0.0, 380.0, 550.0, -1.0, HUGE_VAL })
        EXPECT_FALSE(colorWithWavelength(colors(), length));
}

TEST(ColourInQuartz, IsANewColourInDeviceRGB)
{
    const Ref<CGColor> color = newQuartzColor(rgb(0.1, 0.2, 0.3, 0.4));
    const CGFloat expected[] { 0.1, 0.2, 0.3, 0.4 };
    ASSERT_EQ(CGColorGetNumberOfComponents(color.get()), 4u);
    EXPECT_TRUE(
        std::equal(std::begin(expected), std::end(expected), CGColorGetComponents(color.get())));
    EXPECT_EQ(CGColorGetColorSpace(color.get())->kind(), CGColorSpace::Kind::deviceRGB);
    EXPECT_NE(newQuartzColor(rgb(0.1, 0.2, 0.3, 0.4)), color);
}

TEST(ColourInQuartz, BelongsToWhoeverSendsTheMessageWithOneCount)
{
    const CGColorRef color = rgb(1, 0, 0)->send<"newQuartzColor", CGColorRef>();
    EXPECT_EQ((color->send<"retainCount", std::uint64_t>()), 1u);
    CGColorRelease(color);
}

TEST(ColourInQuartz, OfAWhiteSpaceColourHasEqualComponents)
{
    const Ref<CGColor> color = newQuartzColor(colors().colorWithWhite_alpha(0.25, 0.5));
    EXPECT_EQ(CGColorGetComponents(color.get())[2], 0.25);
    EXPECT_EQ(CGColorGetAlpha(color.get()), 0.5);
}

TEST(ColourInQuartz, OfAPatternIsClear)
{
    const Ref<CGColor> color = newQuartzColor(pattern());
    ASSERT_EQ(CGColorGetNumberOfComponents(color.get()), 4u);
    EXPECT_EQ(CGColorGetComponents(color.get())[0], 0);
    EXPECT_EQ(CGColorGetAlpha(color.get()), 0);
}

TEST(ColourExtensions, HaveTheTypesOfTheirSelectors)
{
    const auto types = [](Class* cls, const char* name) {
        return std::string(
            method_getTypeEncoding(class_getInstanceMethod(cls, sel_registerName(name))));
    };
    Class* const cls = colors();
    Class* const meta = object_getClass(cls);
    EXPECT_EQ(types(meta, "rgbGrey:withAlpha:"), "@@:dd");
    EXPECT_EQ(types(meta, "colorByInterpolatingFrom:to:atValue:"), "@@:@@d");
    EXPECT_EQ(types(cls, "colorWithRGBBlendFrom:blendingAmounts:"), "@@:@^d");
    EXPECT_EQ(types(cls, "luminosity"), "d@:");
    EXPECT_EQ(types(cls, "newQuartzColor"), "^{CGColor=}@:");
}

}
