// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSPopover.h"
#include "foundation/NSArray.h"
#include "foundation/NSNotification.h"
#include "runtime/Table.h"
#include "support/HeadlessScreen.h"
#include "support/Strings.h"

#include <gtest/gtest.h>

namespace brindle {

/// Has a view to show, as a view controller, and may refuse to have it closed.
class PopoverHost : public NSObject {
    BRINDLE_OBJECT(PopoverHost, NSObject)
public:
    Ref<NSView> view_ = alloc<NSView>()->initWithFrame(NSMakeRect(0, 0, 100, 60));
    bool refuses_ = false;
    Ref<NSView> leaves_; // its window before the bubble is shown
    std::string told_;
};
template <> struct PopoverHost::Methods<struct Answers> {
    static Ref<NSView> view(PopoverHost& self) { return self.view_; }
    static bool shouldClose(PopoverHost& self, NSPopover*) { return !self.refuses_; }
    static void willShow(PopoverHost& self, NSNotification*)
    {
        self.told_ += "will show; ";
        maybe(self.leaves_)->removeFromSuperview();
    }
    static void didShow(PopoverHost& self, NSNotification*) { self.told_ += "did show; "; }
    static void willClose(PopoverHost& self, NSNotification*) { self.told_ += "will close; "; }
    static void didClose(PopoverHost& self, NSNotification*) { self.told_ += "did close; "; }
    static void table(Builder& t)
    {
        t.methods({
            { "view", imp<view> },
            { "popoverShouldClose:", imp<shouldClose> },
            { "popoverWillShow:", imp<willShow> },
            { "popoverDidShow:", imp<didShow> },
            { "popoverWillClose:", imp<willClose> },
            { "popoverDidClose:", imp<didClose> },
        });
    }
};
BRINDLE_RECORD(PopoverHost, Answers)

namespace {

    struct Popover : ::testing::Test {
        Popover()
        {
            screen.window().makeKeyAndOrderFront(nullptr);
            popover->send<"setContentViewController:">(host.get());
            popover->setDelegate(host.get());
        }
        ~Popover() override { maybe(popover)->close(); }
        void show(NSRectEdge edge)
        {
            popover->showRelativeToRect_ofView_preferredEdge({}, view.get(), edge);
        }
        NSRect frame() const { return host->view_->window()->frame(); }

        HeadlessScreen screen { 400, 300 };
        Ref<NSView> view = screen.add<NSView>(NSMakeRect(150, 120, 60, 20));
        Ref<PopoverHost> host = make<PopoverHost>();
        Ref<NSPopover> popover = make<NSPopover>();
    };

    TEST_F(Popover, IsNotShownWhenItsViewLeavesTheWindowBefore)
    {
        host->leaves_ = view;
        show(NSMaxYEdge);
        EXPECT_FALSE(popover->isShown());
        host->leaves_ = nullptr;
        screen.window().contentView()->addSubview(view.get());
        show(NSMaxYEdge);
        EXPECT_TRUE(popover->isShown());
    }

    TEST_F(Popover, StandsOnTheWishedSideWithItsArrowBetween)
    {
        show(NSMaxYEdge);
        EXPECT_EQ(frame(), NSMakeRect(129, 140, 102, 73));
        show(NSMinYEdge);
        EXPECT_EQ(frame(), NSMakeRect(129, 47, 102, 73));
        show(NSMaxXEdge);
        EXPECT_EQ(frame(), NSMakeRect(210, 99, 113, 62));
        show(NSMinXEdge);
        EXPECT_EQ(frame(), NSMakeRect(37, 99, 113, 62));
    }
    TEST_F(Popover, StandsOnTheOppositeSideWhereOnlyThatHasRoom)
    {
        view->setFrameOrigin({ 150, 250 });
        show(NSMaxYEdge);
        EXPECT_EQ(NSMaxY(frame()), 250);
    }
    TEST_F(Popover, StaysOnTheScreen)
    {
        view->setFrameOrigin({ 0, 120 });
        show(NSMaxYEdge);
        EXPECT_EQ(NSMinX(frame()), 0);
    }
    TEST_F(Popover, FollowsItsRectangle)
    {
        show(NSMaxYEdge);
        popover->setPositioningRect(NSMakeRect(0, 0, 20, 10));
        EXPECT_EQ(frame().origin, NSMakePoint(109, 130));
    }
    TEST_F(Popover, HasTheSizeThatIsSet)
    {
        popover->setContentSize({ 50, 40 });
        show(NSMaxYEdge);
        EXPECT_EQ(host->view_->frame().size, NSMakeSize(50, 40));
    }
    TEST_F(Popover, HasTheKeyboardAndGivesItBack)
    {
        show(NSMaxYEdge);
        EXPECT_TRUE(host->view_->window()->isKeyWindow());
        popover->close();
        EXPECT_TRUE(screen.window().isKeyWindow());
    }
    TEST_F(Popover, LeavesThePointerToOthersWhenItIsTransientToo)
    {
        popover->setBehavior(NSPopoverBehaviorTransient);
        show(NSMaxYEdge);
        ASSERT_TRUE(popover->isShown());
        EXPECT_EQ(screen.display().grabbingSurface(), 0U);
    }
    TEST_F(Popover, ClosesByItselfWhenItIsTransient)
    {
        popover->setBehavior(NSPopoverBehaviorTransient);
        show(NSMaxYEdge);
        screen.pointer().click({ 10, 10 });
        EXPECT_FALSE(popover->isShown());
    }
    TEST_F(Popover, StaysWhenTheProgramDecides)
    {
        show(NSMaxYEdge);
        screen.pointer().click({ 10, 10 });
        EXPECT_TRUE(popover->isShown());
    }
    TEST_F(Popover, AsksItsDelegate)
    {
        host->refuses_ = true;
        show(NSMaxYEdge);
        popover->performClose(nullptr);
        EXPECT_TRUE(popover->isShown());
        host->refuses_ = false;
        popover->performClose(nullptr);
        EXPECT_FALSE(popover->isShown());
        EXPECT_EQ(host->told_, "will show; did show; will close; did close; ");
    }
    TEST_F(Popover, KeepsItselfWhileItIsShown)
    {
        show(NSMaxYEdge);
        const WeakRef<NSPopover> weak(popover.get());
        popover = nullptr;
        ASSERT_NE(weak.get(), nullptr);
        weak.get()->close();
        EXPECT_EQ(weak.get(), nullptr);
    }
    TEST_F(Popover, ClosesWithTheWindowBelow)
    {
        show(NSMaxYEdge);
        screen.window().close();
        EXPECT_FALSE(popover->isShown());
    }
    TEST_F(Popover, NeedsAViewInAWindowAndSomethingToShow)
    {
        const std::string start = "NSInvalidArgumentException: *** -[NSPopover "
                                  "showRelativeToRect:ofView:preferredEdge:]: ";
        EXPECT_EQ(raisedBy([&] {
            popover->showRelativeToRect_ofView_preferredEdge({}, nullptr, NSMaxYEdge);
        }),
            start + "the view is in no window");
        popover->setContentViewController(nullptr);
        EXPECT_EQ(raisedBy([&] { show(NSMaxYEdge); }), start + "there is nothing to show");
    }

    TEST_F(Popover, EscapeClosesOneThatIsTransient)
    {
        popover->setBehavior(NSPopoverBehaviorTransient);
        show(NSMinYEdge);
        screen.keyboard().press(0x1B);
        EXPECT_FALSE(popover->isShown());
    }
    TEST_F(Popover, EscapeAsksTheDelegate)
    {
        popover->setBehavior(NSPopoverBehaviorTransient);
        host->refuses_ = true;
        show(NSMinYEdge);
        screen.keyboard().press(0x1B);
        EXPECT_TRUE(popover->isShown());
        host->refuses_ = false;
    }
    TEST_F(Popover, EscapeLeavesOneThatTheProgramCloses)
    {
        show(NSMinYEdge);
        screen.keyboard().press(0x1B);
        EXPECT_TRUE(popover->isShown());
    }

}

}
