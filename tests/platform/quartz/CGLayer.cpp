// SPDX-License-Identifier: Apache-2.0
#include "quartz/CGLayer.h"

#include "support/Numbers.h"
#include "support/Pixels.h"

#include <limits>

using namespace brindle;
using test::Picture;
using test::Rgba;

namespace {

using test::kRed;

Ref<CGLayer> makeLayer(const Picture& picture, CGSize size)
{
    return Ref<CGLayer>::adopt(CGLayerCreateWithContext(picture, size, nullptr));
}

/// A layer of 4 by 4 whose lower left quarter is red.
Ref<CGLayer> quarter(const Picture& picture)
{
    const Ref<CGLayer> layer = makeLayer(picture, { 4, 4 });
    CGContextSetRGBFillColor(CGLayerGetContext(layer.get()), 1, 0, 0, 1);
    CGContextFillRect(CGLayerGetContext(layer.get()), CGRectMake(0, 0, 2, 2));
    return layer;
}

}

TEST(CGLayer, IsLaidDownAtItsSizeAsOftenAsOneLikes)
{
    const Picture picture(20, 20);
    const Ref<CGLayer> layer = quarter(picture);
    EXPECT_EQ(CGLayerGetSize(layer.get()), CGSizeMake(4, 4));
    CGContextDrawLayerAtPoint(picture, { 0, 0 }, layer.get());
    CGContextDrawLayerAtPoint(picture, { 10, 10 }, layer.get());
    EXPECT_EQ(picture.at(1, 18), kRed);
    EXPECT_EQ(picture.at(2, 18).alpha, 0);
    EXPECT_EQ(picture.at(11, 8), kRed);
    EXPECT_EQ(picture.at(11, 7).alpha, 0);
}

TEST(CGLayer, IsStretchedOverARectangle)
{
    const Picture picture(20, 20);
    CGContextSetInterpolationQuality(picture, kCGInterpolationNone);
    CGContextDrawLayerInRect(picture, CGRectMake(0, 0, 20, 20), quarter(picture).get());
    EXPECT_EQ(picture.at(8, 12), kRed);
    EXPECT_EQ(picture.at(12, 12).alpha, 0);
    EXPECT_EQ(picture.at(8, 7).alpha, 0);
}

TEST(CGLayer, IsAsSharpAsTheContextItWasMadeFor)
{
    const Picture picture(40, 40, 2);
    const Ref<CGLayer> layer = makeLayer(picture, { 4.25, 4 });
    CGContextSetRGBFillColor(CGLayerGetContext(layer.get()), 1, 0, 0, 1);
    CGContextFillRect(CGLayerGetContext(layer.get()), CGRectMake(0, 0, 0.5, 0.5));
    CGContextDrawLayerAtPoint(picture, { 1, 1 }, layer.get());
    EXPECT_EQ(picture.at(2, 37), kRed);
    EXPECT_EQ(picture.at(3, 37).alpha, 0);
    EXPECT_EQ(picture.at(2, 36).alpha, 0);
}

TEST(CGLayer, ShowsWhatIsDrawnIntoItLater)
{
    const Picture picture(8, 8);
    const Ref<CGLayer> layer = makeLayer(picture, { 4, 4 });
    CGContextDrawLayerAtPoint(picture, { 0, 0 }, layer.get());
    CGContextSetRGBFillColor(CGLayerGetContext(layer.get()), 1, 0, 0, 1);
    CGContextFillRect(CGLayerGetContext(layer.get()), CGRectMake(0, 0, 4, 4));
    EXPECT_EQ(picture.at(1, 6).alpha, 0);
    CGContextDrawLayerAtPoint(picture, { 0, 0 }, layer.get());
    EXPECT_EQ(picture.at(1, 6), kRed);
}

TEST(CGLayer, SizesThatMakeNoPictureAreNULL)
{
    const Picture picture(8, 8);
    for (const double side : { 0.0, -3.0, kNaN, 40'000.0, 1e300 })
        EXPECT_FALSE(makeLayer(picture, { side, 4 })) << side;
    EXPECT_EQ(CGLayerCreateWithContext(nullptr, { 4, 4 }, nullptr), nullptr);
}

TEST(CGLayer, NULLDrawsNothing)
{
    const Picture picture(8, 8);
    CGContextDrawLayerAtPoint(picture, { 0, 0 }, nullptr);
    CGContextDrawLayerInRect(nullptr, CGRectMake(0, 0, 4, 4), quarter(picture).get());
    EXPECT_EQ(CGLayerGetContext(nullptr), nullptr);
    EXPECT_EQ(CGLayerGetSize(nullptr), CGSize {});
}
