// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSClipView.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "appkit/NSAnimationContext.h"
#include "foundation/Exceptions.h"
#include "support/HeadlessScreen.h"
#include "support/Numbers.h"
#include "support/ScrolledDocument.h"

namespace brindle {

namespace {

    using test::Notes;
    using test::Scrolled;

    TEST(ClipView, ScrollsToAPoint)
    {
        const Scrolled s;
        s.view->contentView()->scrollToPoint({ 0, 120 });
        EXPECT_EQ(s.place(), NSMakePoint(0, 120));
    }

    TEST(ClipView, StopsAtTheEndsOfTheDocument)
    {
        const Scrolled s;
        s.view->contentView()->scrollToPoint({ 500, 5000 });
        EXPECT_EQ(s.place(), NSMakePoint(0, 800));
        s.view->contentView()->scrollToPoint({ -1, -1 });
        EXPECT_EQ(s.place(), NSMakePoint(0, 0));
    }

    TEST(ClipView, KeepsBoundsThatAreSetInside)
    {
        const Scrolled s;
        s.view->contentView()->setBoundsOrigin({ 0, 5000 });
        EXPECT_EQ(s.y(), 800);
        s.view->contentView()->setBounds(NSMakeRect(0, -20, 100, 200));
        EXPECT_EQ(s.y(), 0);
    }

    TEST(ClipView, NaNChangesNothing)
    {
        const Scrolled s;
        s.view->contentView()->scrollToPoint({ 0, 50 });
        s.view->contentView()->scrollToPoint({ kNaN, kNaN });
        EXPECT_EQ(s.place(), NSMakePoint(0, 50));
    }

    TEST(ClipView, InfinityIsTheEnd)
    {
        const Scrolled s;
        s.view->contentView()->scrollToPoint({ -kInfinity, kInfinity });
        EXPECT_EQ(s.place(), NSMakePoint(0, 800));
    }

    TEST(ClipView, AnswersWhereItWouldScroll)
    {
        const Scrolled s;
        EXPECT_EQ(s.view->contentView()->constrainScrollPoint({ 3, 900 }), NSMakePoint(0, 800));
        EXPECT_EQ(s.view->contentView()->constrainBoundsRect(NSMakeRect(0, 950, 100, 100)),
            NSMakeRect(0, 900, 100, 100));
    }

    TEST(ClipView, TellsEachStepOnce)
    {
        const Scrolled s;
        const Notes notes(s.view->contentView().get(), { NSViewBoundsDidChangeNotification });
        s.view->contentView()->scrollToPoint({ 0, 10 });
        EXPECT_EQ(notes.count, 1);
        s.view->contentView()->scrollToPoint({ 0, 20 });
        EXPECT_EQ(notes.count, 2);
    }

    TEST(ClipView, TellsNothingWhereNothingMoves)
    {
        const Scrolled s;
        s.view->contentView()->scrollToPoint({ 0, 900 });
        const Notes notes(s.view->contentView().get(), { NSViewBoundsDidChangeNotification });
        s.view->contentView()->scrollToPoint({ 0, 900 });
        s.view->contentView()->setBoundsOrigin({ 0, 5000 });
        EXPECT_EQ(notes.count, 0);
    }

    TEST(ClipView, TellsNothingWhenItIsAskedNotTo)
    {
        const Scrolled s;
        const Notes notes(s.view->contentView().get(), { NSViewBoundsDidChangeNotification });
        s.view->contentView()->setPostsBoundsChangedNotifications(false);
        s.view->contentView()->scrollToPoint({ 0, 10 });
        EXPECT_EQ(notes.count, 0);
    }

    TEST(ClipView, AnObserverMayScroll)
    {
        const Scrolled s;
        const Ref<NSClipView> clip = s.view->contentView();
        const Ref<NSObject> token
            = NSNotificationCenter::cls()
                  .defaultCenter()
                  ->addObserverForName_object_queue_usingBlock(
                      NSViewBoundsDidChangeNotification, clip.get(), nullptr, [&](NSNotification*) {
                          clip->scrollToPoint({ 0, 300 });
                      });
        clip->scrollToPoint({ 0, 10 });
        NSNotificationCenter::cls().defaultCenter()->removeObserver(token.get());
        EXPECT_EQ(s.y(), 300);
    }

    TEST(ClipView, ObserversThatNeverAgreeEnd)
    {
        const Scrolled s;
        const Ref<NSClipView> clip = s.view->contentView();
        int steps = 0;
        const Ref<NSObject> token
            = NSNotificationCenter::cls()
                  .defaultCenter()
                  ->addObserverForName_object_queue_usingBlock(
                      NSViewBoundsDidChangeNotification, clip.get(), nullptr, [&](NSNotification*) {
                          clip->scrollToPoint({ 0, ++steps % 2 ? 100.0 : 200.0 });
                      });
        clip->scrollToPoint({ 0, 10 });
        NSNotificationCenter::cls().defaultCenter()->removeObserver(token.get());
        EXPECT_EQ(steps, 32);
    }

    TEST(ClipView, IsFlippedAsItsDocument)
    {
        EXPECT_TRUE(Scrolled().view->contentView()->isFlipped());
        const Scrolled upright({ {}, { 100, 200 } }, { 100, 1000 }, true);
        EXPECT_FALSE(upright.view->contentView()->isFlipped());
        EXPECT_FALSE(alloc<NSClipView>()->initWithFrame(NSZeroRect)->isFlipped());
    }

    TEST(ClipView, ComesBackInsideWhenTheDocumentShrinks)
    {
        const Scrolled s;
        s.view->contentView()->scrollToPoint({ 0, 800 });
        s.document->setFrameSize({ 100, 500 });
        EXPECT_EQ(s.y(), 300);
    }

    TEST(ClipView, ComesBackInsideWhenItGrows)
    {
        const Scrolled s;
        s.view->contentView()->scrollToPoint({ 0, 800 });
        s.view->setFrameSize({ 100, 600 });
        EXPECT_EQ(s.y(), 400);
    }

    TEST(ClipView, AnswersTheDocumentsRectangleGrownToItsOwn)
    {
        const Scrolled s(NSMakeRect(0, 0, 100, 200), { 40, 1000 });
        EXPECT_EQ(s.view->contentView()->documentRect(), NSMakeRect(0, 0, 100, 1000));
    }

    TEST(ClipView, WithoutADocumentNothingShowsAndNothingMoves)
    {
        const Ref<NSClipView> clip
            = cast<NSClipView>(alloc<NSClipView>()->initWithFrame(NSMakeRect(0, 0, 100, 200)));
        clip->scrollToPoint({ 30, 40 });
        EXPECT_EQ(clip->bounds().origin, NSZeroPoint);
        EXPECT_EQ(clip->documentVisibleRect(), NSZeroRect);
        EXPECT_EQ(clip->documentRect(), NSMakeRect(0, 0, 100, 200));
    }

    TEST(ClipView, ForgetsADocumentThatIsTakenAway)
    {
        const Scrolled s;
        s.document->removeFromSuperview();
        EXPECT_FALSE(s.view->documentView());
        s.document->setFrameSize({ 10, 10 });
        EXPECT_EQ(s.view->documentVisibleRect(), NSZeroRect);
    }

    TEST(ClipView, RefusesWhatItLiesIn)
    {
        const Ref<NSView> outer = alloc<NSView>()->initWithFrame(NSMakeRect(0, 0, 10, 10));
        const Ref<NSClipView> clip = make<NSClipView>();
        outer->addSubview(clip.get());
        EXPECT_THROW(clip->setDocumentView(outer.get()), Exception);
        EXPECT_FALSE(clip->documentView());
    }

    TEST(ClipView, MovesByDegreesAndTellsEachStepOnce)
    {
        HeadlessScreen screen;
        const Scrolled s;
        screen.window().contentView()->addSubview(s.view.get());
        const Ref<NSClipView> clip = s.view->contentView();
        double last = -1;
        int steps = 0;
        bool repeated = false;
        const Ref<NSObject> token
            = NSNotificationCenter::cls()
                  .defaultCenter()
                  ->addObserverForName_object_queue_usingBlock(
                      NSViewBoundsDidChangeNotification, clip.get(), nullptr, [&](NSNotification*) {
                          ++steps;
                          repeated = repeated || clip->bounds().origin.y == last;
                          last = clip->bounds().origin.y;
                      });
        NSAnimationContext::cls().beginGrouping();
        NSAnimationContext::cls().currentContext()->setDuration(0.2);
        cast<NSClipView>(clip->animator())->setBoundsOrigin({ 0, 400 });
        NSAnimationContext::cls().endGrouping();
        screen.advance(0.1);
        EXPECT_GT(s.y(), 0);
        EXPECT_LT(s.y(), 400);
        screen.advance(0.2);
        NSNotificationCenter::cls().defaultCenter()->removeObserver(token.get());
        EXPECT_EQ(s.y(), 400);
        EXPECT_GT(steps, 5);
        EXPECT_FALSE(repeated);
    }

    // ---- what every view can do

    TEST(ViewScrolling, PutsAPointAtTheOriginOfWhatShows)
    {
        const Scrolled s;
        scrollPoint(*s.document, { 0, 250 });
        EXPECT_EQ(s.view->documentVisibleRect(), NSMakeRect(0, 250, 100, 200));
    }

    TEST(ViewScrolling, PutsAPointOfAnUprightDocumentAtTheBottom)
    {
        const Scrolled s({ {}, { 100, 200 } }, { 100, 1000 }, true);
        scrollPoint(*s.document, { 0, 250 });
        EXPECT_EQ(s.view->documentVisibleRect(), NSMakeRect(0, 250, 100, 200));
    }

    TEST(ViewScrolling, PutsAPointOfAnUprightViewInAFlippedDocumentAtTheBottom)
    {
        const Scrolled s;
        const Ref<NSView> inner = alloc<NSView>()->initWithFrame(NSMakeRect(0, 100, 100, 600));
        s.document->addSubview(inner.get());
        scrollPoint(*inner, { 0, 150 });
        EXPECT_EQ(inner->convertPoint_fromView({ 0, s.y() + 200 }, s.document.get()).y, 150);
    }

    TEST(ViewScrolling, StopsAtTheEnd)
    {
        const Scrolled s;
        scrollPoint(*s.document, { 0, 99999 });
        EXPECT_EQ(s.y(), 800);
    }

    TEST(ViewScrolling, DoesNothingWithoutAClipView)
    {
        const Ref<NSView> view = make<NSView>();
        scrollPoint(*view, { 0, 10 });
        EXPECT_FALSE(scrollRectToVisible(*view, NSMakeRect(0, 0, 5, 5)));
        EXPECT_FALSE(autoscroll(*view, nullptr));
        EXPECT_EQ(view->bounds().origin, NSZeroPoint);
    }

    TEST(ViewScrolling, ShowsARectangleBelowAtTheBottom)
    {
        const Scrolled s;
        EXPECT_TRUE(scrollRectToVisible(*s.document, NSMakeRect(0, 300, 10, 20)));
        EXPECT_EQ(s.y(), 120);
    }

    TEST(ViewScrolling, ShowsARectangleAboveAtTheTop)
    {
        const Scrolled s;
        scrollPoint(*s.document, { 0, 500 });
        EXPECT_TRUE(scrollRectToVisible(*s.document, NSMakeRect(0, 300, 10, 20)));
        EXPECT_EQ(s.y(), 300);
    }

    TEST(ViewScrolling, StaysWhereTheRectangleShows)
    {
        const Scrolled s;
        EXPECT_FALSE(scrollRectToVisible(*s.document, NSMakeRect(0, 180, 10, 20)));
        EXPECT_EQ(s.y(), 0);
    }

    TEST(ViewScrolling, ShowsTheBeginningOfWhatIsTooLarge)
    {
        const Scrolled s;
        EXPECT_TRUE(scrollRectToVisible(*s.document, NSMakeRect(0, 300, 10, 400)));
        EXPECT_EQ(s.y(), 300);
        EXPECT_FALSE(scrollRectToVisible(*s.document, NSMakeRect(0, 250, 10, 400)));
    }

    TEST(ViewScrolling, ARectangleThatIsNoNumberMovesNothing)
    {
        const Scrolled s;
        EXPECT_FALSE(scrollRectToVisible(*s.document, NSMakeRect(kNaN, kNaN, kNaN, kNaN)));
        EXPECT_EQ(s.y(), 0);
    }

    NSEvent* dragAt(NSWindow& window, NSPoint place)
    {
        static Ref<NSEvent> event;
        event
            = NSEvent::cls()
                  .mouseEventWithType_location_modifierFlags_timestamp_windowNumber_context_eventNumber_clickCount_pressure(
                      NSLeftMouseDragged, place, 0, 0, window.windowNumber(), nullptr, 0, 1, 1);
        return event.get();
    }

    TEST(ViewScrolling, FollowsADragThatLeaves)
    {
        HeadlessScreen screen;
        const Scrolled s(NSMakeRect(0, 50, 100, 200));
        screen.window().contentView()->addSubview(s.view.get());
        EXPECT_FALSE(autoscroll(*s.document, dragAt(screen.window(), { 50, 100 })));
        EXPECT_TRUE(autoscroll(*s.document, dragAt(screen.window(), { 50, 20 })));
        EXPECT_EQ(s.y(), 30);
    }

}

}
