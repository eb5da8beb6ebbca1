// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSAnimationContext.h"

#include <gtest/gtest.h>

#include "appkit/NSView.h"
#include "foundation/Exceptions.h"
#include "foundation/NSNotification.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"
#include "support/VirtualClock.h"

namespace brindle {

/// A view that cannot be moved.
class UnmovableView : public NSView {
    BRINDLE_OBJECT(UnmovableView, NSView)
};

template <> struct UnmovableView::Methods<struct Refusing> {
    static void setFrameOrigin(UnmovableView&, NSPoint) { raise("Fault", "on purpose"); }
    static void table(Builder& t) { t.methods({ { "setFrameOrigin:", imp<setFrameOrigin> } }); }
};
BRINDLE_RECORD(UnmovableView, Refusing)

/// Raises when it is told that its window has another size.
class RaisingDelegate : public NSObject {
    BRINDLE_OBJECT(RaisingDelegate, NSObject)
};
template <> struct RaisingDelegate::Methods<struct Telling> {
    static void didResize(RaisingDelegate&, NSNotification*) { raise("Fault", "on purpose"); }
    static void table(Builder& t) { t.methods({ { "windowDidResize:", imp<didResize> } }); }
};
BRINDLE_RECORD(RaisingDelegate, Telling)

namespace {

    using test::VirtualClock;

    Ref<NSView> box() { return alloc<NSView>()->initWithFrame({ { 0, 0 }, { 10, 10 } }); }

    void linear(double seconds)
    {
        const auto context = NSAnimationContext::cls().currentContext();
        context->setDuration(seconds);
        context->setTimingFunction(
            CAMediaTimingFunction::cls().functionWithName(kCAMediaTimingFunctionLinear).get());
    }

    TEST(AnimationContext, TakesAQuarterOfASecondUnlessTold)
    {
        EXPECT_EQ(NSAnimationContext::cls().currentContext()->duration(), 0.25);
        EXPECT_EQ(NSAnimationContext::cls().currentContext()->timingFunction(), nullptr);
        EXPECT_FALSE(NSAnimationContext::cls().currentContext()->allowsImplicitAnimation());
    }

    TEST(AnimationContext, FadesAViewByTheCurve)
    {
        VirtualClock clock;
        const Ref<NSView> view = box();
        NSAnimationContext::cls().beginGrouping();
        const auto context = NSAnimationContext::cls().currentContext();
        context->setDuration(0.2356);
        context->setTimingFunction(
            CAMediaTimingFunction::cls().functionWithName(kCAMediaTimingFunctionEaseIn).get());
        view->animator()->setAlphaValue(0);
        NSAnimationContext::cls().endGrouping();
        EXPECT_EQ(view->alphaValue(), 1);
        clock.advance(0.1178);
        EXPECT_NEAR(view->alphaValue(), 1 - 0.3153568, 0.08); // of the last frame
        clock.advance(0.1178);
        EXPECT_EQ(view->alphaValue(), 0);
    }

    TEST(AnimationContext, StartsWhenTheOuterGroupEnds)
    {
        VirtualClock clock;
        const Ref<NSView> view = box();
        NSAnimationContext::cls().beginGrouping();
        NSAnimationContext::cls().beginGrouping();
        linear(1);
        view->animator()->setAlphaValue(0);
        NSAnimationContext::cls().endGrouping();
        clock.advance(5);
        EXPECT_EQ(view->alphaValue(), 1);
        NSAnimationContext::cls().endGrouping();
        clock.advance(0.5);
        EXPECT_NEAR(view->alphaValue(), 0.5, 0.02);
        clock.advance(0.5);
        EXPECT_EQ(view->alphaValue(), 0);
    }

    TEST(AnimationContext, InnerGroupsInheritAndForget)
    {
        NSAnimationContext::cls().beginGrouping();
        NSAnimationContext::cls().currentContext()->setDuration(2);
        NSAnimationContext::cls().beginGrouping();
        EXPECT_EQ(NSAnimationContext::cls().currentContext()->duration(), 2);
        NSAnimationContext::cls().currentContext()->setDuration(3);
        NSAnimationContext::cls().endGrouping();
        EXPECT_EQ(NSAnimationContext::cls().currentContext()->duration(), 2);
        NSAnimationContext::cls().endGrouping();
        EXPECT_EQ(NSAnimationContext::cls().currentContext()->duration(), 0.25);
    }

    TEST(AnimationContext, OneEndTooManyBreaksNothing)
    {
        NSAnimationContext::cls().endGrouping();
        NSAnimationContext::cls().endGrouping();
        EXPECT_EQ(NSAnimationContext::cls().currentContext()->duration(), 0.25);
    }

    TEST(AnimationContext, NoDurationChangesAtOnce)
    {
        VirtualClock clock;
        const Ref<NSView> view = box();
        NSAnimationContext::cls().beginGrouping();
        NSAnimationContext::cls().currentContext()->setDuration(0);
        view->animator()->setAlphaValue(0.5);
        EXPECT_EQ(view->alphaValue(), 0.5);
        NSAnimationContext::cls().endGrouping();
    }

    TEST(AnimationContext, MovesWhileAControlOrAMenuIsTracked)
    {
        VirtualClock clock;
        const Ref<NSView> view = box();
        NSAnimationContext::cls().beginGrouping();
        linear(1);
        view->animator()->setAlphaValue(0);
        NSAnimationContext::cls().endGrouping();
        const auto loop = NSRunLoop::cls().mainRunLoop();
        loop->runUntilIdle(NSEventTrackingRunLoopMode);
        Clock::advance(0.5);
        loop->runUntilIdle(NSEventTrackingRunLoopMode);
        EXPECT_NEAR(view->alphaValue(), 0.5, 0.02);
    }

    TEST(AnimationContext, ANewMovementGoesOnFromWhatIsSeen)
    {
        VirtualClock clock;
        const Ref<NSView> view = box();
        NSAnimationContext::cls().beginGrouping();
        linear(1);
        view->animator()->setAlphaValue(0);
        NSAnimationContext::cls().endGrouping();
        clock.advance(0.5);
        const double seen = view->alphaValue();
        NSAnimationContext::cls().beginGrouping();
        linear(1);
        view->animator()->setAlphaValue(1);
        NSAnimationContext::cls().endGrouping();
        clock.advance(0.1);
        EXPECT_NEAR(view->alphaValue(), seen + (1 - seen) * 0.1, 0.02);
        clock.advance(0.9);
        EXPECT_EQ(view->alphaValue(), 1);
    }

    TEST(AnimationContext, MovesOneWayOnlyThoughTheEndOfAMovementBeginsAnother)
    {
        VirtualClock clock;
        const Ref<NSView> view = box();
        const auto moveTo = [&view](double alpha, double seconds) {
            NSAnimationContext::cls().runAnimationGroup([&](NSAnimationContext*) {
                linear(seconds);
                view->animator()->setAlphaValue(alpha);
            });
        };
        NSAnimationContext::cls().runAnimationGroup_completionHandler(
            [&](NSAnimationContext*) {
                linear(1);
                view->animator()->setAlphaValue(0);
            },
            [&] { moveTo(0.5, 2); });
        clock.advance(0.5);
        moveTo(1, 0.1);
        clock.advance(0.05);
        moveTo(0.25, 0);
        clock.advance(0.5);
        EXPECT_EQ(view->alphaValue(), 0.25);
    }

    TEST(AnimationContext, MovesFrameOriginAndSize)
    {
        VirtualClock clock;
        const Ref<NSView> view = box();
        NSAnimationContext::cls().beginGrouping();
        linear(1);
        view->animator()->setFrame({ { 100, 50 }, { 30, 20 } });
        NSAnimationContext::cls().endGrouping();
        clock.advance(0.5);
        EXPECT_NEAR(view->frame().origin.x, 50, 2);
        EXPECT_NEAR(view->frame().size.width, 20, 1);
        clock.advance(0.5);
        EXPECT_EQ(view->frame(), NSMakeRect(100, 50, 30, 20));
        view->animator()->setFrameOrigin({ 1, 2 });
        clock.advance(0.25);
        EXPECT_EQ(view->frame(), NSMakeRect(1, 2, 30, 20));
    }

    TEST(AnimationContext, EndsAtItsMomentThoughAnotherMovesJustBefore)
    {
        for (int microseconds = 1; microseconds <= 20; ++microseconds) {
            VirtualClock clock;
            const Ref<NSView> view = box();
            const Ref<NSView> other = box();
            NSAnimationContext::cls().beginGrouping();
            linear(1);
            view->animator()->setFrameOrigin({ 100, 50 });
            NSAnimationContext::cls().endGrouping();
            const double before
                = 0.5 - microseconds * 1e-6; // thirty frames and that much before its end
            clock.advance(before);
            NSAnimationContext::cls().beginGrouping();
            linear(1);
            other->animator()->setFrameOrigin({ 100, 50 });
            NSAnimationContext::cls().endGrouping();
            clock.advance(1 - before + 1e-7); // the clock counts whole nanoseconds
            EXPECT_EQ(view->frame().origin, NSMakePoint(100, 50)) << microseconds;
        }
    }

    TEST(AnimationContext, TellsWhenAllOfAGroupHasEnded)
    {
        VirtualClock clock;
        const Ref<NSView> view = box();
        const Ref<NSView> other = box();
        int told = 0;
        NSAnimationContext::cls().runAnimationGroup_completionHandler(
            [&](NSAnimationContext* context) {
                context->setDuration(0.5);
                view->animator()->setAlphaValue(0);
                context->setDuration(1);
                other->animator()->setAlphaValue(0);
            },
            [&] { ++told; });
        clock.advance(0.75);
        EXPECT_EQ(told, 0);
        EXPECT_EQ(view->alphaValue(), 0);
        clock.advance(0.25);
        EXPECT_EQ(told, 1);
        EXPECT_EQ(other->alphaValue(), 0);
    }

    TEST(AnimationContext, MovesTheOthersAndEndsThoughOneRaises)
    {
        VirtualClock clock;
        const Ref<UnmovableView> refusing = make<UnmovableView>();
        const Ref<NSView> view = box();
        int told = 0;
        NSAnimationContext::cls().runAnimationGroup_completionHandler(
            [&](NSAnimationContext*) {
                linear(1);
                refusing->animator()->setFrameOrigin({ 1, 2 });
                view->animator()->setAlphaValue(0);
            },
            [&] { ++told; });
        int raised = 0;
        for (int i = 0; i < 100; ++i) {
            try {
                clock.advance(1.0 / 60);
            } catch (const Exception&) {
                ++raised;
            }
        }
        EXPECT_GT(raised, 50);
        EXPECT_LT(raised, 70); // none once a second has gone by
        EXPECT_EQ(view->alphaValue(), 0);
        EXPECT_EQ(told, 1);
    }

    TEST(AnimationContext, TellsAtOnceWithoutMovements)
    {
        int told = 0;
        NSAnimationContext::cls().runAnimationGroup_completionHandler(
            [](NSAnimationContext*) {}, [&] { ++told; });
        EXPECT_EQ(told, 1);
    }

    TEST(AnimationContext, AGroupEndsWhenItsChangesRaise)
    {
        EXPECT_THROW(NSAnimationContext::cls().runAnimationGroup([](NSAnimationContext* context) {
            context->setDuration(9);
            raise("Fault", "on purpose");
        }),
            Exception);
        EXPECT_EQ(NSAnimationContext::cls().currentContext()->duration(), 0.25);
        EXPECT_THROW(NSAnimationContext::cls().runAnimationGroup({}), Exception);
    }

    TEST(AnimationContext, WhatIsToldTheEndMayRaise)
    {
        EXPECT_THROW(NSAnimationContext::cls().runAnimationGroup_completionHandler(
                         [](NSAnimationContext*) {}, [] { raise("Fault", "on purpose"); }),
            Exception);
        try {
            NSAnimationContext::cls().runAnimationGroup_completionHandler(
                [](NSAnimationContext*) { raise("First", "on purpose"); },
                [] { raise("Second", "on purpose"); });
            FAIL() << "nothing was raised";
        } catch (const Exception& raised) {
            EXPECT_EQ(utf8Of(raised->name().get()), "First");
        }
        const Ref<NSView> view = box();
        VirtualClock clock;
        view->animator()->setAlphaValue(0);
        clock.advance(1);
        EXPECT_EQ(view->alphaValue(), 0);
    }

    TEST(AnimationContext, AWindowWhoseDelegateRaisesWhenItMovesKeepsNothingFromMoving)
    {
        VirtualClock clock;
        const Ref<NSWindow> window = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            NSMakeRect(0, 0, 100, 100), NSBorderlessWindowMask, NSBackingStoreBuffered, true);
        const Ref<RaisingDelegate> delegate = make<RaisingDelegate>();
        window->setDelegate(delegate.get());
        EXPECT_THROW(
            window->setFrame_display_animate(NSMakeRect(0, 0, 50, 50), true, false), Exception);
        window->setDelegate(nullptr);
        EXPECT_EQ(NSAnimationContext::cls().currentContext()->duration(), 0.25);
        const Ref<NSView> view = box();
        view->animator()->setAlphaValue(0);
        clock.advance(1);
        EXPECT_EQ(view->alphaValue(), 0);
    }

    TEST(Animator, HandsOtherMessagesOn)
    {
        const Ref<NSView> view = box();
        const Ref<NSView> animator = view->animator();
        animator->setHidden(true);
        EXPECT_TRUE(view->isHidden());
        EXPECT_EQ(animator->frame(), view->frame());
        EXPECT_EQ(animator->animator(), animator);
        EXPECT_TRUE(animator->respondsToSelector(selector<"setNeedsDisplay:">));
    }

    TEST(Animator, OfAWindowMovesAlphaAndFrame)
    {
        VirtualClock clock;
        const Ref<NSWindow> window = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            NSMakeRect(0, 0, 100, 100), NSBorderlessWindowMask, NSBackingStoreBuffered, true);
        NSAnimationContext::cls().beginGrouping();
        linear(1);
        animator(*window)->setAlphaValue(0);
        animator(*window)->setFrame_display(NSMakeRect(40, 0, 200, 100), true);
        NSAnimationContext::cls().endGrouping();
        clock.advance(0.5);
        EXPECT_NEAR(window->alphaValue(), 0.5, 0.02);
        EXPECT_NEAR(window->frame().size.width, 150, 2);
        clock.advance(0.5);
        EXPECT_EQ(window->alphaValue(), 0);
        EXPECT_EQ(window->frame(), NSMakeRect(40, 0, 200, 100));
    }

    TEST(Animator, OfNothingAnswersNil)
    {
        const Ref<NSObject> animator = objc_getClass("NSAnimator")->send<"new", Ref<NSObject>>();
        animator->send<"setAlphaValue:">(0.5);
        animator->send<"setFrame:">(NSZeroRect);
    }

}
}
