// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSWindow+KeyViews.h"

#include <gtest/gtest.h>

#include "appkit/NSTextField.h"
#include "foundation/NSArray.h"
#include "runtime/Table.h"
#include "support/HeadlessScreen.h"
#include "support/Strings.h"

namespace brindle {

/// Takes the keyboard unless it is told not to, and leaves every key to others.
class StopView : public NSView {
    BRINDLE_OBJECT(StopView, NSView)

public:
    bool refuses_ = false;
    Ref<NSView> takesAway_; // out of the window, when it is asked
};

template <> struct StopView::Methods<struct Keyboard> {
    static bool accepts(StopView& self)
    {
        if (const Ref<NSView> other = std::exchange(self.takesAway_, nullptr))
            other->removeFromSuperview();
        return !self.refuses_;
    }
    static void table(Builder& t) { t.methods({ { "acceptsFirstResponder", imp<accepts> } }); }
};
BRINDLE_RECORD(StopView, Keyboard)

/// Has its own idea of the loop, for which it asks where Tab would go now.
class AskingWindow : public NSWindow {
    BRINDLE_OBJECT(AskingWindow, NSWindow)

public:
    int asked_ = 0;
};

template <> struct AskingWindow::Methods<struct Loop> {
    static void recalculate(AskingWindow& self)
    {
        ++self.asked_;
        const Ref<NSResponder> first = self.firstResponder();
        cast<NSView>(first)->nextValidKeyView();
        super<AskingWindow, "recalculateKeyViewLoop">(self);
    }
    static void table(Builder& t) { t.methods({ { "recalculateKeyViewLoop", imp<recalculate> } }); }
};
BRINDLE_RECORD(AskingWindow, Loop)

/// Counts when it is asked to give the keyboard up, and may refuse.
class HoldingView : public NSView {
    BRINDLE_OBJECT(HoldingView, NSView)

public:
    int asked_ = 0;
    bool agrees_ = true;
    bool wasInWindow_ = false;
};

template <> struct HoldingView::Methods<struct Keyboard> {
    static bool accepts(HoldingView&) { return true; }
    static bool resigns(HoldingView& self)
    {
        ++self.asked_;
        self.wasInWindow_ = self.window() != nullptr;
        return self.agrees_;
    }
    static void table(Builder& t)
    {
        t.methods({
            { "acceptsFirstResponder", imp<accepts> },
            { "resignFirstResponder", imp<resigns> },
        });
    }
};
BRINDLE_RECORD(HoldingView, Keyboard)

namespace {

    constexpr char16_t kTab = 0x09;
    constexpr char16_t kBackTab = 0x19;

    /// Three views one after the other: first, second, third, first.
    struct Loop {
        Loop()
        {
            for (std::size_t i = 0; i < 3; ++i)
                views[i]->setNextKeyView(views[(i + 1) % 3].get());
            window->makeKeyAndOrderFront(nullptr);
            screen.process();
        }
        ~Loop() { window->close(); }
        Ref<StopView> add(double x)
        {
            auto view
                = cast<StopView>(alloc<StopView>()->initWithFrame(NSMakeRect(x, 100, 50, 20)));
            window->contentView()->addSubview(view.get());
            return view;
        }
        /// Answers the place of the view that has the keyboard; -1 for none of them.
        int focused()
        {
            const Ref<NSResponder> first = window->firstResponder();
            for (int i = 0; i < 3; ++i) {
                if (first == views[static_cast<std::size_t>(i)].get())
                    return i;
            }
            return -1;
        }
        /// Leaves the order to the window.
        void unlink()
        {
            for (const Ref<StopView>& view : views)
                view->setNextKeyView(nullptr);
        }
        /// Answers where Tab goes so many times.
        std::vector<int> tabs(int count)
        {
            std::vector<int> seen;
            for (int i = 0; i < count; ++i) {
                screen.keyboard().press(kTab);
                seen.push_back(focused());
            }
            return seen;
        }
        void focus(std::size_t i) { window->makeFirstResponder(views[i].get()); }

        HeadlessScreen screen;
        Ref<NSWindow> window // has a title: one without cannot take the keyboard
            = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
                NSMakeRect(50, 50, 300, 200), NSTitledWindowMask, NSBackingStoreBuffered, true);
        Ref<StopView> views[3] = { add(0), add(100), add(200) };
    };

    TEST(KeyViews, TabGoesOnAndAroundAgain)
    {
        Loop loop;
        loop.focus(0);
        EXPECT_EQ(loop.tabs(4), (std::vector<int> { 1, 2, 0, 1 }));
    }

    TEST(KeyViews, ShiftTabGoesBack)
    {
        Loop loop;
        loop.focus(0);
        loop.screen.keyboard().press(kBackTab, NSShiftKeyMask);
        EXPECT_EQ(loop.focused(), 2);
        loop.screen.keyboard().press(kTab, NSShiftKeyMask);
        EXPECT_EQ(loop.focused(), 1);
    }

    TEST(KeyViews, AViewThatRefusesIsPassedOver)
    {
        Loop loop;
        loop.focus(0);
        loop.views[1]->refuses_ = true;
        loop.window->selectNextKeyView(nullptr);
        EXPECT_EQ(loop.focused(), 2);
    }

    TEST(KeyViews, AHiddenViewIsPassedOver)
    {
        Loop loop;
        loop.focus(2);
        loop.views[0]->setHidden(true);
        loop.window->selectNextKeyView(nullptr);
        EXPECT_EQ(loop.focused(), 1);
    }

    TEST(KeyViews, WhenAllOthersRefuseTheFocusStays)
    {
        Loop loop;
        loop.focus(0);
        loop.views[1]->refuses_ = true;
        loop.views[2]->refuses_ = true;
        loop.window->selectNextKeyView(nullptr);
        loop.window->selectPreviousKeyView(nullptr);
        EXPECT_EQ(loop.focused(), 0);
    }

    TEST(KeyViews, TheFirstTabGoesToTheInitialFirstResponder)
    {
        Loop loop;
        loop.window->makeFirstResponder(nullptr);
        loop.window->setInitialFirstResponder(loop.views[1].get());
        loop.screen.keyboard().press(kTab);
        EXPECT_EQ(loop.focused(), 1);
    }

    TEST(KeyViews, AViewThatLeavesTheWindowLeavesTheLoop)
    {
        Loop loop;
        loop.focus(0);
        loop.views[1]->removeFromSuperview();
        loop.window->selectNextKeyView(nullptr);
        EXPECT_NE(loop.focused(), 1);
    }

    TEST(KeyViews, TheReckonedLoopFollowsTheLinesOfReading)
    {
        Loop loop;
        loop.views[0]->setFrameOrigin(NSMakePoint(200, 50)); // second line
        loop.views[1]->setFrameOrigin(NSMakePoint(100, 150)); // first line, right
        loop.views[2]->setFrameOrigin(NSMakePoint(0, 150)); // first line, left
        loop.window->recalculateKeyViewLoop();
        loop.focus(2);
        loop.window->selectNextKeyView(nullptr);
        EXPECT_EQ(loop.focused(), 1);
        loop.window->selectNextKeyView(nullptr);
        EXPECT_EQ(loop.focused(), 0);
        loop.window->selectNextKeyView(nullptr);
        EXPECT_EQ(loop.focused(), 2);
    }

    TEST(KeyViews, WhatStandsInOneViewComesBeforeWhatStandsInTheNext)
    {
        Loop loop;
        const auto box = alloc<NSView>()->initWithFrame(NSMakeRect(0, 0, 90, 200));
        loop.window->contentView()->addSubview(box.get());
        box->addSubview(loop.views[0].get());
        box->addSubview(loop.views[2].get());
        loop.views[0]->setFrameOrigin(NSMakePoint(0, 150));
        loop.views[2]->setFrameOrigin(NSMakePoint(0, 20));
        loop.views[1]->setFrameOrigin(NSMakePoint(100, 150)); // beside the first of the box
        loop.window->recalculateKeyViewLoop();
        loop.focus(0);
        EXPECT_EQ(loop.tabs(3), (std::vector<int> { 2, 1, 0 }));
    }

    TEST(KeyViews, WhatStandsALittleHigherIsOnTheSameLine)
    {
        Loop loop;
        loop.views[0]->setFrame(NSMakeRect(200, 100, 50, 28));
        loop.views[1]->setFrame(NSMakeRect(0, 100, 50, 20));
        loop.views[2]->setFrame(NSMakeRect(100, 103, 50, 16));
        loop.window->recalculateKeyViewLoop();
        loop.focus(1);
        EXPECT_EQ(loop.tabs(3), (std::vector<int> { 2, 0, 1 }));
    }

    // ---- windows whose loop nobody has set

    TEST(KeyViews, AWindowWithoutALoopIsGoneThroughAsOneReadsIt)
    {
        Loop loop;
        loop.unlink();
        loop.views[0]->setFrameOrigin(NSMakePoint(200, 50));
        loop.focus(0);
        EXPECT_EQ(loop.tabs(4), (std::vector<int> { 1, 2, 0, 1 }));
        loop.screen.keyboard().press(kTab, NSShiftKeyMask);
        EXPECT_EQ(loop.focused(), 0);
    }

    TEST(KeyViews, TheFirstTabOfAWindowWithoutALoopGoesToItsFirstView)
    {
        Loop loop;
        loop.unlink();
        loop.window->makeFirstResponder(nullptr);
        loop.screen.keyboard().press(kTab);
        EXPECT_EQ(loop.focused(), 0);
        loop.window->makeFirstResponder(nullptr);
        loop.screen.keyboard().press(kTab, NSShiftKeyMask);
        EXPECT_EQ(loop.focused(), 2);
    }

    TEST(KeyViews, WithoutALoopViewsThatComeLaterAreGoneThroughToo)
    {
        Loop loop;
        loop.unlink();
        loop.focus(0);
        EXPECT_EQ(loop.tabs(1), std::vector<int> { 1 });
        const Ref<StopView> late = loop.add(150);
        loop.screen.keyboard().press(kTab);
        EXPECT_EQ(loop.window->firstResponder(), late.get());
    }

    TEST(KeyViews, WithoutALoopAViewThatRefusesOrHidesIsPassedOver)
    {
        Loop loop;
        loop.unlink();
        loop.focus(0);
        loop.views[1]->refuses_ = true;
        EXPECT_EQ(loop.tabs(1), std::vector<int> { 2 });
        loop.views[0]->setHidden(true);
        EXPECT_EQ(loop.tabs(1), std::vector<int> { 2 });
    }

    TEST(KeyViews, AWindowWhereNothingTakesTheKeyboardKeepsIt)
    {
        Loop loop;
        loop.unlink();
        loop.window->makeFirstResponder(nullptr);
        for (const Ref<StopView>& view : loop.views)
            view->refuses_ = true;
        loop.screen.keyboard().press(kTab);
        EXPECT_EQ(loop.window->firstResponder(), loop.window.get());
    }

    TEST(KeyViews, FieldsWithoutALoopAreGoneThroughWhileOneTypes)
    {
        Loop loop;
        loop.unlink();
        for (const Ref<StopView>& view : loop.views)
            view->removeFromSuperview();
        Ref<NSTextField> fields[2];
        for (int i = 0; i < 2; ++i) {
            fields[i] = cast<NSTextField>(
                alloc<NSTextField>()->initWithFrame(NSMakeRect(10, 100 - 30 * i, 100, 22)));
            loop.window->contentView()->addSubview(fields[i].get());
        }
        loop.screen.keyboard().type(u"\tone\ttwo\t");
        EXPECT_EQ(utf8Of(fields[0]->stringValue()), "one");
        EXPECT_EQ(utf8Of(fields[1]->stringValue()), "two");
        EXPECT_TRUE(fields[0]->currentEditor());
    }

    TEST(KeyViews, WhoeverEditsAFieldIsPassedOnFromTheField)
    {
        Loop loop;
        loop.unlink();
        const auto field
            = cast<NSTextField>(alloc<NSTextField>()->initWithFrame(NSMakeRect(60, 100, 30, 20)));
        loop.window->contentView()->addSubview(field.get());
        loop.window->makeFirstResponder(field.get());
        loop.window->selectPreviousKeyView(nullptr);
        EXPECT_EQ(loop.focused(), 0);
        loop.window->makeFirstResponder(field.get());
        loop.window->selectNextKeyView(nullptr);
        EXPECT_EQ(loop.focused(), 1);
    }

    TEST(KeyViews, ALoopSetByHandIsLeftAsItIs)
    {
        Loop loop;
        loop.unlink();
        loop.views[0]->setNextKeyView(loop.views[2].get());
        loop.views[2]->setNextKeyView(loop.views[0].get());
        loop.focus(0);
        EXPECT_EQ(loop.tabs(3), (std::vector<int> { 2, 0, 2 }));
        EXPECT_FALSE(loop.views[1]->nextKeyView());
    }

    TEST(KeyViews, AWindowRecalculatesALoopSetByHandOnlyWhenItIsTold)
    {
        Loop loop;
        EXPECT_FALSE(autorecalculatesKeyViewLoop(loop.window));
        loop.views[0]->setNextKeyView(loop.views[2].get());
        loop.focus(0);
        setAutorecalculatesKeyViewLoop(loop.window, true);
        EXPECT_TRUE(autorecalculatesKeyViewLoop(loop.window));
        EXPECT_EQ(loop.tabs(1), std::vector<int> { 1 });
        const Ref<StopView> late = loop.add(150);
        EXPECT_EQ(loop.views[1]->nextValidKeyView(), late.get());
    }

    TEST(KeyViews, AHostsWayToRecalculateMayAskWhereTabGoes)
    {
        HeadlessScreen screen;
        const Ref<AskingWindow> window
            = cast<AskingWindow>(alloc<AskingWindow>()->initWithContentRect_styleMask_backing_defer(
                NSMakeRect(50, 50, 300, 200), NSTitledWindowMask, NSBackingStoreBuffered, true));
        const auto view = alloc<StopView>()->initWithFrame(NSMakeRect(0, 0, 50, 20));
        window->contentView()->addSubview(view.get());
        window->makeFirstResponder(view.get());
        setAutorecalculatesKeyViewLoop(window, true);
        EXPECT_EQ(view->nextValidKeyView(), view.get());
        EXPECT_EQ(window->asked_, 1);
        window->close();
    }

    TEST(KeyViews, MayTakeOneAnotherAwayWhenTheyAreAsked)
    {
        HeadlessScreen screen;
        const Ref<NSView> content = screen.window().contentView();
        const auto left
            = cast<StopView>(alloc<StopView>()->initWithFrame(NSMakeRect(10, 100, 50, 20)));
        content->addSubview(left.get());
        left->takesAway_ = alloc<StopView>()->initWithFrame(NSMakeRect(80, 100, 50, 20));
        content->addSubview(left->takesAway_.get());
        screen.window().selectNextKeyView(nullptr);
        EXPECT_EQ(screen.window().firstResponder(), left);
        EXPECT_EQ(content->subviews()->count(), 1U);
    }

    // ---- leaving the window

    TEST(FirstResponder, IsAskedToResignWhenItLeavesTheWindow)
    {
        HeadlessScreen screen;
        const auto outer = screen.add<NSView>(NSMakeRect(0, 0, 50, 50));
        const auto holder = make<HoldingView>();
        outer->addSubview(holder.get());
        screen.window().makeFirstResponder(holder.get());
        outer->removeFromSuperview();
        EXPECT_EQ(holder->asked_, 1);
        EXPECT_TRUE(holder->wasInWindow_);
        EXPECT_EQ(screen.window().firstResponder().get(), &screen.window());
    }

    TEST(FirstResponder, LeavesAlsoWhenItDoesNotAgree)
    {
        HeadlessScreen screen;
        const auto holder = screen.add<HoldingView>(NSMakeRect(0, 0, 50, 50));
        screen.window().makeFirstResponder(holder.get());
        holder->agrees_ = false;
        holder->removeFromSuperview();
        EXPECT_EQ(holder->asked_, 1);
        EXPECT_EQ(screen.window().firstResponder().get(), &screen.window());
    }

    TEST(FirstResponder, KeepsTheKeyboardWhenItMovesInsideItsWindow)
    {
        HeadlessScreen screen;
        const auto holder = screen.add<HoldingView>(NSMakeRect(0, 0, 50, 50));
        const auto other = screen.add<NSView>(NSMakeRect(50, 0, 50, 50));
        screen.window().makeFirstResponder(holder.get());
        other->addSubview(holder.get());
        EXPECT_EQ(holder->asked_, 0);
        EXPECT_EQ(screen.window().firstResponder(), holder);
    }

}
}
