// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSApplication.h"

#include <cstdlib>
#include <functional>
#include <string_view>

#include "XDriver.h"
#include "appkit/NSColor.h"
#include "appkit/NSEvent.h"
#include "appkit/NSScreen.h"
#include "appkit/NSView.h"
#include "appkit/NSWindow.h"
#include "core/BRGeometry.h"
#include "foundation/NSDate.h"
#include "foundation/NSNotification.h"
#include "foundation/NSNotificationCenter.h"
#include "foundation/NSRunLoop.h"
#include "foundation/NSTimer.h"
#include "runtime/Table.h"
#include "support/DefaultsFolder.h"
#include "support/MessageBus.h"
#include "support/Variables.h"

namespace brindle {

/// Does something else while it draws.
class BusyView : public NSView {
    BRINDLE_OBJECT(BusyView, NSView)

public:
    std::function<void()> work_;
    int presses_ = 0;
};

template <> struct BusyView::Methods<struct Drawing> {
    static void drawRect(BusyView& self, NSRect)
    {
        if (self.work_)
            std::exchange(self.work_, nullptr)();
    }
    static void mouseDown(BusyView& self, NSEvent*) { ++self.presses_; }
    static void table(Builder& t)
    {
        t.methods({ { "drawRect:", imp<drawRect> }, { "mouseDown:", imp<mouseDown> } });
    }
};
BRINDLE_RECORD(BusyView, Drawing)

namespace {

    using display::becomes;

    Ref<NSWindow> openWindow()
    {
        const auto window = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            NSMakeRect(40, 40, 200, 120), NSTitledWindowMask | NSClosableWindowMask,
            NSBackingStoreBuffered, true);
        window->makeKeyAndOrderFront(nullptr);
        return window;
    }

    /// Runs the loop for some time of the real world, which is where the server lives.
    void runFor(double seconds)
    {
        NSRunLoop::cls().mainRunLoop()->runUntilDate(
            NSDate::cls().dateWithTimeIntervalSinceNow(seconds).get());
    }

    constexpr const char* kLastLine = "^brindle: lost the connection to the display server\n$";

    TEST(ApplicationOnXDeathTest, EndsWithOneLineAndStatusOneWhenTheServerDies)
    {
        const auto runUntilTheServerDies = [] {
            display::XServerProcess server;
            display::installX11(server);
            const Ref<NSApplication> application = NSApplication::cls().sharedApplication();
            const Ref<NSWindow> window = openWindow();
            application->processEvents();
            server.kill();
            application->run();
        };
        EXPECT_EXIT(runUntilTheServerDies(), testing::ExitedWithCode(1), kLastLine);
    }

    TEST(ApplicationOnXDeathTest, EndsWithOneLineAndStatusOneWhenTheServerDiesWhileIdle)
    {
        const auto idleUntilTheServerDies = [] {
            display::XServerProcess server;
            display::installX11(server);
            const Ref<NSApplication> application = NSApplication::cls().sharedApplication();
            const Ref<NSWindow> window = openWindow();
            runFor(0.3);
            const Ref<NSTimer> killer = NSTimer::cls().scheduledTimerWithTimeInterval_repeats_block(
                0.1, false, [&](NSTimer*) { server.kill(); });
            application->run();
        };
        EXPECT_EXIT(idleUntilTheServerDies(), testing::ExitedWithCode(1), kLastLine);
    }

    TEST(ApplicationOnXDeathTest, EndsWithOneLineAndStatusOneWhenTheServerDiesDuringADrag)
    {
        const auto dragUntilTheServerDies = [] {
            display::XServerProcess server;
            display::XDriver driver(server.name().c_str());
            display::installX11(server);
            const Ref<NSApplication> application = NSApplication::cls().sharedApplication();
            const Ref<NSWindow> window = openWindow();
            runFor(0.3);
            application->processEvents();
            const NSRect frame = window->frame();
            const auto x = static_cast<int>(NSMidX(frame));
            const auto y = static_cast<int>(480 - NSMaxY(frame)) + 10;
            driver.movePointer(x, y);
            driver.button(1, true);
            // The title bar follows the pointer in a loop of its own when the first movement kills the server.
            const Ref<NSObject> token
                = NSNotificationCenter::cls()
                      .defaultCenter()
                      ->addObserverForName_object_queue_usingBlock(NSWindowDidMoveNotification,
                          window.get(), nullptr, [&](NSNotification*) { server.kill(); });
            driver.movePointer(x + 20, y + 20);
            application->run();
        };
        EXPECT_EXIT(dragUntilTheServerDies(), testing::ExitedWithCode(1), kLastLine);
    }

    TEST(ApplicationOnX, MinimisesZoomsAndFillsTheScreenAndComesBack)
    {
        display::Display& display = display::installX11();
        const Ref<NSApplication> application = NSApplication::cls().sharedApplication();
        const auto window = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            NSMakeRect(200, 300, 300, 200),
            NSTitledWindowMask | NSMiniaturizableWindowMask | NSResizableWindowMask,
            NSBackingStoreBuffered, true);
        window->makeKeyAndOrderFront(nullptr);
        runFor(0.3);
        const NSRect before = window->frame();
        const NSRect all = NSScreen::cls().mainScreen()->frame();

        window->performZoom(nullptr);
        EXPECT_TRUE(becomes([&] { return window->isZoomed() && window->frame() != before; }));
        window->performZoom(nullptr);
        EXPECT_TRUE(becomes([&] { return !window->isZoomed() && window->frame() == before; }));

        window->toggleFullScreen(nullptr);
        EXPECT_TRUE(becomes([&] {
            return (window->styleMask() & NSFullScreenWindowMask) && window->frame() == all;
        }));
        EXPECT_EQ(window->contentView()->frame().size, all.size);
        window->toggleFullScreen(nullptr);
        EXPECT_TRUE(becomes([&] {
            return !(window->styleMask() & NSFullScreenWindowMask) && window->frame() == before;
        }));

        window->performMiniaturize(nullptr);
        EXPECT_TRUE(becomes([&] { return window->isMiniaturized(); }));
        window->deminiaturize(nullptr);
        EXPECT_TRUE(becomes([&] { return !window->isMiniaturized(); }));
        window->close();
        display::X11Test::endInstalled(display);
    }

    TEST(ApplicationOnX, DoesNotWakeUpOverFiveIdleSeconds)
    {
        display::XServerProcess server;
        display::installX11(server);
        const Ref<NSApplication> application = NSApplication::cls().sharedApplication();
        const Ref<NSWindow> window = openWindow();
        runFor(0.5); // what opening a window brings along
        application->processEvents();
        const Ref<NSRunLoop> loop = NSRunLoop::cls().mainRunLoop();
        const NSUInteger before = loop->wakeCount();
        runFor(5);
        EXPECT_LE(loop->wakeCount() - before, 1u) << "the one that ends the five seconds";
        window->close();
        installDisplay(nullptr);
    }

    TEST(ApplicationOnX, LooksAsTheDesktopIsSetAndOutlivesItsBus)
    {
        const auto looks = [](appkit::Appearance wanted) {
            return test::runUntil([wanted] { return appkit::appearance() == wanted; });
        };
        test::DefaultsFolder defaults;
        test::MessageBus bus;
        test::SettingsDesk desk(bus, test::SettingsDesk::Answers::firstVersion, 1);
        const test::Variables session { { "DBUS_SESSION_BUS_ADDRESS", bus.address() } };
        display::XServerProcess server;
        display::installX11(server);
        const Ref<NSApplication> application = NSApplication::cls().sharedApplication();
        const Ref<NSWindow> window = openWindow();
        EXPECT_EQ(appkit::appearance(), appkit::Appearance::light);
        EXPECT_TRUE(looks(appkit::Appearance::dark));
        desk.announce(2);
        EXPECT_TRUE(looks(appkit::Appearance::light));
        bus.end();
        runFor(0.1);
        application->processEvents();
        EXPECT_TRUE(window->isVisible());
        window->close();
        installDisplay(nullptr);
    }

    TEST(ApplicationOnX, TakesAClickThatComesWhileAViewDraws)
    {
        display::XServerProcess server;
        display::XDriver driver(server.name().c_str());
        display::installX11(server);
        const Ref<NSApplication> application = NSApplication::cls().sharedApplication();
        const Ref<NSWindow> window = openWindow();
        runFor(0.3);
        application->processEvents();
        const Ref<BusyView> view = make<BusyView>();
        window->setContentView(view.get());
        window->display();
        const NSRect frame = window->frame();
        view->work_ = [&] {
            driver.click(static_cast<int>(NSMidX(frame)), static_cast<int>(480 - NSMidY(frame)));
            NSEvent::cls().mouseLocation(); // waits for an answer, and the click comes before that
        };
        // As the last thing before the loop sleeps.
        const Ref<NSRunLoop> loop = NSRunLoop::cls().mainRunLoop();
        const Ref<NSRunLoopObserver> mark
            = NSRunLoopObserver::cls().observerWithOrder_handler(0, [&] {
                  if (view->work_)
                      view->setNeedsDisplay(true);
              });
        loop->addObserver_forMode(mark.get(), NSDefaultRunLoopMode);
        const Ref<NSTimer> patience = NSTimer::cls().scheduledTimerWithTimeInterval_repeats_block(
            5, false, [](NSTimer*) {});
        while (!view->presses_ && patience->isValid()) {
            const Ref<NSEvent> event = application->nextEventMatchingMask_untilDate_inMode_dequeue(
                NSAnyEventMask, patience->fireDate().get(), NSDefaultRunLoopMode.get(), true);
            application->sendEvent(event.get());
        }
        EXPECT_EQ(view->presses_, 1);
        EXPECT_TRUE(patience->isValid()) << "long before anything else wakes it";
        patience->invalidate();
        mark->invalidate();
        window->close();
        installDisplay(nullptr);
    }

    TEST(ApplicationOnX, DoesNotWakeUpForModifiersThatArePressedForOthers)
    {
        display::XServerProcess server;
        display::XDriver driver(server.name().c_str());
        display::installX11(server);
        const Ref<NSApplication> application = NSApplication::cls().sharedApplication();
        const Ref<NSWindow> window = openWindow();
        runFor(0.5); // it has had the focus, and with it the keyboard
        application->processEvents();
        driver.stealFocus();
        runFor(0.2);
        application->processEvents();
        EXPECT_FALSE(application->isActive());
        const Ref<NSRunLoop> loop = NSRunLoop::cls().mainRunLoop();
        const NSUInteger before = loop->wakeCount();
        constexpr std::uint8_t kShiftKey = 50;
        for (int i = 0; i < 10; ++i)
            driver.tap(kShiftKey);
        runFor(0.5);
        EXPECT_LE(loop->wakeCount() - before, 1u) << "the one that ends the half second";
        window->close();
        installDisplay(nullptr);
    }

    TEST(ApplicationOnX, ALiveResizeByTheManagerEndsWithTheButton)
    {
        const char* const manager = std::getenv("BRINDLE_TEST_WM");
        if (!manager || std::string_view(manager) == "none")
            return; // without one the window follows the pointer itself
        display::Display& display = display::installX11();
        display::XDriver driver;
        const Ref<NSApplication> application = NSApplication::cls().sharedApplication();
        const auto window = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            NSMakeRect(200, 300, 300, 200), NSTitledWindowMask | NSResizableWindowMask,
            NSBackingStoreBuffered, true);
        window->makeKeyAndOrderFront(nullptr);
        runFor(0.3);
        application->processEvents();
        const NSRect frame = window->frame();
        const auto row = static_cast<int>(800 - NSMidY(frame));
        driver.movePointer(static_cast<int>(NSMaxX(frame)) - 2, row);
        driver.button(1, true);
        for (int i = 0; i < 100 && !window->inLiveResize(); ++i) {
            runFor(0.02);
            application->processEvents();
        }
        EXPECT_TRUE(window->inLiveResize());
        driver.movePointer(static_cast<int>(NSMaxX(frame)) + 50, row);
        driver.button(1, false);
        for (int i = 0; i < 100 && window->inLiveResize(); ++i)
            runFor(0.02);
        EXPECT_FALSE(window->inLiveResize()) << "without any event of the pointer";
        window->close();
        display::X11Test::endInstalled(display);
    }

    TEST(ApplicationOnX, KnowsTheServersScreenInPoints)
    {
        display::XServerProcess server({ "-screen", "0", "1000x600x24" });
        display::installX11(server);
        EXPECT_EQ(BRUIScreen(), NSMakeRect(0, 0, 1000, 600));
        EXPECT_EQ(BRUIScreenHeight(), 600);
        installDisplay(nullptr);
    }

}
}
