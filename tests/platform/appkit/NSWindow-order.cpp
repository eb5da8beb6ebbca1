// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSWindow.h"

#include <gtest/gtest.h>

#include "SmallWindow.h"
#include "appkit/NSColor.h"
#include "foundation/NSArray.h"
#include "foundation/NSNotification.h"
#include "foundation/NSNotificationCenter.h"
#include "runtime/Table.h"
#include "support/HeadlessScreen.h"

namespace brindle {

/// Agrees to closing and zooming or not.
class StubbornDelegate : public NSObject {
    BRINDLE_OBJECT(StubbornDelegate, NSObject)

public:
    bool agrees_ = false;
    int asked_ = 0;
    NSRect zoomedTo_ {};
};
template <> struct StubbornDelegate::Methods<struct Asked> {
    static bool shouldClose(StubbornDelegate& self, NSObject*)
    {
        ++self.asked_;
        return self.agrees_;
    }
    static bool shouldZoom(StubbornDelegate& self, NSWindow*, NSRect frame)
    {
        self.zoomedTo_ = frame;
        return self.agrees_;
    }
    static void table(Builder& t)
    {
        t.methods({
            { "windowShouldClose:", imp<shouldClose> },
            { "windowShouldZoom:toFrame:", imp<shouldZoom> },
        });
    }
};
BRINDLE_RECORD(StubbornDelegate, Asked)

namespace {

    /// A red and a blue window in one place, the blue one in front.
    struct RedAndBlue {
        HeadlessScreen screen { 200, 200 };
        Ref<NSWindow> red = windowOf(NSMakeRect(50, 50, 100, 100));
        Ref<NSWindow> blue = windowOf(NSMakeRect(50, 50, 100, 100));

        RedAndBlue()
        {
            red->setBackgroundColor(NSColor::cls().redColor().get());
            blue->setBackgroundColor(NSColor::cls().blueColor().get());
            red->orderFront(nullptr);
            blue->orderFront(nullptr);
        }
        ~RedAndBlue()
        {
            red->close();
            blue->close();
        }
        RedAndBlue(const RedAndBlue&) = delete;
        RedAndBlue& operator=(const RedAndBlue&) = delete;
        bool showsRed() { return screen.pixels().at(100, 100) == 0xFFFF0000; }
        bool showsBlue() { return screen.pixels().at(100, 100) == 0xFF0000FF; }
    };

    /// Whether everything stands when a window that is told of an end lets the last owner of another one go.
    void endAnotherOneDuring(void (*step)(HeadlessScreen&))
    {
        HeadlessScreen screen { 200, 200 };
        const Ref<NSWindow> key = windowOf(NSMakeRect(0, 0, 50, 50), kOrdinary);
        Ref<NSWindow> other = windowOf(NSMakeRect(50, 50, 50, 50), kOrdinary);
        const WeakRef<NSWindow> weak(other.get());
        other->orderFront(nullptr);
        key->makeKeyAndOrderFront(nullptr);
        const Ref<NSObject> observer
            = NSNotificationCenter::cls()
                  .defaultCenter()
                  ->addObserverForName_object_queue_usingBlock(
                      NSWindowDidResignKeyNotification, key.get(), nullptr, [&](NSNotification*) {
                          maybe(other)->close();
                          other = nullptr;
                      });
        step(screen);
        NSNotificationCenter::cls().defaultCenter()->removeObserver(observer.get());
        EXPECT_EQ(other, nullptr) << "the key window was told";
        EXPECT_EQ(weak.get(), nullptr);
        key->close();
    }
    TEST(NSWindowOrder, AWindowMayEndAnotherWhileTheScreenIsTakenAway)
    {
        endAnotherOneDuring([](HeadlessScreen&) { installDisplay(nullptr); });
    }
    TEST(NSWindowOrder, AWindowMayEndAnotherWhileTheApplicationHides)
    {
        endAnotherOneDuring([](HeadlessScreen& screen) { screen.application().hide(nullptr); });
        NSApplication::cls().sharedApplication()->unhide(nullptr);
    }
    TEST(NSWindowOrder, AWindowMayEndAnotherWhileTheApplicationIsDeactivated)
    {
        endAnotherOneDuring([](HeadlessScreen& screen) { screen.application().deactivate(); });
    }

    TEST(NSWindowOrder, AWindowInitializedTwiceKeepsItsNumber)
    {
        const HeadlessScreen screen { 100, 100 };
        NSInteger number = 0;
        {
            const Ref<NSWindow> window = make<NSWindow>();
            number = window->windowNumber();
            EXPECT_EQ(window->init(), window);
            EXPECT_EQ(window->windowNumber(), number);
        }
        const Ref<NSWindow> other = make<NSWindow>();
        other->orderWindow_relativeTo(NSWindowAbove, number); // a number of no window any more
        EXPECT_TRUE(other->isVisible());
    }

    TEST(NSWindowOrder, FrontAndBackAreWithinALevel)
    {
        RedAndBlue p;
        EXPECT_TRUE(p.showsBlue());
        p.red->orderFront(nullptr);
        EXPECT_TRUE(p.showsRed());
        p.red->orderBack(nullptr);
        EXPECT_TRUE(p.showsBlue());
    }

    TEST(NSWindowOrder, AHigherLevelStaysInFront)
    {
        RedAndBlue p;
        p.red->setLevel(NSFloatingWindowLevel);
        EXPECT_TRUE(p.showsRed());
        p.blue->orderFront(nullptr);
        EXPECT_TRUE(p.showsRed());
        p.red->setLevel(NSNormalWindowLevel);
        p.blue->orderFront(nullptr);
        EXPECT_TRUE(p.showsBlue());
    }

    TEST(NSWindowOrder, TheLevelsOfTheBarLieBetweenPanelsAndMenus)
    {
        RedAndBlue p;
        p.blue->setLevel(NSModalPanelWindowLevel);
        p.red->setLevel(26);
        p.blue->orderFront(nullptr);
        EXPECT_TRUE(p.showsRed());
        p.blue->setLevel(NSPopUpMenuWindowLevel);
        p.red->orderFront(nullptr);
        EXPECT_TRUE(p.showsBlue());
    }

    TEST(NSWindowOrder, AWindowIsOrderedBeneathAnother)
    {
        RedAndBlue p;
        p.blue->orderWindow_relativeTo(NSWindowBelow, p.red->windowNumber());
        EXPECT_TRUE(p.showsRed());
        p.blue->orderWindow_relativeTo(NSWindowOut, 0);
        EXPECT_FALSE(p.blue->isVisible());
    }

    TEST(NSWindowOrder, WindowsHiddenWithTheApplicationReturnInTheirOldOrder)
    {
        RedAndBlue p;
        p.red->setHidesOnDeactivate(true);
        p.blue->setHidesOnDeactivate(true);
        p.screen.application().deactivate();
        EXPECT_FALSE(p.red->isVisible());
        EXPECT_FALSE(p.blue->isVisible());
        p.screen.application().activateIgnoringOtherApps(true);
        EXPECT_TRUE(p.red->isVisible());
        EXPECT_TRUE(p.showsBlue());
    }

    TEST(NSWindowOrder, SuchAWindowWaitsForTheApplication)
    {
        RedAndBlue p;
        p.red->orderOut(nullptr);
        p.red->setHidesOnDeactivate(true);
        p.screen.application().deactivate();
        p.red->orderFront(nullptr);
        EXPECT_FALSE(p.red->isVisible());
        p.screen.application().activateIgnoringOtherApps(true);
        EXPECT_TRUE(p.red->isVisible());
    }

    TEST(NSWindowOrder, RegardlessItDoesNotWait)
    {
        RedAndBlue p;
        p.red->orderOut(nullptr);
        p.red->setHidesOnDeactivate(true);
        p.screen.application().deactivate();
        p.red->orderFrontRegardless();
        EXPECT_TRUE(p.red->isVisible());
    }

    TEST(NSWindowOrder, AChildBelowLiesBelow)
    {
        RedAndBlue p;
        p.red->addChildWindow_ordered(p.blue.get(), NSWindowBelow);
        EXPECT_TRUE(p.showsRed());
        p.red->addChildWindow_ordered(p.blue.get(), NSWindowAbove);
        EXPECT_TRUE(p.showsBlue());
        EXPECT_EQ(p.red->childWindows()->count(), 1u);
    }

    TEST(NSWindowOrder, AChildThatIsOrderedFrontLiesInFrontOfTheOthers)
    {
        RedAndBlue p;
        const Ref<NSWindow> parent = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            NSMakeRect(20, 20, 200, 200), NSBorderlessWindowMask, NSBackingStoreBuffered, true);
        parent->orderFront(nullptr);
        parent->addChildWindow_ordered(p.blue.get(), NSWindowAbove);
        parent->addChildWindow_ordered(p.red.get(), NSWindowAbove);
        p.blue->orderFront(nullptr);
        EXPECT_TRUE(p.showsBlue());
        p.red->orderFront(nullptr);
        EXPECT_TRUE(p.showsRed());
        parent->close();
    }
    TEST(NSWindowOrder, ChildrenKeepTheirOrderWhenTheParentIsOrderedFront)
    {
        RedAndBlue p;
        const Ref<NSWindow> parent = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            NSMakeRect(20, 20, 200, 200), NSBorderlessWindowMask, NSBackingStoreBuffered, true);
        parent->orderFront(nullptr);
        parent->addChildWindow_ordered(p.blue.get(), NSWindowAbove);
        parent->addChildWindow_ordered(p.red.get(), NSWindowAbove);
        p.red->orderFront(nullptr);
        for (int i = 0; i < 2; ++i) {
            parent->orderFront(nullptr);
            EXPECT_TRUE(p.showsRed());
            EXPECT_EQ(p.screen.application().orderedWindows()->firstObject(), p.red);
        }
        parent->close();
    }
    TEST(NSWindowOrder, ARemovedChildStaysWhereItIs)
    {
        RedAndBlue p;
        p.red->addChildWindow_ordered(p.blue.get(), NSWindowAbove);
        p.red->removeChildWindow(p.blue.get());
        p.red->setFrameOrigin({ 0, 0 });
        EXPECT_EQ(p.blue->frame().origin, NSMakePoint(50, 50));
        EXPECT_EQ(p.blue->parentWindow(), nullptr);
    }

    TEST(NSWindowOrder, AWindowIsNoChildOfItsOwnChild)
    {
        RedAndBlue p;
        p.red->addChildWindow_ordered(p.blue.get(), NSWindowAbove);
        p.blue->addChildWindow_ordered(p.red.get(), NSWindowAbove);
        p.red->addChildWindow_ordered(p.red.get(), NSWindowAbove);
        EXPECT_EQ(p.red->parentWindow(), nullptr);
        EXPECT_EQ(p.red->childWindows()->count(), 1u);
    }

    TEST(NSWindowOrder, AlphaFadesTheWholeWindow)
    {
        RedAndBlue p;
        p.blue->setAlphaValue(0.5);
        const std::uint32_t seen = p.screen.pixels().at(100, 100);
        EXPECT_NEAR(static_cast<int>(seen >> 16 & 0xFF), 0x80, 2);
        EXPECT_NEAR(static_cast<int>(seen & 0xFF), 0x80, 2);
        p.blue->setAlphaValue(-3);
        EXPECT_EQ(p.blue->alphaValue(), 0);
        EXPECT_TRUE(p.showsRed());
    }

    TEST(NSWindowOrder, ClicksGoThroughAWindowThatIgnoresThem)
    {
        RedAndBlue p;
        p.blue->setIgnoresMouseEvents(true);
        p.red->setMovableByWindowBackground(true);
        p.screen.process();
        p.screen.pointer().press({ 100, 100 });
        p.screen.pointer().dragTo({ 110, 100 });
        p.screen.pointer().release();
        EXPECT_EQ(p.red->frame().origin, NSMakePoint(60, 50));
        EXPECT_EQ(p.blue->frame().origin, NSMakePoint(50, 50));
    }

    TEST(NSWindowOrder, AnImmovableWindowIsNotDragged)
    {
        RedAndBlue p;
        p.blue->setMovableByWindowBackground(true);
        p.blue->setMovable(false);
        p.screen.process();
        p.screen.pointer().press({ 100, 100 });
        p.screen.pointer().dragTo({ 110, 100 });
        p.screen.pointer().release();
        EXPECT_EQ(p.blue->frame().origin, NSMakePoint(50, 50));
    }

    TEST(NSWindowOrder, TheUserClosesOnlyWhatTheDelegateLetsGo)
    {
        HeadlessScreen screen;
        const Ref<NSWindow> window = windowOf(NSMakeRect(0, 0, 100, 100), kOrdinary);
        const Ref<StubbornDelegate> delegate = make<StubbornDelegate>();
        window->setDelegate(delegate.get());
        window->orderFront(nullptr);
        window->performClose(nullptr);
        EXPECT_TRUE(window->isVisible());
        delegate->agrees_ = true;
        window->performClose(nullptr);
        EXPECT_FALSE(window->isVisible());
        EXPECT_EQ(delegate->asked_, 2);
    }

    TEST(NSWindowOrder, TheDelegateIsAskedBeforeAZoom)
    {
        HeadlessScreen screen(400, 300);
        const Ref<NSWindow> window = windowOf(NSMakeRect(10, 10, 100, 100), kOrdinary);
        const Ref<StubbornDelegate> delegate = make<StubbornDelegate>();
        window->setDelegate(delegate.get());
        window->orderFront(nullptr);
        window->performZoom(nullptr);
        EXPECT_FALSE(window->isZoomed());
        EXPECT_EQ(delegate->zoomedTo_, NSMakeRect(0, 0, 400, 300));
        delegate->agrees_ = true;
        const NSRect before = window->frame();
        window->performZoom(nullptr);
        EXPECT_TRUE(window->isZoomed());
        window->performZoom(nullptr);
        EXPECT_EQ(delegate->zoomedTo_, before);
        window->close();
    }

    TEST(NSWindowOrder, CascadedWindowsLieBelowAndToTheRight)
    {
        HeadlessScreen screen(400, 300);
        const Ref<NSWindow> window = windowOf(NSMakeRect(10, 10, 100, 100));
        const NSPoint next = window->cascadeTopLeftFromPoint({});
        EXPECT_EQ(next, NSMakePoint(32, 88));
        EXPECT_EQ(window->frame().origin, NSMakePoint(10, 10));
        EXPECT_EQ(window->cascadeTopLeftFromPoint(next), NSMakePoint(54, 66));
        EXPECT_EQ(window->frame().origin, NSMakePoint(32, -12));
    }

    TEST(NSWindowOrder, AViewThatDoesNotSayItMovesTheWindowIsNoStrip)
    {
        HeadlessScreen screen;
        const Ref<NSWindow> window = windowOf(NSMakeRect(50, 50, 100, 100));
        const Ref<NSView> view = alloc<NSView>()->initWithFrame(NSMakeRect(0, 80, 100, 20));
        window->contentView()->superview()->addSubview(view.get());
        window->orderFront(nullptr);
        screen.process();
        screen.pointer().press({ 100, 140 });
        screen.pointer().dragTo({ 110, 140 });
        screen.pointer().release();
        EXPECT_EQ(window->frame().origin, NSMakePoint(50, 50));
        window->close();
    }

}

}
