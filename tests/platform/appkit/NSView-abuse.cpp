// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSView.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

#include "foundation/NSArray.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"
#include "support/HeadlessScreen.h"

namespace brindle {

/// Does as a test says when it is pressed or drawn.
class WildView : public NSView {
    BRINDLE_OBJECT(WildView, NSView)

public:
    std::function<void(WildView&)> press_;
    std::function<void(WildView&)> draw_;
    int draws_ = 0;
};
template <> struct WildView::Methods<struct Wild> {
    static void mouseDown(WildView& self, NSEvent*)
    {
        if (const auto code = self.press_)
            code(self);
    }
    static void drawRect(WildView& self, NSRect)
    {
        ++self.draws_;
        if (const auto code = self.draw_)
            code(self);
    }
    static void table(Builder& t)
    {
        t.methods({ { "mouseDown:", imp<mouseDown> }, { "drawRect:", imp<drawRect> } });
    }
};
BRINDLE_RECORD(WildView, Wild)

/// Does as a test says when it hides and when it ends.
class FleetingView : public NSView {
    BRINDLE_OBJECT(FleetingView, NSView)

public:
    std::function<void(FleetingView&)> hide_;
    std::function<void()> end_;
};
template <> struct FleetingView::Methods<struct Fleeting> {
    static void didHide(FleetingView& self)
    {
        if (const auto code = self.hide_)
            code(self);
    }
    static void dealloc(FleetingView& self)
    {
        if (const auto code = self.end_)
            code();
        super<FleetingView, "dealloc">(self);
    }
    static void table(Builder& t)
    {
        t.methods({ { "viewDidHide", imp<didHide> }, { "dealloc", imp<dealloc> } });
    }
};
BRINDLE_RECORD(FleetingView, Fleeting)

namespace {

    void remove(WildView& view) { view.removeFromSuperview(); }

    TEST(WildViews, AViewMayBeRemovedInItsOwnPress)
    {
        HeadlessScreen screen;
        Ref<WildView> view = screen.add<WildView>(NSMakeRect(0, 0, 50, 50));
        const WeakRef<WildView> weak = view;
        view->press_ = remove;
        view = nullptr;
        screen.pointer().click({ 10, 10 });
        screen.process();
        EXPECT_EQ(weak.get(), nullptr);
    }

    TEST(WildViews, AViewMayBeRemovedInItsOwnDrawing)
    {
        HeadlessScreen screen;
        const Ref<WildView> view = screen.add<WildView>(NSMakeRect(0, 0, 50, 50));
        view->draw_ = remove;
        view->setNeedsDisplay(true);
        screen.process();
        EXPECT_EQ(view->superview(), nullptr);
        const int draws = view->draws_;
        screen.window().contentView()->setNeedsDisplay(true);
        screen.process();
        EXPECT_EQ(view->draws_, draws);
    }

    TEST(WildViews, AViewMayBeAddedAgainInItsOwnPress)
    {
        HeadlessScreen screen;
        const Ref<WildView> view = screen.add<WildView>(NSMakeRect(0, 0, 50, 50));
        int presses = 0;
        view->press_ = [&](WildView& self) {
            ++presses;
            const Ref<NSView> parent = self.superview();
            self.removeFromSuperview();
            parent->addSubview(&self);
        };
        screen.pointer().click({ 10, 10 });
        screen.pointer().click({ 10, 10 });
        EXPECT_EQ(presses, 2);
    }

    TEST(WildViews, SiblingsMayBeRemovedWhileTheyAreDrawn)
    {
        HeadlessScreen screen;
        const Ref<WildView> first = screen.add<WildView>(NSMakeRect(0, 0, 50, 50));
        const Ref<WildView> second = screen.add<WildView>(NSMakeRect(50, 0, 50, 50));
        first->draw_ = [&](WildView&) { second->removeFromSuperview(); };
        screen.window().contentView()->setNeedsDisplay(true);
        screen.process();
        EXPECT_EQ(screen.window().contentView()->subviews()->count(), 1u);
    }

    TEST(WildViews, TheWindowMayBeClosedInAPress)
    {
        HeadlessScreen screen;
        const Ref<NSWindow> window = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            NSMakeRect(100, 100, 100, 100), NSBorderlessWindowMask, NSBackingStoreBuffered, true);
        const Ref<WildView> view = make<WildView>();
        window->setContentView(view.get());
        window->orderFront(nullptr);
        screen.process();
        view->press_ = [](WildView& self) { self.window()->close(); };
        screen.pointer().click({ 150, 150 });
        EXPECT_FALSE(window->isVisible());
    }

    TEST(WildViews, NoViewContainsItself)
    {
        const Ref<NSView> outer = make<NSView>();
        const Ref<NSView> inner = make<NSView>();
        outer->addSubview(inner.get());
        EXPECT_THROW(inner->addSubview(outer.get()), Exception);
        EXPECT_THROW(outer->addSubview(outer.get()), Exception);
        EXPECT_EQ(outer->superview(), nullptr);
    }

    TEST(WildViews, FramesThatAreNoPlacesDrawNothing)
    {
        HeadlessScreen screen;
        const double nan = std::nan("");
        const double huge = std::numeric_limits<double>::max();
        const Ref<WildView> view = screen.add<WildView>(NSMakeRect(0, 0, 50, 50));
        const int draws = view->draws_;
        for (const NSRect frame : { NSMakeRect(nan, nan, nan, nan), NSMakeRect(0, 0, nan, 10),
                 NSMakeRect(10, 10, -50, -50), NSMakeRect(huge, huge, 10, 10) }) {
            view->setFrame(frame);
            view->setNeedsDisplay(true);
            screen.process();
        }
        EXPECT_EQ(view->draws_, draws);
        view->setFrame(NSMakeRect(0, 0, huge, huge));
        screen.process();
        view->setFrame(NSMakeRect(0, 0, 50, 50));
        view->setNeedsDisplay(true);
        screen.process();
        EXPECT_GT(view->draws_, draws);
    }

    TEST(WildViews, TenThousandInEachOtherAreDrawnAndHit)
    {
        HeadlessScreen screen;
        Ref<NSView> outermost;
        const Ref<WildView> deep
            = cast<WildView>(alloc<WildView>()->initWithFrame(NSMakeRect(0, 0, 50, 50)));
        outermost = deep;
        for (int i = 0; i < 10'000; ++i) {
            const Ref<NSView> view = alloc<NSView>()->initWithFrame(NSMakeRect(0, 0, 50, 50));
            view->addSubview(outermost.get());
            outermost = view;
        }
        screen.window().contentView()->addSubview(outermost.get());
        screen.process();
        bool pressed = false;
        deep->press_ = [&](WildView&) { pressed = true; };
        screen.pointer().click({ 10, 10 });
        EXPECT_TRUE(pressed);
        outermost->removeFromSuperview();
    }

    TEST(WildViews, AViewMayHideManyOthersWhenItEnds)
    {
        const Ref<NSView> root = make<NSView>();
        const Ref<NSView> many = make<NSView>();
        for (int i = 0; i < 5000; ++i)
            many->addSubview(make<NSView>().get());
        Ref<FleetingView> view = make<FleetingView>();
        const WeakRef<FleetingView> weak = view;
        view->hide_ = [](FleetingView& self) { self.removeFromSuperview(); };
        view->end_ = [&] { many->setHidden(true); };
        root->addSubview(view.get());
        root->addSubview(make<NSView>().get());
        view = nullptr;
        root->setHidden(true);
        EXPECT_EQ(weak.get(), nullptr);
        EXPECT_TRUE(many->isHidden());
    }

}

}
