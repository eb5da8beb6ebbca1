// SPDX-License-Identifier: Apache-2.0
#include "quartz/CGContext.h"

#include "quartz/CGGradient.h"
#include "support/Pixels.h"

#include <cmath>
#include <limits>
#include <numbers>

namespace brindle {

using test::areAlike;
using test::isNear;
using test::Picture;
using test::Rgba;

namespace {

    using test::kClear;
    using test::kRed;

    void fillRed(CGContext* context, CGRect rect)
    {
        CGContextSetRGBFillColor(context, 1, 0, 0, 1);
        CGContextFillRect(context, rect);
    }

}

TEST(CGContext, FillsWithYUp)
{
    const Picture picture(10, 10);
    fillRed(picture, CGRectMake(0, 0, 10, 2));
    EXPECT_EQ(picture.at(5, 9), kRed);
    EXPECT_EQ(picture.at(5, 7), kClear);
}

TEST(CGContext, ScaleMultipliesPoints)
{
    const Picture picture(20, 20, 2);
    fillRed(picture, CGRectMake(0, 0, 1, 1));
    EXPECT_EQ(picture.at(1, 18), kRed);
    EXPECT_EQ(picture.at(2, 19), kClear);
    EXPECT_EQ(CGContextGetCTM(picture), CGAffineTransformMake(2, 0, 0, 2, 0, 0));
}

TEST(CGContext, RestoreBringsBackTheStateButKeepsThePath)
{
    const Picture picture(10, 10);
    CGContextSetRGBFillColor(picture, 1, 0, 0, 1);
    CGContextSaveGState(picture);
    CGContextTranslateCTM(picture, 5, 5);
    CGContextSetRGBFillColor(picture, 0, 0, 1, 1);
    CGContextAddRect(picture, CGRectMake(0, 0, 2, 2));
    CGContextRestoreGState(picture);
    CGContextFillPath(picture);
    EXPECT_EQ(picture.at(5, 4), kRed);
    EXPECT_EQ(picture.at(5, 5), kClear);
}

TEST(CGContext, RestoreWithoutSaveChangesNothing)
{
    const Picture picture(4, 4);
    CGContextRestoreGState(picture);
    fillRed(picture, CGRectMake(0, 0, 4, 4));
    EXPECT_EQ(picture.at(0, 0), kRed);
}

TEST(CGContext, NoFillColourPaintsNothing)
{
    const Picture picture(4, 4);
    CGContextSetFillColorWithColor(picture, nullptr);
    CGContextFillRect(picture, CGRectMake(0, 0, 4, 4));
    EXPECT_EQ(picture.at(1, 1), kClear);
}

TEST(CGContext, ClipConsumesThePathAndBoundsPainting)
{
    const Picture picture(10, 10);
    CGContextAddRect(picture, CGRectMake(2, 2, 3, 3));
    CGContextClip(picture);
    EXPECT_TRUE(CGContextIsPathEmpty(picture));
    fillRed(picture, CGRectMake(0, 0, 10, 10));
    EXPECT_EQ(picture.at(2, 7), kRed);
    EXPECT_EQ(picture.at(1, 7), kClear);
    EXPECT_EQ(CGContextGetClipBoundingBox(picture), CGRectMake(2, 2, 3, 3));
}

TEST(CGContext, RoundClipCutsRectangles)
{
    const Picture picture(20, 20);
    CGContextAddEllipseInRect(picture, CGRectMake(0, 0, 20, 20));
    CGContextClip(picture);
    fillRed(picture, CGRectMake(0, 0, 20, 20));
    EXPECT_EQ(picture.at(10, 10), kRed);
    EXPECT_EQ(picture.at(0, 0), kClear);
}

TEST(CGContext, EmptyClipPathLeavesNothing)
{
    const Picture picture(4, 4);
    CGContextClip(picture);
    fillRed(picture, CGRectMake(0, 0, 4, 4));
    EXPECT_EQ(picture.at(1, 1), kClear);
}

TEST(CGContext, CopyModeReplacesAlpha)
{
    const Picture picture(4, 4);
    fillRed(picture, CGRectMake(0, 0, 4, 4));
    CGContextSetBlendMode(picture, kCGBlendModeCopy);
    CGContextSetRGBFillColor(picture, 0, 0, 1, 0.5);
    CGContextFillRect(picture, CGRectMake(0, 0, 4, 4));
    EXPECT_PRED_FORMAT3(isNear, picture.at(1, 1), (Rgba { 0, 0, 128, 128 }), 1);
}

TEST(CGContext, SourceAtopKeepsTheAlphaBelow)
{
    const Picture picture(4, 4);
    fillRed(picture, CGRectMake(0, 0, 2, 4));
    CGContextSetBlendMode(picture, kCGBlendModeSourceAtop);
    CGContextSetRGBFillColor(picture, 0, 0, 1, 1);
    CGContextFillRect(picture, CGRectMake(0, 0, 4, 4));
    EXPECT_EQ(picture.at(0, 0), (Rgba { 0, 0, 255, 255 }));
    EXPECT_EQ(picture.at(3, 0), kClear);
}

TEST(CGContext, SourceInStaysWithinTheShape)
{
    const Picture picture(4, 4);
    fillRed(picture, CGRectMake(0, 0, 4, 4));
    CGContextSetBlendMode(picture, kCGBlendModeSourceIn);
    CGContextSetRGBFillColor(picture, 0, 1, 0, 1);
    CGContextFillRect(picture, CGRectMake(0, 0, 2, 4));
    EXPECT_EQ(picture.at(0, 0), (Rgba { 0, 255, 0, 255 }));
    EXPECT_EQ(picture.at(3, 0), kRed);
}

TEST(CGContext, PlusModesAddAndSubtract)
{
    const Picture picture(2, 1);
    CGContextSetRGBFillColor(picture, 0.5, 0.5, 0.5, 1);
    CGContextFillRect(picture, CGRectMake(0, 0, 2, 1));
    CGContextSetBlendMode(picture, kCGBlendModePlusLighter);
    CGContextFillRect(picture, CGRectMake(0, 0, 1, 1));
    CGContextSetBlendMode(picture, kCGBlendModePlusDarker);
    CGContextFillRect(picture, CGRectMake(1, 0, 1, 1));
    EXPECT_PRED_FORMAT3(isNear, picture.at(0, 0), (Rgba { 255, 255, 255, 255 }), 1);
    EXPECT_PRED_FORMAT3(isNear, picture.at(1, 0), (Rgba { 0, 0, 0, 255 }), 2);
}

TEST(CGContext, AlphaMultipliesPainting)
{
    const Picture picture(4, 4);
    CGContextSetAlpha(picture, 0.5);
    fillRed(picture, CGRectMake(0, 0, 4, 4));
    EXPECT_PRED_FORMAT3(isNear, picture.at(1, 1), (Rgba { 128, 0, 0, 128 }), 1);
}

TEST(CGContext, GroupIsLaidDownOnceWithTheOuterAlpha)
{
    const Picture picture(4, 4);
    CGContextSetAlpha(picture, 0.5);
    CGContextBeginTransparencyLayer(picture, nullptr);
    fillRed(picture, CGRectMake(0, 0, 4, 4));
    fillRed(picture, CGRectMake(0, 0, 4, 4));
    CGContextEndTransparencyLayer(picture);
    EXPECT_PRED_FORMAT3(isNear, picture.at(1, 1), (Rgba { 128, 0, 0, 128 }), 1);
}

TEST(CGContext, GroupsNest)
{
    const Picture picture(4, 4);
    CGContextSetAlpha(picture, 0.5);
    CGContextBeginTransparencyLayer(picture, nullptr);
    CGContextSetAlpha(picture, 0.5);
    CGContextBeginTransparencyLayer(picture, nullptr);
    fillRed(picture, CGRectMake(0, 0, 4, 4));
    CGContextEndTransparencyLayer(picture);
    CGContextEndTransparencyLayer(picture);
    EXPECT_PRED_FORMAT3(isNear, picture.at(1, 1), (Rgba { 64, 0, 0, 64 }), 1);
}

TEST(CGContext, StrokeIsCentredOnThePath)
{
    const Picture picture(10, 10);
    CGContextSetRGBStrokeColor(picture, 1, 0, 0, 1);
    CGContextSetLineWidth(picture, 2);
    CGContextStrokeRect(picture, CGRectMake(2, 2, 6, 6));
    EXPECT_EQ(picture.at(1, 5), kRed);
    EXPECT_EQ(picture.at(2, 5), kRed);
    EXPECT_EQ(picture.at(3, 5), kClear);
}

TEST(CGContext, ArcToPointRoundsTheCornerInScaledSpace)
{
    const Picture picture(20, 20);
    CGContextScaleCTM(picture, 2, 2);
    CGContextMoveToPoint(picture, 0, 0);
    CGContextAddLineToPoint(picture, 5, 0);
    CGContextAddArcToPoint(picture, 10, 0, 10, 5, 4);
    const CGPoint end = CGContextGetPathCurrentPoint(picture);
    EXPECT_NEAR(end.x, 10, 1e-9);
    EXPECT_NEAR(end.y, 4, 1e-9);
    CGContextAddLineToPoint(picture, 10, 10);
    CGContextAddLineToPoint(picture, 0, 10);
    CGContextSetRGBFillColor(picture, 1, 0, 0, 1);
    CGContextFillPath(picture);
    EXPECT_EQ(picture.at(19, 19), kClear);
    EXPECT_EQ(picture.at(10, 19), kRed);
}

TEST(CGContext, ArcToPointOnALineOrWithoutRadiusIsALine)
{
    const Picture picture(20, 20);
    CGContextMoveToPoint(picture, 0, 0);
    CGContextAddArcToPoint(picture, 5, 0, 10, 0, 3);
    EXPECT_EQ(CGContextGetPathCurrentPoint(picture).x, 5);
    CGContextAddArcToPoint(picture, 5, 5, 0, 5, 0);
    EXPECT_EQ(CGContextGetPathCurrentPoint(picture).y, 5);
}

TEST(CGContext, DirectAndPenRectanglesAgreeWithinOneLevel)
{
    for (const CGRect rect : { CGRectMake(1, 1, 5, 5), CGRectMake(1.25, 2.5, 4.5, 3.75) }) {
        const Picture direct(10, 10);
        const Picture pen(10, 10);
        for (const Picture* picture : { &direct, &pen })
            CGContextSetRGBFillColor(*picture, 0.2, 0.4, 0.8, 0.6);
        CGContextFillRect(direct, rect);
        CGContextAddRect(pen, rect);
        CGContextAddRect(pen, CGRectMake(-20, -20, 1, 1)); // two of them take the pen
        CGContextFillPath(pen);
        EXPECT_TRUE(areAlike(direct.image().get(), pen.image().get(), 1, "rectangles"));
    }
}

TEST(CGContext, LinearGradientRunsBetweenItsPoints)
{
    const Picture picture(1, 100);
    const CGFloat parts[] { 1, 0, 0, 1, 0, 0, 1, 1 };
    const auto space = Ref<CGColorSpace>::adopt(CGColorSpaceCreateDeviceRGB());
    const auto gradient = Ref<CGGradient>::adopt(
        CGGradientCreateWithColorComponents(space.get(), parts, nullptr, 2));
    CGContextDrawLinearGradient(picture, gradient.get(), { 0, 0 }, { 0, 50 }, 0);
    EXPECT_PRED_FORMAT3(isNear, picture.at(0, 99), (Rgba { 254, 0, 1, 255 }), 3);
    EXPECT_PRED_FORMAT3(isNear, picture.at(0, 51), (Rgba { 8, 0, 247, 255 }), 2);
    EXPECT_EQ(picture.at(0, 20), kClear);
}

TEST(CGContext, ExtremeNumbersDoNotSpoilTheContext)
{
    const double numbers[] { 0, -1, 1e9, -1e9, 1e300, -1e300, NAN,
        std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(), 1e-300 };
    const Picture picture(16, 16);
    std::size_t next = 0;
    const auto number = [&] { return numbers[next++ * 7 % std::size(numbers) + 0]; };
    for (int i = 0; i < 400; ++i) {
        next = static_cast<std::size_t>(i);
        CGContextSaveGState(picture);
        const CGRect rect = CGRectMake(number(), number(), number(), numbers[i % 10]);
        CGContextSetLineWidth(picture, numbers[i % 7]);
        const CGFloat dash[] { numbers[i % 9], numbers[i % 5] };
        CGContextSetLineDash(picture, numbers[i % 8], dash, 2);
        if (i % 3 == 1)
            CGContextScaleCTM(picture, number(), number());
        if (i % 4 == 2)
            CGContextRotateCTM(picture, number());
        CGContextFillRect(picture, rect);
        CGContextStrokeRect(picture, rect);
        CGContextFillEllipseInRect(picture, rect);
        CGContextMoveToPoint(picture, 1, 1);
        CGContextAddArc(picture, number(), number(), number(), number(), number(), true);
        CGContextAddArcToPoint(picture, number(), number(), number(), number(), number());
        CGContextDrawPath(picture, kCGPathFillStroke);
        CGContextClipToRect(picture, rect);
        CGContextFillEllipseInRect(picture, CGRectMake(0, 0, 8, 8));
        CGContextRestoreGState(picture);
    }
    CGContextClearRect(picture, CGRectMake(0, 0, 16, 16));
    CGContextSetRGBFillColor(picture, 1, 0, 0, 1);
    CGContextFillEllipseInRect(picture, CGRectMake(0, 0, 16, 16));
    EXPECT_EQ(picture.at(8, 8), kRed);
    EXPECT_EQ(picture.at(0, 0), kClear);
}

}
