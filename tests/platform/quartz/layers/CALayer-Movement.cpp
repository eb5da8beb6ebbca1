// SPDX-License-Identifier: Apache-2.0
#include "quartz/layers/CALayer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "foundation/NSArray.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSNumber.h"
#include "foundation/NSObject+KeyValueCoding.h"
#include "quartz/layers/CAGradientLayer.h"
#include "quartz/layers/CAPropertyAnimation.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"
#include "support/Movements.h"
#include "support/VirtualClock.h"

namespace brindle {

/// Writes down what movements tell it.
class MovementListener : public NSObject {
    BRINDLE_OBJECT(MovementListener, NSObject)

public:
    std::string log;
};

template <> struct MovementListener::Methods<struct Told> {
    static void started(MovementListener& self, CAAnimation*) { self.log += "start "; }
    static void stopped(MovementListener& self, CAAnimation*, bool finished)
    {
        self.log += finished ? "finished " : "stopped ";
    }
    static void table(Builder& t)
    {
        t.methods({
            { "animationDidStart:", imp<started> },
            { "animationDidStop:finished:", imp<stopped> },
        });
    }
};
BRINDLE_RECORD(MovementListener, Told)

namespace {

    using test::fade;
    using test::number;
    using test::shownOpacity;
    using test::VirtualClock;

    // ---- curves

    TEST(TimingFunctions, HaveTheirControlPoints)
    {
        const struct {
            NSString* name;
            float x1, y1, x2, y2;
        } rows[] {
            { kCAMediaTimingFunctionLinear, 0, 0, 1, 1 },
            { kCAMediaTimingFunctionEaseIn, 0.42F, 0, 1, 1 },
            { kCAMediaTimingFunctionEaseOut, 0, 0, 0.58F, 1 },
            { kCAMediaTimingFunctionEaseInEaseOut, 0.42F, 0, 0.58F, 1 },
            { kCAMediaTimingFunctionDefault, 0.25F, 0.1F, 0.25F, 1 },
        };
        for (const auto& row : rows) {
            const auto function = CAMediaTimingFunction::cls().functionWithName(row.name);
            float a[2] {}, b[2] {};
            function->getControlPointAtIndex_values(1, a);
            function->getControlPointAtIndex_values(2, b);
            EXPECT_EQ(a[0], row.x1);
            EXPECT_EQ(a[1], row.y1);
            EXPECT_EQ(b[0], row.x2);
            EXPECT_EQ(b[1], row.y2);
        }
    }

    TEST(TimingFunctions, RefuseUnknownNames)
    {
        EXPECT_THROW(CAMediaTimingFunction::cls().functionWithName("bounce"_ns), Exception);
        EXPECT_THROW(CAMediaTimingFunction::cls().functionWithName(nullptr), Exception);
    }

    TEST(TimingFunctions, AnswerTheValueOfTheCurveAtATime)
    {
        const struct {
            NSString* name;
            double part, progress;
        } rows[] {
            { kCAMediaTimingFunctionLinear, 0.3, 0.3 },
            { kCAMediaTimingFunctionEaseInEaseOut, 0.5, 0.5 },
            { kCAMediaTimingFunctionEaseIn, 0.5, 0.3153568 },
            { kCAMediaTimingFunctionEaseOut, 0.5, 0.6846432 },
            { kCAMediaTimingFunctionDefault, 0.5, 0.8024034 },
            { kCAMediaTimingFunctionDefault, 0, 0 },
            { kCAMediaTimingFunctionDefault, 1, 1 },
        };
        for (const auto& row : rows)
            EXPECT_NEAR(
                CAMediaTimingFunction::progress(
                    CAMediaTimingFunction::cls().functionWithName(row.name).get(), row.part),
                row.progress, 1e-6)
                << utf8Of(row.name);
    }

    // ---- explicit movements

    TEST(Animations, ShowValuesByTimeAndLeaveTheModel)
    {
        VirtualClock clock;
        const Ref<CALayer> layer = CALayer::cls().layer();
        layer->addAnimation_forKey(fade(0, 0.8).get(), "fade"_ns);
        EXPECT_NEAR(shownOpacity(layer), 0, 1e-6);
        clock.advance(0.25);
        EXPECT_NEAR(shownOpacity(layer), 0.2, 1e-6);
        clock.advance(0.5);
        EXPECT_NEAR(shownOpacity(layer), 0.6, 1e-6);
        EXPECT_EQ(layer->opacity(), 1);
        clock.advance(0.25);
        EXPECT_EQ(shownOpacity(layer), 1);
        EXPECT_EQ(layer->animationKeys(), nullptr);
    }

    TEST(Animations, TellTheirDelegate)
    {
        VirtualClock clock;
        const Ref<CALayer> layer = CALayer::cls().layer();
        const Ref<MovementListener> listener = make<MovementListener>();
        const Ref<CABasicAnimation> animation = fade(0, 1);
        animation->setDelegate(listener.get());
        layer->addAnimation_forKey(animation.get(), "fade"_ns);
        clock.advance(0.5);
        EXPECT_EQ(listener->log, "start ");
        clock.advance(0.5);
        EXPECT_EQ(listener->log, "start finished ");
    }

    TEST(Animations, TellThatTheyWereStopped)
    {
        VirtualClock clock;
        const Ref<CALayer> layer = CALayer::cls().layer();
        const Ref<MovementListener> listener = make<MovementListener>();
        const Ref<CABasicAnimation> animation = fade(0, 1);
        animation->setDelegate(listener.get());
        layer->addAnimation_forKey(animation.get(), "fade"_ns);
        clock.advance(0.5);
        layer->removeAnimationForKey("fade"_ns);
        EXPECT_EQ(listener->log, "start stopped ");
        EXPECT_EQ(shownOpacity(layer), 1);
    }

    TEST(Animations, OfALayerThatGoesAreStopped)
    {
        VirtualClock clock;
        const Ref<MovementListener> listener = make<MovementListener>();
        {
            const Ref<CALayer> layer = CALayer::cls().layer();
            const Ref<CABasicAnimation> animation = fade(0, 1);
            animation->setDelegate(listener.get());
            layer->addAnimation_forKey(animation.get(), "fade"_ns);
        }
        clock.advance(2);
        EXPECT_EQ(listener->log, "stopped ");
    }

    TEST(Animations, RunAsCopies)
    {
        VirtualClock clock;
        const Ref<CALayer> layer = CALayer::cls().layer();
        const Ref<CABasicAnimation> animation = fade(0, 1);
        layer->addAnimation_forKey(animation.get(), "fade"_ns);
        animation->setToValue(number(0).get());
        clock.advance(0.5);
        EXPECT_NEAR(shownOpacity(layer), 0.5, 1e-6);
    }

    TEST(Animations, OfOneKeyReplaceEachOther)
    {
        VirtualClock clock;
        const Ref<CALayer> layer = CALayer::cls().layer();
        layer->addAnimation_forKey(fade(0, 1).get(), "fade"_ns);
        layer->addAnimation_forKey(fade(0.5, 0.5).get(), "fade"_ns);
        EXPECT_EQ(layer->animationKeys()->count(), 1U);
        EXPECT_NEAR(shownOpacity(layer), 0.5, 1e-6);
    }

    TEST(Animations, RepeatAndReverse)
    {
        VirtualClock clock;
        const Ref<CALayer> layer = CALayer::cls().layer();
        const Ref<CABasicAnimation> animation = fade(0, 1);
        animation->setRepeatCount(2);
        animation->setAutoreverses(true);
        layer->addAnimation_forKey(animation.get(), "fade"_ns);
        const double expected[] { 0.75, 0.5, 0.25, 1 }; // every three quarters of a second
        for (const double value : expected) {
            clock.advance(0.75);
            EXPECT_NEAR(shownOpacity(layer), value, 1e-6);
        }
        clock.advance(1);
        EXPECT_EQ(layer->animationKeys(), nullptr);
    }

    TEST(Animations, FillForwardsWhenTheyAreKept)
    {
        VirtualClock clock;
        const Ref<CALayer> layer = CALayer::cls().layer();
        const Ref<CABasicAnimation> animation = fade(0, 0.25);
        animation->setFillMode(kCAFillModeForwards);
        animation->setRemovedOnCompletion(false);
        layer->addAnimation_forKey(animation.get(), "fade"_ns);
        clock.advance(5);
        EXPECT_NEAR(shownOpacity(layer), 0.25, 1e-6);
    }

    TEST(Animations, BeginLaterAndFillBackwards)
    {
        VirtualClock clock;
        const Ref<CALayer> layer = CALayer::cls().layer();
        const Ref<CABasicAnimation> animation = fade(0.5, 0);
        animation->setBeginTime(CACurrentMediaTime() + 1);
        layer->addAnimation_forKey(animation.get(), "late"_ns);
        clock.advance(0.5);
        EXPECT_EQ(shownOpacity(layer), 1);
        clock.advance(1);
        EXPECT_NEAR(shownOpacity(layer), 0.25, 1e-6);
        layer->removeAllAnimations();
        animation->setBeginTime(CACurrentMediaTime() + 1);
        animation->setFillMode(kCAFillModeBackwards);
        layer->addAnimation_forKey(animation.get(), "late"_ns);
        EXPECT_NEAR(shownOpacity(layer), 0.5, 1e-6);
    }

    TEST(Animations, BeginSoonerThanATimerCouldTell)
    {
        VirtualClock clock;
        // Whether the seconds of a moment are rounded to one before or behind it is different for each.
        for (int i = 1; i <= 40; ++i) {
            const Ref<CALayer> layer = CALayer::cls().layer();
            const Ref<CABasicAnimation> animation = fade(0, 1);
            animation->setBeginTime(CACurrentMediaTime() + 0.25 + i * 1e-10);
            layer->addAnimation_forKey(animation.get(), "soon"_ns);
            clock.advance(0.75);
            EXPECT_NEAR(shownOpacity(layer), 0.5, 1e-6);
        }
    }

    TEST(Animations, StandStillInALayerWithoutSpeed)
    {
        VirtualClock clock;
        const Ref<CALayer> layer = CALayer::cls().layer();
        layer->addAnimation_forKey(fade(0, 1).get(), "fade"_ns);
        clock.advance(0.25);
        const double time = layer->convertTime_fromLayer(CACurrentMediaTime(), nullptr);
        layer->setSpeed(0);
        layer->setTimeOffset(time);
        clock.advance(5);
        EXPECT_NEAR(shownOpacity(layer), 0.25, 1e-6);
    }

    TEST(Animations, UseWhatIsGivenOfFromToAndBy)
    {
        const struct {
            double from, to, by; // negative: none
            double half;
        } rows[] {
            { 0.2, -1, -1, 0.6 },
            { -1, 0.2, -1, 0.6 },
            { -1, -1, 0.5, 1.0 },
            { 0.2, -1, 0.4, 0.4 },
            { -1, 0.6, 0.4, 0.4 },
        };
        for (const auto& row : rows) {
            VirtualClock clock;
            const Ref<CALayer> layer = CALayer::cls().layer();
            const auto animation = CABasicAnimation::cls().animationWithKeyPath("opacity"_ns);
            animation->setDuration(1);
            if (row.from >= 0)
                animation->setFromValue(number(row.from).get());
            if (row.to >= 0)
                animation->setToValue(number(row.to).get());
            if (row.by >= 0)
                animation->setByValue(number(row.by).get());
            layer->addAnimation_forKey(animation.get(), "fade"_ns);
            clock.advance(0.5);
            EXPECT_NEAR(shownOpacity(layer), row.half, 1e-6) << row.half;
        }
    }

    TEST(Animations, ReachIntoValuesByKeyPath)
    {
        VirtualClock clock;
        const Ref<CALayer> layer = CALayer::cls().layer();
        const auto turn = CABasicAnimation::cls().animationWithKeyPath("transform.rotation.z"_ns);
        turn->setFromValue(number(0).get());
        turn->setToValue(number(2 * std::numbers::pi).get());
        turn->setDuration(1);
        layer->addAnimation_forKey(turn.get(), "turn"_ns);
        const auto move = CABasicAnimation::cls().animationWithKeyPath("position.x"_ns);
        move->setToValue(number(40).get());
        move->setDuration(1);
        layer->addAnimation_forKey(move.get(), "move"_ns);
        clock.advance(0.25);
        const Ref<CALayer> shown = layer->presentationLayer();
        EXPECT_NEAR(shown->transform().m12, 1, 1e-9);
        EXPECT_NEAR(shown->position().x, 10, 1e-9);
    }

    TEST(Animations, MixColours)
    {
        VirtualClock clock;
        const Ref<CALayer> layer = CALayer::cls().layer();
        const auto blend = CABasicAnimation::cls().animationWithKeyPath("backgroundColor"_ns);
        blend->setFromValue(Ref<CGColor>::adopt(CGColorCreateSRGB(1, 0, 0, 1)).get());
        blend->setToValue(Ref<CGColor>::adopt(CGColorCreateSRGB(0, 0, 1, 0)).get());
        blend->setDuration(1);
        layer->addAnimation_forKey(blend.get(), "blend"_ns);
        clock.advance(0.5);
        const Ref<CGColor> shown = layer->presentationLayer()->backgroundColor();
        ASSERT_NE(shown, nullptr);
        EXPECT_NEAR(shown->components()[0], 0.5, 1e-9);
        EXPECT_NEAR(shown->components()[2], 0.5, 1e-9);
        EXPECT_NEAR(shown->alpha(), 0.5, 1e-9);
        EXPECT_EQ(layer->backgroundColor(), nullptr);
    }

    TEST(Animations, MixListsOfTheGradient)
    {
        VirtualClock clock;
        const Ref<CAGradientLayer> layer = make<CAGradientLayer>();
        const auto slide = CABasicAnimation::cls().animationWithKeyPath("locations"_ns);
        slide->setFromValue(makeArray({ number(0), number(0.5) }).get());
        slide->setToValue(makeArray({ number(0.5), number(1) }).get());
        slide->setDuration(1);
        layer->addAnimation_forKey(slide.get(), "slide"_ns);
        clock.advance(0.5);
        const auto shown = cast<CAGradientLayer>(layer->presentationLayer());
        EXPECT_NEAR(
            cast<NSNumber>(shown->locations()->objectAtIndex(1))->doubleValue(), 0.75, 1e-9);
    }

    TEST(Animations, AddToWhatIsThere)
    {
        VirtualClock clock;
        const Ref<CALayer> layer = CALayer::cls().layer();
        layer->setPosition({ 10, 0 });
        layer->removeAllAnimations();
        const auto shake = CABasicAnimation::cls().animationWithKeyPath("position.x"_ns);
        shake->setFromValue(number(0).get());
        shake->setToValue(number(4).get());
        shake->setAdditive(true);
        shake->setDuration(1);
        layer->addAnimation_forKey(shake.get(), "shake"_ns);
        clock.advance(0.5);
        EXPECT_NEAR(layer->presentationLayer()->position().x, 12, 1e-9);
    }

    TEST(Animations, CumulativeRunsGoOnFromTheLast)
    {
        VirtualClock clock;
        const Ref<CALayer> layer = CALayer::cls().layer();
        const auto walk = CABasicAnimation::cls().animationWithKeyPath("position.x"_ns);
        walk->setFromValue(number(0).get());
        walk->setToValue(number(10).get());
        walk->setDuration(1);
        walk->setRepeatCount(3);
        walk->setCumulative(true);
        layer->addAnimation_forKey(walk.get(), "walk"_ns);
        clock.advance(2.5);
        EXPECT_NEAR(layer->presentationLayer()->position().x, 25, 1e-9);
    }

    TEST(Animations, OfUnknownKeysAndWrongKindsDoNoHarm)
    {
        VirtualClock clock;
        const Ref<CALayer> layer = CALayer::cls().layer();
        const auto odd = CABasicAnimation::cls().animationWithKeyPath("nothing.known"_ns);
        odd->setToValue("text"_ns);
        odd->setDuration(1);
        layer->addAnimation_forKey(odd.get(), nullptr);
        layer->addAnimation_forKey(nullptr, "nil"_ns);
        layer->addAnimation_forKey(make<CABasicAnimation>().get(), "empty"_ns);
        clock.advance(0.1);
        EXPECT_EQ(shownOpacity(layer), 1);
    }

}
}
