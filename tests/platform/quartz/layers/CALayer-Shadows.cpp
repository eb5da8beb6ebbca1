// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "quartz/layers/CALayer.h"
#include "support/Pixels.h"

namespace brindle {
namespace {

    using test::isNear;
    using test::Picture;
    using test::Rgba;

    using test::kClear;
    using test::kGreen;
    using test::kRed;

    Ref<CALayer> square(CGRect frame, double red, double green, double blue, double alpha = 1)
    {
        Ref<CALayer> layer = CALayer::cls().layer();
        layer->setFrame(frame);
        layer->setBackgroundColor(
            Ref<CGColor>::adopt(CGColorCreateSRGB(red, green, blue, alpha)).get());
        return layer;
    }
    Ref<CALayer> wideStage() { return square({ { 0, 0 }, { 40, 40 } }, 0, 0, 0, 0); }

    using test::kBlack;

    /// A red square of 10 in the middle of a stage of 40, whose shadow lies 12 to the right and as far up.
    struct Shadowed {
        Ref<CALayer> layer = square({ { 10, 10 }, { 10, 10 } }, 1, 0, 0);
        Shadowed()
        {
            layer->setShadowOpacity(1);
            layer->setShadowRadius(0);
            layer->setShadowOffset({ 12, 12 });
        }
        /// - scale: pixels a point.
        Picture drawn(int scale = 1) const
        {
            Picture picture(40 * scale, 40 * scale, scale);
            const Ref<CALayer> outer = wideStage();
            outer->addSublayer(layer.get());
            outer->renderInContext(picture);
            return picture;
        }
    };

    TEST(LayerShadow, LiesBehindTheLayerByTheOffset)
    {
        const Picture picture = Shadowed().drawn();
        EXPECT_EQ(picture.at(11, 28), kRed);
        EXPECT_EQ(picture.at(23, 16), kBlack);
        EXPECT_EQ(picture.at(31, 8), kBlack);
        EXPECT_EQ(picture.at(33, 16), kClear);
        EXPECT_EQ(picture.at(21, 28), kClear);
    }

    TEST(LayerShadow, GrowsWithTheScaleOfTheContext)
    {
        const Picture picture = Shadowed().drawn(2);
        EXPECT_EQ(picture.at(46, 32), kBlack);
        EXPECT_EQ(picture.at(62, 18), kBlack);
        EXPECT_EQ(picture.at(65, 32), kClear);
        EXPECT_EQ(picture.at(42, 56), kClear);
    }

    TEST(LayerShadow, GoesWithTheLayersYInAContextThatWasTurnedOver)
    {
        const Picture picture(40, 40);
        CGContextConcatCTM(picture, { 1, 0, 0, -1, 0, 40 });
        const Shadowed shadowed;
        const Ref<CALayer> outer = wideStage();
        outer->addSublayer(shadowed.layer.get());
        outer->renderInContext(picture);
        EXPECT_EQ(picture.at(15, 15), kRed);
        EXPECT_EQ(picture.at(30, 30), kBlack);
    }

    TEST(LayerShadow, IsThatOfTheWholeTree)
    {
        Shadowed shadowed;
        shadowed.layer->addSublayer(square({ { -5, 0 }, { 5, 5 } }, 0, 1, 0).get());
        const Picture picture = shadowed.drawn();
        EXPECT_EQ(picture.at(7, 27), kGreen);
        EXPECT_EQ(picture.at(19, 15), kBlack); // of the sublayer
        EXPECT_EQ(picture.at(13, 28), kRed); // nothing casts one inside
    }

    TEST(LayerShadow, HasTheColourAndTheOpacity)
    {
        Shadowed shadowed;
        shadowed.layer->setShadowColor(Ref<CGColor>::adopt(CGColorCreateSRGB(0, 0, 1, 1)).get());
        shadowed.layer->setShadowOpacity(0.5F);
        EXPECT_PRED_FORMAT3(isNear, shadowed.drawn().at(25, 14), (Rgba { 0, 0, 128, 128 }), 1);
    }

    TEST(LayerShadow, FadesWithTheLayer)
    {
        Shadowed shadowed;
        shadowed.layer->setOpacity(0.5F);
        const Picture picture = shadowed.drawn();
        EXPECT_PRED_FORMAT3(isNear, picture.at(11, 28), (Rgba { 128, 0, 0, 128 }), 1);
        EXPECT_PRED_FORMAT3(isNear, picture.at(25, 14), (Rgba { 0, 0, 0, 128 }), 1);
    }

    TEST(LayerShadow, IsCastByABorderWithoutAGround)
    {
        Shadowed shadowed;
        shadowed.layer->setBackgroundColor(nullptr);
        shadowed.layer->setBorderWidth(2);
        const Picture picture = shadowed.drawn();
        EXPECT_EQ(picture.at(23, 14), kBlack);
        EXPECT_EQ(picture.at(27, 13), kClear);
    }

    TEST(LayerShadow, IsThatOfWhatTheMaskLeaves)
    {
        Shadowed shadowed;
        shadowed.layer->setMask(square({ { 0, 0 }, { 5, 10 } }, 0, 0, 1).get());
        const Picture picture = shadowed.drawn();
        EXPECT_EQ(picture.at(12, 28), kRed);
        EXPECT_EQ(picture.at(24, 14), kBlack);
        EXPECT_EQ(picture.at(29, 14), kClear);
    }

    TEST(LayerShadow, IsNotCastByALayerThatMasksToItsBounds)
    {
        Shadowed shadowed;
        shadowed.layer->setMasksToBounds(true);
        EXPECT_EQ(shadowed.drawn().at(25, 14), kClear);
    }

    TEST(LayerShadow, IsAsSoftAsItsRadius)
    {
        Shadowed shadowed;
        shadowed.layer->setShadowRadius(2);
        const Picture picture = shadowed.drawn();
        EXPECT_NEAR(picture.at(22, 13).alpha, 153, 8); // half a point inside the edge: 0.6
        EXPECT_NEAR(picture.at(33, 13).alpha, 58, 8); // one and a half outside: 0.23
        EXPECT_EQ(picture.at(11, 28), kRed);
    }

}
}
