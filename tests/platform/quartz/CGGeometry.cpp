// SPDX-License-Identifier: Apache-2.0
#include "quartz/CGGeometry.h"

#include <gtest/gtest.h>

#include <cmath>

namespace brindle {

TEST(CGGeometry, TouchingRectanglesShareAnEdge)
{
    const CGRect shared = CGRectIntersection(CGRectMake(0, 0, 10, 5), CGRectMake(0, 5, 10, 5));
    EXPECT_EQ(shared, CGRectMake(0, 5, 10, 0));
    EXPECT_FALSE(CGRectIsNull(shared));
}

TEST(CGGeometry, RectanglesApartShareTheNullRectangle)
{
    EXPECT_TRUE(CGRectIsNull(CGRectIntersection(CGRectMake(0, 0, 1, 1), CGRectMake(2, 0, 1, 1))));
    EXPECT_TRUE(CGRectIsNull(CGRectIntersection(CGRectNull, CGRectMake(2, 0, 1, 1))));
}

TEST(CGGeometry, GettersFoldNegativeSizes)
{
    const CGRect rect = CGRectMake(10, 20, -4, -6);
    EXPECT_EQ(CGRectGetMinX(rect), 6);
    EXPECT_EQ(CGRectGetMaxX(rect), 10);
    EXPECT_EQ(CGRectGetMidY(rect), 17);
    EXPECT_EQ(CGRectGetWidth(rect), 4);
}

TEST(CGGeometry, EqualityComparesFourNumbers)
{
    EXPECT_TRUE(CGRectEqualToRect(CGRectMake(-0.0, 0, 1, 1), CGRectMake(0, 0, 1, 1)));
    EXPECT_FALSE(CGRectEqualToRect(CGRectMake(1, 0, 0, 0), CGRectZero));
    EXPECT_FALSE(CGRectEqualToRect(CGRectMake(NAN, 0, 1, 1), CGRectMake(NAN, 0, 1, 1)));
}

TEST(CGGeometry, UnionIgnoresTheNullRectangle)
{
    EXPECT_EQ(CGRectUnion(CGRectNull, CGRectMake(1, 2, 3, 4)), CGRectMake(1, 2, 3, 4));
}

TEST(CGGeometry, InsetBeyondNothingIsNull)
{
    EXPECT_TRUE(CGRectIsNull(CGRectInset(CGRectMake(0, 0, 4, 4), 3, 0)));
    EXPECT_EQ(CGRectInset(CGRectMake(0, 0, 4, 4), 1, 2), CGRectMake(1, 2, 2, 0));
}

TEST(CGGeometry, DivideBoundsTheAmount)
{
    CGRect slice;
    CGRect rest;
    CGRectDivide(CGRectMake(0, 0, 10, 5), &slice, &rest, 20, CGRectMinXEdge);
    EXPECT_EQ(slice, CGRectMake(0, 0, 10, 5));
    EXPECT_EQ(rest, CGRectMake(10, 0, 0, 5));
    CGRectDivide(CGRectMake(0, 0, 10, 5), &slice, &rest, 2, CGRectMaxYEdge);
    EXPECT_EQ(slice, CGRectMake(0, 3, 10, 2));
    EXPECT_EQ(rest, CGRectMake(0, 0, 10, 3));
}

TEST(CGGeometry, TransformsApplyInOrder)
{
    const CGAffineTransform both = CGAffineTransformConcat(
        CGAffineTransformMakeScale(2, 3), CGAffineTransformMakeTranslation(10, 20));
    EXPECT_EQ(CGPointApplyAffineTransform({ 1, 1 }, both), CGPointMake(12, 23));
    EXPECT_EQ(
        CGPointApplyAffineTransform({ 12, 23 }, CGAffineTransformInvert(both)), CGPointMake(1, 1));
}

TEST(CGGeometry, TransformWithoutInverseIsItsOwn)
{
    const CGAffineTransform flat = CGAffineTransformMakeScale(0, 1);
    EXPECT_EQ(CGAffineTransformInvert(flat), flat);
}

}
