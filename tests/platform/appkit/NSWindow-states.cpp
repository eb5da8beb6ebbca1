// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSWindow.h"

#include "appkit/windows/NSWindowPrivate.h"

#include <gtest/gtest.h>

#include "SmallWindow.h"
#include "foundation/NSNotification.h"
#include "foundation/NSNotificationCenter.h"
#include "runtime/NSException.h"
#include "support/HeadlessScreen.h"

namespace brindle {
namespace {

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

    /// Raises the first time that something is posted.
    struct RaisingOnce {
        explicit RaisingOnce(NSString* name)
            : token(Ordinary::center()->addObserverForName_object_queue_usingBlock(
                name, nullptr, nullptr, [this](NSNotification*) {
                    if (!std::exchange(raised, true))
                        raise("Fault", "on purpose");
                }))
        {
        }
        ~RaisingOnce() { Ordinary::center()->removeObserver(token.get()); }
        RaisingOnce(const RaisingOnce&) = delete;
        RaisingOnce& operator=(const RaisingOnce&) = delete;

        bool raised = false;
        Ref<NSObject> token;
    };

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

}
}
