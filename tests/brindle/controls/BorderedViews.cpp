// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "appkit/NSColor.h"
#include "controls/BRBorderedView.h"
#include "core/NSObject+Inheritance.h"
#include "runtime/Runtime.h"
#include "support/HeadlessScreen.h"
#include "support/LogSink.h"
#include "support/Strings.h"

namespace brindle {

/// Counts its frame changes.
class CountingView : public GWView {
    BRINDLE_OBJECT(CountingView, GWView)

public:
    int changes_ = 0;
};
template <> struct CountingView::Methods<struct Counting> {
    static void frameDidChange(CountingView& self) { ++self.changes_; }
    static void table(Builder& t) { t.methods({ { "frameDidChange", imp<frameDidChange> } }); }
};
BRINDLE_RECORD(CountingView, Counting)

/// Begins to care about its frame when a test adds the method.
class QuietView : public GWView {
    BRINDLE_OBJECT(QuietView, GWView)

public:
    static inline int changes = 0;
};
template <> struct QuietView::Methods<struct Nothing> {
    static void table(Builder&) { }
};
BRINDLE_RECORD(QuietView, Nothing)

namespace {

    constexpr std::int32_t kAllEdges
        = BRBorderEdgeLeft | BRBorderEdgeTop | BRBorderEdgeRight | BRBorderEdgeBottom;

    TEST(GWView, ASubclassIsToldOfEachChangeOfItsFrame)
    {
        const Ref<CountingView> view = make<CountingView>();
        view->setFrame(NSMakeRect(1, 2, 3, 4));
        EXPECT_EQ(view->changes_, 1);
        view->setFrameSize({ 5, 6 });
        EXPECT_EQ(view->changes_, 2);
        view->setFrame(NSMakeRect(1, 2, 5, 6));
        EXPECT_EQ(view->changes_, 2);
    }

    TEST(GWView, AViewFromAnInterfaceFileIsToldTwice)
    {
        const Ref<CountingView> view = make<CountingView>();
        view->awakeFromNib();
        view->setFrameSize({ 5, 6 });
        EXPECT_EQ(view->changes_, 2);
    }

    TEST(GWView, AClassThatDoesNotCareIsNotRegistered)
    {
        const Ref<QuietView> view = make<QuietView>();
        class_addMethod(QuietView::cls(), selector<"frameDidChange">,
            reinterpret_cast<IMP>(+[](NSObject*, SEL) { ++QuietView::changes; }), "v16@0:8");
        view->setFrameSize({ 5, 6 });
        EXPECT_EQ(QuietView::changes, 0);
        make<QuietView>()->setFrameSize({ 5, 6 });
        EXPECT_EQ(QuietView::changes, 1);
    }

    TEST(GWView, NoViewAboveItAnswersTheMessage)
    {
        EXPECT_FALSE(NSView::cls().instancesRespondToSelector(selector<"frameDidChange">));
        EXPECT_EQ(baseClassForSelector(BRBorderedView::cls(), selector<"frameDidChange">),
            static_cast<Class*>(GWView::cls()));
    }

    /// A view of 100 by 50 that keeps a child.
    struct Kept {
        Ref<BRBorderedView> view = make<BRBorderedView>();
        Ref<NSView> child = alloc<NSView>()->initWithFrame(NSMakeRect(7, 7, 7, 7));

        Kept(std::int32_t edges, bool autosize)
        {
            view->setBorderEdges(edges);
            view->setViewKeptWithinBorderBounds(child.get());
            view->setAutosizeView(autosize);
        }
        NSRect afterResizing()
        {
            view->setFrame(NSMakeRect(10, 10, 100, 50));
            return child->frame();
        }
        test::LogSink log;
    };

    TEST(BRBorderedView, ANewOneHasNoBorder)
    {
        const Ref<BRBorderedView> view = make<BRBorderedView>();
        EXPECT_EQ(view->borderEdges(), 0);
        EXPECT_EQ(view->borderColor(), nullptr);
        EXPECT_EQ(view->viewKeptWithinBorderBounds(), nullptr);
        EXPECT_FALSE(view->autosizeView());
    }

    TEST(BRBorderedView, WithoutEdgesTheChildGetsTheBounds)
    {
        EXPECT_EQ(Kept(0, true).afterResizing(), NSMakeRect(0, 0, 100, 50));
    }

    TEST(BRBorderedView, LeftAndBottomTakeTwoPointsOffTheSize)
    {
        EXPECT_EQ(Kept(BRBorderEdgeLeft | BRBorderEdgeBottom, true).afterResizing(),
            NSMakeRect(1, 1, 98, 48));
    }

    TEST(BRBorderedView, RightAndTopTakeOnePointOffTheSize)
    {
        EXPECT_EQ(Kept(BRBorderEdgeRight | BRBorderEdgeTop, true).afterResizing(),
            NSMakeRect(0, 0, 99, 49));
    }

    TEST(BRBorderedView, AllEdgesTogetherTakeThree)
    {
        EXPECT_EQ(Kept(kAllEdges, true).afterResizing(), NSMakeRect(1, 1, 97, 47));
    }

    TEST(BRBorderedView, BitsThatNameNoEdgeAreIgnored)
    {
        EXPECT_EQ(Kept(0x7FFFFFF0, true).afterResizing(), NSMakeRect(0, 0, 100, 50));
    }

    TEST(BRBorderedView, TheChildIsLeftAloneUnlessItIsAutosized)
    {
        EXPECT_EQ(Kept(kAllEdges, false).afterResizing(), NSMakeRect(7, 7, 7, 7));
    }

    TEST(BRBorderedView, EachChangeIsLoggedWithTheChild)
    {
        for (const bool autosize : { false, true }) {
            Kept kept(kAllEdges, autosize);
            kept.afterResizing();
            const std::string child = utf8Of(kept.child->description().get());
            EXPECT_EQ(kept.log.text(), "_viewKeptWithinBorderBounds.frame " + child + "\n");
        }
    }

    TEST(BRBorderedView, WithoutAChildNothingIsLogged)
    {
        const test::LogSink log;
        const Ref<BRBorderedView> view = make<BRBorderedView>();
        view->setFrameSize({ 10, 10 });
        EXPECT_EQ(log.text(), "");
    }

    TEST(BRBorderedView, TheFirstDrawingSetsTheColor)
    {
        HeadlessScreen screen { 100, 100 };
        const auto view = screen.add<BRBorderedView>(NSMakeRect(10, 10, 80, 80));
        screen.process();
        EXPECT_TRUE(maybe(view->borderColor())
                        ->isEqual(NSColor::cls().colorWithWhite_alpha(0.62, 1).get()));
    }

    /// Answers which of the four lines are red, as letters.
    std::string redEdges(HeadlessScreen& screen, BRBorderedView& view, std::int32_t edges)
    {
        view.setBorderColor(NSColor::cls().redColor().get());
        view.setBorderEdges(edges);
        view.setNeedsDisplay(true);
        const display::Snapshot seen = screen.pixels();
        constexpr std::uint32_t kRedPixel = 0xFFFF0000;
        std::string found;
        found += seen.at(10, 50) == kRedPixel ? "L" : "";
        found += seen.at(50, 10) == kRedPixel ? "T" : "";
        found += seen.at(89, 50) == kRedPixel ? "R" : "";
        found += seen.at(50, 89) == kRedPixel ? "B" : "";
        found += seen.at(11, 50) == kRedPixel || seen.at(50, 50) == kRedPixel ? "inside" : "";
        return found;
    }

    TEST(BRBorderedView, EachEdgeIsDrawnOnePointWide)
    {
        HeadlessScreen screen { 100, 100 };
        const auto view = screen.add<BRBorderedView>(NSMakeRect(10, 10, 80, 80));
        EXPECT_EQ(redEdges(screen, *view, 0), "");
        EXPECT_EQ(redEdges(screen, *view, BRBorderEdgeLeft), "L");
        EXPECT_EQ(redEdges(screen, *view, BRBorderEdgeTop), "T");
        EXPECT_EQ(redEdges(screen, *view, BRBorderEdgeRight), "R");
        EXPECT_EQ(redEdges(screen, *view, BRBorderEdgeBottom), "B");
        EXPECT_EQ(redEdges(screen, *view, kAllEdges), "LTRB");
    }

    TEST(BRBorderedView, EachEdgeReachesFromCornerToCorner)
    {
        HeadlessScreen screen { 100, 100 };
        const auto view = screen.add<BRBorderedView>(NSMakeRect(10, 10, 80, 80));
        const auto corners = [&](std::int32_t edges) {
            redEdges(screen, *view, edges);
            const display::Snapshot seen = screen.pixels();
            std::string found;
            for (const auto& [x, y] : { std::pair { 10, 10 }, { 89, 10 }, { 10, 89 }, { 89, 89 } })
                found += seen.at(x, y) == 0xFFFF0000 ? '+' : '-';
            return found;
        };
        EXPECT_EQ(corners(BRBorderEdgeLeft), "+-+-");
        EXPECT_EQ(corners(BRBorderEdgeRight), "-+-+");
        EXPECT_EQ(corners(BRBorderEdgeTop), "++--");
        EXPECT_EQ(corners(BRBorderEdgeBottom), "--++");
    }

    TEST(BRBorderedView, LinesBeginAtZeroAndEndAtTheBounds)
    {
        HeadlessScreen screen { 100, 100 };
        const auto view = screen.add<BRBorderedView>(NSMakeRect(10, 10, 80, 80));
        view->setBoundsOrigin({ -5, 0 });
        EXPECT_EQ(redEdges(screen, *view, BRBorderEdgeLeft), "");
        EXPECT_EQ(screen.pixels().at(15, 50), 0xFFFF0000);
        EXPECT_EQ(redEdges(screen, *view, BRBorderEdgeRight), "R");
    }

}

}
