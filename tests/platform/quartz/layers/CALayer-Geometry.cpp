// SPDX-License-Identifier: Apache-2.0
#include "quartz/layers/CALayer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

namespace brindle {
namespace {

    Ref<CALayer> layerWithFrame(CGRect frame)
    {
        Ref<CALayer> layer = CALayer::cls().layer();
        layer->setFrame(frame);
        return layer;
    }

    TEST(LayerGeometry, AFreshLayerIsNowhere)
    {
        const Ref<CALayer> layer = CALayer::cls().layer();
        EXPECT_EQ(layer->frame(), CGRectZero);
        EXPECT_EQ(layer->anchorPoint(), CGPointMake(0.5, 0.5));
        EXPECT_EQ(layer->transform(), CATransform3DIdentity);
        EXPECT_EQ(layer->opacity(), 1);
    }

    TEST(LayerGeometry, TheFrameSetsPositionAndSizeOfTheBounds)
    {
        const Ref<CALayer> layer = layerWithFrame({ { 10, 20 }, { 30, 40 } });
        EXPECT_EQ(layer->position(), CGPointMake(25, 40));
        EXPECT_EQ(layer->bounds(), CGRectMake(0, 0, 30, 40));
    }

    TEST(LayerGeometry, TheFrameKeepsTheOriginOfTheBounds)
    {
        const Ref<CALayer> layer = CALayer::cls().layer();
        layer->setBounds({ { 5, 6 }, { 1, 1 } });
        layer->setFrame({ { 10, 20 }, { 30, 40 } });
        EXPECT_EQ(layer->bounds(), CGRectMake(5, 6, 30, 40));
        EXPECT_EQ(layer->frame(), CGRectMake(10, 20, 30, 40));
    }

    TEST(LayerGeometry, TheAnchorPointMovesTheFrameAndLeavesThePosition)
    {
        const Ref<CALayer> layer = layerWithFrame({ { 10, 20 }, { 30, 40 } });
        layer->setAnchorPoint({ 0, 1 });
        EXPECT_EQ(layer->position(), CGPointMake(25, 40));
        EXPECT_EQ(layer->frame(), CGRectMake(25, 0, 30, 40));
    }

    TEST(LayerGeometry, AScaleGrowsTheFrameAroundTheAnchorPoint)
    {
        const Ref<CALayer> layer = layerWithFrame({ { 10, 20 }, { 30, 40 } });
        layer->setTransform(CATransform3DMakeScale(2, 2, 1));
        EXPECT_EQ(layer->frame(), CGRectMake(-5, 0, 60, 80));
    }

    TEST(LayerGeometry, AQuarterTurnSwapsTheSidesOfTheFrame)
    {
        const Ref<CALayer> layer = layerWithFrame({ { 0, 0 }, { 40, 20 } });
        layer->setTransform(CATransform3DMakeRotation(std::numbers::pi / 2, 0, 0, 1));
        const CGRect frame = layer->frame();
        EXPECT_NEAR(frame.origin.x, 10, 1e-9);
        EXPECT_NEAR(frame.origin.y, -10, 1e-9);
        EXPECT_NEAR(frame.size.width, 20, 1e-9);
        EXPECT_NEAR(frame.size.height, 40, 1e-9);
    }

    TEST(LayerGeometry, AFrameThatIsSetOnAScaledLayerReadsBack)
    {
        const Ref<CALayer> layer = CALayer::cls().layer();
        layer->setTransform(CATransform3DMakeScale(2, 4, 1));
        layer->setFrame({ { 10, 20 }, { 40, 40 } });
        EXPECT_EQ(layer->bounds().size, (CGSize { 20, 10 }));
        EXPECT_EQ(layer->frame(), CGRectMake(10, 20, 40, 40));
    }

    TEST(LayerGeometry, NumbersThatAreNonePassThrough)
    {
        const double nan = std::numeric_limits<double>::quiet_NaN();
        const Ref<CALayer> layer = layerWithFrame({ { nan, 0 }, { 10, nan } });
        EXPECT_TRUE(std::isnan(layer->frame().origin.x));
        EXPECT_TRUE(std::isnan(layer->bounds().size.height));
    }

    TEST(LayerConversion, GoesThroughPositionsAndBoundsOrigins)
    {
        const Ref<CALayer> outer = layerWithFrame({ { 100, 100 }, { 200, 200 } });
        outer->setBounds({ { 50, 0 }, { 200, 200 } });
        const Ref<CALayer> inner = layerWithFrame({ { 60, 10 }, { 20, 20 } });
        outer->addSublayer(inner.get());
        EXPECT_EQ(inner->convertPoint_toLayer({ 1, 2 }, outer.get()), CGPointMake(61, 12));
        EXPECT_EQ(inner->convertPoint_toLayer({ 1, 2 }, nullptr), CGPointMake(111, 112));
        EXPECT_EQ(inner->convertPoint_fromLayer({ 61, 12 }, outer.get()), CGPointMake(1, 2));
    }

    TEST(LayerConversion, AFlippedLayerCountsFromItsTop)
    {
        const Ref<CALayer> outer = layerWithFrame({ { 0, 0 }, { 100, 100 } });
        outer->setGeometryFlipped(true);
        const Ref<CALayer> inner = layerWithFrame({ { 0, 10 }, { 20, 20 } });
        outer->addSublayer(inner.get());
        EXPECT_EQ(inner->convertPoint_toLayer({ 0, 0 }, nullptr), CGPointMake(0, 90));
        EXPECT_TRUE(inner->contentsAreFlipped());
    }

    TEST(LayerConversion, TurnsRectanglesIntoTheirBoxes)
    {
        const Ref<CALayer> layer = layerWithFrame({ { 0, 0 }, { 100, 100 } });
        layer->setTransform(CATransform3DMakeScale(0.5, 0.5, 1));
        EXPECT_EQ(layer->convertRect_toLayer({ { 0, 0 }, { 100, 100 } }, nullptr),
            CGRectMake(25, 25, 50, 50));
    }

    TEST(LayerConversion, SublayerTransformsWorkAroundTheAnchorPoint)
    {
        const Ref<CALayer> outer = layerWithFrame({ { 0, 0 }, { 100, 100 } });
        const Ref<CALayer> inner = layerWithFrame({ { 50, 50 }, { 10, 10 } });
        outer->addSublayer(inner.get());
        outer->setSublayerTransform(CATransform3DMakeScale(2, 2, 1));
        EXPECT_EQ(inner->convertPoint_toLayer({ 10, 10 }, outer.get()), CGPointMake(70, 70));
    }

    TEST(LayerHitTest, FindsTheFrontMostLayer)
    {
        const Ref<CALayer> outer = layerWithFrame({ { 0, 0 }, { 100, 100 } });
        const Ref<CALayer> back = layerWithFrame({ { 10, 10 }, { 50, 50 } });
        const Ref<CALayer> front = layerWithFrame({ { 40, 40 }, { 50, 50 } });
        outer->addSublayer(back.get());
        outer->addSublayer(front.get());
        EXPECT_EQ(outer->hitTest({ 45, 45 }), front);
        EXPECT_EQ(outer->hitTest({ 15, 15 }), back);
        EXPECT_EQ(outer->hitTest({ 5, 5 }), outer);
        EXPECT_EQ(outer->hitTest({ 101, 5 }), nullptr);
    }

    TEST(LayerHitTest, FollowsTheOrderInDepth)
    {
        const Ref<CALayer> outer = layerWithFrame({ { 0, 0 }, { 100, 100 } });
        const Ref<CALayer> back = layerWithFrame({ { 0, 0 }, { 50, 50 } });
        const Ref<CALayer> front = layerWithFrame({ { 0, 0 }, { 50, 50 } });
        outer->addSublayer(back.get());
        outer->addSublayer(front.get());
        back->setZPosition(1);
        EXPECT_EQ(outer->hitTest({ 10, 10 }), back);
    }

    TEST(LayerHitTest, PassesByHiddenLayers)
    {
        const Ref<CALayer> outer = layerWithFrame({ { 0, 0 }, { 100, 100 } });
        const Ref<CALayer> inner = layerWithFrame({ { 0, 0 }, { 50, 50 } });
        outer->addSublayer(inner.get());
        inner->setHidden(true);
        EXPECT_EQ(outer->hitTest({ 10, 10 }), outer);
    }

    TEST(LayerHitTest, EndsAtTheBoundsOfALayerThatMasks)
    {
        const Ref<CALayer> outer = layerWithFrame({ { 0, 0 }, { 20, 20 } });
        const Ref<CALayer> inner = layerWithFrame({ { 10, 10 }, { 50, 50 } });
        outer->addSublayer(inner.get());
        EXPECT_EQ(outer->hitTest({ 40, 40 }), inner);
        outer->setMasksToBounds(true);
        EXPECT_EQ(outer->hitTest({ 40, 40 }), nullptr);
    }

    TEST(LayerHitTest, FindsNothingInALayerPressedFlat)
    {
        const Ref<CALayer> layer = layerWithFrame({ { 0, 0 }, { 20, 20 } });
        layer->setTransform(CATransform3DMakeScale(0, 1, 1));
        EXPECT_EQ(layer->hitTest({ 10, 10 }), nullptr);
    }

    TEST(LayerAutoresizing, SharesTheDifferenceAmongTheFlexibleParts)
    {
        const struct {
            CAAutoresizingMask mask;
            CGRect expected;
        } rows[] {
            { kCALayerNotSizable, { { 10, 10 }, { 20, 20 } } },
            { kCALayerMinXMargin, { { 40, 10 }, { 20, 20 } } },
            { kCALayerWidthSizable, { { 10, 10 }, { 50, 20 } } },
            { kCALayerMaxXMargin, { { 10, 10 }, { 20, 20 } } },
            { kCALayerMinYMargin, { { 10, 70 }, { 20, 20 } } },
            { kCALayerHeightSizable, { { 10, 10 }, { 20, 80 } } },
            { kCALayerMaxYMargin, { { 10, 10 }, { 20, 20 } } },
            { kCALayerMinXMargin | kCALayerWidthSizable, { { 25, 10 }, { 35, 20 } } },
            { kCALayerWidthSizable | kCALayerHeightSizable, { { 10, 10 }, { 50, 80 } } },
        };
        for (const auto& row : rows) {
            const Ref<CALayer> outer = layerWithFrame({ { 0, 0 }, { 100, 100 } });
            const Ref<CALayer> inner = layerWithFrame({ { 10, 10 }, { 20, 20 } });
            inner->setAutoresizingMask(row.mask);
            outer->addSublayer(inner.get());
            outer->setFrame({ { 0, 0 }, { 130, 160 } });
            EXPECT_EQ(inner->frame(), row.expected) << "mask " << row.mask;
        }
    }

    TEST(LayerAutoresizing, ComesBackFromBeingSqueezedToNothing)
    {
        const Ref<CALayer> outer = layerWithFrame({ { 0, 0 }, { 100, 100 } });
        const Ref<CALayer> inner = layerWithFrame({ { 10, 10 }, { 20, 20 } });
        inner->setAutoresizingMask(kCALayerMinXMargin | kCALayerWidthSizable | kCALayerMaxXMargin);
        outer->addSublayer(inner.get());
        for (const double width : { 33.0, 7.0, 0.0, 61.0, 100.0 })
            outer->setBounds({ { 0, 0 }, { width, 100 } });
        EXPECT_EQ(inner->frame(), CGRectMake(10, 10, 20, 20));
    }

    TEST(Transforms, InverseUndoesATransform)
    {
        const CATransform3D t = CATransform3DRotate(
            CATransform3DTranslate(CATransform3DMakeScale(2, 3, 4), 5, 6, 7), 0.7, 1, 2, 3);
        const CATransform3D product = CATransform3DConcat(t, CATransform3DInvert(t));
        EXPECT_NEAR(product.m11, 1, 1e-12);
        EXPECT_NEAR(product.m23, 0, 1e-12);
        EXPECT_NEAR(product.m42, 0, 1e-12);
        EXPECT_NEAR(product.m44, 1, 1e-12);
    }

    TEST(Transforms, ATransformWithoutInverseAnswersItself)
    {
        const CATransform3D flat = CATransform3DMakeScale(0, 1, 1);
        EXPECT_EQ(CATransform3DInvert(flat), flat);
    }

    TEST(Transforms, StepsWorkBeforeWhatIsThere)
    {
        const CATransform3D t = CATransform3DTranslate(CATransform3DMakeScale(2, 2, 1), 10, 0, 0);
        EXPECT_EQ(t.m41, 20);
    }

    TEST(Transforms, GoIntoValuesAndBack)
    {
        const CATransform3D t = CATransform3DMakeTranslation(1, 2, 3);
        const Ref<NSValue> value = valueWithCATransform3D(NSValue::cls(), t);
        EXPECT_STREQ(value->objCType(), "{CATransform3D=dddddddddddddddd}");
        EXPECT_EQ(CATransform3DValue(value), t);
        EXPECT_EQ(CATransform3DValue(NSValue::cls().valueWithPoint({ 1, 2 })), CATransform3D {});
    }

    TEST(Transforms, KnowWhenTheyStayInThePlane)
    {
        EXPECT_TRUE(CATransform3DIsAffine(CATransform3DMakeRotation(1, 0, 0, 1)));
        EXPECT_FALSE(CATransform3DIsAffine(CATransform3DMakeRotation(1, 1, 0, 0)));
        EXPECT_EQ(CATransform3DMakeRotation(1, 0, 0, 0), CATransform3DIdentity);
    }

}
}
