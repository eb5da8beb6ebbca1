// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cmath>

#include "quartz/StencilCachePrivate.h"
#include "support/Pixels.h"

using namespace brindle;
using test::isNear;
using test::Picture;
using test::Rgba;

namespace {

using test::kRed;
constexpr CGRect kSquare { { 10, 10 }, { 10, 10 } };

void setShadow(CGContext* context, CGSize offset, double blur, double alpha = 1)
{
    const auto red = Ref<CGColor>::adopt(CGColorCreateGenericRGB(1, 0, 0, alpha));
    CGContextSetShadowWithColor(context, offset, blur, red.get());
}

void addDisc(CGContext* context, CGRect rect)
{
    CGContextBeginPath(context);
    CGContextAddEllipseInRect(context, rect);
}

/// Draws into two pictures in two ways and compares them.
template <class A, class B>
testing::AssertionResult drawAlike(A&& one, B&& other, int tolerance, const char* name)
{
    const Picture first(40, 40);
    const Picture second(40, 40);
    first.fillWhite();
    second.fillWhite();
    one(first.context());
    other(second.context());
    return test::areAlike(first.image().get(), second.image().get(), tolerance, name);
}

}

TEST(ContextShadow, LiesWhereTheOffsetSaysWithYUp)
{
    const Picture picture(40, 40);
    setShadow(picture, { 12, 12 }, 0);
    CGContextFillRect(picture, kSquare);
    EXPECT_EQ(picture.at(25, 40 - 25), kRed);
    EXPECT_EQ(picture.at(15, 25), (Rgba { 0, 0, 0, 255 }));
}

TEST(ContextShadow, OffsetIgnoresTheTransform)
{
    const Picture picture(40, 40);
    CGContextConcatCTM(picture, { 1, 0, 0, -1, 0, 40 });
    setShadow(picture, { 12, 12 }, 0);
    CGContextFillRect(picture, kSquare); // now from the top
    EXPECT_EQ(picture.at(25, 3), kRed);
    EXPECT_EQ(picture.at(25, 25).alpha, 0);
}

TEST(ContextShadow, GrowsWithTheScaleOfTheBaseSpace)
{
    const Picture picture(80, 80, 2);
    setShadow(picture, { 12, 0 }, 0);
    CGContextFillRect(picture, kSquare);
    EXPECT_EQ(picture.at(50, 50), kRed);
    EXPECT_EQ(picture.at(62, 50), kRed);
    EXPECT_EQ(picture.at(66, 50).alpha, 0);
}

TEST(ContextShadow, BlurIsAGaussianOfHalfItsRadius)
{
    const Picture picture(100, 100);
    setShadow(picture, { 0, 300 }, 8);
    CGContextFillRect(picture, CGRectMake(20, -280, 60, 60));
    for (int x = 10; x < 30; ++x) {
        const double covered = std::erfc(-(x + 0.5 - 20) / 4 / std::sqrt(2)) / 2;
        EXPECT_NEAR(picture.at(x, 50).alpha, covered * 255, 4) << x;
    }
}

TEST(ContextShadow, TakesTheAlphaOfWhatCastsIt)
{
    const Picture picture(40, 40);
    setShadow(picture, { 12, 0 }, 0, 0.5);
    CGContextSetRGBFillColor(picture, 0, 0, 1, 0.5);
    CGContextSetAlpha(picture, 0.5);
    CGContextFillRect(picture, kSquare);
    EXPECT_NEAR(picture.at(28, 25).alpha, 32, 1);
}

TEST(ContextShadow, EndsWithTheSavedState)
{
    const Picture picture(40, 40);
    CGContextSaveGState(picture);
    setShadow(picture, { 12, 0 }, 0);
    CGContextRestoreGState(picture);
    CGContextFillRect(picture, kSquare);
    EXPECT_EQ(picture.at(28, 25).alpha, 0);
}

TEST(ContextShadow, IsCutByTheClipAndCastFromOutsideOfIt)
{
    const Picture picture(40, 40);
    CGContextClipToRect(picture, CGRectMake(22, 0, 4, 40));
    setShadow(picture, { 12, 0 }, 0);
    CGContextFillRect(picture, kSquare);
    EXPECT_EQ(picture.at(24, 25), kRed);
    EXPECT_EQ(picture.at(28, 25).alpha, 0);
    EXPECT_EQ(picture.at(15, 25).alpha, 0);
}

TEST(ContextShadow, DrawnInPartsIsDrawnAsAWhole)
{
    const auto draw = [](CGContext* context, int left, int right) {
        CGContextSaveGState(context);
        CGContextClipToRect(context, CGRectMake(left, 0, right - left, 40));
        setShadow(context, { 3, -4 }, 6);
        addDisc(context, { { 8, 12 }, { 20, 14 } });
        CGContextFillPath(context);
        CGContextBeginTransparencyLayer(context, nullptr);
        CGContextFillRect(context, CGRectMake(5, 30, 30, 3));
        CGContextEndTransparencyLayer(context);
        CGContextRestoreGState(context);
    };
    EXPECT_TRUE(drawAlike(
        [&](CGContext* context) {
            draw(context, 0, 13);
            draw(context, 13, 26);
            draw(context, 26, 40);
        },
        [&](CGContext* context) { draw(context, 0, 40); }, 0, "shadow-parts"));
}

TEST(ContextShadow, RememberedAndFreshShapesCastTheSame)
{
    const auto inClip = [](CGContext* context) {
        addDisc(context, { { -100, -100 }, { 240, 240 } }); // a clip that is no rectangle
        CGContextClip(context);
    };
    const auto draw = [](CGContext* context) {
        setShadow(context, { 2, -2 }, 5, 0.7);
        addDisc(context, { { 8.3, 12.6 }, { 20, 14 } });
        CGContextDrawPath(context, kCGPathFillStroke);
    };
    EXPECT_TRUE(drawAlike(
        [&](CGContext* context) {
            inClip(context);
            draw(context);
        },
        draw, 1, "shadow-roads"));
}

TEST(ContextShadow, GroupCastsOneForAllOfItsParts)
{
    const Picture picture(60, 40);
    setShadow(picture, { 20, 0 }, 0, 0.5);
    CGContextBeginTransparencyLayer(picture, nullptr);
    CGContextFillRect(picture, kSquare);
    CGContextFillRect(picture, CGRectMake(15, 10, 10, 10));
    CGContextEndTransparencyLayer(picture);
    EXPECT_NEAR(picture.at(37, 25).alpha, 128, 1);
    EXPECT_NEAR(picture.at(32, 25).alpha, 128, 1);
}

TEST(ContextShadow, ImagesCastThatOfTheirPixels)
{
    const std::uint32_t pixels[] = { 0xFF00FF00, 0, 0x80008000, 0 };
    const auto image = quartz::imageFromPixels(pixels, 4, 1, 16);
    const Picture picture(40, 40);
    setShadow(picture, { 8, 0 }, 0);
    CGContextDrawImage(picture, CGRectMake(10, 20, 4, 1), image.get());
    EXPECT_EQ(picture.at(18, 19), kRed);
    EXPECT_EQ(picture.at(19, 19).alpha, 0);
    EXPECT_EQ(picture.at(20, 19).alpha, 128);
    EXPECT_EQ(picture.at(10, 19), (Rgba { 0, 255, 0, 255 }));
}

TEST(ContextShadow, StrokesCastIt)
{
    const Picture picture(40, 40);
    setShadow(picture, { 0, -10 }, 0);
    CGContextSetLineWidth(picture, 2);
    CGContextMoveToPoint(picture, 5, 20);
    CGContextAddLineToPoint(picture, 35, 20);
    CGContextStrokePath(picture);
    EXPECT_EQ(picture.at(20, 30), kRed);
    EXPECT_EQ(picture.at(20, 20).alpha, 255);
}

TEST(ContextShadow, TakesPartInTheBlendMode)
{
    const Picture picture(40, 40);
    picture.fillWhite();
    setShadow(picture, { 12, 0 }, 0);
    CGContextSetBlendMode(picture, kCGBlendModeMultiply);
    CGContextSetRGBFillColor(picture, 0, 1, 0, 1);
    CGContextFillRect(picture, kSquare);
    CGContextSetShadowWithColor(picture, {}, 0, nullptr);
    CGContextFillRect(picture, CGRectMake(22, 10, 10, 10));
    EXPECT_EQ(picture.at(28, 25), (Rgba { 0, 0, 0, 255 })); // green times red
}

TEST(ContextShadow, FarAwayAndEndlessOnesDoNoHarm)
{
    for (const double far : { 1e6, 1e300, -1e12 }) {
        const Picture picture(40, 40);
        setShadow(picture, { far, far }, std::abs(far));
        CGContextFillRect(picture, kSquare);
        CGContextBeginTransparencyLayer(picture, nullptr);
        CGContextFillRect(picture, kSquare);
        CGContextEndTransparencyLayer(picture);
        EXPECT_EQ(picture.at(15, 25).alpha, 255);
    }
}

// ---- stencils

TEST(StencilCache, ForgetsWhatNobodyAskedForAndStaysSmall)
{
    quartz::StencilCache cache(100'000);
    const auto keyOf = [](std::int32_t number) {
        quartz::ShapeKey key;
        key.add(number);
        return key;
    };
    for (std::int32_t i = 0; i < 1000; ++i) {
        cache.insert(keyOf(i), { std::vector<std::uint8_t>(1000), 0, 0, 100, 10 });
        EXPECT_TRUE(cache.find(keyOf(0)));
        EXPECT_LE(cache.bytesInUse(), 100'000U);
    }
    EXPECT_FALSE(cache.find(keyOf(1)));
    EXPECT_TRUE(cache.find(keyOf(999)));
}

TEST(StencilCache, ShapesAWholePixelApartAreTheSame)
{
    const auto keyOf = [](double x, int left) {
        quartz::PathData path;
        path.rect(CGRectMake(x, 4.25, 10, 10), CGAffineTransformIdentity);
        quartz::ShapeKey key;
        key.add(path, left, 4);
        return key;
    };
    EXPECT_EQ(keyOf(3.3, 3), keyOf(1003.3, 1003));
    EXPECT_FALSE(keyOf(3.3, 3) == keyOf(3.4, 3));
}

TEST(StencilCache, ShapesOfManyPointsAreNotKept)
{
    quartz::ShapeKey key;
    for (int i = 0; i < 1000; ++i)
        key.add(i);
    EXPECT_FALSE(key.fits());
}

TEST(StencilCache, RememberedShapesAreThoseOfThePen)
{
    const auto draw = [](CGContext* context) {
        for (const double at : { 2.0, 14.5, 27.25 }) {
            CGContextSetRGBFillColor(context, 0.2, 0.4, 0.9, 0.8);
            addDisc(context, { { at, 3 }, { 10, 30.5 } });
            CGContextDrawPath(context, kCGPathEOFillStroke);
        }
    };
    EXPECT_TRUE(drawAlike(
        [&](CGContext* context) {
            addDisc(context, { { -100, -100 }, { 240, 240 } });
            CGContextClip(context); // here only the pen draws
            draw(context);
        },
        draw, 1, "stencil-roads"));
}
