// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <functional>

#include "foundation/Exceptions.h"
#include "foundation/NSArray.h"
#include "foundation/NSDictionary.h"
#include "quartz/layers/CALayer.h"
#include "quartz/layers/CATransaction.h"
#include "quartz/layers/FrameClock.h"
#include "quartz/layers/LayerHost.h"
#include "runtime/Table.h"
#include "support/Movements.h"
#include "support/Pixels.h"
#include "support/VirtualClock.h"

namespace brindle {

/// Does what a test wants when a movement ends or a layer is drawn.
class LayerHelper : public NSObject {
    BRINDLE_OBJECT(LayerHelper, NSObject)

public:
    std::function<void()> work;
    int told = 0;
};

template <> struct LayerHelper::Methods<struct Told> {
    static void stopped(LayerHelper& self, CAAnimation*, bool)
    {
        ++self.told;
        self.work();
    }
    static void draw(LayerHelper& self, CALayer*, CGContextRef) { self.work(); }
    static void table(Builder& t)
    {
        t.methods({
            { "animationDidStop:finished:", imp<stopped> },
            { "drawLayer:inContext:", imp<draw> },
        });
    }
};
BRINDLE_RECORD(LayerHelper, Told)

/// Cannot be shown.
class UnshowableAnimation : public CAAnimation {
    BRINDLE_OBJECT(UnshowableAnimation, CAAnimation)
};

template <> struct UnshowableAnimation::Methods<struct Refusing> {
    static void show(UnshowableAnimation&, CALayer*, double, double, double)
    {
        raise("TestException", "refused");
    }
    static void table(Builder& t)
    {
        t.methods({ { "showOnLayer:progress:time:repeats:", imp<show> } });
    }
};
BRINDLE_RECORD(UnshowableAnimation, Refusing)

namespace {

    using test::fade;
    using test::VirtualClock;

    void refuse() { raise("TestException", "refused"); }

    Ref<LayerHelper> helper(std::function<void()> work)
    {
        Ref<LayerHelper> helper = make<LayerHelper>();
        helper->work = std::move(work);
        return helper;
    }

    Ref<CALayer> fading(const Ref<LayerHelper>& delegate, double duration = 1)
    {
        Ref<CALayer> layer = CALayer::cls().layer();
        const Ref<CABasicAnimation> animation = fade(0, 1, duration);
        animation->setDelegate(delegate.get());
        layer->addAnimation_forKey(animation.get(), "fade"_ns);
        return layer;
    }

    /// Counts what it is told.
    class CountingHost : public quartz::LayerHost {
    public:
        void layersChanged() override { ++count; }
        void render(CGContextRef, quartz::LayerLook) override { }
        int count = 0;
    };

    TEST(AnimationGroups, LeaveAnAnimationItsOwnDurationThoughItRaises)
    {
        const auto one = make<UnshowableAnimation>();
        const auto group = make<CAAnimationGroup>();
        group->setAnimations(makeArray({ one }).get());
        group->setDuration(2);
        const Ref<CALayer> layer = CALayer::cls().layer();
        EXPECT_THROW(group->showOnLayer_progress_time_repeats(layer.get(), 0.5, 1, 0), Exception);
        EXPECT_EQ(one->duration(), 0);
    }

    TEST(MovingLayers, StepOnceInAFrameHoweverOftenTheirMovementsWereReplaced)
    {
        VirtualClock clock;
        CountingHost host;
        const Ref<CALayer> layer = CALayer::cls().layer();
        quartz::setLayerHost(*layer, &host);
        for (int i = 0; i < 10; ++i)
            layer->addAnimation_forKey(fade(0, 1).get(), "fade"_ns);
        clock.advance(0);
        host.count = 0;
        clock.advance(quartz::kFrameSeconds);
        EXPECT_EQ(host.count, 1);
        quartz::setLayerHost(*layer, nullptr);
    }

    TEST(MovingLayers, GoOnThoughTheDelegateOfAnotherRaises)
    {
        VirtualClock clock;
        const Ref<LayerHelper> raising = helper(&refuse);
        const Ref<LayerHelper> listening = helper([] {});
        const Ref<CALayer> first = fading(raising);
        const Ref<CALayer> second = fading(listening);
        const Ref<CALayer> third = fading(listening, 2);
        EXPECT_THROW(clock.advance(1), Exception);
        clock.advance(1);
        EXPECT_EQ(raising->told, 1);
        EXPECT_EQ(listening->told, 2);
        EXPECT_EQ(third->animationKeys(), nullptr);
    }

    TEST(MovingLayers, ALayerThatAnotherOneWakesGoesOn)
    {
        VirtualClock clock;
        const Ref<LayerHelper> listening = helper([] {});
        const Ref<CALayer> resting = fading(listening);
        resting->setSpeed(0);
        const Ref<LayerHelper> waking = helper([&] { resting->setSpeed(1); });
        const Ref<CALayer> other = fading(waking);
        clock.advance(1);
        EXPECT_EQ(waking->told, 1);
        clock.advance(quartz::kFrameSeconds);
        EXPECT_EQ(listening->told, 1);
    }

    TEST(Transactions, EndThoughADelegateRaises)
    {
        VirtualClock clock;
        int told = 0;
        CATransaction::cls().begin();
        CATransaction::cls().setCompletionBlock([&] { ++told; });
        const Ref<CALayer> layer = fading(helper(&refuse));
        CATransaction::cls().commit();
        EXPECT_THROW(clock.advance(1), Exception);
        EXPECT_EQ(told, 1);
    }

    TEST(Transactions, EndThoughTheBlockOfAnOuterOneRaises)
    {
        VirtualClock clock;
        int told = 0;
        CATransaction::cls().begin();
        CATransaction::cls().setCompletionBlock(&refuse);
        CATransaction::cls().begin();
        CATransaction::cls().setCompletionBlock([&] { ++told; });
        const Ref<CALayer> layer = fading(nullptr);
        CATransaction::cls().commit();
        CATransaction::cls().commit();
        EXPECT_THROW(clock.advance(1), Exception);
        EXPECT_EQ(told, 1);
    }

    TEST(Transactions, TakeTheirBlockByName)
    {
        int told = 0;
        const Block<void()> block = [&] { ++told; };
        CATransaction::cls().begin();
        CATransaction::cls().setValue_forKey(block.get(), kCATransactionCompletionBlock);
        EXPECT_EQ(CATransaction::cls().completionBlock(), block);
        EXPECT_EQ(CATransaction::cls().valueForKey(kCATransactionCompletionBlock), block);
        CATransaction::cls().setValue_forKey("no block"_ns, kCATransactionCompletionBlock);
        EXPECT_EQ(CATransaction::cls().completionBlock(), nullptr);
        CATransaction::cls().setValue_forKey(block.get(), kCATransactionCompletionBlock);
        CATransaction::cls().commit();
        EXPECT_EQ(told, 1);
    }

    TEST(Animations, AllAreToldOfTheirEndThoughADelegateRaises)
    {
        VirtualClock clock;
        const Ref<LayerHelper> listening = helper([] {});
        const Ref<CALayer> layer = fading(helper(&refuse));
        const Ref<CABasicAnimation> other = fade(0, 1);
        other->setDelegate(listening.get());
        layer->addAnimation_forKey(other.get(), "other"_ns);
        EXPECT_THROW(layer->removeAllAnimations(), Exception);
        EXPECT_EQ(listening->told, 1);
    }

    TEST(LayerTree, ADelegateThatMovesTheLayerMeanwhileDoesNotPutItIntoTwo)
    {
        VirtualClock clock;
        const Ref<CALayer> first = CALayer::cls().layer();
        const Ref<CALayer> second = CALayer::cls().layer();
        const Ref<CALayer> layer = CALayer::cls().layer();
        const Ref<LayerHelper> moving = helper([&] { first->addSublayer(layer.get()); });
        const Ref<CABasicAnimation> animation = fade(0, 1);
        animation->setDelegate(moving.get());
        layer->setActions(
            NSDictionary::cls().dictionaryWithObject_forKey(animation.get(), "opacity"_ns).get());
        layer->setOpacity(0.5); // nobody has seen it: dropped with the next place
        second->addSublayer(layer.get());
        EXPECT_EQ(moving->told, 1);
        EXPECT_EQ(first->sublayers(), nullptr);
        EXPECT_EQ(layer->superlayer(), second);
    }

    TEST(LayerTree, AMaskThatOutlivesItsLayerIsALayerLikeOthers)
    {
        const Ref<CALayer> mask = CALayer::cls().layer();
        CALayer::cls().layer()->setMask(mask.get());
        const Ref<CALayer> outer = CALayer::cls().layer();
        outer->addSublayer(mask.get());
        mask->removeFromSuperlayer();
        EXPECT_EQ(outer->sublayers(), nullptr);
    }

    TEST(LayerDrawing, AMaskThatRaisesIsCaughtByWhoeverDraws)
    {
        const test::Picture picture(20, 20);
        const Ref<CALayer> layer = CALayer::cls().layer();
        layer->setBounds({ { 0, 0 }, { 20, 20 } });
        const Ref<CALayer> mask = CALayer::cls().layer();
        mask->setBounds(layer->bounds());
        const Ref<LayerHelper> raising = helper(&refuse);
        mask->setDelegate(raising.get());
        layer->setMask(mask.get());
        EXPECT_THROW(layer->renderInContext(picture), Exception);
        const Ref<CALayer> inner = CALayer::cls().layer();
        inner->setBounds(layer->bounds());
        inner->setDelegate(raising.get());
        layer->addSublayer(inner.get());
        EXPECT_THROW(layer->renderInContext(picture), Exception);
    }

    TEST(LayerDrawing, AMaskMayBeReplacedWhileItDraws)
    {
        const test::Picture picture(20, 20);
        const Ref<CALayer> layer = CALayer::cls().layer();
        layer->setBounds({ { 0, 0 }, { 20, 20 } });
        const Ref<LayerHelper> replacing = helper([&] { layer->setMask(nullptr); });
        {
            const Ref<CALayer> mask = CALayer::cls().layer();
            mask->setBounds(layer->bounds());
            mask->setDelegate(replacing.get());
            layer->setMask(mask.get());
        }
        layer->renderInContext(picture);
        EXPECT_EQ(layer->mask(), nullptr);
    }

}
}
