// SPDX-License-Identifier: Apache-2.0
#include "quartz/layers/CALayer.h"

#include <gtest/gtest.h>

#include "foundation/NSArray.h"
#include "foundation/NSNumber.h"
#include "foundation/NSObject+KeyValueCoding.h"
#include "quartz/layers/CAPropertyAnimation.h"
#include "support/Movements.h"
#include "support/VirtualClock.h"

namespace brindle {
namespace {

    using test::fade;
    using test::number;
    using test::shownOpacity;
    using test::VirtualClock;

    // ---- keyframes and groups

    Ref<CAKeyframeAnimation> steps(std::vector<Ref<NSObject>> values)
    {
        Ref<CAKeyframeAnimation> animation
            = CAKeyframeAnimation::cls().animationWithKeyPath("zPosition"_ns);
        animation->setValues(makeArray(std::move(values)).get());
        animation->setDuration(1);
        return animation;
    }
    double shownAt(const Ref<CAKeyframeAnimation>& animation, double time)
    {
        VirtualClock clock;
        const Ref<CALayer> layer = CALayer::cls().layer();
        layer->addAnimation_forKey(animation.get(), "steps"_ns);
        clock.advance(time);
        return layer->presentationLayer()->zPosition();
    }

    TEST(Keyframes, AreSpacedEvenly)
    {
        const auto animation = steps({ number(0), number(10), number(0) });
        EXPECT_NEAR(shownAt(animation, 0.25), 5, 1e-9);
        EXPECT_NEAR(shownAt(animation, 0.5), 10, 1e-9);
        EXPECT_NEAR(shownAt(animation, 0.75), 5, 1e-9);
    }

    TEST(Keyframes, FollowTheirTimes)
    {
        const auto animation = steps({ number(0), number(10), number(20) });
        animation->setKeyTimes(makeArray({ number(0), number(0.8), number(1) }).get());
        EXPECT_NEAR(shownAt(animation, 0.4), 5, 1e-9);
        EXPECT_NEAR(shownAt(animation, 0.9), 15, 1e-9);
    }

    TEST(Keyframes, JumpWhenDiscrete)
    {
        const auto animation = steps({ number(1), number(2), number(3), number(4) });
        animation->setCalculationMode(kCAAnimationDiscrete);
        EXPECT_EQ(shownAt(animation, 0.2), 1);
        EXPECT_EQ(shownAt(animation, 0.3), 2);
        EXPECT_EQ(shownAt(animation, 0.9), 4);
    }

    TEST(Keyframes, GoEvenlyWhenPaced)
    {
        const auto animation = steps({ number(0), number(10), number(40) });
        animation->setCalculationMode(kCAAnimationPaced);
        EXPECT_NEAR(shownAt(animation, 0.5), 20, 1e-9);
    }

    TEST(Keyframes, OfOneValueAndOfNone)
    {
        EXPECT_EQ(shownAt(steps({ number(7) }), 0.5), 7);
        EXPECT_EQ(shownAt(steps({}), 0.5), 0);
    }

    TEST(Keyframes, FollowAPath)
    {
        VirtualClock clock;
        const auto path = Ref<CGPath>::adopt(CGPathCreateMutable());
        CGPathMoveToPoint(path.get(), nullptr, 0, 0);
        CGPathAddLineToPoint(path.get(), nullptr, 30, 0);
        CGPathAddLineToPoint(path.get(), nullptr, 30, 10);
        const auto walk = CAKeyframeAnimation::cls().animationWithKeyPath("position"_ns);
        walk->setPath(path.get());
        walk->setDuration(1);
        const Ref<CALayer> layer = CALayer::cls().layer();
        layer->addAnimation_forKey(walk.get(), "walk"_ns);
        clock.advance(0.5);
        EXPECT_NEAR(layer->presentationLayer()->position().x, 20, 1e-9);
        clock.advance(0.375);
        EXPECT_NEAR(layer->presentationLayer()->position().y, 5, 1e-9);
    }

    TEST(AnimationGroups, RunTogetherAndEndTogether)
    {
        VirtualClock clock;
        const Ref<CALayer> layer = CALayer::cls().layer();
        const auto group = make<CAAnimationGroup>();
        const auto rise = CABasicAnimation::cls().animationWithKeyPath("zPosition"_ns);
        rise->setFromValue(number(0).get());
        rise->setToValue(number(8).get());
        group->setAnimations(makeArray({ fade(0, 1, 4), rise }).get());
        group->setDuration(2);
        layer->addAnimation_forKey(group.get(), "both"_ns);
        clock.advance(1);
        EXPECT_NEAR(shownOpacity(layer), 0.25, 1e-6);
        EXPECT_NEAR(layer->presentationLayer()->zPosition(), 4, 1e-9);
        clock.advance(1);
        EXPECT_EQ(layer->animationKeys(), nullptr);
    }

    TEST(AnimationGroups, TakeNothingInThatHoldsThem)
    {
        const auto outer = make<CAAnimationGroup>();
        const auto inner = make<CAAnimationGroup>();
        inner->setAnimations(makeArray({ outer, fade(0, 1, 4) }).get());
        outer->setAnimations(makeArray({ fade(0, 1, 4), inner, outer }).get());
        EXPECT_EQ(inner->animations()->count(), 2u);
        EXPECT_EQ(outer->animations()->count(), 1u);
        const auto copy = cast<CAAnimationGroup>(inner->copy());
        EXPECT_EQ(copy->animations()->count(), 2u);
        outer->setAnimations(nullptr);
        EXPECT_EQ(outer->animations(), nullptr);
    }

    // ---- keys

    TEST(LayerKeys, ReadAndWritePartsOfValues)
    {
        const Ref<CALayer> layer = CALayer::cls().layer();
        setValue_forKeyPath(layer, number(5).get(), "bounds.size.width"_ns);
        EXPECT_EQ(layer->bounds().size.width, 5);
        setValue_forKeyPath(layer, number(2).get(), "transform.scale"_ns);
        EXPECT_EQ(layer->transform(), CATransform3DMakeScale(2, 2, 1));
        EXPECT_EQ(cast<NSNumber>(valueForKeyPath(layer, "transform.scale.x"_ns))->doubleValue(), 2);
        setValue_forKeyPath(layer, number(3).get(), "position.y"_ns);
        EXPECT_EQ(cast<NSNumber>(valueForKeyPath(layer, "position.y"_ns))->doubleValue(), 3);
    }

    TEST(LayerKeys, TakeColoursAsObjects)
    {
        const Ref<CALayer> layer = CALayer::cls().layer();
        const auto red = Ref<CGColor>::adopt(CGColorCreateSRGB(1, 0, 0, 1));
        setValue_forKey(layer, red.get(), "backgroundColor"_ns);
        EXPECT_EQ(layer->backgroundColor(), red);
        EXPECT_EQ(valueForKey(layer, "backgroundColor"_ns).get(), red.get());
        setValue_forKey(layer, "text"_ns, "backgroundColor"_ns);
        EXPECT_EQ(layer->backgroundColor(), nullptr);
    }

    TEST(LayerKeys, KeepAnyOtherValue)
    {
        const Ref<CALayer> layer = CALayer::cls().layer();
        EXPECT_EQ(valueForKey(layer, "note"_ns), nullptr);
        setValue_forKey(layer, "kept"_ns, "note"_ns);
        EXPECT_TRUE(valueForKey(layer, "note"_ns)->isEqual("kept"_ns));
        EXPECT_TRUE(valueForKey(layer->presentationLayer(), "note"_ns)->isEqual("kept"_ns));
        setValue_forKey(layer, nullptr, "note"_ns);
        EXPECT_EQ(valueForKey(layer, "note"_ns), nullptr);
    }

}
}
