// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSView.h"

#include <gtest/gtest.h>

#include "appkit/NSColor.h"
#include "appkit/NSGraphicsContext.h"
#include "foundation/Exceptions.h"
#include "foundation/NSArray.h"
#include "quartz/layers/CALayer.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"
#include "support/HeadlessScreen.h"

namespace brindle {

/// Counts what it is asked while windows are drawn.
class CountingTile : public NSView {
    BRINDLE_OBJECT(CountingTile, NSView)

public:
    WeakRef<NSView> victim_; // removed while this one draws
};
/// Answers the pointer also beside its frame.
class WideTile : public NSView {
    BRINDLE_OBJECT(WideTile, NSView)
};

namespace {

    int questions = 0;
    int drawings = 0;
    int hits = 0;

    constexpr double kSide = 10;
    NSRect place(int i) { return NSMakeRect(i % 20 * kSide, i / 20 * kSide, kSide, kSide); }

    /// A window with twenty columns of tiles.
    struct Tiles {
        explicit Tiles(int count)
        {
            for (int i = 0; i < count; ++i)
                views.push_back(screen.add<CountingTile>(place(i)));
            questions = drawings = hits = 0;
        }
        Ref<NSView> content() { return screen.window().contentView(); }

        HeadlessScreen screen { 200, 200 };
        std::vector<Ref<CountingTile>> views;
    };

}

template <> struct CountingTile::Methods<struct Counting> {
    static bool isFlipped(CountingTile&)
    {
        ++questions;
        return false;
    }
    static void drawRect(CountingTile& self, NSRect)
    {
        ++drawings;
        maybe(self.victim_.get())->removeFromSuperview();
        NSColor::cls().redColor()->set();
        NSRectFill(self.bounds());
    }
    static void table(Builder& t)
    {
        t.methods({ { "isFlipped", imp<isFlipped> }, { "drawRect:", imp<drawRect> } });
    }
};
BRINDLE_RECORD(CountingTile, Counting)

template <> struct WideTile::Methods<struct Hits> {
    static Ref<NSView> hitTest(WideTile& self, NSPoint point)
    {
        ++hits;
        return NSPointInRect(point, NSInsetRect(self.frame(), -kSide, -kSide)) ? Ref<NSView>(&self)
                                                                               : Ref<NSView>();
    }
    static void table(Builder& t) { t.methods({ { "hitTest:", imp<hitTest> } }); }
};
BRINDLE_RECORD(WideTile, Hits)

TEST(Siblings, ElsewhereAreAskedNothingWhileOneIsDrawn)
{
    Tiles tiles(200);
    tiles.views[21]->setNeedsDisplay(true);
    tiles.screen.process();
    EXPECT_EQ(drawings, 1);
    EXPECT_LT(questions, 60); // its neighbours may be asked
}

TEST(Siblings, UnderAndOverADirtyOneAreDrawnWithIt)
{
    Tiles tiles(1);
    tiles.screen.add<CountingTile>(NSMakeRect(5, 5, 10, 10));
    drawings = 0;
    tiles.views[0]->setNeedsDisplay(true);
    tiles.screen.process();
    EXPECT_EQ(drawings, 2);
}

TEST(Siblings, InAScaledViewAreFoundWhereTheyShow)
{
    Tiles tiles(0);
    const Ref<NSView> scaled = tiles.screen.add<NSView>(NSMakeRect(0, 0, 200, 200));
    scaled->setBounds(NSMakeRect(1000, 1000, 2000, 2000));
    const Ref<NSView> tile = alloc<CountingTile>()->initWithFrame(NSMakeRect(2900, 2900, 100, 100));
    scaled->addSubview(tile.get());
    tiles.screen.process();
    drawings = 0;
    tiles.content()->setNeedsDisplayInRect(NSMakeRect(192, 192, 2, 2));
    tiles.screen.process();
    EXPECT_EQ(drawings, 1);
}

TEST(Siblings, DrawTheShadowsOfTheirLayersBesideTheirFrames)
{
    Tiles tiles(0);
    const Ref<NSView> view = tiles.screen.add<NSView>(NSMakeRect(50, 50, 20, 20));
    view->setWantsLayer(true);
    view->layer()->setBackgroundColor(NSColor::cls().whiteColor()->CGColor().get());
    view->layer()->setShadowOpacity(1);
    view->layer()->setShadowRadius(0);
    view->layer()->setShadowOffset(NSMakeSize(30, 0));
    const std::uint32_t before = tiles.screen.pixels().at(90, 140);
    tiles.content()->setNeedsDisplayInRect(NSMakeRect(85, 55, 10, 10));
    EXPECT_EQ(tiles.screen.pixels().at(90, 140), before);
    EXPECT_EQ(before & 0x00FFFFFFU, 0U);
}

TEST(Siblings, ThatAreGivenTwiceLieWhereTheyAreGivenFirst)
{
    const Ref<NSView> view = make<NSView>();
    const Ref<NSView> a = make<NSView>();
    const Ref<NSView> b = make<NSView>();
    const Ref<NSView> c = make<NSView>();
    view->setSubviews(makeArray({ a.get(), a.get(), b.get(), a.get(), c.get() }).get());
    EXPECT_TRUE(view->subviews()->isEqualToArray(makeArray({ a.get(), b.get(), c.get() }).get()));
    view->setSubviews(makeArray({ c.get(), b.get(), c.get() }).get());
    EXPECT_TRUE(view->subviews()->isEqualToArray(makeArray({ c.get(), b.get() }).get()));
}

TEST(Siblings, AreSortedByAFunctionThatMayRaiseOrRemoveThem)
{
    const Ref<NSView> view = make<NSView>();
    for (int i = 0; i < 20; ++i)
        view->addSubview(make<NSView>().get());
    const Ref<NSArray> before = view->subviews();
    int left = 10;
    const NSViewComparator raising = [](NSView* a, NSView* b, void* calls) -> NSInteger {
        if (--*static_cast<int*>(calls) == 0)
            raise("Fault", "on purpose");
        return a < b ? 1 : -1;
    };
    EXPECT_THROW(view->sortSubviewsUsingFunction_context(raising, &left), Exception);
    EXPECT_TRUE(view->subviews()->isEqualToArray(before.get()));
    const NSViewComparator removing = [](NSView* a, NSView* b, void*) -> NSInteger {
        if (const Ref<NSView> parent = a->superview(); parent && parent->subviews()->count() > 10)
            a->removeFromSuperview();
        return a < b ? -1 : 1;
    };
    view->sortSubviewsUsingFunction_context(removing, nullptr);
    const Ref<NSArray> after = view->subviews();
    ASSERT_EQ(after->count(), 10U);
    for (NSUInteger i = 1; i < 10; ++i)
        EXPECT_LT(after->objectAtIndex(i - 1).get(), after->objectAtIndex(i).get());
}

TEST(Siblings, ThatAreRemovedWhileAnotherDrawsAreNotDrawn)
{
    Tiles tiles(3);
    tiles.views[0]->victim_ = tiles.views[2].get();
    tiles.content()->setNeedsDisplayInRect(NSMakeRect(0, 0, 30, 10));
    tiles.screen.window().displayIfNeeded();
    EXPECT_EQ(drawings, 2);
}

TEST(Siblings, ThatAnswerThePointerBesideTheirFramesAreAsked)
{
    Tiles tiles(0);
    const Ref<NSView> wide = tiles.screen.add<WideTile>(NSMakeRect(50, 50, 10, 10));
    EXPECT_EQ(tiles.content()->hitTest({ 45, 45 }), wide);
    EXPECT_EQ(hits, 1);
}

TEST(Siblings, OfOneClassHideTheirOwnPartsFromThePointer)
{
    Tiles tiles(40);
    tiles.views[3]->setHidden(true);
    EXPECT_EQ(tiles.content()->hitTest({ 35, 5 }), tiles.content());
    EXPECT_EQ(tiles.content()->hitTest({ 45, 5 }), tiles.views[4]);
}

}
