// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSApplication.h"

#include "XDriver.h"
#include "appkit/NSView.h"
#include "appkit/NSWindow.h"
#include "core/BRGeometry.h"
#include "foundation/NSDate.h"
#include "foundation/NSRunLoop.h"

namespace brindle {
namespace {

    using display::environmentOf;

    Ref<NSWindow> openWindow()
    {
        const auto window = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            NSMakeRect(40, 40, 200, 120), NSTitledWindowMask | NSClosableWindowMask,
            NSBackingStoreBuffered, true);
        window->makeKeyAndOrderFront(nullptr);
        return window;
    }

    void useServer(const display::XServerProcess& server)
    {
        installDisplay(display::openDisplay(
            display::Choice::x11, environmentOf({ { "DISPLAY", server.name() } }), [](auto) {}));
    }

    /// Runs the loop for some time of the real world, which is where the server lives.
    void runFor(double seconds)
    {
        NSRunLoop::cls().mainRunLoop()->runUntilDate(
            NSDate::cls().dateWithTimeIntervalSinceNow(seconds).get());
    }

    TEST(ApplicationOnXDeathTest, EndsWithOneLineAndStatusOneWhenTheServerDies)
    {
        const auto runUntilTheServerDies = [] {
            display::XServerProcess server;
            useServer(server);
            const Ref<NSApplication> application = NSApplication::cls().sharedApplication();
            const Ref<NSWindow> window = openWindow();
            application->processEvents();
            server.kill();
            application->run();
        };
        EXPECT_EXIT(runUntilTheServerDies(), testing::ExitedWithCode(1),
            "^brindle: lost the connection to the display server\n$");
    }

    TEST(ApplicationOnX, DoesNotWakeUpOverFiveIdleSeconds)
    {
        display::XServerProcess server;
        useServer(server);
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

    TEST(ApplicationOnX, KnowsTheServersScreenInPoints)
    {
        display::XServerProcess server({ "-screen", "0", "1000x600x24" });
        useServer(server);
        EXPECT_EQ(BRUIScreen(), NSMakeRect(0, 0, 1000, 600));
        EXPECT_EQ(BRUIScreenHeight(), 600);
        installDisplay(nullptr);
    }

}
}
