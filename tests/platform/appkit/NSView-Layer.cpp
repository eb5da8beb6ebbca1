// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSView.h"

#include <gtest/gtest.h>

#include "appkit/NSColor.h"
#include "appkit/NSGraphicsContext.h"
#include "foundation/NSArray.h"
#include "quartz/layers/CAGradientLayer.h"
#include "quartz/layers/CALayer.h"
#include "quartz/layers/CATransaction.h"
#include "runtime/Table.h"
#include "support/HeadlessScreen.h"
#include "support/Pixels.h"

namespace brindle {

/// Fills the lower left of itself, 10 x 10 points from its origin, with green.
class CornerView : public NSView {
    BRINDLE_OBJECT(CornerView, NSView)

public:
    bool flips = false;
    int updates = 0;
    bool wantsUpdates = false;
    bool leaves = false; // its layer, the next time
    Ref<CALayer> again; // that it then takes

    void leaveLayer()
    {
        if (!std::exchange(leaves, false))
            return;
        setLayer(nullptr);
        setLayer(again.get());
    }
};

template <> struct CornerView::Methods<struct Drawing> {
    static bool isFlipped(CornerView& self) { return self.flips; }
    static void drawRect(CornerView& self, NSRect)
    {
        self.leaveLayer();
        NSColor::cls().greenColor()->set();
        NSRectFill({ { 0, 0 }, { 10, 10 } });
    }
    static bool wantsUpdateLayer(CornerView& self) { return self.wantsUpdates; }
    static void updateLayer(CornerView& self)
    {
        ++self.updates;
        if (self.leaves)
            return self.leaveLayer();
        self.layer()->setBackgroundColor(NSColor::cls().blueColor()->CGColor().get());
    }
    static void table(Builder& t)
    {
        t.methods({
            { "isFlipped", imp<isFlipped> },
            { "drawRect:", imp<drawRect> },
            { "wantsUpdateLayer", imp<wantsUpdateLayer> },
            { "updateLayer", imp<updateLayer> },
        });
    }
};
BRINDLE_RECORD(CornerView, Drawing)

namespace {

    using test::Picture;
    using test::Rgba;

    using test::kBlue;
    using test::kClear;
    using test::kGreen;
    using test::kRed;
    constexpr std::uint32_t kRedPixel = 0xFFFF0000;
    constexpr std::uint32_t kGreenPixel = 0xFF00FF00;
    constexpr std::uint32_t kBluePixel = 0xFF0000FF;

    Ref<CGColor> red() { return NSColor::cls().redColor()->CGColor(); }
    Ref<CGColor> blue() { return NSColor::cls().blueColor()->CGColor(); }

    Ref<CornerView> corner(NSRect frame)
    {
        return cast<CornerView>(alloc<CornerView>()->initWithFrame(frame));
    }
    Ref<CALayer> square(CGRect frame, const Ref<CGColor>& color)
    {
        Ref<CALayer> layer = CALayer::cls().layer();
        layer->setFrame(frame);
        layer->setBackgroundColor(color.get());
        return layer;
    }

    TEST(LayerBackedView, HasALayerAsLongAsItWantsOne)
    {
        const Ref<NSView> view = alloc<NSView>()->initWithFrame({ { 5, 6 }, { 30, 40 } });
        EXPECT_FALSE(view->wantsLayer());
        EXPECT_EQ(view->layer(), nullptr);
        view->setWantsLayer(true);
        ASSERT_NE(view->layer(), nullptr);
        EXPECT_EQ(view->layer()->bounds(), CGRectMake(0, 0, 30, 40));
        EXPECT_EQ(view->layer()->delegate(), view);
        view->setWantsLayer(false);
        EXPECT_EQ(view->layer(), nullptr);
    }

    TEST(LayerBackedView, ALayerOfTheHostStays)
    {
        const Ref<NSView> view = alloc<NSView>()->initWithFrame({ { 0, 0 }, { 30, 40 } });
        const Ref<CALayer> own = CALayer::cls().layer();
        view->setLayer(own.get());
        view->setWantsLayer(true);
        EXPECT_EQ(view->layer(), own);
        view->setWantsLayer(false);
        EXPECT_EQ(view->layer(), own);
    }

    TEST(LayerBackedView, LayerFollowsTheViewAndResizesItsSublayers)
    {
        const Ref<NSView> view = alloc<NSView>()->initWithFrame({ { 0, 0 }, { 100, 100 } });
        view->setWantsLayer(true);
        const Ref<CALayer> band = square({ { 0, 80 }, { 100, 20 } }, red());
        band->setAutoresizingMask(kCALayerWidthSizable | kCALayerMinYMargin);
        view->layer()->insertSublayer_atIndex(band.get(), 0);
        view->setFrameSize({ 150, 200 });
        EXPECT_EQ(view->layer()->bounds().size, (CGSize { 150, 200 }));
        EXPECT_EQ(band->frame(), CGRectMake(0, 180, 150, 20));
        view->setAlphaValue(0.5);
        EXPECT_EQ(view->layer()->opacity(), 0.5F);
    }

    TEST(LayerBackedView, ItsLayerDoesNotMoveByDegrees)
    {
        const Ref<NSView> view = alloc<NSView>()->initWithFrame({ { 0, 0 }, { 100, 100 } });
        view->setWantsLayer(true);
        view->layer()->setBackgroundColor(red().get());
        view->setFrameSize({ 50, 50 });
        EXPECT_EQ(view->layer()->animationKeys(), nullptr);
    }

    TEST(LayerBackedView, TheLayerOutlivesTheView)
    {
        Ref<CALayer> layer;
        {
            const Ref<NSView> view = alloc<NSView>()->initWithFrame({ { 0, 0 }, { 10, 10 } });
            view->setWantsLayer(true);
            layer = view->layer();
        }
        EXPECT_EQ(layer->delegate(), nullptr);
        layer->setBackgroundColor(red().get());
        const Picture picture(10, 10);
        layer->renderInContext(picture);
        EXPECT_EQ(picture.at(5, 5), kRed);
    }

    TEST(ViewSnapshot, DrawsAViewThatWasNeverShown)
    {
        const Ref<CornerView> view = corner({ { 50, 50 }, { 40, 40 } });
        const Ref<CornerView> inner = corner({ { 20, 20 }, { 20, 20 } });
        view->addSubview(inner.get());
        view->setWantsLayer(true);
        const Picture picture(40, 40);
        view->layer()->renderInContext(picture);
        EXPECT_EQ(picture.at(5, 35), kGreen);
        EXPECT_EQ(picture.at(25, 15), kGreen);
        EXPECT_EQ(picture.at(15, 25), kClear);
    }

    TEST(ViewSnapshot, IsUprightForFlippedViews)
    {
        const Ref<CornerView> view = corner({ { 0, 0 }, { 40, 40 } });
        view->flips = true;
        view->setWantsLayer(true);
        const Picture picture(40, 40);
        view->layer()->renderInContext(picture);
        EXPECT_EQ(picture.at(5, 5), kGreen);
        EXPECT_EQ(picture.at(5, 35), kClear);
    }

    TEST(ViewSnapshot, OfThePresentationLayerIsTheSame)
    {
        const Ref<CornerView> view = corner({ { 0, 0 }, { 40, 40 } });
        view->setWantsLayer(true);
        const Picture picture(40, 40);
        view->layer()->presentationLayer()->renderInContext(picture);
        EXPECT_EQ(picture.at(5, 35), kGreen);
    }

    TEST(ViewSnapshot, PutsSublayersBetweenTheViewAndItsSubviews)
    {
        const Ref<CornerView> view = corner({ { 0, 0 }, { 40, 40 } });
        const Ref<CornerView> inner = corner({ { 0, 0 }, { 5, 5 } });
        view->addSubview(inner.get());
        view->setWantsLayer(true);
        view->layer()->addSublayer(square({ { 0, 0 }, { 8, 40 } }, red()).get());
        const Picture picture(40, 40);
        view->layer()->renderInContext(picture);
        EXPECT_EQ(picture.at(2, 37), kGreen); // the subview
        EXPECT_EQ(picture.at(6, 33), kRed); // the sublayer
        EXPECT_EQ(picture.at(9, 33), kGreen); // the view itself
    }

    TEST(ViewSnapshot, LeavesTheMarksOfTheView)
    {
        HeadlessScreen screen { 100, 100 };
        const auto view = screen.add<CornerView>({ { 0, 0 }, { 40, 40 } });
        view->setWantsLayer(true);
        screen.process();
        view->setNeedsDisplay(true);
        const Picture picture(40, 40);
        view->layer()->renderInContext(picture);
        EXPECT_TRUE(view->needsDisplay());
    }

    TEST(LayerBackedView, ShowsItsLayerOnTheScreen)
    {
        HeadlessScreen screen { 100, 100 };
        const auto view = screen.add<CornerView>({ { 20, 20 }, { 40, 40 } });
        view->setWantsLayer(true);
        view->layer()->setBackgroundColor(blue().get());
        view->layer()->addSublayer(square({ { 30, 30 }, { 10, 10 } }, red()).get());
        const display::Snapshot seen = screen.pixels();
        EXPECT_EQ(seen.at(25, 75), kGreenPixel);
        EXPECT_EQ(seen.at(40, 60), kBluePixel);
        EXPECT_EQ(seen.at(55, 45), kRedPixel);
    }

    TEST(LayerBackedView, DrawsAChangeOfASublayer)
    {
        HeadlessScreen screen { 100, 100 };
        const auto view = screen.add<NSView>({ { 0, 0 }, { 100, 100 } });
        view->setWantsLayer(true);
        const Ref<CALayer> mover = square({ { 0, 0 }, { 10, 10 } }, red());
        mover->setActions(nullptr);
        view->layer()->addSublayer(mover.get());
        const std::uint32_t empty = screen.pixels().at(55, 45);
        CATransaction::cls().begin();
        CATransaction::cls().setDisableActions(true);
        mover->setPosition({ 55, 55 });
        CATransaction::cls().commit();
        const display::Snapshot seen = screen.pixels();
        EXPECT_EQ(seen.at(55, 45), kRedPixel);
        EXPECT_EQ(seen.at(5, 95), empty);
    }

    TEST(LayerBackedView, MovesASublayerFrameByFrame)
    {
        HeadlessScreen screen { 200, 100 };
        const auto view = screen.add<NSView>({ { 0, 0 }, { 200, 100 } });
        view->setWantsLayer(true);
        const Ref<CALayer> mover = square({ { 0, 0 }, { 10, 10 } }, red());
        view->layer()->addSublayer(mover.get());
        screen.process();
        const std::uint32_t empty = screen.pixels().at(155, 95);
        CATransaction::cls().begin();
        CATransaction::cls().setAnimationTimingFunction(
            CAMediaTimingFunction::cls().functionWithName(kCAMediaTimingFunctionLinear).get());
        CATransaction::cls().setAnimationDuration(1);
        mover->setPosition({ 155, 5 });
        CATransaction::cls().commit();
        screen.advance(0.5);
        EXPECT_EQ(screen.pixels().at(80, 95), kRedPixel);
        EXPECT_EQ(screen.pixels().at(155, 95), empty);
        screen.advance(0.5);
        EXPECT_EQ(screen.pixels().at(155, 95), kRedPixel);
        EXPECT_EQ(screen.pixels().at(80, 95), empty);
    }

    TEST(LayerBackedView, ALayerNobodyHasSeenYetDoesNotMove)
    {
        HeadlessScreen screen { 100, 100 };
        const auto view = screen.add<NSView>({ { 0, 0 }, { 100, 100 } });
        view->setWantsLayer(true);
        const Ref<CALayer> fresh = CALayer::cls().layer();
        view->layer()->addSublayer(fresh.get());
        fresh->setFrame({ { 0, 0 }, { 10, 10 } });
        EXPECT_EQ(fresh->animationKeys(), nullptr);
        screen.process();
        fresh->setFrame({ { 0, 0 }, { 20, 20 } });
        EXPECT_NE(fresh->animationKeys(), nullptr);
    }

    TEST(LayerBackedView, UpdatesItsLayerInPlaceOfDrawing)
    {
        HeadlessScreen screen { 100, 100 };
        const auto view = screen.add<CornerView>({ { 0, 0 }, { 40, 40 } });
        view->wantsUpdates = true;
        view->setWantsLayer(true);
        EXPECT_EQ(screen.pixels().at(5, 95), kBluePixel);
        EXPECT_EQ(view->updates, 1);
        screen.process();
        EXPECT_EQ(view->updates, 1);
        view->setNeedsDisplay(true);
        screen.process();
        EXPECT_EQ(view->updates, 2);
    }

    TEST(LayerBackedView, MayLeaveItsLayerWhileItIsDrawnOrUpdated)
    {
        HeadlessScreen screen { 100, 100 };
        const auto view = screen.add<CornerView>({ { 0, 0 }, { 40, 40 } });
        for (const bool updates : { false, true }) {
            view->wantsUpdates = updates;
            view->leaves = true;
            view->setWantsLayer(true);
            screen.process();
            EXPECT_EQ(view->layer(), nullptr);
            EXPECT_EQ(screen.pixels().at(5, 95), kGreenPixel);
        }
        const Ref<CALayer> own = square({ { 0, 0 }, { 40, 40 } }, red());
        view->setLayer(own.get());
        view->again = own;
        view->leaves = true;
        screen.process();
        EXPECT_EQ(view->layer(), own);
        EXPECT_EQ(own->delegate(), view);
    }

    TEST(LayerBackedView, RoundCornersCutItsSubviewsWhereItMasks)
    {
        const Ref<NSView> view = alloc<NSView>()->initWithFrame({ { 0, 0 }, { 40, 40 } });
        view->addSubview(corner({ { 0, 0 }, { 40, 40 } }).get());
        view->setWantsLayer(true);
        view->layer()->setCornerRadius(10);
        view->layer()->setMasksToBounds(true);
        const Picture picture(40, 40);
        view->layer()->renderInContext(picture);
        EXPECT_EQ(picture.at(0, 39), kClear);
        EXPECT_EQ(picture.at(8, 33), kGreen);
    }

    TEST(LayerBackedView, FadesAsOnePicture)
    {
        HeadlessScreen screen { 100, 100 };
        const auto view = screen.add<CornerView>({ { 0, 0 }, { 40, 40 } });
        view->setWantsLayer(true);
        view->setAlphaValue(0);
        const std::uint32_t empty = screen.pixels().at(90, 10);
        EXPECT_EQ(screen.pixels().at(5, 95), empty);
        view->setAlphaValue(1);
        EXPECT_EQ(screen.pixels().at(5, 95), kGreenPixel);
    }

    TEST(LayerBackedView, PaintsTheBandOfAGradientFromTheTop)
    {
        const Ref<NSView> view = alloc<NSView>()->initWithFrame({ { 0, 0 }, { 10, 100 } });
        view->setWantsLayer(true);
        const Ref<CAGradientLayer> band = make<CAGradientLayer>();
        band->setFrame({ { 0, 0 }, { 10, 100 } });
        band->setColors(makeArray({ red(), blue() }).get());
        band->setStartPoint({ 0.5, 1 });
        band->setEndPoint({ 0.5, 0 });
        view->layer()->insertSublayer_atIndex(band.get(), 0);
        const Picture picture(10, 100);
        view->layer()->renderInContext(picture);
        EXPECT_PRED_FORMAT3(test::isNear, picture.at(5, 0), kRed, 3);
        EXPECT_PRED_FORMAT3(test::isNear, picture.at(5, 99), kBlue, 3);
    }

}
}
