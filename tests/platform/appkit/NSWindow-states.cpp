// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSWindow.h"

#include "appkit/windows/NSWindowPrivate.h"

#include <gtest/gtest.h>

#include "SmallWindow.h"
#include "appkit/NSApplication.h"
#include "appkit/NSTableView.h"
#include "appkit/NSTextField.h"
#include "appkit/NSTextView.h"
#include "appkit/NSTrackingArea.h"
#include "foundation/NSNotification.h"
#include "foundation/NSNotificationCenter.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"
#include "support/HeadlessScreen.h"
#include "support/RaisingOnce.h"

namespace brindle {

/// A view that raises when the pointer leaves it for the first time.
class ViewThatIsLeft : public NSView {
    BRINDLE_OBJECT(ViewThatIsLeft, NSView)

public:
    bool wasLeft_ = false;
};
template <> struct ViewThatIsLeft::Methods<struct Left> {
    static void exited(ViewThatIsLeft& self, NSEvent*)
    {
        if (!std::exchange(self.wasLeft_, true))
            raise("Fault", "on purpose");
    }
    static void table(Builder& t) { t.methods({ { "mouseExited:", imp<exited> } }); }
};
BRINDLE_RECORD(ViewThatIsLeft, Left)

/// A window that does not let its children go.
class ClingingWindow : public NSWindow {
    BRINDLE_OBJECT(ClingingWindow, NSWindow)
};
template <> struct ClingingWindow::Methods<struct Children> {
    static void removeChild(ClingingWindow&, NSWindow*) { raise("Fault", "on purpose"); }
    static void table(Builder& t) { t.methods({ { "removeChildWindow:", imp<removeChild> } }); }
};
BRINDLE_RECORD(ClingingWindow, Children)

/// A table that counts what it is told of its window.
class TableThatIsTold : public NSTableView {
    BRINDLE_OBJECT(TableThatIsTold, NSTableView)

public:
    int told_ = 0;
};
template <> struct TableThatIsTold::Methods<struct Keys> {
    static void changed(TableThatIsTold& self, NSNotification*) { ++self.told_; }
    static void table(Builder& t) { t.methods({ { "windowKeyStateChanged:", imp<changed> } }); }
};
BRINDLE_RECORD(TableThatIsTold, Keys)

/// A view that gets its parts when it is about to have a superview.
class ViewThatBuilds : public NSView {
    BRINDLE_OBJECT(ViewThatBuilds, NSView)

public:
    std::vector<Ref<NSView>> parts_;
};
template <> struct ViewThatBuilds::Methods<struct Hooks> {
    static void willMove(ViewThatBuilds& self, NSView*)
    {
        for (const Ref<NSView>& part : std::exchange(self.parts_, {}))
            self.addSubview(part.get());
    }
    static void table(Builder& t) { t.methods({ { "viewWillMoveToSuperview:", imp<willMove> } }); }
};
BRINDLE_RECORD(ViewThatBuilds, Hooks)

namespace {

    using test::RaisingOnce;

    constexpr NSRect kContent { { 50, 60 }, { 200, 100 } };

    /// An ordinary window on a desktop that does at once what it is asked, and what the window posts.
    struct Ordinary {
        explicit Ordinary(NSWindowStyleMask style = kOrdinary)
        {
            window = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
                kContent, style, NSBackingStoreBuffered, true);
            window->makeKeyAndOrderFront(nullptr);
            screen.process();
            token = center()->addObserverForName_object_queue_usingBlock(
                nullptr, window.get(), nullptr, [this](NSNotification* notification) {
                    const std::string name = utf8Of(notification->name().get());
                    for (const char* word : { "iniaturize", "FullScreen" }) {
                        if (name.find(word) != std::string::npos)
                            log += name + " ";
                    }
                });
        }
        ~Ordinary()
        {
            center()->removeObserver(token.get());
            window->close();
        }
        Ordinary(const Ordinary&) = delete;
        Ordinary& operator=(const Ordinary&) = delete;
        static Ref<NSNotificationCenter> center()
        {
            return NSNotificationCenter::cls().defaultCenter();
        }

        HeadlessScreen screen { 640, 480 };
        Ref<NSWindow> window;
        Ref<NSObject> token;
        std::string log;
    };

    TEST(NSWindowStates, MinimisingTellsBeforeAndAfter)
    {
        Ordinary o;
        o.window->miniaturize(nullptr);
        EXPECT_TRUE(o.window->isMiniaturized());
        EXPECT_EQ(o.log, "NSWindowWillMiniaturizeNotification NSWindowDidMiniaturizeNotification ");
    }

    TEST(NSWindowStates, AMinimisedWindowComesBackOnce)
    {
        Ordinary o;
        o.window->miniaturize(nullptr);
        o.log.clear();
        o.window->deminiaturize(nullptr);
        o.window->deminiaturize(nullptr);
        EXPECT_FALSE(o.window->isMiniaturized());
        EXPECT_EQ(o.log, "NSWindowDidDeminiaturizeNotification ");
    }

    TEST(NSWindowStates, MinimisingTwiceIsMinimisingOnce)
    {
        Ordinary o;
        o.window->miniaturize(nullptr);
        o.log.clear();
        o.window->miniaturize(nullptr);
        EXPECT_EQ(o.log, "");
    }

    TEST(NSWindowStates, AWindowThatIsNotShownIsNotMinimised)
    {
        Ordinary o;
        o.window->orderOut(nullptr);
        o.window->miniaturize(nullptr);
        EXPECT_FALSE(o.window->isMiniaturized());
    }

    TEST(NSWindowStates, TheUsersWishToMinimiseNeedsTheStyle)
    {
        Ordinary o(NSTitledWindowMask);
        o.window->performMiniaturize(nullptr);
        EXPECT_FALSE(o.window->isMiniaturized());
        EXPECT_EQ(o.screen.display().counters().beeps, 1u);
    }

    TEST(NSWindowStates, AZoomedWindowFillsTheScreenAndComesBack)
    {
        Ordinary o;
        const NSRect before = o.window->frame();
        o.window->performZoom(nullptr);
        EXPECT_TRUE(o.window->isZoomed());
        EXPECT_EQ(o.window->frame(), NSMakeRect(0, 0, 640, 480));
        o.window->performZoom(nullptr);
        EXPECT_FALSE(o.window->isZoomed());
        EXPECT_EQ(o.window->frame(), before);
    }

    TEST(NSWindowStates, TheUsersWishToZoomNeedsTheStyle)
    {
        Ordinary o(NSTitledWindowMask);
        o.window->performZoom(nullptr);
        EXPECT_FALSE(o.window->isZoomed());
        EXPECT_EQ(o.screen.display().counters().beeps, 1u);
    }

    TEST(NSWindowStates, AFullScreenWindowHasNoTitleBarAndTellsIt)
    {
        Ordinary o;
        const NSRect before = o.window->frame();
        o.window->toggleFullScreen(nullptr);
        EXPECT_TRUE(o.window->styleMask() & NSFullScreenWindowMask);
        EXPECT_EQ(o.window->frame(), NSMakeRect(0, 0, 640, 480));
        EXPECT_EQ(o.window->contentView()->frame(), NSMakeRect(0, 0, 640, 480));
        EXPECT_EQ(o.log,
            "NSWindowWillEnterFullScreenNotification NSWindowDidEnterFullScreenNotification ");
        o.log.clear();
        o.window->toggleFullScreen(nullptr);
        EXPECT_FALSE(o.window->styleMask() & NSFullScreenWindowMask);
        EXPECT_EQ(o.window->frame(), before);
        EXPECT_EQ(o.window->contentView()->frame().size, kContent.size);
        EXPECT_EQ(
            o.log, "NSWindowWillExitFullScreenNotification NSWindowDidExitFullScreenNotification ");
    }

    TEST(NSWindowStates, WhatTheDesktopDoesIsFollowed)
    {
        Ordinary o;
        display::SurfaceState wanted;
        wanted.minimised = true;
        o.screen.display().setStateByUser(WindowAccess::surface(*o.window), wanted);
        o.screen.process();
        EXPECT_TRUE(o.window->isMiniaturized());
        EXPECT_EQ(o.log, "NSWindowDidMiniaturizeNotification ");
    }

    // ---- who is told raises

    TEST(NSWindowStates, AWindowClosesThoughWhoIsToldRaises)
    {
        Ordinary o;
        const RaisingOnce raising(NSWindowWillCloseNotification);
        EXPECT_THROW(o.window->close(), Exception);
        EXPECT_FALSE(o.window->isVisible());
    }

    TEST(NSWindowStates, AWindowClosesThoughTheCompletionOfASheetRaises)
    {
        Ordinary o;
        const Ref<NSWindow> sheet = windowOf(NSMakeRect(0, 0, 100, 50));
        o.window->beginSheet_completionHandler(
            sheet.get(), [](NSModalResponse) { raise("Fault", "on purpose"); });
        EXPECT_THROW(o.window->close(), Exception);
        EXPECT_FALSE(o.window->isVisible());
        EXPECT_FALSE(sheet->isVisible());
    }

    TEST(NSWindowStates, AWindowThatGoesWhileSomebodyRaisesIsKeptByNobody)
    {
        HeadlessScreen screen;
        Ref<NSWindow> window = windowOf(kContent, kOrdinary);
        const Ref<NSWindow> child = windowOf(kContent);
        const WeakRef<NSWindow> weak = window;
        window->addChildWindow_ordered(child.get(), NSWindowAbove);
        window->makeKeyAndOrderFront(nullptr);
        screen.process();
        const RaisingOnce raising(NSWindowDidResignKeyNotification);
        EXPECT_THROW(window->orderOut(nullptr), Exception);
        EXPECT_FALSE(window->isVisible());
        EXPECT_FALSE(child->isVisible());
        window->removeChildWindow(child.get());
        window = nullptr;
        screen.process();
        EXPECT_EQ(weak.get(), nullptr);
    }

    /// A key window of which a view with the pointer in it raises when the pointer leaves.
    struct Left {
        HeadlessScreen screen { 640, 480 };
        Ref<NSWindow> window = windowOf(kContent, kOrdinary);

        Left()
        {
            const NSRect whole = NSMakeRect(0, 0, 200, 100);
            const Ref<NSView> view = alloc<ViewThatIsLeft>()->initWithFrame(whole);
            window->contentView()->addSubview(view.get());
            view->addTrackingArea(alloc<NSTrackingArea>()
                                      ->initWithRect_options_owner_userInfo(whole,
                                          NSTrackingMouseEnteredAndExited | NSTrackingActiveAlways,
                                          view.get(), nullptr)
                                      .get());
            window->makeKeyAndOrderFront(nullptr);
            screen.process();
            screen.pointer().moveTo({ 100, 100 });
        }
        ~Left()
        {
            if (window)
                window->close();
        }
        Left(const Left&) = delete;
        Left& operator=(const Left&) = delete;
    };

    TEST(NSWindowStates, AWindowClosesThoughAViewRaisesWhenThePointerLeaves)
    {
        Left l;
        const WeakRef<NSWindow> weak = l.window;
        EXPECT_THROW(l.window->close(), Exception);
        EXPECT_FALSE(l.window->isVisible());
        EXPECT_FALSE(l.window->isKeyWindow());
        l.window = nullptr;
        l.screen.process();
        EXPECT_EQ(weak.get(), nullptr);
    }

    TEST(NSWindowStates, AWindowIsNotTheKeyOneThoughAViewRaisesWhenThePointerLeaves)
    {
        Left l;
        EXPECT_THROW(l.window->orderOut(nullptr), Exception);
        EXPECT_FALSE(l.window->isVisible());
        EXPECT_FALSE(l.window->isKeyWindow());
    }

    TEST(NSWindowStates, AWindowComesBackWithTheApplicationThoughItsGoingRaised)
    {
        Left l;
        const Ref<NSWindow> other = windowOf(kContent, kOrdinary);
        other->orderBack(nullptr);
        for (const Ref<NSWindow>& window : { l.window, other })
            window->setHidesOnDeactivate(true);
        EXPECT_THROW(l.screen.application().deactivate(), Exception);
        EXPECT_FALSE(l.window->isVisible());
        EXPECT_FALSE(other->isVisible());
        l.screen.application().activateIgnoringOtherApps(true);
        EXPECT_TRUE(l.window->isVisible());
        EXPECT_TRUE(other->isVisible());
        other->close();
    }

    TEST(NSWindowStates, AWindowComesBackWhenTheApplicationIsShownThoughItsGoingRaised)
    {
        Left l;
        const Ref<NSWindow> other = windowOf(kContent, kOrdinary);
        other->orderBack(nullptr);
        EXPECT_THROW(l.screen.application().hide(nullptr), Exception);
        EXPECT_FALSE(l.window->isVisible());
        EXPECT_FALSE(other->isVisible());
        l.screen.application().unhide(nullptr);
        EXPECT_TRUE(l.window->isVisible());
        EXPECT_TRUE(other->isVisible());
        other->close();
    }

    TEST(NSWindowStates, TheNextWindowBecomesKeyAndMainThoughWhoIsToldRaises)
    {
        Ordinary o;
        const Ref<NSWindow> front = windowOf(kContent, kOrdinary);
        front->makeKeyAndOrderFront(nullptr);
        o.screen.process();
        const RaisingOnce raising(NSWindowDidResignKeyNotification);
        EXPECT_THROW(front->close(), Exception);
        EXPECT_FALSE(front->isMainWindow());
        EXPECT_TRUE(o.window->isKeyWindow());
        EXPECT_TRUE(o.window->isMainWindow());
    }

    TEST(NSWindowStates, AWindowBecomesKeyAndMainThoughTheOneBeforeRaises)
    {
        Ordinary o;
        const Ref<NSWindow> next = windowOf(kContent, kOrdinary);
        next->orderFront(nullptr);
        {
            const RaisingOnce raising(NSWindowDidResignKeyNotification);
            EXPECT_THROW(next->makeKeyWindow(), Exception);
        }
        EXPECT_TRUE(next->isKeyWindow());
        const RaisingOnce raising(NSWindowDidResignMainNotification);
        EXPECT_THROW(next->makeMainWindow(), Exception);
        EXPECT_TRUE(next->isMainWindow());
        next->close();
    }

    TEST(NSWindowStates, AWindowThatIsPressedBecomesKeyAndMainThoughTheOneBeforeRaises)
    {
        Ordinary o;
        const Ref<NSWindow> next = windowOf(NSMakeRect(300, 60, 200, 100), kOrdinary);
        next->orderFront(nullptr);
        const RaisingOnce raising(NSWindowDidResignKeyNotification);
        EXPECT_THROW(o.screen.pointer().click({ 350, 100 }), Exception);
        EXPECT_TRUE(next->isKeyWindow());
        EXPECT_TRUE(next->isMainWindow());
        next->close();
    }

    TEST(NSWindowStates, AWindowGetsTheKeyboardThoughTheOneBeforeRaises)
    {
        Ordinary o;
        const Ref<NSWindow> next = windowOf(kContent, kOrdinary);
        const Ref<NSTextField> field = make<NSTextField>();
        next->contentView()->addSubview(field.get());
        next->orderFront(nullptr);
        next->makeFirstResponder(field.get());
        o.screen.process();
        const RaisingOnce raising(NSWindowDidResignKeyNotification);
        EXPECT_THROW(next->makeKeyAndOrderFront(nullptr), Exception);
        o.screen.process();
        EXPECT_TRUE(next->isMainWindow());
        o.screen.keyboard().type(u"fig");
        EXPECT_EQ(utf8Of(field->stringValue().get()), "fig");
        next->close();
    }

    TEST(NSWindowStates, AWindowThatTheDesktopChoosesBecomesMainThoughTheOneBeforeRaises)
    {
        Ordinary o;
        const Ref<NSWindow> next = windowOf(kContent, kOrdinary);
        next->orderFront(nullptr);
        o.screen.process();
        const RaisingOnce raising(NSWindowDidResignKeyNotification);
        o.screen.display().focus(WindowAccess::state(*next).surface.get());
        EXPECT_THROW(o.screen.process(), Exception);
        EXPECT_TRUE(next->isKeyWindow());
        EXPECT_TRUE(next->isMainWindow());
        next->close();
    }

    // ---- who hears

    TEST(NSWindowStates, ViewsThatAreMadeWhileOthersMoveHearThatAnotherWindowIsKey)
    {
        Ordinary o;
        const Ref<TableThatIsTold> table = make<TableThatIsTold>();
        const Ref<NSTextView> text
            = cast<NSTextView>(alloc<NSTextView>()->initWithFrame(NSMakeRect(0, 0, 50, 50)));
        const Ref<ViewThatBuilds> around = cast<ViewThatBuilds>(
            alloc<ViewThatBuilds>()->initWithFrame(NSMakeRect(0, 0, 90, 90)));
        around->parts_ = { table, text };
        o.window->contentView()->addSubview(around.get());
        o.screen.process();
        ASSERT_FALSE(text->needsDisplay());
        const Ref<NSWindow> next = windowOf(kContent, kOrdinary);
        next->makeKeyAndOrderFront(nullptr);
        EXPECT_EQ(table->told_, 1);
        EXPECT_TRUE(text->needsDisplay());
        next->close();
    }

    // ---- closing

    TEST(NSWindowStates, AWindowClosesThoughItsParentClingsToIt)
    {
        HeadlessScreen screen;
        const Ref<NSWindow> parent = make<ClingingWindow>();
        const Ref<NSWindow> child = windowOf(kContent);
        parent->addChildWindow_ordered(child.get(), NSWindowAbove);
        parent->orderFront(nullptr);
        EXPECT_THROW(child->close(), Exception);
        EXPECT_FALSE(child->isVisible());
    }

    TEST(NSWindowStates, AWindowThatIsResizedClosesThoughWhoIsToldRaises)
    {
        Ordinary o;
        WindowAccess::beginLiveResize(*o.window);
        const RaisingOnce raising(NSWindowDidEndLiveResizeNotification);
        EXPECT_THROW(o.window->close(), Exception);
        EXPECT_EQ(WindowAccess::state(*o.window).surface, nullptr);
    }

}
}
