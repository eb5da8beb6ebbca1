// SPDX-License-Identifier: Apache-2.0
#include "viewkit/NSScrollView+GWExtensions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <vector>

#include "support/ScrolledDocument.h"
#include "support/VirtualClock.h"

namespace brindle {

namespace {

    using test::Scrolled;

    /// A scroll view of 200 on a document of 1000, and a clock that is turned by hand.
    struct ScrollViewExtension : testing::Test {
        test::VirtualClock clock;
        Scrolled s;
        std::vector<double> portions;

        void scrollTo(CGFloat y) { s.view->contentView()->scrollToPoint({ 0, y }); }
        void follow()
        {
            setDidScrollBlock(*s.view, [this](double portion) { portions.push_back(portion); });
        }
    };

    TEST_F(ScrollViewExtension, AnswersItsDocument)
    {
        EXPECT_EQ(scrollDocumentView(*s.view), s.document.get());
    }

    TEST_F(ScrollViewExtension, AtTheVeryTopThePortionIsAFifth)
    {
        EXPECT_EQ(scrollPortionY(*s.view), 0.2);
    }

    TEST_F(ScrollViewExtension, WithBothMiddlesInOnePlaceThePortionIsOne)
    {
        scrollTo(400);
        EXPECT_EQ(scrollPortionY(*s.view), 1);
    }

    TEST_F(ScrollViewExtension, ThePortionIsNotLimitedToOne)
    {
        scrollTo(800);
        EXPECT_EQ(scrollPortionY(*s.view), 1.8);
    }

    TEST_F(ScrollViewExtension, WithoutADocumentThePortionIsNoNumber)
    {
        s.view->setDocumentView(nullptr);
        EXPECT_TRUE(std::isnan(scrollPortionY(*s.view)));
        setScrollPortionY(*s.view, 1);
        EXPECT_EQ(s.y(), 0);
    }

    TEST_F(ScrollViewExtension, ThePortionOneScrollsToTheMiddle)
    {
        setScrollPortionY(*s.view, 1);
        EXPECT_EQ(s.y(), 400);
    }

    TEST_F(ScrollViewExtension, SettingAPortionIsTheInverseOfReadingIt)
    {
        for (const double portion : { 0.2, 0.333, 0.7, 1.25, 1.8 }) {
            setScrollPortionY(*s.view, portion);
            EXPECT_NEAR(scrollPortionY(*s.view), portion, 1e-12);
        }
    }

    TEST_F(ScrollViewExtension, APortionPastTheEndStopsThere)
    {
        setScrollPortionY(*s.view, 9);
        EXPECT_EQ(s.y(), 800);
        setScrollPortionY(*s.view, -9);
        EXPECT_EQ(s.y(), 0);
    }

    TEST_F(ScrollViewExtension, APortionThatIsNoNumberChangesNothing)
    {
        scrollTo(50);
        setScrollPortionY(*s.view, std::nan(""));
        EXPECT_EQ(s.y(), 50);
    }

    TEST_F(ScrollViewExtension, ScrollsToTopAndBottom)
    {
        scrollToBottom(*s.view);
        EXPECT_EQ(s.y(), 800);
        scrollToTop(*s.view);
        EXPECT_EQ(s.y(), 0);
    }

    TEST_F(ScrollViewExtension, TheScrollerIsFifteenWideOrElevenWhenSmall)
    {
        EXPECT_EQ(scrollerWidth(*s.view), 15);
        s.view->setHasVerticalScroller(true);
        s.view->verticalScroller()->setControlSize(NSControlSizeSmall);
        EXPECT_EQ(scrollerWidth(*s.view), 11);
    }

    // ---- the delay

    TEST_F(ScrollViewExtension, TheDelayIsKeptInSinglePrecision)
    {
        setDidScrollDelay(*s.view, 0.1);
        EXPECT_EQ(didScrollDelay(*s.view), 0.10000000149011612);
    }

    TEST_F(ScrollViewExtension, TheDelayIsZeroAtFirst) { EXPECT_EQ(didScrollDelay(*s.view), 0); }

    TEST_F(ScrollViewExtension, ADelayOfZeroIsTheOrdinaryOne)
    {
        setDidScrollDelay(*s.view, 5);
        setDidScrollDelay(*s.view, 0);
        follow();
        scrollTo(400);
        clock.advance(0.379);
        EXPECT_TRUE(portions.empty());
        clock.advance(0.002);
        EXPECT_EQ(portions, (std::vector<double> { 1 }));
    }

    TEST_F(ScrollViewExtension, AShorterDelaySettlesSooner)
    {
        setDidScrollDelay(*s.view, 0.1);
        follow();
        scrollTo(400);
        clock.advance(0.11);
        EXPECT_EQ(portions.size(), 1u);
    }

    // ---- closures

    TEST_F(ScrollViewExtension, TheClosureRunsOnceAfterTheLastStep)
    {
        follow();
        for (const CGFloat y : { 100, 200, 300, 400 }) {
            scrollTo(y);
            clock.advance(0.2);
        }
        EXPECT_TRUE(portions.empty());
        clock.advance(1);
        EXPECT_EQ(portions, (std::vector<double> { 1 }));
    }

    TEST_F(ScrollViewExtension, ThePortionIsThatOfTheMomentItRuns)
    {
        follow();
        scrollTo(100);
        s.view->contentView()->setPostsBoundsChangedNotifications(false);
        scrollTo(400);
        clock.advance(1);
        EXPECT_EQ(portions, (std::vector<double> { 1 }));
    }

    TEST_F(ScrollViewExtension, AStepThatMovesNothingStartsNothing)
    {
        follow();
        scrollTo(0);
        clock.advance(1);
        EXPECT_TRUE(portions.empty());
    }

    TEST_F(ScrollViewExtension, OfTwoClosuresTheLaterRuns)
    {
        follow();
        std::vector<double> later;
        setDidScrollBlock(*s.view, [&](double portion) { later.push_back(portion); });
        scrollTo(400);
        clock.advance(1);
        EXPECT_TRUE(portions.empty());
        EXPECT_EQ(later, (std::vector<double> { 1 }));
    }

    TEST_F(ScrollViewExtension, SettingAClosureMakesTheContentTell)
    {
        s.view->contentView()->setPostsBoundsChangedNotifications(false);
        follow();
        EXPECT_TRUE(s.view->contentView()->postsBoundsChangedNotifications());
    }

    TEST_F(ScrollViewExtension, AnswersTheClosuresThatWereSet)
    {
        EXPECT_FALSE(didScrollBlock(*s.view));
        EXPECT_FALSE(scrollingBlock(*s.view));
        double seen = 0;
        setDidScrollBlock(*s.view, [&](double portion) { seen = portion; });
        didScrollBlock (*s.view)(7);
        EXPECT_EQ(seen, 7);
        setDidScrollBlock(*s.view, nullptr);
        EXPECT_FALSE(didScrollBlock(*s.view));
    }

    TEST_F(ScrollViewExtension, TheLiveClosureRunsAtEachStep)
    {
        const auto places
            = std::make_shared<std::vector<CGFloat>>(); // the closure outlives the test
        setScrollingBlock(*s.view, [places](NSRect rect) { places->push_back(rect.origin.y); });
        scrollTo(100);
        scrollTo(5000);
        scrollTo(6000);
        EXPECT_EQ(*places, (std::vector<CGFloat> { 100, 800 }));
    }

    TEST_F(ScrollViewExtension, ASecondLiveClosureRunsBesideTheFirst)
    {
        const auto log = std::make_shared<std::string>();
        setScrollingBlock(*s.view, [log](NSRect) { *log += "first "; });
        setScrollingBlock(*s.view, [log](NSRect) { *log += "second "; });
        scrollTo(100);
        EXPECT_EQ(*log, "first second ");
    }

    TEST_F(ScrollViewExtension, TheLiveClosureOfAViewThatIsGoneIsNotThatOfTheNext)
    {
        int calls = 0;
        {
            const Scrolled gone;
            setScrollingBlock(*gone.view, [&calls](NSRect) { ++calls; });
        }
        std::vector<Scrolled> others(50); // some come to lie where it lay
        for (const Scrolled& other : others)
            other.view->contentView()->scrollToPoint({ 0, 10 });
        EXPECT_EQ(calls, 0);
    }

    TEST_F(ScrollViewExtension, WithTheScrollViewGoneTheLiveClosureGetsTheZeroRectangle)
    {
        const auto seen = std::make_shared<NSRect>(NSMakeRect(1, 1, 1, 1));
        setScrollingBlock(*s.view, [seen](NSRect rect) { *seen = rect; });
        const Ref<NSClipView> clip = s.view->contentView();
        s.view = nullptr;
        clip->scrollToPoint({ 0, 50 });
        EXPECT_EQ(*seen, NSZeroRect);
    }

    // ---- closures that change what they follow

    TEST_F(ScrollViewExtension, TheLiveClosureMayScrollAgain)
    {
        setScrollingBlock(*s.view, [this](NSRect visible) {
            if (NSMinY(visible) < 300)
                scrollTo(NSMinY(visible) + 100);
        });
        scrollTo(50);
        EXPECT_EQ(s.y(), 350);
    }

    TEST_F(ScrollViewExtension, TwoPlacesThatALiveClosureGoesToAndFroEnd)
    {
        int calls = 0;
        setScrollingBlock(*s.view, [this, &calls](NSRect visible) {
            ++calls;
            scrollTo(NSMinY(visible) == 100 ? 200 : 100);
        });
        scrollTo(100);
        EXPECT_LE(calls, 32);
    }

    TEST_F(ScrollViewExtension, TheSettledClosureMayScrollAgain)
    {
        setDidScrollBlock(*s.view, [this](double portion) {
            portions.push_back(portion);
            if (portion < 1)
                setScrollPortionY(*s.view, 1);
        });
        scrollTo(50);
        clock.advance(0.38);
        clock.advance(0.38);
        clock.advance(10);
        EXPECT_EQ(portions, (std::vector<double> { 0.3, 1 }));
    }

    TEST_F(ScrollViewExtension, TheSettledClosureMayLetTheDocumentGo)
    {
        setDidScrollBlock(*s.view, [this](double) { s.view->setDocumentView(nullptr); });
        scrollTo(50);
        clock.advance(1);
        EXPECT_EQ(s.view->documentView(), nullptr);
    }

    TEST_F(ScrollViewExtension, TheLiveClosureMayLetTheScrollViewGo)
    {
        auto lone = std::make_unique<Scrolled>();
        setScrollingBlock(*lone->view, [&lone](NSRect) { lone = nullptr; });
        const Ref<NSClipView> clip = lone->view->contentView();
        clip->scrollToPoint({ 0, 50 });
        EXPECT_EQ(lone, nullptr);
    }

}

}
