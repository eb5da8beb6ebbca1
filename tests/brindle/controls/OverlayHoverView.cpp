// SPDX-License-Identifier: Apache-2.0
#include "controls/GWOverlayHoverView.h"

#include <gtest/gtest.h>

#include "foundation/NSArray.h"
#include "foundation/NSNumber.h"
#include "quartz/layers/CAGradientLayer.h"
#include "support/HeadlessScreen.h"

namespace brindle {
namespace {

    Ref<GWOverlayHoverView> overlay(bool banded, double height)
    {
        auto view = cast<GWOverlayHoverView>(
            alloc<GWOverlayHoverView>()->initWithFrame(NSMakeRect(0, 0, 600, 170)));
        view->setTitlebarOverlay(banded);
        view->setTitlebarOverlayHeight(height);
        return view;
    }
    NSUInteger bandsOf(const Ref<GWOverlayHoverView>& view)
    {
        return maybe(maybe(view->layer())->sublayers())->count();
    }
    Ref<CAGradientLayer> bandOf(const Ref<GWOverlayHoverView>& view)
    {
        return cast<CAGradientLayer>(view->layer()->sublayers()->objectAtIndex(0));
    }

    TEST(OverlayHoverView, ANewOneHasNoBand)
    {
        const Ref<GWOverlayHoverView> view = make<GWOverlayHoverView>();
        EXPECT_FALSE(view->titlebarOverlay());
        EXPECT_EQ(view->titlebarOverlayHeight(), 0);
        EXPECT_EQ(view->opaqueHeight(), 0);
    }

    TEST(OverlayHoverView, WithoutOverlayItNeverHasALayer)
    {
        const Ref<NSView> parent = make<NSView>();
        const Ref<GWOverlayHoverView> view = overlay(false, 40);
        parent->addSubview(view.get());
        view->removeFromSuperview();
        EXPECT_FALSE(view->wantsLayer());
        EXPECT_EQ(view->layer(), nullptr);
    }

    TEST(OverlayHoverView, TheBandLiesAlongTheTop)
    {
        const Ref<NSView> parent = make<NSView>();
        const Ref<GWOverlayHoverView> view = overlay(true, 40);
        parent->addSubview(view.get());
        EXPECT_EQ(bandOf(view)->frame(), NSMakeRect(0, 130, 600, 40));
        EXPECT_EQ(view->opaqueHeight(), 40 * 0.62);
    }

    TEST(OverlayHoverView, TheBandGoesFromGreyOverBlackToNothing)
    {
        const Ref<NSView> parent = make<NSView>();
        const Ref<GWOverlayHoverView> view = overlay(true, 40);
        parent->addSubview(view.get());
        const Ref<CAGradientLayer> band = bandOf(view);
        EXPECT_EQ(band->colors()->count(), 3u);
        EXPECT_EQ(band->startPoint(), NSMakePoint(0.5, 1));
        EXPECT_EQ(band->endPoint(), NSMakePoint(0.5, 0));
        ASSERT_EQ(band->locations()->count(), 2u);
        const auto location = [&](NSUInteger i) {
            return cast<NSNumber>(band->locations()->objectAtIndex(i))->doubleValue();
        };
        EXPECT_EQ(location(0), static_cast<double>(0.2356f));
        EXPECT_EQ(location(1), static_cast<double>(0.62f));
    }

    TEST(OverlayHoverView, TheBandKeepsItsHeightAndFollowsTheWidth)
    {
        const Ref<NSView> parent = make<NSView>();
        const Ref<GWOverlayHoverView> view = overlay(true, 40);
        parent->addSubview(view.get());
        view->setTitlebarOverlayHeight(80);
        view->setFrameSize({ 700, 300 });
        EXPECT_EQ(bandOf(view)->frame().size, NSMakeSize(700, 40));
    }

    TEST(OverlayHoverView, EachMoveAddsABand)
    {
        const Ref<NSView> parent = make<NSView>();
        const Ref<GWOverlayHoverView> view = overlay(true, 40);
        parent->addSubview(view.get());
        EXPECT_EQ(bandsOf(view), 1u);
        view->removeFromSuperview();
        EXPECT_EQ(bandsOf(view), 2u);
        parent->addSubview(view.get());
        parent->addSubview(view.get());
        EXPECT_EQ(bandsOf(view), 4u);
    }

    TEST(OverlayHoverView, TheBandIsSeenFromTheTopDown)
    {
        HeadlessScreen screen { 100, 100 };
        const auto view = cast<GWOverlayHoverView>(
            alloc<GWOverlayHoverView>()->initWithFrame(NSMakeRect(0, 0, 100, 100)));
        view->setTitlebarOverlay(true);
        view->setTitlebarOverlayHeight(100);
        screen.process();
        const std::uint32_t ground = screen.pixels().at(50, 98);
        screen.window().contentView()->addSubview(view.get());
        const display::Snapshot seen = screen.pixels();
        EXPECT_NEAR(static_cast<int>(seen.at(50, 5) & 0xFF), 97, 2);
        EXPECT_NEAR(static_cast<int>(seen.at(50, 61) & 0xFF), 0, 4);
        EXPECT_NEAR(static_cast<int>(seen.at(50, 99) & 0xFF), static_cast<int>(ground & 0xFF), 4);
    }

}
}
