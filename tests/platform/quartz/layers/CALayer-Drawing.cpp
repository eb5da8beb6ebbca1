// SPDX-License-Identifier: Apache-2.0
#include "quartz/layers/CALayer.h"

#include <gtest/gtest.h>

#include <limits>

#include "foundation/NSArray.h"
#include "foundation/NSNumber.h"
#include "quartz/layers/CAGradientLayer.h"
#include "quartz/layers/CATextLayer.h"
#include "runtime/Table.h"
#include "support/Pixels.h"

namespace brindle {
namespace {

    using test::isNear;
    using test::Picture;
    using test::Rgba;

    using test::kBlue;
    using test::kClear;
    using test::kGreen;
    using test::kRed;

    Ref<CGColor> color(double red, double green, double blue, double alpha = 1)
    {
        return Ref<CGColor>::adopt(CGColorCreateSRGB(red, green, blue, alpha));
    }
    Ref<CGColor> red() { return color(1, 0, 0); }
    Ref<CGColor> green() { return color(0, 1, 0); }
    Ref<CGColor> blue() { return color(0, 0, 1); }

    Ref<CALayer> square(CGRect frame, const Ref<CGColor>& ground)
    {
        Ref<CALayer> layer = CALayer::cls().layer();
        layer->setFrame(frame);
        layer->setBackgroundColor(ground.get());
        return layer;
    }
    Ref<CALayer> stage() { return square({ { 0, 0 }, { 20, 20 } }, nullptr); }

    /// Two rows of pixels, the upper one red, the lower one blue.
    Ref<CGImage> redOverBlue()
    {
        const Picture picture(2, 2);
        CGContextSetRGBFillColor(picture, 1, 0, 0, 1);
        CGContextFillRect(picture, { { 0, 1 }, { 2, 1 } });
        CGContextSetRGBFillColor(picture, 0, 0, 1, 1);
        CGContextFillRect(picture, { { 0, 0 }, { 2, 1 } });
        return picture.image();
    }

    TEST(LayerDrawing, PaintsItsGroundInItsBounds)
    {
        const Picture picture(20, 20);
        const Ref<CALayer> layer = square({ { 100, 100 }, { 10, 10 } }, red());
        layer->renderInContext(picture);
        EXPECT_EQ(picture.at(0, 19), kRed);
        EXPECT_EQ(picture.at(9, 10), kRed);
        EXPECT_EQ(picture.at(10, 10), kClear);
    }

    TEST(LayerDrawing, PutsSublayersWhereTheirFramesAre)
    {
        const Picture picture(20, 20);
        const Ref<CALayer> layer = stage();
        layer->addSublayer(square({ { 0, 0 }, { 10, 10 } }, red()).get());
        layer->addSublayer(square({ { 5, 5 }, { 10, 10 } }, green()).get());
        layer->renderInContext(picture);
        EXPECT_EQ(picture.at(2, 17), kRed);
        EXPECT_EQ(picture.at(7, 12), kGreen);
        EXPECT_EQ(picture.at(14, 5), kGreen);
        EXPECT_EQ(picture.at(16, 3), kClear);
    }

    TEST(LayerDrawing, HigherDepthIsDrawnOverLower)
    {
        const Picture picture(20, 20);
        const Ref<CALayer> layer = stage();
        const Ref<CALayer> top = square({ { 0, 0 }, { 10, 10 } }, red());
        top->setZPosition(1);
        layer->addSublayer(top.get());
        layer->addSublayer(square({ { 0, 0 }, { 10, 10 } }, green()).get());
        layer->renderInContext(picture);
        EXPECT_EQ(picture.at(2, 17), kRed);
    }

    TEST(LayerDrawing, CountsFromTheTopInFlippedLayers)
    {
        const Picture picture(20, 20);
        const Ref<CALayer> layer = stage();
        layer->setGeometryFlipped(true);
        layer->addSublayer(square({ { 0, 0 }, { 10, 5 } }, red()).get());
        layer->renderInContext(picture);
        EXPECT_EQ(picture.at(2, 2), kRed);
        EXPECT_EQ(picture.at(2, 17), kClear);
    }

    TEST(LayerDrawing, LeavesOutHiddenLayers)
    {
        const Picture picture(20, 20);
        const Ref<CALayer> layer = stage();
        const Ref<CALayer> inner = square({ { 0, 0 }, { 10, 10 } }, red());
        inner->setHidden(true);
        layer->addSublayer(inner.get());
        layer->renderInContext(picture);
        EXPECT_EQ(picture.at(2, 17), kClear);
    }

    TEST(LayerDrawing, FadesALayerAndWhatIsInItAsOnePicture)
    {
        const Picture picture(20, 20);
        const Ref<CALayer> outer = stage();
        const Ref<CALayer> layer = square({ { 0, 0 }, { 10, 10 } }, red());
        layer->setOpacity(0.5);
        layer->addSublayer(square({ { 0, 0 }, { 10, 10 } }, green()).get());
        outer->addSublayer(layer.get());
        outer->renderInContext(picture);
        EXPECT_PRED_FORMAT3(isNear, picture.at(5, 15), (Rgba { 0, 128, 0, 128 }), 1);
    }

    TEST(LayerDrawing, OpacityIsBounded)
    {
        const Ref<CALayer> layer = stage();
        layer->setOpacity(7);
        EXPECT_EQ(layer->opacity(), 1);
        layer->setOpacity(std::numeric_limits<float>::quiet_NaN());
        EXPECT_EQ(layer->opacity(), 0);
    }

    TEST(LayerDrawing, BorderLiesInsideAndAboveTheSublayers)
    {
        const Picture picture(20, 20);
        const Ref<CALayer> layer = square({ { 0, 0 }, { 20, 20 } }, red());
        layer->addSublayer(square({ { 0, 0 }, { 20, 20 } }, green()).get());
        layer->setBorderWidth(2);
        layer->setBorderColor(blue().get());
        layer->renderInContext(picture);
        EXPECT_EQ(picture.at(1, 10), kBlue);
        EXPECT_EQ(picture.at(2, 10), kGreen);
    }

    TEST(LayerDrawing, RoundCornersCutTheGround)
    {
        const Picture picture(20, 20);
        const Ref<CALayer> layer = square({ { 0, 0 }, { 20, 20 } }, red());
        layer->setCornerRadius(8);
        layer->renderInContext(picture);
        EXPECT_EQ(picture.at(0, 0), kClear);
        EXPECT_EQ(picture.at(10, 0), kRed);
    }

    TEST(LayerDrawing, RoundCornersCutSublayersOnlyWhereItMasks)
    {
        for (const bool masks : { false, true }) {
            const Picture picture(20, 20);
            const Ref<CALayer> layer = stage();
            layer->setCornerRadius(8);
            layer->setMasksToBounds(masks);
            layer->addSublayer(square({ { 0, 0 }, { 20, 20 } }, red()).get());
            layer->renderInContext(picture);
            EXPECT_EQ(picture.at(0, 0), masks ? kClear : kRed);
        }
    }

    TEST(LayerDrawing, MaskingCutsSublayersAtTheBounds)
    {
        const Picture picture(20, 20);
        const Ref<CALayer> layer = square({ { 0, 0 }, { 10, 10 } }, nullptr);
        layer->setMasksToBounds(true);
        layer->addSublayer(square({ { 0, 0 }, { 20, 20 } }, red()).get());
        layer->renderInContext(picture);
        EXPECT_EQ(picture.at(5, 15), kRed);
        EXPECT_EQ(picture.at(15, 15), kClear);
    }

    TEST(LayerDrawing, AMaskLetsOnlyItsOwnShapeBeSeen)
    {
        const Picture picture(20, 20);
        const Ref<CALayer> layer = square({ { 0, 0 }, { 20, 20 } }, red());
        const Ref<CALayer> mask = square({ { 5, 5 }, { 10, 10 } }, color(0, 0, 0, 0.5));
        layer->setMask(mask.get());
        layer->renderInContext(picture);
        EXPECT_EQ(picture.at(2, 2), kClear);
        EXPECT_PRED_FORMAT3(isNear, picture.at(10, 10), (Rgba { 128, 0, 0, 128 }), 1);
    }

    TEST(LayerDrawing, TransformsTurnAndScaleWhatIsDrawn)
    {
        const Picture picture(20, 20);
        const Ref<CALayer> outer = stage();
        const Ref<CALayer> layer = square({ { 8, 8 }, { 4, 4 } }, red());
        layer->setTransform(CATransform3DMakeScale(4, 1, 1));
        outer->addSublayer(layer.get());
        outer->renderInContext(picture);
        EXPECT_EQ(picture.at(3, 10), kRed);
        EXPECT_EQ(picture.at(3, 6), kClear);
    }

    TEST(LayerContents, ResizeToTheBoundsUprightInBothDirections)
    {
        for (const bool flipped : { false, true }) {
            const Picture picture(20, 20);
            const Ref<CALayer> layer = stage();
            layer->setGeometryFlipped(flipped);
            layer->setContents(redOverBlue().get());
            layer->renderInContext(picture);
            EXPECT_EQ(picture.at(10, 2), kRed) << flipped;
            EXPECT_EQ(picture.at(10, 17), kBlue) << flipped;
        }
    }

    TEST(LayerContents, GravityPlacesWhatKeepsItsSize)
    {
        const struct {
            NSString* gravity;
            int x, y; // a pixel of the picture's upper row, from the top left
        } rows[] {
            { kCAGravityCenter, 9, 9 },
            { kCAGravityTop, 9, 0 },
            { kCAGravityBottom, 9, 18 },
            { kCAGravityLeft, 0, 9 },
            { kCAGravityRight, 18, 9 },
            { kCAGravityTopLeft, 0, 0 },
            { kCAGravityBottomRight, 18, 18 },
        };
        for (const auto& row : rows) {
            const Picture picture(20, 20);
            const Ref<CALayer> layer = stage();
            layer->setContents(redOverBlue().get());
            layer->setContentsGravity(row.gravity);
            layer->renderInContext(picture);
            EXPECT_EQ(picture.at(row.x, row.y), kRed) << utf8Of(row.gravity);
            EXPECT_EQ(picture.at(row.x, row.y + 1), kBlue) << utf8Of(row.gravity);
        }
    }

    TEST(LayerContents, ShowAPartOfThePicture)
    {
        const Picture picture(20, 20);
        const Ref<CALayer> layer = stage();
        layer->setContents(redOverBlue().get());
        layer->setContentsRect({ { 0, 0.5 }, { 1, 0.5 } });
        layer->renderInContext(picture);
        EXPECT_EQ(picture.at(10, 2), kBlue);
    }

    TEST(LayerContents, ThatAreNoPictureDrawNothing)
    {
        const Picture picture(20, 20);
        const Ref<CALayer> layer = stage();
        layer->setContents("text"_ns);
        layer->renderInContext(picture);
        EXPECT_EQ(picture.at(10, 10), kClear);
    }

}

/// Draws a red square at its origin and counts how often.
class DrawingLayer : public CALayer {
    BRINDLE_OBJECT(DrawingLayer, CALayer)

public:
    int drawn = 0;
};

template <> struct DrawingLayer::Methods<struct Drawing> {
    static void drawInContext(DrawingLayer& self, CGContextRef context)
    {
        ++self.drawn;
        CGContextSetRGBFillColor(context, 1, 0, 0, 1);
        CGContextFillRect(context, { { 0, 0 }, { 5, 50 } });
        CGContextTranslateCTM(context, 1000, 0); // undone by whoever asks for drawing
    }
    static void table(Builder& t) { t.methods({ { "drawInContext:", imp<drawInContext> } }); }
};
BRINDLE_RECORD(DrawingLayer, Drawing)

namespace {

    TEST(LayerContents, AreDrawnByTheLayerInItsBounds)
    {
        const Picture picture(20, 20);
        const Ref<DrawingLayer> layer = make<DrawingLayer>();
        layer->setFrame({ { 0, 0 }, { 10, 10 } });
        layer->addSublayer(square({ { 6, 0 }, { 2, 2 } }, green()).get());
        layer->renderInContext(picture);
        EXPECT_EQ(picture.at(2, 15), kRed);
        EXPECT_EQ(picture.at(2, 5), kClear);
        EXPECT_EQ(picture.at(7, 19), kGreen);
    }

    TEST(LayerContents, AreBroughtUpToDateOnceWhenAsked)
    {
        const Ref<DrawingLayer> layer = make<DrawingLayer>();
        layer->setBounds({ { 0, 0 }, { 10, 10 } });
        layer->setNeedsDisplay();
        EXPECT_TRUE(layer->needsDisplay());
        layer->displayIfNeeded();
        layer->displayIfNeeded();
        EXPECT_EQ(layer->drawn, 1);
        EXPECT_FALSE(layer->needsDisplay());
        const Ref<NSObject> contents = layer->contents();
        ASSERT_TRUE(contents && contents->isKindOfClass(CGImage::cls()));
        EXPECT_EQ(test::pixelAt(static_cast<CGImage*>(contents.get()), 2, 5), kRed);
    }

    TEST(LayerContents, OfAnEmptyLayerStayNil)
    {
        const Ref<DrawingLayer> layer = make<DrawingLayer>();
        layer->display();
        EXPECT_EQ(layer->contents(), nullptr);
    }

    TEST(LayerDrawing, NumbersThatAreNoneSpoilNothing)
    {
        const double nan = std::numeric_limits<double>::quiet_NaN();
        const double huge = std::numeric_limits<double>::max();
        const Picture picture(20, 20);
        const Ref<CALayer> layer = stage();
        for (const CGRect frame :
            { CGRect { { nan, 0 }, { 5, 5 } }, CGRect { { 0, 0 }, { nan, nan } },
                CGRect { { -huge, 0 }, { huge, huge } }, CGRect { { 0, 0 }, { -5, -5 } } }) {
            const Ref<CALayer> inner = square(frame, red());
            inner->setCornerRadius(nan);
            inner->setBorderWidth(huge);
            inner->setShadowOpacity(1);
            inner->setShadowRadius(-huge);
            layer->addSublayer(inner.get());
        }
        layer->addSublayer(square({ { 0, 0 }, { 5, 5 } }, green()).get());
        layer->renderInContext(picture);
        EXPECT_EQ(picture.at(2, 17), kGreen);
    }

    // ---- gradients

    Ref<CAGradientLayer> gradient(
        std::vector<Ref<NSObject>> colors, std::vector<double> places = {})
    {
        Ref<CAGradientLayer> layer = make<CAGradientLayer>();
        layer->setFrame({ { 0, 0 }, { 10, 100 } });
        layer->setColors(makeArray(std::move(colors)).get());
        std::vector<Ref<NSObject>> numbers;
        for (const double place : places)
            numbers.push_back(NSNumber::cls().numberWithDouble(place));
        if (!numbers.empty())
            layer->setLocations(makeArray(std::move(numbers)).get());
        return layer;
    }

    TEST(GradientLayer, GoesFromTheBottomToTheTop)
    {
        const Picture picture(10, 100);
        gradient({ red(), blue() })->renderInContext(picture);
        EXPECT_PRED_FORMAT3(isNear, picture.at(5, 99), kRed, 3);
        EXPECT_PRED_FORMAT3(isNear, picture.at(5, 0), kBlue, 3);
        EXPECT_PRED_FORMAT3(isNear, picture.at(5, 50), (Rgba { 127, 0, 128, 255 }), 3);
    }

    TEST(GradientLayer, StartAtOneIsTheTop)
    {
        const Picture picture(10, 100);
        const Ref<CAGradientLayer> layer = gradient({ red(), blue() });
        layer->setStartPoint({ 0.5, 1 });
        layer->setEndPoint({ 0.5, 0 });
        layer->renderInContext(picture);
        EXPECT_PRED_FORMAT3(isNear, picture.at(5, 0), kRed, 3);
    }

    TEST(GradientLayer, TheEndsGoOnToTheEdges)
    {
        const Picture picture(10, 100);
        gradient({ red(), blue() }, { 0.25, 0.75 })->renderInContext(picture);
        EXPECT_EQ(picture.at(5, 90), kRed);
        EXPECT_EQ(picture.at(5, 10), kBlue);
    }

    TEST(GradientLayer, SpreadsColoursBeyondThePlacesFromTheLastPlaceToTheEnd)
    {
        const Picture picture(10, 100);
        const Ref<CGColor> grey = color(0.5, 0.5, 0.5);
        gradient({ grey, color(0, 0, 0), color(0, 0, 0, 0) }, { 0.2356, 0.62 })
            ->renderInContext(picture);
        EXPECT_PRED_FORMAT3(isNear, picture.at(5, 90), (Rgba { 128, 128, 128, 255 }), 2);
        EXPECT_PRED_FORMAT3(isNear, picture.at(5, 38), (Rgba { 0, 0, 0, 255 }), 4);
        EXPECT_PRED_FORMAT3(isNear, picture.at(5, 19), (Rgba { 0, 0, 0, 128 }), 4);
        EXPECT_PRED_FORMAT3(isNear, picture.at(5, 0), kClear, 3);
    }

    TEST(GradientLayer, LeavesOutPlacesBeyondTheColours)
    {
        const Picture picture(10, 100);
        gradient({ red(), blue() }, { 0, 0.5, 0.9 })->renderInContext(picture);
        EXPECT_EQ(picture.at(5, 40), kBlue);
    }

    TEST(GradientLayer, MixesColoursBeforeTheirAlpha)
    {
        const Picture picture(10, 100);
        gradient({ red(), color(1, 0, 0, 0) })->renderInContext(picture);
        EXPECT_PRED_FORMAT3(isNear, picture.at(5, 50), (Rgba { 127, 0, 0, 127 }), 3);
    }

    TEST(GradientLayer, OneColourFillsAll)
    {
        const Picture picture(10, 100);
        gradient({ red() })->renderInContext(picture);
        EXPECT_EQ(picture.at(5, 50), kRed);
    }

    TEST(GradientLayer, WithoutColoursDrawsNothing)
    {
        const Picture picture(10, 100);
        make<CAGradientLayer>()->renderInContext(picture);
        gradient({ "text"_ns, "more"_ns })->renderInContext(picture);
        EXPECT_EQ(picture.at(5, 50), kClear);
    }

    // ---- text

    Ref<CATextLayer> textLayer(NSString* string, CGSize size)
    {
        Ref<CATextLayer> layer = make<CATextLayer>();
        layer->setFrame({ { 0, 0 }, size });
        layer->setString(string);
        layer->setFontSize(12);
        return layer;
    }

    /// Answers the rows of a picture that hold paint, as first and last.
    std::pair<int, int> rowsOf(const Picture& picture, int width, int height)
    {
        const Ref<CGImage> image = picture.image();
        int first = height;
        int last = -1;
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                if (test::pixelAt(
                        image.get(), static_cast<std::size_t>(x), static_cast<std::size_t>(y))
                        .alpha
                    == 0)
                    continue;
                first = std::min(first, y);
                last = y;
            }
        }
        return { first, last };
    }

    TEST(TextLayer, BeginsWithThirtySixPointsInWhite)
    {
        const Ref<CATextLayer> layer = make<CATextLayer>();
        EXPECT_EQ(layer->fontSize(), 36);
        EXPECT_EQ(CGColorGetComponents(layer->foregroundColor().get())[0], 1);
        EXPECT_EQ(CGColorGetAlpha(layer->foregroundColor().get()), 1);
        EXPECT_FALSE(layer->isWrapped());
        EXPECT_TRUE(layer->alignmentMode()->isEqual("natural"_ns));
        EXPECT_TRUE(layer->truncationMode()->isEqual("none"_ns));
    }

    TEST(TextLayer, DrawsTheFirstLineAtTheTopInBothDirections)
    {
        for (const bool flipped : { false, true }) {
            const Picture picture(60, 60);
            const Ref<CATextLayer> layer = textLayer("Hx"_ns, { 60, 60 });
            layer->setGeometryFlipped(flipped);
            layer->renderInContext(picture);
            const auto [first, last] = rowsOf(picture, 60, 60);
            EXPECT_LT(first, 6);
            EXPECT_LT(last, 15);
            EXPECT_GT(last, 8);
        }
    }

    TEST(TextLayer, BreaksLinesOnlyWhenAsked)
    {
        for (const bool wraps : { false, true }) {
            const Picture picture(60, 100);
            const Ref<CATextLayer> layer = textLayer("HHH HHH HHH HHH"_ns, { 60, 100 });
            layer->setWrapped(wraps);
            layer->renderInContext(picture);
            const int last = rowsOf(picture, 60, 100).second;
            EXPECT_EQ(last > 20, wraps);
        }
    }

    TEST(TextLayer, ALineFeedBeginsALine)
    {
        const Picture picture(60, 100);
        textLayer("H\nH"_ns, { 60, 100 })->renderInContext(picture);
        EXPECT_GT(rowsOf(picture, 60, 100).second, 16);
    }

    TEST(TextLayer, AlignsToTheRight)
    {
        const Picture picture(60, 20);
        const Ref<CATextLayer> layer = textLayer("I"_ns, { 60, 20 });
        layer->setAlignmentMode(kCAAlignmentRight);
        layer->renderInContext(picture);
        const Ref<CGImage> image = picture.image();
        int left = 60;
        for (std::size_t y = 0; y < 20; ++y) {
            for (std::size_t x = 0; x < 60; ++x) {
                if (test::pixelAt(image.get(), x, y).alpha > 0)
                    left = std::min(left, static_cast<int>(x));
            }
        }
        EXPECT_GT(left, 54);
        EXPECT_LT(left, 60);
    }

    TEST(TextLayer, CutsWhatDoesNotFit)
    {
        const Picture cut(40, 20);
        const Picture whole(40, 20);
        const Ref<CATextLayer> layer = textLayer("HHHHHHHHHHHH"_ns, { 40, 20 });
        layer->renderInContext(whole);
        layer->setTruncationMode(kCATruncationEnd);
        layer->renderInContext(cut);
        EXPECT_GT(test::compare(cut.image().get(), whole.image().get()).pixels, 0U);
    }

    TEST(TextLayer, AnythingThatIsNoTextDrawsNothing)
    {
        const Picture picture(60, 20);
        const Ref<CATextLayer> layer = textLayer(nullptr, { 60, 20 });
        layer->renderInContext(picture);
        layer->setString(NSNumber::cls().numberWithInt(7).get());
        layer->renderInContext(picture);
        EXPECT_EQ(rowsOf(picture, 60, 20).second, -1);
    }

    TEST(TextLayer, ALongTextCostsOnlyWhatIsSeen)
    {
        const Picture picture(60, 40);
        const std::string text(1000000, 'a');
        const Ref<CATextLayer> layer = textLayer(stringFrom(text).get(), { 60, 40 });
        layer->setWrapped(true);
        layer->renderInContext(picture);
        EXPECT_GT(rowsOf(picture, 60, 40).second, 20);
    }

}
}
