// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSSplitView.h"

#include <gtest/gtest.h>

#include <cmath>

#include "foundation/NSArray.h"
#include "runtime/Table.h"
#include "support/Archives.h"
#include "support/DefaultsFolder.h"
#include "support/EditingDesk.h"

namespace brindle {

/// Limits dividers and lets the first view collapse.
class SplitGuard : public NSObject {
    BRINDLE_OBJECT(SplitGuard, NSObject)

public:
    CGFloat least_ = 0;
    CGFloat most_ = 1e9;
    Ref<NSView> collapsible_;
    std::string log_;
};
template <> struct SplitGuard::Methods<struct Answers> {
    static CGFloat least(SplitGuard& self, NSSplitView*, CGFloat proposed, NSInteger)
    {
        return std::max(self.least_, proposed);
    }
    static CGFloat most(SplitGuard& self, NSSplitView*, CGFloat proposed, NSInteger)
    {
        return std::min(self.most_, proposed);
    }
    static bool canCollapse(SplitGuard& self, NSSplitView*, NSView* view)
    {
        return self.collapsible_ == view;
    }
    static bool onDoubleClick(SplitGuard& self, NSSplitView*, NSView* view, NSInteger)
    {
        return self.collapsible_ == view;
    }
    static void will(SplitGuard& self, NSObject*) { self.log_ += "will "; }
    static void did(SplitGuard& self, NSObject*) { self.log_ += "did "; }
    static void table(Builder& t)
    {
        t.methods({
            { "splitView:constrainMinCoordinate:ofSubviewAt:", imp<least> },
            { "splitView:constrainMaxCoordinate:ofSubviewAt:", imp<most> },
            { "splitView:canCollapseSubview:", imp<canCollapse> },
            { "splitView:shouldCollapseSubview:forDoubleClickOnDividerAtIndex:",
                imp<onDoubleClick> },
            { "splitViewWillResizeSubviews:", imp<will> },
            { "splitViewDidResizeSubviews:", imp<did> },
        });
    }
};
BRINDLE_RECORD(SplitGuard, Answers)

namespace {

    /// Three views beside each other in 209 points, with two thin dividers after setUp: 69 points each.
    struct SplitTest : testing::Test {
        EditingDesk desk;
        Ref<NSSplitView> split = desk.add<NSSplitView>(NSMakeRect(20, 20, 209, 100));
        std::vector<Ref<NSView>> views;
        Ref<SplitGuard> guard = make<SplitGuard>();

        SplitTest()
        {
            split->setVertical(true);
            split->setDividerStyle(NSSplitViewDividerStyleThin);
            for (int i = 0; i < 3; ++i) {
                views.push_back(alloc<NSView>()->initWithFrame(NSMakeRect(0, 0, 69, 100)));
                split->addSubview(views.back().get());
            }
            place({ 69, 69, 69 });
        }
        void place(std::initializer_list<CGFloat> widths)
        {
            std::size_t i = 0;
            for (const CGFloat width : widths)
                views[i++]->setFrameSize({ width, 100 });
            split->adjustSubviews();
        }
        std::string layout()
        {
            std::string text;
            for (const Ref<NSView>& view : views)
                text += std::to_string(static_cast<int>(NSMinX(view->frame()))) + "+"
                    + std::to_string(static_cast<int>(view->frame().size.width)) + " ";
            return text;
        }
    };

    TEST_F(SplitTest, ViewsStandBesideEachOther)
    {
        EXPECT_EQ(layout(), "0+69 70+69 140+69 ");
        EXPECT_EQ(views[1]->frame().size.height, 100);
    }
    TEST_F(SplitTest, ViewsStandFromTheTopDown)
    {
        split->setVertical(false);
        EXPECT_TRUE(split->isFlipped());
        EXPECT_EQ(NSMinY(views[0]->frame()), 0);
        EXPECT_EQ(NSMinY(views[1]->frame()), NSMaxY(views[0]->frame()) + 1);
        EXPECT_EQ(NSMaxY(views[2]->frame()), 100);
        EXPECT_EQ(views[0]->frame().size.width, 209);
    }
    TEST_F(SplitTest, TheThicknessFollowsTheStyle)
    {
        EXPECT_EQ(split->dividerThickness(), 1);
        split->setDividerStyle(NSSplitViewDividerStyleThick);
        EXPECT_EQ(split->dividerThickness(), 9);
        EXPECT_EQ(NSMinX(views[1]->frame()), NSMaxX(views[0]->frame()) + 9);
        EXPECT_EQ(NSMaxX(views[2]->frame()), 209);
        split->setDividerStyle(static_cast<NSSplitViewDividerStyle>(77));
        EXPECT_EQ(split->dividerStyle(), NSSplitViewDividerStyleThick);
    }
    TEST_F(SplitTest, AllShareADifferenceInProportion)
    {
        place({ 50, 100, 57 });
        split->setFrameSize({ 209 + 207, 100 });
        EXPECT_EQ(layout(), "0+100 101+200 302+114 ");
    }
    TEST_F(SplitTest, TheLowestPriorityGivesAndTakesFirst)
    {
        split->setHoldingPriority_forSubviewAtIndex(200, 1);
        EXPECT_EQ(split->holdingPriorityForSubviewAtIndex(1), 200);
        EXPECT_EQ(split->holdingPriorityForSubviewAtIndex(0), 250);
        split->setFrameSize({ 259, 100 });
        EXPECT_EQ(layout(), "0+69 70+119 190+69 ");
        split->setFrameSize({ 109, 100 });
        EXPECT_EQ(views[1]->frame().size.width, 0);
        EXPECT_EQ(NSMaxX(views[2]->frame()), 109);
    }
    TEST_F(SplitTest, AHiddenViewTakesNoRoom)
    {
        views[1]->setHidden(true);
        split->adjustSubviews();
        EXPECT_EQ(NSMinX(views[2]->frame()), NSMaxX(views[0]->frame()) + 1);
        EXPECT_EQ(NSMaxX(views[2]->frame()), 209);
    }
    TEST_F(SplitTest, AViewThatLeavesGivesItsRoomAwayWithTheNextLayout)
    {
        views[1]->removeFromSuperview();
        split->adjustSubviews();
        EXPECT_EQ(NSMaxX(views[2]->frame()), 209);
    }
    TEST_F(SplitTest, ADividerIsMoved)
    {
        split->setPosition_ofDividerAtIndex(100, 0);
        EXPECT_EQ(layout(), "0+100 101+38 140+69 ");
    }
    TEST_F(SplitTest, ADividerStaysBetweenItsNeighbours)
    {
        split->setPosition_ofDividerAtIndex(1000, 0);
        EXPECT_EQ(layout(), "0+138 139+0 140+69 ");
        split->setPosition_ofDividerAtIndex(-1000, 0);
        EXPECT_EQ(layout(), "0+0 1+138 140+69 ");
        EXPECT_EQ(split->minPossiblePositionOfDividerAtIndex(1), 1);
        EXPECT_EQ(split->maxPossiblePositionOfDividerAtIndex(1), 208);
    }
    TEST_F(SplitTest, DividersThatAreNotThereAreIgnored)
    {
        split->setPosition_ofDividerAtIndex(10, 2);
        split->setPosition_ofDividerAtIndex(10, -1);
        split->setPosition_ofDividerAtIndex(NAN, 0);
        split->setHoldingPriority_forSubviewAtIndex(1, 99);
        EXPECT_EQ(split->holdingPriorityForSubviewAtIndex(-1), 0);
        EXPECT_EQ(split->minPossiblePositionOfDividerAtIndex(5), 0);
        EXPECT_EQ(layout(), "0+69 70+69 140+69 ");
    }
    TEST_F(SplitTest, TheDelegateLimitsADivider)
    {
        guard->least_ = 40;
        guard->most_ = 120;
        split->setDelegate(guard.get());
        split->setPosition_ofDividerAtIndex(10, 0);
        EXPECT_EQ(views[0]->frame().size.width, 40);
        split->setPosition_ofDividerAtIndex(1000, 0);
        EXPECT_EQ(views[0]->frame().size.width, 120);
    }
    TEST_F(SplitTest, TheDelegateIsToldBeforeAndAfter)
    {
        split->setDelegate(guard.get());
        split->adjustSubviews();
        EXPECT_EQ(guard->log_, "will did ");
    }
    TEST_F(SplitTest, AViewCollapsesBelowHalfOfItsLeastSize)
    {
        guard->least_ = 40;
        guard->collapsible_ = views[0];
        split->setDelegate(guard.get());
        split->setPosition_ofDividerAtIndex(25, 0);
        EXPECT_FALSE(split->isSubviewCollapsed(views[0].get()));
        EXPECT_EQ(views[0]->frame().size.width, 40);
        split->setPosition_ofDividerAtIndex(15, 0);
        EXPECT_TRUE(split->isSubviewCollapsed(views[0].get()));
        EXPECT_EQ(views[0]->frame().size.width, 0);
        split->setPosition_ofDividerAtIndex(60, 0);
        EXPECT_FALSE(split->isSubviewCollapsed(views[0].get()));
        EXPECT_EQ(views[0]->frame().size.width, 60);
    }
    TEST_F(SplitTest, ACollapsedViewStaysSoWhenAllGrow)
    {
        guard->least_ = 40;
        guard->collapsible_ = views[0];
        split->setDelegate(guard.get());
        split->setPosition_ofDividerAtIndex(0, 0);
        split->setFrameSize({ 400, 100 });
        EXPECT_EQ(views[0]->frame().size.width, 0);
        EXPECT_EQ(NSMaxX(views[2]->frame()), 400);
    }

    // ---- the pointer

    TEST_F(SplitTest, TheUserDragsADivider)
    {
        desk.drag(*split, { 69.5, 50 }, { 99.5, 50 });
        EXPECT_EQ(layout(), "0+99 100+39 140+69 ");
    }
    TEST_F(SplitTest, AThinDividerIsTakenBesideIt)
    {
        desk.drag(*split, { 67, 50 }, { 87, 50 });
        EXPECT_EQ(views[0]->frame().size.width, 89);
    }
    TEST_F(SplitTest, APressOnAViewIsTheViews)
    {
        EXPECT_EQ(split->hitTest({ 20 + 30, 20 + 30 }), views[0]);
        EXPECT_EQ(split->hitTest({ 20 + 69.5, 20 + 30 }), split);
    }
    TEST_F(SplitTest, ADoubleClickCollapsesAndShowsAgain)
    {
        guard->collapsible_ = views[0];
        split->setDelegate(guard.get());
        desk.click(*split, { 69.5, 50 }, 2);
        EXPECT_TRUE(split->isSubviewCollapsed(views[0].get()));
        EXPECT_EQ(layout(), "0+0 1+138 140+69 ");
        desk.screen.advance(2);
        desk.click(*split, { 0.5, 50 }, 2);
        EXPECT_FALSE(split->isSubviewCollapsed(views[0].get()));
        EXPECT_EQ(layout(), "0+69 70+69 140+69 ");
    }
    TEST_F(SplitTest, ADividerShowsHowItMoves)
    {
        desk.screen.pointer().moveTo(desk.onScreen(*split, { 69.5, 50 }));
        EXPECT_EQ(desk.screen.display().visibleCursor(), display::Cursor::resizeLeftRight);
        desk.screen.pointer().moveTo(desk.onScreen(*split, { 30, 50 }));
        EXPECT_EQ(desk.screen.display().visibleCursor(), display::Cursor::arrow);
    }
    TEST_F(SplitTest, AViewRemovedWhileItsDividerIsDraggedDoesNoHarm)
    {
        desk.screen.pointer().press(desk.onScreen(*split, { 69.5, 50 }));
        for (const Ref<NSView>& view : views)
            view->removeFromSuperview();
        desk.screen.pointer().dragTo(desk.onScreen(*split, { 99, 50 }));
        desk.screen.pointer().release();
        EXPECT_EQ(split->subviews()->count(), 0U);
    }

    // ---- keeping

    TEST_F(SplitTest, SizesAreSavedUnderAName)
    {
        test::DefaultsFolder folder;
        split->setAutosaveName("test sizes"_ns);
        split->setPosition_ofDividerAtIndex(100, 0);
        place({ 69, 69, 69 });
        split->setPosition_ofDividerAtIndex(30, 0);
        const Ref<NSSplitView> other = make<NSSplitView>();
        other->setVertical(true);
        other->setDividerStyle(NSSplitViewDividerStyleThin);
        other->setFrameSize({ 209, 100 });
        for (int i = 0; i < 3; ++i)
            other->addSubview(alloc<NSView>()->initWithFrame(NSMakeRect(0, 0, 50, 100)).get());
        other->setAutosaveName("test sizes"_ns);
        const Ref<NSView> first = cast<NSView>(other->subviews()->objectAtIndex(0));
        EXPECT_EQ(first->frame().size.width, 30);
    }
    TEST_F(SplitTest, AnArchiveKeepsThePanes)
    {
        split->setPosition_ofDividerAtIndex(100, 0);
        const Ref<NSSplitView> back = test::archived(split);
        EXPECT_TRUE(back->isVertical());
        EXPECT_EQ(back->dividerStyle(), NSSplitViewDividerStyleThin);
        ASSERT_EQ(back->subviews()->count(), 3U);
        EXPECT_EQ(cast<NSView>(back->subviews()->objectAtIndex(0))->frame(), views[0]->frame());
    }
    TEST_F(SplitTest, OddFramesDoNoHarm)
    {
        for (const CGFloat size : { 0.0, 1.0, -20.0, 1e9, static_cast<CGFloat>(NAN) }) {
            split->setFrameSize({ size, size });
            desk.screen.process();
        }
        split->setFrameSize({ 209, 100 });
        EXPECT_EQ(NSMaxX(views[2]->frame()), 209);
    }

}
}
