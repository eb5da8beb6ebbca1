// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSWindow.h"

#include <gtest/gtest.h>

#include "SmallWindow.h"
#include "appkit/NSColor.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/NSPanel.h"
#include "appkit/NSTrackingArea.h"
#include "foundation/NSArray.h"
#include "runtime/Table.h"
#include "support/HeadlessScreen.h"

namespace brindle {

/// Fills itself with red and remembers what it was asked to draw and what it was sent.
class PaintView : public NSView {
    BRINDLE_OBJECT(PaintView, NSView)

public:
    int draws_ = 0;
    NSRect last_ {};
    std::string events_;
    bool focusable_ = false;
};

template <> struct PaintView::Methods<struct Painting> {
    static void drawRect(PaintView& self, NSRect rect)
    {
        ++self.draws_;
        self.last_ = rect;
        NSColor::cls().redColor()->set();
        NSRectFill(rect);
    }
    static void note(PaintView& self, const char* text)
    {
        self.events_ += (self.events_.empty() ? "" : " ") + std::string(text);
    }
    static void down(PaintView& self, NSEvent*) { note(self, "down"); }
    static void dragged(PaintView& self, NSEvent*) { note(self, "drag"); }
    static void up(PaintView& self, NSEvent*) { note(self, "up"); }
    static void scroll(PaintView& self, NSEvent*) { note(self, "scroll"); }
    static void key(PaintView& self, NSEvent* event)
    {
        note(self, utf8Of(event->characters().get()).c_str());
    }
    static void entered(PaintView& self, NSEvent*) { note(self, "in"); }
    static void exited(PaintView& self, NSEvent*) { note(self, "out"); }
    static bool focusable(PaintView& self) { return self.focusable_; }
    static bool yes(PaintView&, NSEvent*) { return true; }
    static void table(Builder& t)
    {
        t.methods({
            { "drawRect:", imp<drawRect> },
            { "mouseDown:", imp<down> },
            { "mouseDragged:", imp<dragged> },
            { "mouseUp:", imp<up> },
            { "scrollWheel:", imp<scroll> },
            { "keyDown:", imp<key> },
            { "mouseEntered:", imp<entered> },
            { "mouseExited:", imp<exited> },
            { "acceptsFirstResponder", imp<focusable> },
            { "acceptsFirstMouse:", imp<yes> },
        });
    }
};
BRINDLE_RECORD(PaintView, Painting)

namespace {

    Ref<NSTrackingArea> track(NSView* view, NSTrackingAreaOptions options)
    {
        Ref<NSTrackingArea> area = alloc<NSTrackingArea>()->initWithRect_options_owner_userInfo(
            view->bounds(), options, view, nullptr);
        view->addTrackingArea(area.get());
        return area;
    }

}

TEST(NSWindow, TheTitleBarIsTwentyTwoPointsHigh)
{
    const Ref<NSWindow> window = windowOf(NSMakeRect(10, 20, 200, 100), kOrdinary);
    EXPECT_EQ(window->frame(), NSMakeRect(10, 20, 200, 122));
    EXPECT_EQ(window->contentView()->frame(), NSMakeRect(0, 0, 200, 100));
    EXPECT_TRUE(window->hasTitleBar());
}

TEST(NSWindow, WhetherItHasATitleBarIsAMatterOfItsStyleAlone)
{
    EXPECT_FALSE(windowOf(NSMakeRect(0, 0, 9, 9), NSBorderlessWindowMask)->hasTitleBar());
    EXPECT_FALSE(windowOf(NSMakeRect(0, 0, 9, 9), NSResizableWindowMask)->hasTitleBar());
    const Ref<NSWindow> window = windowOf(NSMakeRect(0, 0, 9, 9), NSTitledWindowMask);
    EXPECT_TRUE(window->hasTitleBar());
    window->setTitle(""_ns);
    EXPECT_TRUE(window->hasTitleBar());
}

TEST(NSWindow, TheFrameViewIsTheContentViewsSuperviewAndBeginsAtZero)
{
    for (const NSWindowStyleMask style : { NSWindowStyleMask { 0 }, kOrdinary }) {
        const Ref<NSWindow> window = windowOf(NSMakeRect(10, 20, 200, 100), style);
        const Ref<NSView> frame = window->contentView()->superview();
        EXPECT_EQ(frame->frame(), (NSRect { {}, window->frame().size }));
        EXPECT_EQ(frame->nextResponder(), window.get());
    }
}

TEST(NSWindow, NumbersArePositiveAndDiffer)
{
    const Ref<NSWindow> a = windowOf({});
    const Ref<NSWindow> b = windowOf({});
    EXPECT_GT(a->windowNumber(), 0);
    EXPECT_NE(a->windowNumber(), b->windowNumber());
}

TEST(NSWindow, AWindowThatWasNeverShownEndsWithItsLastOwner)
{
    WeakRef<NSWindow> weak;
    {
        const Ref<NSWindow> window = windowOf(NSMakeRect(0, 0, 10, 10), kOrdinary);
        weak = window;
    }
    EXPECT_EQ(weak.get(), nullptr);
}

TEST(NSWindow, AShownWindowLivesUntilItIsClosed)
{
    HeadlessScreen screen;
    WeakRef<NSWindow> weak;
    {
        const Ref<NSWindow> window = windowOf(NSMakeRect(0, 0, 10, 10));
        window->orderFront(nullptr);
        weak = window;
    }
    ASSERT_NE(weak.get(), nullptr);
    weak.get()->close();
    screen.process();
    EXPECT_EQ(weak.get(), nullptr);
}

TEST(NSWindow, AnUnshownWindowIsNotAmongTheWindows)
{
    HeadlessScreen screen;
    const Ref<NSWindow> window = windowOf(NSMakeRect(0, 0, 10, 10));
    EXPECT_FALSE(screen.application().windows()->containsObject(window.get()));
    window->orderFront(nullptr);
    EXPECT_TRUE(screen.application().windows()->containsObject(window.get()));
    window->close();
    EXPECT_FALSE(screen.application().windows()->containsObject(window.get()));
}

TEST(NSWindow, ABorderlessWindowMayLieOffEveryScreen)
{
    HeadlessScreen screen;
    const Ref<NSWindow> window = windowOf(NSMakeRect(0, 0, 10, 10));
    window->setFrame_display(NSMakeRect(-5000, 9000, 10, 10), false);
    EXPECT_EQ(window->frame(), NSMakeRect(-5000, 9000, 10, 10));
}

TEST(NSWindow, ATitledWindowKeepsItsBarOnTheScreen)
{
    HeadlessScreen screen(400, 300);
    const Ref<NSWindow> window = windowOf(NSMakeRect(0, 0, 100, 50), kOrdinary);
    window->setFrame_display(NSMakeRect(10, 1000, 100, 72), false);
    EXPECT_EQ(NSMaxY(window->frame()), 300);
}

TEST(NSWindow, AViewIsDrawnOnceForSeveralMarks)
{
    HeadlessScreen screen;
    const Ref<PaintView> view = screen.add<PaintView>(NSMakeRect(10, 10, 100, 100));
    EXPECT_EQ(view->draws_, 1);
    view->setNeedsDisplayInRect(NSMakeRect(0, 0, 10, 10));
    view->setNeedsDisplayInRect(NSMakeRect(5, 5, 10, 10));
    screen.process();
    EXPECT_EQ(view->draws_, 2);
    EXPECT_EQ(view->last_, NSMakeRect(0, 0, 15, 15));
}

TEST(NSWindow, OnlyTheDamageIsPresented)
{
    HeadlessScreen screen;
    const Ref<PaintView> view = screen.add<PaintView>(NSMakeRect(10, 10, 100, 100));
    const auto before = screen.display().counters().presentedPixels;
    view->setNeedsDisplayInRect(NSMakeRect(0, 0, 10, 10));
    screen.process();
    EXPECT_EQ(screen.display().counters().presentedPixels - before, 100u);
    screen.process();
    EXPECT_EQ(screen.display().counters().presentedPixels - before, 100u);
}

TEST(NSWindow, WhatAViewDrawsIsSeenOnTheScreen)
{
    HeadlessScreen screen(100, 100, 2);
    screen.add<PaintView>(NSMakeRect(10, 20, 5, 5));
    const display::Snapshot picture = screen.pixels();
    EXPECT_EQ(picture.at(2 * 12, 2 * (100 - 22)), 0xFFFF0000u);
    EXPECT_NE(picture.at(2 * 30, 2 * 50), 0xFFFF0000u);
}

TEST(NSWindow, AlphaFadesAViewWithWhatIsInIt)
{
    HeadlessScreen screen(100, 100);
    screen.window().setBackgroundColor(NSColor::cls().whiteColor().get());
    const Ref<NSView> group = screen.add<NSView>(NSMakeRect(0, 0, 50, 50));
    const Ref<PaintView> view
        = cast<PaintView>(alloc<PaintView>()->initWithFrame(NSMakeRect(0, 0, 50, 50)));
    group->addSubview(view.get());
    group->setAlphaValue(0.5);
    const std::uint32_t pixel = screen.pixels().at(10, 90);
    EXPECT_EQ(pixel >> 16 & 0xFF, 0xFFu);
    EXPECT_NEAR(pixel & 0xFF, 0x80, 2);
}

TEST(NSWindow, DragsAndTheReleaseGoToThePressedView)
{
    HeadlessScreen screen;
    const Ref<PaintView> view = screen.add<PaintView>(NSMakeRect(10, 10, 20, 20));
    screen.pointer().press({ 15, 15 });
    screen.pointer().dragTo({ 200, 200 });
    screen.pointer().release();
    EXPECT_EQ(view->events_, "down drag up");
}

TEST(NSWindow, ScrollingGoesToTheViewUnderThePointer)
{
    HeadlessScreen screen;
    const Ref<PaintView> view = screen.add<PaintView>(NSMakeRect(10, 10, 20, 20));
    screen.pointer().moveTo({ 15, 15 });
    screen.pointer().scroll(0, 10);
    EXPECT_EQ(view->events_, "scroll");
}

TEST(NSWindow, KeysGoToTheFirstResponderOfTheKeyWindow)
{
    HeadlessScreen screen;
    const Ref<NSWindow> window = windowOf(NSMakeRect(10, 10, 100, 100), kOrdinary);
    const Ref<PaintView> view
        = cast<PaintView>(alloc<PaintView>()->initWithFrame(NSMakeRect(0, 0, 10, 10)));
    view->focusable_ = true;
    window->contentView()->addSubview(view.get());
    window->makeKeyAndOrderFront(nullptr);
    EXPECT_TRUE(window->isKeyWindow());
    EXPECT_TRUE(window->makeFirstResponder(view.get()));
    screen.process();
    screen.keyboard().type(u"hi");
    EXPECT_EQ(view->events_, "h i");
    window->close();
}

TEST(NSWindow, ARefusedFocusLeavesTheWindowAsFirstResponder)
{
    const Ref<NSWindow> window = windowOf(NSMakeRect(0, 0, 10, 10));
    EXPECT_FALSE(window->makeFirstResponder(window->contentView().get()));
    EXPECT_EQ(window->firstResponder(), window.get());
}

TEST(NSWindow, CrossingsAreToldOncePerCrossing)
{
    HeadlessScreen screen;
    const Ref<PaintView> view = screen.add<PaintView>(NSMakeRect(10, 10, 20, 20));
    track(view.get(), 0x81);
    screen.pointer().moveTo({ 15, 15 });
    screen.pointer().moveTo({ 16, 16 });
    screen.pointer().moveTo({ 100, 100 });
    EXPECT_EQ(view->events_, "in out");
}

TEST(NSWindow, AnAreaUnderARestingPointerBeginsWithItsExit)
{
    HeadlessScreen screen;
    const Ref<PaintView> view = screen.add<PaintView>(NSMakeRect(10, 10, 20, 20));
    screen.pointer().moveTo({ 15, 15 });
    track(view.get(), 0x81);
    screen.pointer().moveTo({ 16, 16 });
    EXPECT_EQ(view->events_, "");
    screen.pointer().moveTo({ 100, 100 });
    EXPECT_EQ(view->events_, "out");
}

TEST(NSWindow, ACoveringWindowKeepsCrossingsFromWhatIsBelow)
{
    HeadlessScreen screen;
    const Ref<PaintView> view = screen.add<PaintView>(NSMakeRect(10, 10, 20, 20));
    track(view.get(), 0x81);
    const Ref<NSWindow> cover = windowOf(NSMakeRect(0, 0, 50, 50));
    cover->orderFront(nullptr);
    screen.pointer().moveTo({ 15, 15 });
    EXPECT_EQ(view->events_, "");
    cover->close();
}

TEST(NSWindow, NoCrossingsAreToldDuringADrag)
{
    HeadlessScreen screen;
    const Ref<PaintView> view = screen.add<PaintView>(NSMakeRect(10, 10, 20, 20));
    track(view.get(), 0x81);
    screen.pointer().press({ 100, 100 });
    screen.pointer().dragTo({ 15, 15 });
    screen.process();
    EXPECT_EQ(view->events_, "");
    screen.pointer().release();
    EXPECT_EQ(view->events_, "in");
}

TEST(NSWindow, AnAreaOfTheActiveApplicationIsSilentWhileItIsInactive)
{
    HeadlessScreen screen;
    const Ref<PaintView> view = screen.add<PaintView>(NSMakeRect(10, 10, 20, 20));
    track(view.get(), 0x41);
    screen.application().deactivate();
    screen.pointer().moveTo({ 15, 15 });
    EXPECT_EQ(view->events_, "");
}

TEST(NSWindow, AHundredThousandAreasInOneViewAreFoundQuickly)
{
    HeadlessScreen screen;
    const Ref<PaintView> view = screen.add<PaintView>(NSMakeRect(0, 0, 400, 300));
    for (int i = 0; i < 100000; ++i) {
        const Ref<NSTrackingArea> area
            = alloc<NSTrackingArea>()->initWithRect_options_owner_userInfo(
                NSMakeRect(0, i * 0.003, 400, 0.003), 0x81, view.get(), nullptr);
        view->addTrackingArea(area.get());
    }
    screen.pointer().moveTo({ 15, 15.0005 });
    screen.pointer().moveTo({ 15, 100.0005 });
    EXPECT_EQ(view->events_, "in out in");
}

TEST(NSWindow, AChildIsListedOnceAndMovesAndHidesWithItsParent)
{
    HeadlessScreen screen;
    const Ref<NSWindow> parent = windowOf(NSMakeRect(10, 10, 50, 50));
    const Ref<NSWindow> child = windowOf(NSMakeRect(20, 20, 10, 10));
    parent->orderFront(nullptr);
    parent->addChildWindow_ordered(child.get(), NSWindowAbove);
    parent->addChildWindow_ordered(child.get(), NSWindowAbove);
    EXPECT_EQ(parent->childWindows()->count(), 1u);
    EXPECT_TRUE(child->isVisible());
    parent->setFrameOrigin({ 15, 17 });
    EXPECT_EQ(child->frame().origin, NSMakePoint(25, 27));
    parent->orderOut(nullptr);
    EXPECT_FALSE(child->isVisible());
}

TEST(NSWindow, ATitleBarDragMovesTheWindow)
{
    HeadlessScreen screen;
    const Ref<NSWindow> window = windowOf(NSMakeRect(50, 50, 150, 100), kOrdinary);
    window->makeKeyAndOrderFront(nullptr);
    screen.process();
    screen.pointer().press({ 150, 160 });
    screen.pointer().dragTo({ 170, 150 });
    screen.pointer().release();
    EXPECT_EQ(window->frame().origin, NSMakePoint(70, 40));
    window->close();
}

TEST(NSWindow, AnEdgeDragResizesWithinTheLimits)
{
    HeadlessScreen screen;
    const Ref<NSWindow> window = windowOf(NSMakeRect(50, 50, 150, 100), kOrdinary);
    window->setMinSize({ 120, 80 });
    window->makeKeyAndOrderFront(nullptr);
    screen.process();
    screen.pointer().press({ 198, 100 });
    screen.pointer().dragTo({ 58, 100 });
    screen.pointer().release();
    EXPECT_EQ(window->frame(), NSMakeRect(50, 50, 120, 122));
    EXPECT_FALSE(window->inLiveResize());
    window->close();
}

TEST(NSWindow, TheCloseButtonClosesTheWindow)
{
    HeadlessScreen screen;
    const Ref<NSWindow> window = windowOf(NSMakeRect(50, 50, 150, 100), kOrdinary);
    window->makeKeyAndOrderFront(nullptr);
    screen.process();
    screen.pointer().click({ 50 + 16, 50 + 100 + 11 });
    EXPECT_FALSE(window->isVisible());
}

TEST(NSWindow, PanelsHideWhileTheApplicationIsInactive)
{
    HeadlessScreen screen;
    const Ref<NSWindow> panel = alloc<NSPanel>()->initWithContentRect_styleMask_backing_defer(
        NSMakeRect(0, 0, 50, 50), NSTitledWindowMask, NSBackingStoreBuffered, true);
    panel->orderFront(nullptr);
    screen.application().deactivate();
    EXPECT_FALSE(panel->isVisible());
    screen.application().activateIgnoringOtherApps(true);
    EXPECT_TRUE(panel->isVisible());
    EXPECT_FALSE(panel->canBecomeMainWindow());
    panel->close();
}

TEST(NSWindow, AWindowThatIgnoresTheMouseIsNotChosenAsTheNextKeyWindow)
{
    HeadlessScreen screen;
    const Ref<NSWindow> below = windowOf(NSMakeRect(0, 0, 50, 50), kOrdinary);
    const Ref<NSWindow> ignoring = windowOf(NSMakeRect(0, 0, 50, 50), kOrdinary);
    const Ref<NSWindow> key = windowOf(NSMakeRect(0, 0, 50, 50), kOrdinary);
    ignoring->setIgnoresMouseEvents(true);
    below->orderFront(nullptr);
    ignoring->orderFront(nullptr);
    key->makeKeyAndOrderFront(nullptr);
    key->close();
    EXPECT_TRUE(below->isKeyWindow());
    below->close();
    ignoring->close();
}

}
