// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <limits>

#include "appkit/NSAnimationContext.h"
#include "appkit/NSScrollView.h"
#include "support/HeadlessScreen.h"
#include "support/ScrolledDocument.h"

namespace brindle {

namespace {

    using test::Notes;
    using test::Scrolled;

    /// A scroll view of 100 by 200 on a screen, at its bottom left.
    struct ScrollingTest : testing::Test {
        HeadlessScreen screen;
        Scrolled s;

        void SetUp() override
        {
            s.view->setHasVerticalScroller(true);
            screen.window().contentView()->addSubview(s.view.get());
            screen.pointer().moveTo({ 50, 100 });
        }
        void wheel(double x, double y, bool precise = true)
        {
            screen.pointer().scroll(x, y, precise);
        }
        /// Moves the content as a host with an animation does.
        void moveTo(CGFloat y)
        {
            cast<NSClipView>(s.view->contentView()->animator())->setBoundsOrigin({ 0, y });
        }
        void key(char16_t key)
        {
            screen.window().makeKeyAndOrderFront(nullptr);
            screen.window().makeFirstResponder(nullptr);
            s.view->keyDown(keyEvent(key).get());
        }
        Ref<NSEvent> keyEvent(char16_t character)
        {
            const Ref<NSString> text = NSString::cls().stringWithCharacters_length(
                reinterpret_cast<const unichar*>(&character), 1);
            return NSEvent::cls()
                .keyEventWithType_location_modifierFlags_timestamp_windowNumber_context_characters_charactersIgnoringModifiers_isARepeat_keyCode(
                    NSKeyDown, {}, 0, 0, screen.window().windowNumber(), nullptr, text.get(),
                    text.get(), false, 0);
        }
    };

    // ---- the wheel

    TEST_F(ScrollingTest, AWheelThatPullsContentUpShowsWhatIsBelow)
    {
        wheel(0, -30);
        EXPECT_EQ(s.y(), 30);
        wheel(0, 10);
        EXPECT_EQ(s.y(), 20);
    }

    TEST_F(ScrollingTest, AWheelStopsAtTheEnds)
    {
        wheel(0, 50);
        EXPECT_EQ(s.y(), 0);
        wheel(0, -5000);
        EXPECT_EQ(s.y(), 800);
    }

    TEST_F(ScrollingTest, AStepOfAWheelCountsInLines)
    {
        wheel(0, -40, false);
        EXPECT_EQ(s.y(), 40);
        s.view->setVerticalLineScroll(20);
        wheel(0, -40, false);
        EXPECT_EQ(s.y(), 120);
    }

    TEST_F(ScrollingTest, PointsAreNotLines)
    {
        s.view->setVerticalLineScroll(20);
        wheel(0, -40, true);
        EXPECT_EQ(s.y(), 40);
    }

    TEST_F(ScrollingTest, PartsOfAPixelAddUp)
    {
        for (int i = 0; i < 4; ++i)
            wheel(0, -0.25);
        EXPECT_EQ(s.y(), 1);
    }

    TEST_F(ScrollingTest, OnlyTheGreaterDirectionCounts)
    {
        s.document->setFrameSize({ 500, 1000 });
        wheel(-5, -30);
        EXPECT_EQ(s.place(), NSMakePoint(0, 30));
        s.view->setUsesPredominantAxisScrolling(false);
        wheel(-5, -30);
        EXPECT_EQ(s.place(), NSMakePoint(5, 60));
    }

    TEST_F(ScrollingTest, AWheelThatIsNoNumberMovesNothing)
    {
        wheel(0, std::numeric_limits<double>::quiet_NaN());
        wheel(std::numeric_limits<double>::infinity(), 0);
        EXPECT_EQ(s.place(), NSZeroPoint);
    }

    TEST_F(ScrollingTest, AnUprightDocumentFollowsTheSameHand)
    {
        s.document->upright_ = true;
        s.view->contentView()->scrollToPoint({ 0, 800 });
        wheel(0, -30);
        EXPECT_EQ(s.y(), 770);
    }

    TEST_F(ScrollingTest, AWheelWithNothingToScrollGoesToTheViewAround)
    {
        Scrolled inner({ {}, { 50, 300 } }, { 50, 50 });
        s.document->addSubview(inner.view.get());
        screen.pointer().moveTo({ 20, 100 });
        wheel(0, -30);
        EXPECT_EQ(s.y(), 30);
    }

    TEST_F(ScrollingTest, AWheelMovesTheInnerView)
    {
        Scrolled inner({ {}, { 50, 300 } }, { 50, 900 });
        s.document->addSubview(inner.view.get());
        screen.pointer().moveTo({ 20, 100 });
        wheel(0, -30);
        EXPECT_EQ(inner.y(), 30);
        EXPECT_EQ(s.y(), 0);
    }

    TEST_F(ScrollingTest, TheDocumentMayAdjustAStep)
    {
        s.document->grid_ = 25;
        wheel(0, -30);
        EXPECT_EQ(s.y(), 25);
    }

    TEST_F(ScrollingTest, AWheelTakesOverContentThatMoves)
    {
        NSAnimationContext::cls().beginGrouping();
        NSAnimationContext::cls().currentContext()->setDuration(1);
        moveTo(800);
        NSAnimationContext::cls().endGrouping();
        screen.advance(0.5);
        wheel(0, 1);
        const CGFloat place = s.y();
        EXPECT_LT(place, 800);
        screen.advance(1);
        EXPECT_EQ(s.y(), place);
    }

    TEST_F(ScrollingTest, AWheelAlsoTakesOverContentThatWhoWaitsMovesAgain)
    {
        NSAnimationContext::cls().runAnimationGroup_completionHandler(
            [&](NSAnimationContext*) { moveTo(800); }, [&] { moveTo(0); });
        screen.advance(0.1);
        wheel(0, 1);
        const CGFloat place = s.y();
        EXPECT_GT(place, 0);
        screen.advance(1);
        EXPECT_EQ(s.y(), place);
    }

    TEST_F(ScrollingTest, AWheelTellsAChainOfMovementsTwiceAtMost)
    {
        int ends = 0;
        bool goesOn = true;
        const std::function<void()> next = [&] {
            const CGFloat y = ++ends % 2 ? 800 : 0;
            NSAnimationContext::cls().runAnimationGroup_completionHandler(
                [&](NSAnimationContext*) { moveTo(y); },
                [&] {
                    if (goesOn)
                        next();
                });
        };
        next();
        screen.advance(0.1);
        const int before = ends;
        wheel(0, 1);
        EXPECT_LE(ends, before + 2);
        goesOn = false;
        screen.advance(1);
    }

    // ---- what is told

    TEST_F(ScrollingTest, EachStepOfAWheelPostsOnce)
    {
        const Notes notes(s.view->contentView().get(), { NSViewBoundsDidChangeNotification });
        wheel(0, -30);
        EXPECT_EQ(notes.count, 1);
        wheel(0, 900);
        wheel(0, 900);
        EXPECT_EQ(notes.count, 2);
    }

    TEST_F(ScrollingTest, LiveScrollingBeginsGoesOnAndEnds)
    {
        const Notes notes(s.view.get(),
            { NSScrollViewWillStartLiveScrollNotification, NSScrollViewDidLiveScrollNotification,
                NSScrollViewDidEndLiveScrollNotification });
        wheel(0, -30);
        screen.advance(0.1);
        wheel(0, -30);
        screen.advance(1);
        EXPECT_EQ(notes.log,
            "NSScrollViewWillStartLiveScrollNotification NSScrollViewDidLiveScrollNotification "
            "NSScrollViewDidLiveScrollNotification NSScrollViewDidEndLiveScrollNotification ");
    }

    TEST_F(ScrollingTest, AProgramThatScrollsIsNotTheUser)
    {
        const Notes notes(s.view.get(), { NSScrollViewDidLiveScrollNotification });
        s.view->contentView()->scrollToPoint({ 0, 50 });
        EXPECT_EQ(notes.count, 0);
    }

    // ---- scrollers

    TEST_F(ScrollingTest, AKnobThatIsDraggedMovesTheContent)
    {
        // A knob of 39.2 on a way of 196 from 2: dragged half of what is left.
        screen.pointer().press({ 95, 190 });
        screen.pointer().dragTo({ 95, 190 - 78.4 });
        screen.pointer().release();
        EXPECT_NEAR(s.y(), 400, 1);
        EXPECT_EQ(s.view->verticalScroller()->hitPart(), NSScrollerNoPart);
    }

    TEST_F(ScrollingTest, AKnobStopsAtTheEnd)
    {
        screen.pointer().press({ 95, 190 });
        screen.pointer().dragTo({ 95, -500 });
        screen.pointer().release();
        EXPECT_EQ(s.y(), 800);
    }

    TEST_F(ScrollingTest, APressBelowTheKnobTurnsAPage)
    {
        screen.pointer().click({ 95, 10 });
        EXPECT_EQ(s.y(), 190);
    }

    TEST_F(ScrollingTest, APressAboveTheKnobTurnsAPageBack)
    {
        s.view->contentView()->scrollToPoint({ 0, 800 });
        screen.pointer().click({ 95, 190 });
        EXPECT_EQ(s.y(), 610);
    }

    TEST_F(ScrollingTest, APressThatIsHeldTurnsPagesUntilTheKnobIsThere)
    {
        screen.pointer().press({ 95, 60 });
        screen.process(); // lets time pass without end
        const Ref<NSScroller> scroller = s.view->verticalScroller();
        const NSPoint place = scroller->convertPoint_fromView({ 95, 60 }, nullptr);
        EXPECT_TRUE(NSPointInRect(place, scroller->rectForPart(NSScrollerKnob)));
        EXPECT_EQ(scroller->hitPart(), NSScrollerNoPart);
    }

    TEST_F(ScrollingTest, AKnobInHandIsOneLiveScroll)
    {
        const Notes notes(s.view.get(),
            { NSScrollViewWillStartLiveScrollNotification,
                NSScrollViewDidEndLiveScrollNotification });
        screen.pointer().press({ 95, 190 });
        screen.pointer().dragTo({ 95, 150 });
        screen.pointer().dragTo({ 95, 120 });
        screen.pointer().release();
        EXPECT_EQ(notes.count, 2);
    }

    TEST_F(ScrollingTest, AKnobMayScrollWhenItIsReleased)
    {
        s.view->setScrollsDynamically(false);
        const Notes notes(s.view->contentView().get(), { NSViewBoundsDidChangeNotification });
        screen.pointer().press({ 95, 190 });
        screen.pointer().dragTo({ 95, 150 });
        screen.pointer().dragTo({ 95, 190 - 78.4 });
        screen.pointer().release();
        EXPECT_EQ(notes.count, 1);
        EXPECT_NEAR(s.y(), 400, 1);
    }

    TEST_F(ScrollingTest, AViewMayGoInTheActionOfItsScroller)
    {
        const Ref<NSObject> token
            = NSNotificationCenter::cls()
                  .defaultCenter()
                  ->addObserverForName_object_queue_usingBlock(NSViewBoundsDidChangeNotification,
                      s.view->contentView().get(), nullptr, [&](NSNotification*) {
                          if (!s.view)
                              return;
                          s.view->removeFromSuperview();
                          s.view->setDocumentView(nullptr);
                          s.view = nullptr;
                      });
        screen.pointer().press({ 95, 190 });
        screen.pointer().dragTo({ 95, 150 });
        screen.pointer().dragTo({ 95, 100 });
        screen.pointer().release();
        NSNotificationCenter::cls().defaultCenter()->removeObserver(token.get());
        EXPECT_FALSE(s.view);
    }

    // ---- the keyboard

    TEST_F(ScrollingTest, PagesAreTurnedByKeys)
    {
        key(NSPageDownFunctionKey);
        EXPECT_EQ(s.y(), 190);
        key(NSPageUpFunctionKey);
        EXPECT_EQ(s.y(), 0);
    }

    TEST_F(ScrollingTest, EndAndHomeGoToTheEnds)
    {
        key(NSEndFunctionKey);
        EXPECT_EQ(s.y(), 800);
        key(NSHomeFunctionKey);
        EXPECT_EQ(s.y(), 0);
    }

    TEST_F(ScrollingTest, ArrowsGoByLines)
    {
        key(NSDownArrowFunctionKey);
        key(NSDownArrowFunctionKey);
        key(NSUpArrowFunctionKey);
        EXPECT_EQ(s.y(), 10);
    }

    TEST_F(ScrollingTest, EndOfAnUprightDocumentIsItsBottom)
    {
        s.document->upright_ = true;
        s.view->contentView()->scrollToPoint({ 0, 500 });
        s.view->send<"scrollToEndOfDocument:">(static_cast<NSObject*>(nullptr));
        EXPECT_EQ(s.y(), 0);
    }

}

}
