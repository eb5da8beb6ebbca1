// SPDX-License-Identifier: Apache-2.0
#include "graphics/NSColor+ColorOnBackground.h"

#include <gtest/gtest.h>

#include "graphics/NSColor+DKAdditions.h"
#include "graphics/NSColor+StandardUIColors.h"
#include "support/Colors.h"
#include "support/Strings.h"

namespace brindle {

TEST(ColourOnBackground, IsBlackFromABrightnessOfAHalfOn)
{
    EXPECT_EQ(rgbaText(whiteOrBlackOnBackgroundColor(rgb(0.5, 0.5, 0.5))), "0 0 0 1");
    EXPECT_EQ(rgbaText(whiteOrBlackOnBackgroundColor(rgb(0.49, 0.49, 0.49))), "1 1 1 1");
}

TEST(ColourOnBackground, RoundsInSinglePrecision)
{
    // Below a half as a double, exactly a half as a float.
    EXPECT_EQ(rgbaText(whiteOrBlackOnBackgroundColor(rgb(0.4999999999, 0, 0))), "0 0 0 1");
    EXPECT_EQ(rgbaText(whiteOrBlackOnBackgroundColor(rgb(0.4999999, 0, 0))), "1 1 1 1");
}

TEST(ColourOnBackground, AsksTheGreatestComponentWhereContrastAsksLuminosity)
{
    const Ref<NSColor> blue = rgb(0, 0, 1);
    EXPECT_EQ(rgbaText(whiteOrBlackOnBackgroundColor(blue)), "0 0 0 1");
    EXPECT_TRUE(contrastingColor(blue)->isEqual(NSColor::cls().whiteColor().get()));
}

TEST(ColourOnBackground, ConvertsAndIsOpaque)
{
    EXPECT_EQ(rgbaText(whiteOrBlackOnBackgroundColor(NSColor::cls().clearColor())), "1 1 1 1");
    EXPECT_EQ(rgbaText(whiteOrBlackOnBackgroundColor(NSColor::cls().whiteColor())), "0 0 0 1");
}

TEST(ColourOnBackground, IsWhiteOnWhatCannotBeConverted)
{
    const Ref<NSColor> pattern
        = NSColor::cls().colorWithPatternImage(reinterpret_cast<NSImage*>("image"_ns));
    EXPECT_EQ(rgbaText(whiteOrBlackOnBackgroundColor(pattern)), "1 1 1 1");
}

TEST(StandardUIColours, SourceListSelectionIsAFixedGreyOfTheWhiteSpace)
{
    const Ref<NSColor> grey = graySourceListSelectColor(NSColor::cls());
    EXPECT_EQ(utf8(grey->colorSpaceName()), "NSCalibratedWhiteColorSpace");
    EXPECT_EQ(grey->whiteComponent(), 0.86);
    EXPECT_EQ(grey->alphaComponent(), 1);
}

}
