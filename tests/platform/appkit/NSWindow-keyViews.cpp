// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSWindow.h"

#include <gtest/gtest.h>

#include "runtime/Table.h"
#include "support/HeadlessScreen.h"

namespace brindle {

/// Takes the keyboard unless it is told not to, and leaves every key to others.
class StopView : public NSView {
    BRINDLE_OBJECT(StopView, NSView)

public:
    bool refuses_ = false;
};

template <> struct StopView::Methods<struct Keyboard> {
    static bool accepts(StopView& self) { return !self.refuses_; }
    static void table(Builder& t) { t.methods({ { "acceptsFirstResponder", imp<accepts> } }); }
};
BRINDLE_RECORD(StopView, Keyboard)

namespace {

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
        void focus(std::size_t i) { window->makeFirstResponder(views[i].get()); }

        HeadlessScreen screen;
        Ref<NSWindow> window // has a title: one without cannot take the keyboard
            = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
                NSMakeRect(50, 50, 300, 200), NSTitledWindowMask, NSBackingStoreBuffered, true);
        Ref<StopView> views[3] = { add(0), add(100), add(200) };
    };

    constexpr char16_t kTab = 0x09;
    constexpr char16_t kBackTab = 0x19;

    TEST(KeyViews, TabGoesOnAndAroundAgain)
    {
        Loop loop;
        loop.focus(0);
        std::vector<int> seen;
        for (int i = 0; i < 4; ++i) {
            loop.screen.keyboard().press(kTab);
            seen.push_back(loop.focused());
        }
        EXPECT_EQ(seen, (std::vector<int> { 1, 2, 0, 1 }));
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

}
}
