// SPDX-License-Identifier: Apache-2.0
#include <cfenv>
#include <cmath>
#include <cstring>
#include <limits>

#include <gtest/gtest.h>

#include "core/BRGeometry.h"
#include "core/BrindleVersion.h"
#include "support/Numbers.h"

namespace brindle {
namespace {

    TEST(Geometry, MidFloatsRoundHalvesAwayFromZero)
    {
        EXPECT_EQ(BRGetMidFloats(100, 33), 34);
        EXPECT_EQ(BRGetMidFloats(33, 100), -34);
        EXPECT_EQ(BRGetMidFloats(10, 4), 3);
    }

    TEST(Geometry, RoundingGoesThroughSinglePrecision)
    {
        EXPECT_EQ(BRGetMidFloats(2 * 16777217.0, 0), 16777216);
        EXPECT_EQ(BRGetMidFloats(kInfinity, 0), kInfinity);
        EXPECT_TRUE(std::isnan(BRGetMidFloats(kInfinity, kInfinity)));
    }

    TEST(Geometry, RoundingIgnoresTheRoundingModeOfTheProcessor)
    {
        for (const int mode : { FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO }) {
            std::fesetround(mode);
            const double below = BRGetMidFloats(4.5, 0);
            const double half = BRGetMidFloats(-5, 0);
            std::fesetround(FE_TONEAREST);
            EXPECT_EQ(below, 2);
            EXPECT_EQ(half, -3);
        }
    }

    TEST(Geometry, MidsAreSubtractedInDoublePrecisionBeforeTheyAreRounded)
    {
        EXPECT_EQ(BRGetMidFloats(2 * 16777217.0, 2), 16777216);
        const CGRect large = NSMakeRect(0, 0, 2 * 16777217.0, 2 * 16777217.0);
        EXPECT_EQ(BRGetMidXRectAndSize(large, NSMakeSize(2, 0)), 16777216);
        EXPECT_EQ(BRGetMidYRectAndSize(large, NSMakeSize(0, 2)), 16777216);
    }

    TEST(Geometry, MidXIgnoresTheOriginAndTheHeight)
    {
        EXPECT_EQ(BRGetMidXRectAndSize(NSMakeRect(500, 600, 100, 7), NSMakeSize(33, 99)), 34);
    }

    TEST(Geometry, MidYIgnoresTheOriginAndTheWidth)
    {
        EXPECT_EQ(BRGetMidYRectAndSize(NSMakeRect(500, 600, 7, 100), NSMakeSize(99, 33)), 34);
    }

    TEST(Geometry, CenteringARectangleRoundsNothing)
    {
        EXPECT_EQ(DKCenterRect(NSMakeRect(3, 4, 10, 10), NSMakeRect(0, 0, 25, 25)),
            NSMakeRect(7.5, 7.5, 10, 10));
        EXPECT_EQ(DKCenterRect(NSMakeRect(0, 0, 30, 10), NSMakeRect(100, 200, 20, 20)),
            NSMakeRect(95, 205, 30, 10));
    }

    TEST(Geometry, OverlapIsMeasuredByWidthPlusHeightOfTheFirstRectangle)
    {
        const CGRect inner = NSMakeRect(2, 2, 4, 6);
        const CGRect outer = NSMakeRect(0, 0, 100, 100);
        EXPECT_EQ(CGRectGetIntersectionPercent(inner, outer), 1);
        EXPECT_EQ(CGRectGetIntersectionPercent(outer, inner), 0.05);
    }

    TEST(Geometry, OverlapOfTouchingRectanglesIsHalfOfDisjointOnesZero)
    {
        const CGRect square = NSMakeRect(0, 0, 10, 10);
        EXPECT_EQ(CGRectGetIntersectionPercent(square, NSMakeRect(0, 10, 10, 10)), 0.5);
        EXPECT_EQ(CGRectGetIntersectionPercent(square, NSMakeRect(10, 10, 10, 10)), 0);
        EXPECT_EQ(CGRectGetIntersectionPercent(square, NSMakeRect(50, 50, 10, 10)), 0);
    }

    TEST(Geometry, OverlapOfAnEmptyRectangleIsNotANumber)
    {
        EXPECT_TRUE(std::isnan(CGRectGetIntersectionPercent(NSZeroRect, NSMakeRect(0, 0, 9, 9))));
    }

    TEST(Geometry, RowsOfAViewAreRoundedAndSharedEvenly)
    {
        EXPECT_EQ(BRUIGetEvenNumberRowsForScreenFromUIStandardHeightWithView(22, 100), 5);
        EXPECT_EQ(BRUIGetEvenRowHeightForUIStandardHeightWithView(22, 100), 20);
        EXPECT_EQ(BRRowHeightRoundToIntegralForScreenHeight(22, 100), 20);
        EXPECT_EQ(BRRowHeightRoundToIntegralForScreenHeight(22, 900), 22);
    }

    TEST(Geometry, RowsAreRoundedInSinglePrecision)
    {
        constexpr double kHalfInSinglePrecision = 2.4999999999;
        EXPECT_EQ(
            BRUIGetEvenNumberRowsForScreenFromUIStandardHeightWithView(1, kHalfInSinglePrecision),
            3);
        EXPECT_EQ(BRUIGetEvenRowHeightForUIStandardHeightWithView(4, kHalfInSinglePrecision), 3);
        EXPECT_EQ(BRRowHeightRoundToIntegralForScreenHeight(4, kHalfInSinglePrecision), 3);
    }

    TEST(Geometry, RowsOfNoHeightPassTheDivisionsOutcomeThrough)
    {
        EXPECT_EQ(BRUIGetEvenRowHeightForUIStandardHeightWithView(22, 10), kInfinity);
        EXPECT_TRUE(std::isnan(BRUIGetEvenRowHeightForUIStandardHeightWithView(22, 0)));
        EXPECT_EQ(BRUIGetEvenNumberRowsForScreenFromUIStandardHeightWithView(0, 10), kInfinity);
    }

    TEST(Geometry, SnappingRoundsValueAndIntervalFirst)
    {
        EXPECT_EQ(BRRoundToNearestInterval(7, 5), 5);
        EXPECT_EQ(BRRoundToNearestInterval(8, 5), 10);
        EXPECT_EQ(BRRoundToNearestInterval(7.4, 5), 5);
        EXPECT_EQ(BRRoundToNearestInterval(7.5, 5), 10);
        EXPECT_EQ(BRRoundToNearestInterval(12.5, 5), 15);
    }

    TEST(Geometry, SnappingRoundsInSinglePrecision)
    {
        EXPECT_EQ(BRRoundToNearestInterval(7.4999999999, 5), 10);
        EXPECT_EQ(BRRoundToNearestInterval(7, 4.4999999999), 5);
    }

    TEST(Geometry, SnappingTakesARemainderOfHalfTheIntervalUp)
    {
        EXPECT_EQ(BRRoundToNearestInterval(2, 4), 4);
        EXPECT_EQ(BRRoundToNearestInterval(1, 4), 0);
    }

    TEST(Geometry, SnappingComparesWithHalfOfTheUnroundedInterval)
    {
        EXPECT_EQ(
            BRRoundToNearestInterval(2, 4.4), 0); // 2 is less than 2.2, although 4 is the step
        EXPECT_EQ(BRRoundToNearestInterval(2, 3.6), 4); // 2 is not less than 1.8
    }

    TEST(Geometry, SnappingMovesNegativeValuesTowardsZero)
    {
        EXPECT_EQ(BRRoundToNearestInterval(-8, 5), -5);
        EXPECT_EQ(BRRoundToNearestInterval(-4, 5), 0);
        EXPECT_EQ(BRRoundToNearestInterval(-10, 5), -10);
    }

    TEST(Geometry, SnappingSurvivesValuesBeyondThirtyTwoBits)
    {
        EXPECT_EQ(BRRoundToNearestInterval(1e30, 1), 2147483647);
        EXPECT_EQ(BRRoundToNearestInterval(-1e30, -1), -2147483648.0 - 1);
        EXPECT_EQ(BRRoundToNearestInterval(std::nan(""), 5), 0);
    }

    TEST(GeometryDeathTest, SnappingToAnIntervalOfZeroEndsTheProcess)
    {
        EXPECT_DEATH(BRRoundToNearestInterval(7, 0.4),
            "brindle: BRRoundToNearestInterval: the interval rounds to 0");
    }

    TEST(Version, IsANumberAndATextThatToolsFind)
    {
        EXPECT_EQ(BrindleVersionNumber, 1.0);
        EXPECT_STREQ(reinterpret_cast<const char*>(BrindleVersionString),
            "@(#)PROGRAM:Brindle  PROJECT:Brindle-1\n");
    }

}
}
