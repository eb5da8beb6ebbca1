// SPDX-License-Identifier: Apache-2.0
#include "quartz/layers/CALayer.h"

#include <gtest/gtest.h>

#include <vector>

#include "foundation/NSArray.h"
#include "runtime/NSException.h"
#include "support/Pixels.h"

namespace brindle {
namespace {

    Ref<CALayer> named(NSString* name)
    {
        Ref<CALayer> layer = CALayer::cls().layer();
        layer->setName(name);
        return layer;
    }

    std::string namesIn(const Ref<CALayer>& layer)
    {
        std::string names;
        for (CALayer* inner : each<CALayer>(layer->sublayers()))
            names += utf8Of(inner->name().get());
        return names;
    }

    struct Family {
        Ref<CALayer> outer = named("outer"_ns);
        Ref<CALayer> a = named("a"_ns);
        Ref<CALayer> b = named("b"_ns);
        Ref<CALayer> c = named("c"_ns);
        Family()
        {
            outer->addSublayer(a.get());
            outer->addSublayer(b.get());
        }
    };

    TEST(LayerTree, HasNoListWithoutSublayers)
    {
        EXPECT_EQ(CALayer::cls().layer()->sublayers(), nullptr);
    }

    TEST(LayerTree, AddsInFront)
    {
        const Family f;
        EXPECT_EQ(namesIn(f.outer), "ab");
        EXPECT_EQ(f.a->superlayer(), f.outer);
    }

    TEST(LayerTree, AddingAgainMovesToTheFront)
    {
        const Family f;
        f.outer->addSublayer(f.a.get());
        EXPECT_EQ(namesIn(f.outer), "ba");
    }

    TEST(LayerTree, IndexZeroIsTheBottom)
    {
        const Family f;
        f.outer->insertSublayer_atIndex(f.c.get(), 0);
        EXPECT_EQ(namesIn(f.outer), "cab");
    }

    TEST(LayerTree, AnIndexPastTheEndIsTheTop)
    {
        const Family f;
        f.outer->insertSublayer_atIndex(f.c.get(), 99);
        EXPECT_EQ(namesIn(f.outer), "abc");
    }

    TEST(LayerTree, InsertsBelowAndAboveASibling)
    {
        const Family f;
        f.outer->insertSublayer_below(f.c.get(), f.b.get());
        EXPECT_EQ(namesIn(f.outer), "acb");
        f.outer->insertSublayer_above(f.c.get(), f.b.get());
        EXPECT_EQ(namesIn(f.outer), "abc");
    }

    TEST(LayerTree, AStrangerAsSiblingMeansBottomOrTop)
    {
        const Family f;
        const Ref<CALayer> stranger = named("x"_ns);
        f.outer->insertSublayer_below(f.c.get(), stranger.get());
        EXPECT_EQ(namesIn(f.outer), "cab");
        f.outer->insertSublayer_above(f.c.get(), stranger.get());
        EXPECT_EQ(namesIn(f.outer), "abc");
    }

    TEST(LayerTree, ReplacesInPlace)
    {
        const Family f;
        f.outer->replaceSublayer_with(f.a.get(), f.c.get());
        EXPECT_EQ(namesIn(f.outer), "cb");
        EXPECT_EQ(f.a->superlayer(), nullptr);
    }

    TEST(LayerTree, RemovesFromTheSuperlayer)
    {
        const Family f;
        f.a->removeFromSuperlayer();
        f.a->removeFromSuperlayer();
        EXPECT_EQ(namesIn(f.outer), "b");
    }

    TEST(LayerTree, TakesALayerOutOfItsOldTree)
    {
        const Family f;
        const Ref<CALayer> other = named("other"_ns);
        other->addSublayer(f.a.get());
        EXPECT_EQ(namesIn(f.outer), "b");
        EXPECT_EQ(namesIn(other), "a");
    }

    TEST(LayerTree, SetsAllSublayersAtOnce)
    {
        const Family f;
        f.outer->setSublayers(makeArray({ f.c, f.a }).get());
        EXPECT_EQ(namesIn(f.outer), "ca");
        EXPECT_EQ(f.b->superlayer(), nullptr);
        f.outer->setSublayers(nullptr);
        EXPECT_EQ(f.outer->sublayers(), nullptr);
    }

    TEST(LayerTree, NilIsNotAdded)
    {
        const Family f;
        f.outer->addSublayer(nullptr);
        EXPECT_EQ(namesIn(f.outer), "ab");
    }

    TEST(LayerTree, RefusesALayerInItself)
    {
        const Family f;
        EXPECT_THROW(f.outer->addSublayer(f.outer.get()), Exception);
        EXPECT_THROW(f.a->addSublayer(f.outer.get()), Exception);
        EXPECT_THROW(f.a->setMask(f.outer.get()), Exception);
        EXPECT_EQ(namesIn(f.outer), "ab");
    }

    TEST(LayerTree, RefusesWhatIsNoLayer)
    {
        const Family f;
        EXPECT_THROW(f.outer->send<"addSublayer:">(static_cast<NSObject*>("text"_ns)), Exception);
    }

    TEST(LayerTree, AMaskLeavesItsOldPlace)
    {
        const Family f;
        f.b->setMask(f.a.get());
        EXPECT_EQ(namesIn(f.outer), "b");
        EXPECT_EQ(f.b->mask(), f.a);
        f.a->removeFromSuperlayer();
        EXPECT_EQ(f.b->mask(), nullptr);
    }

    TEST(LayerTree, SublayersOutliveTheirSuperlayer)
    {
        Ref<CALayer> inner = named("a"_ns);
        {
            const Ref<CALayer> outer = named("outer"_ns);
            outer->addSublayer(inner.get());
        }
        EXPECT_EQ(inner->superlayer(), nullptr);
    }

    TEST(LayerTree, TenThousandNestedLayersAreMadeDrawnHitAndFreed)
    {
        const Ref<CALayer> top = CALayer::cls().layer();
        top->setFrame({ { 0, 0 }, { 8, 8 } });
        Ref<CALayer> last = top;
        for (int i = 0; i < 10000; ++i) {
            Ref<CALayer> inner = CALayer::cls().layer();
            inner->setFrame({ { 0, 0 }, { 8, 8 } });
            last->addSublayer(inner.get());
            last = inner;
        }
        const test::Picture picture(8, 8);
        top->renderInContext(picture);
        EXPECT_NE(top->hitTest({ 1, 1 }), nullptr);
        EXPECT_EQ(last->convertPoint_toLayer({ 1, 2 }, nullptr), CGPointMake(1, 2));
    }

}
}
