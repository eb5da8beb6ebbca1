// SPDX-License-Identifier: Apache-2.0
#include "quartz/layers/CALayer.h"

#include <gtest/gtest.h>

#include "foundation/NSArray.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSNull.h"
#include "quartz/layers/CATransaction.h"
#include "support/Movements.h"
#include "support/VirtualClock.h"

namespace brindle {
namespace {

    using test::fade;
    using test::number;
    using test::shownOpacity;
    using test::VirtualClock;

    // ---- implicit movements

    TEST(ImplicitAnimations, MoveAChangeForAQuarterOfASecond)
    {
        VirtualClock clock;
        const Ref<CALayer> layer = CALayer::cls().layer();
        layer->setOpacity(0);
        EXPECT_EQ(layer->opacity(), 0);
        EXPECT_NEAR(shownOpacity(layer), 1, 1e-6);
        clock.advance(0.125);
        EXPECT_NEAR(shownOpacity(layer), 1 - 0.8024034, 1e-6);
        clock.advance(0.125);
        EXPECT_EQ(shownOpacity(layer), 0);
    }

    TEST(ImplicitAnimations, StartFromWhatIsSeen)
    {
        VirtualClock clock;
        CATransaction::cls().begin();
        CATransaction::cls().setAnimationTimingFunction(
            CAMediaTimingFunction::cls().functionWithName(kCAMediaTimingFunctionLinear).get());
        const Ref<CALayer> layer = CALayer::cls().layer();
        layer->setOpacity(0);
        clock.advance(0.125);
        layer->setOpacity(1);
        EXPECT_NEAR(shownOpacity(layer), 0.5, 1e-6);
        clock.advance(0.125);
        EXPECT_NEAR(shownOpacity(layer), 0.75, 1e-6);
        CATransaction::cls().commit();
    }

    TEST(ImplicitAnimations, AreOffWhileActionsAreDisabled)
    {
        VirtualClock clock;
        const Ref<CALayer> layer = CALayer::cls().layer();
        CATransaction::cls().begin();
        CATransaction::cls().setDisableActions(true);
        layer->setOpacity(0.5);
        CATransaction::cls().commit();
        EXPECT_EQ(shownOpacity(layer), 0.5);
        EXPECT_EQ(layer->animationKeys(), nullptr);
    }

    TEST(ImplicitAnimations, TakeTheTransactionsDuration)
    {
        VirtualClock clock;
        const Ref<CALayer> layer = CALayer::cls().layer();
        CATransaction::cls().begin();
        CATransaction::cls().setAnimationDuration(2);
        layer->setPosition({ 10, 0 });
        CATransaction::cls().commit();
        EXPECT_EQ(layer->animationForKey("position"_ns)->duration(), 2);
    }

    TEST(ImplicitAnimations, EndBeforeTheyBeganWhenALayerEntersATree)
    {
        VirtualClock clock;
        const Ref<CALayer> outer = CALayer::cls().layer();
        const Ref<CALayer> layer = CALayer::cls().layer();
        layer->setOpacity(0.5);
        outer->addSublayer(layer.get());
        EXPECT_EQ(shownOpacity(layer), 0.5);
    }

    TEST(ImplicitAnimations, CanBeTakenAwayByTheActions)
    {
        VirtualClock clock;
        const Ref<CALayer> layer = CALayer::cls().layer();
        layer->setActions(NSDictionary::cls()
                              .dictionaryWithObject_forKey(NSNull::cls().null().get(), "opacity"_ns)
                              .get());
        layer->setOpacity(0.5);
        EXPECT_EQ(shownOpacity(layer), 0.5);
    }

    TEST(ImplicitAnimations, LeaveOutWhatCannotMoveByDegrees)
    {
        VirtualClock clock;
        const Ref<CALayer> layer = CALayer::cls().layer();
        layer->setMasksToBounds(true);
        layer->setName("name"_ns);
        EXPECT_EQ(layer->animationKeys(), nullptr);
    }

    TEST(PresentationLayer, KnowsItsModelAndItsFamily)
    {
        const Ref<CALayer> outer = CALayer::cls().layer();
        const Ref<CALayer> inner = CALayer::cls().layer();
        outer->addSublayer(inner.get());
        const Ref<CALayer> shown = outer->presentationLayer();
        EXPECT_EQ(shown->modelLayer(), outer);
        EXPECT_EQ(outer->modelLayer(), outer);
        const auto below = cast<CALayer>(shown->sublayers()->objectAtIndex(0));
        EXPECT_EQ(below->modelLayer(), inner);
        EXPECT_EQ(below->superlayer()->modelLayer(), outer);
    }

    TEST(PresentationLayer, OfAStillLayerEqualsTheModel)
    {
        const Ref<CALayer> layer = CALayer::cls().layer();
        layer->setFrame({ { 1, 2 }, { 3, 4 } });
        layer->removeAllAnimations();
        EXPECT_EQ(layer->presentationLayer()->frame(), layer->frame());
    }

    // ---- transactions

    TEST(Transactions, TellWhenAllMovementsHaveEnded)
    {
        VirtualClock clock;
        const Ref<CALayer> layer = CALayer::cls().layer();
        int told = 0;
        CATransaction::cls().begin();
        CATransaction::cls().setCompletionBlock([&] { ++told; });
        layer->addAnimation_forKey(fade(0, 1, 0.5).get(), "a"_ns);
        layer->addAnimation_forKey(fade(0, 1, 1).get(), "b"_ns);
        CATransaction::cls().commit();
        clock.advance(0.75);
        EXPECT_EQ(told, 0);
        clock.advance(0.25);
        EXPECT_EQ(told, 1);
    }

    TEST(Transactions, TellAtOnceWithoutMovements)
    {
        int told = 0;
        CATransaction::cls().begin();
        CATransaction::cls().setCompletionBlock([&] { ++told; });
        CATransaction::cls().commit();
        EXPECT_EQ(told, 1);
    }

    TEST(Transactions, NestAndInherit)
    {
        CATransaction::cls().begin();
        CATransaction::cls().setAnimationDuration(3);
        CATransaction::cls().begin();
        EXPECT_EQ(CATransaction::cls().animationDuration(), 3);
        CATransaction::cls().setAnimationDuration(1);
        CATransaction::cls().commit();
        EXPECT_EQ(CATransaction::cls().animationDuration(), 3);
        CATransaction::cls().commit();
        EXPECT_EQ(CATransaction::cls().animationDuration(), 0.25);
    }

    TEST(Transactions, OneCommitTooManyDoesNothing)
    {
        CATransaction::cls().commit();
        CATransaction::cls().commit();
        EXPECT_EQ(CATransaction::cls().animationDuration(), 0.25);
    }

    TEST(Transactions, OutsideOfAnyValuesLastForOneTurn)
    {
        VirtualClock clock;
        CATransaction::cls().setDisableActions(true);
        EXPECT_TRUE(CATransaction::cls().disableActions());
        clock.advance(0);
        EXPECT_FALSE(CATransaction::cls().disableActions());
    }

}
}
