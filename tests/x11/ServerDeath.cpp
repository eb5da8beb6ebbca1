// SPDX-License-Identifier: Apache-2.0
#include <array>
#include <chrono>
#include <random>

#include <fcntl.h>
#include <unistd.h>

#include "XDriver.h"
#include "appkit/NSApplication.h"
#include "appkit/NSMenu.h"
#include "appkit/NSView.h"
#include "appkit/NSWindow.h"
#include "foundation/NSDate.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSRunLoop.h"
#include "foundation/NSTimer.h"
#include "foundation/NSUserDefaults.h"
#include "foundation/defaults/DefaultsDomainsPrivate.h"
#include "foundation/defaults/DefaultsFilePrivate.h"
#include "support/AheadOfOthers.h"
#include "support/DefaultsWriters.h"
#include "support/Figures.h"
#include "support/Strings.h"
#include "support/TemporaryFolder.h"

namespace brindle {
namespace {

    using Style = NSWindowStyleMask;

    /// A window that is drawn, moved, hidden and shown again all the time.
    class Restless {
    public:
        explicit Restless(std::uint32_t seed)
            : random_(seed)
        {
            window_->makeKeyAndOrderFront(nullptr);
            timer_ = NSTimer::cls().scheduledTimerWithTimeInterval_repeats_block(
                0.001, true, [this](NSTimer*) { act(); });
        }
        void rest() { timer_->invalidate(); }
        void runModally()
        {
            NSApplication::cls().sharedApplication()->runModalForWindow(window_.get());
        }
        NSRect frame() const { return window_->frame(); }

    private:
        void act()
        {
            switch (random_() % 5) {
            case 0:
                return window_->contentView()->setNeedsDisplay(true);
            case 1:
                return window_->setFrameOrigin({ static_cast<double>(random_() % 300), 50 });
            case 2:
                return window_->setContentSize({ 100, static_cast<double>(50 + random_() % 200) });
            case 3:
                return window_->orderOut(nullptr);
            default:
                return window_->makeKeyAndOrderFront(nullptr);
            }
        }

        std::mt19937 random_;
        Ref<NSWindow> window_ = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            NSMakeRect(40, 40, 200, 120), Style { NSTitledWindowMask | NSResizableWindowMask },
            NSBackingStoreBuffered, true);
        Ref<NSTimer> timer_;
    };

    /// What a program is at when its server dies.
    enum class Busy { notAtAll, drawing, withAMenu, withAPanel, withADrag };
    constexpr int kKinds = 5;

    NSString* modeOf(Busy busy)
    {
        switch (busy) {
        case Busy::withAMenu:
        case Busy::withADrag:
            return NSEventTrackingRunLoopMode;
        case Busy::withAPanel:
            return NSModalPanelRunLoopMode;
        default:
            return NSDefaultRunLoopMode;
        }
    }

    /// The program.
    class Doomed {
    public:
        Doomed(const display::XServerProcess& server, std::uint32_t seed)
            : driver_(server.name().c_str())
            , window_((display::installX11(server), seed))
        {
        }
        /// Does it until the end; `isReady` is called once in the middle.
        void live(Busy busy, std::function<void()> isReady)
        {
            const Ref<NSTimer> ready = NSTimer::cls().timerWithTimeInterval_repeats_block(
                0.02, false, [isReady = std::move(isReady)](NSTimer*) { isReady(); });
            if (busy != Busy::drawing)
                window_.rest();
            if (busy == Busy::withADrag)
                pressTitleBar();
            const auto loop = NSRunLoop::cls().mainRunLoop();
            loop->addTimer_forMode(ready.get(), modeOf(busy));
            if (busy == Busy::withAMenu)
                loop->performBlock([] { openMenu(); });
            if (busy == Busy::withAPanel)
                loop->performBlock([this] { window_.runModally(); });
            NSApplication::cls().sharedApplication()->run();
        }

    private:
        static void openMenu()
        {
            const auto menu = make<NSMenu>();
            menu->addItemWithTitle_action_keyEquivalent("Item"_ns, SEL {}, nullptr);
            menu->popUpMenuPositioningItem_atLocation_inView(nullptr, { 100, 300 }, nullptr);
        }
        void pressTitleBar()
        {
            NSRunLoop::cls().mainRunLoop()->runUntilDate(
                NSDate::cls().dateWithTimeIntervalSinceNow(0.1).get()); // the server has shown it
            const NSRect frame = window_.frame();
            const auto x = static_cast<int>(NSMidX(frame));
            const auto y = static_cast<int>(480 - NSMaxY(frame)) + 10;
            driver_.movePointer(x, y);
            driver_.button(1, true);
            driver_.movePointer(x + 20, y + 20);
            driver_.sync();
        }

        display::XDriver driver_;
        Restless window_;
    };

    /// How a program ended.
    struct Ending {
        int status = 0;
        std::string said;
        std::chrono::duration<double> taken {}; // since there was no server any more
    };

    std::string readAll(int descriptor)
    {
        std::string text;
        char letter = 0;
        while (::read(descriptor, &letter, 1) == 1)
            text += letter;
        return text;
    }

    Ending endingOf(Busy busy, int round, const std::string& folder)
    {
        std::array<int, 2> ready {};
        std::array<int, 2> said {};
        if (::pipe2(ready.data(), O_CLOEXEC) != 0 || ::pipe2(said.data(), O_CLOEXEC) != 0)
            return {};
        display::XServerProcess server;
        std::fflush(nullptr); // the other process would write it too
        const pid_t child = test::startChild([&] {
            ::alarm(60); // one that does not end fails
            const test::AheadOfOthers ahead;
            ::dup2(said[1], STDERR_FILENO);
            for (const int descriptor : { said[0], said[1], ready[0] })
                ::close(descriptor);
            setDefaultsFolder(folder.c_str());
            Doomed(server, static_cast<std::uint32_t>(round)).live(busy, [&] {
                NSUserDefaults::cls().standardUserDefaults()->setInteger_forKey(round, "round"_ns);
                ::close(ready[1]);
            });
        });
        ::close(ready[1]);
        ::close(said[1]);
        readAll(ready[0]);
        test::spin(std::chrono::microseconds(round * 7919 % 30000));
        server.kill();
        const auto start = std::chrono::steady_clock::now();
        Ending ending;
        ::waitpid(child, &ending.status, 0);
        ending.taken = std::chrono::steady_clock::now() - start;
        ending.said = readAll(said[0]);
        ::close(ready[0]);
        ::close(said[0]);
        return ending;
    }

    // This process leaves the defaults alone: a forked one would take their changes for those of its parent.
    std::string roundKeptIn(const std::filesystem::path& folder)
    {
        const std::filesystem::directory_iterator domain(folder);
        if (domain == std::filesystem::directory_iterator())
            return "no file";
        defaults::File file(domain->path());
        file.refresh();
        return textOf(file.contents()->objectForKey("round"_ns));
    }

    TEST(ServerDeathTest, AtAnyMomentEndsWithOneLineAndLosesNoSettings)
    {
        const int rounds = std::max(kKinds, test::rounds(200));
        test::Slowest end;
        for (int round = 1; round <= rounds; ++round) {
            const test::TemporaryFolder folder;
            const Ending ending = endingOf(static_cast<Busy>(round % kKinds), round, folder.path());
            SCOPED_TRACE(round);
            EXPECT_TRUE(WIFEXITED(ending.status));
            EXPECT_EQ(WEXITSTATUS(ending.status), 1);
            EXPECT_EQ(ending.said, "brindle: lost the connection to the display server\n");
            EXPECT_EQ(roundKeptIn(folder.path()), std::to_string(round));
            end.add(ending.taken);
        }
        test::publish({ "a display server that dies while the program is idle, draws, has a menu, "
                        "a panel or a drag: "
                        "its end",
            rounds, end.milliseconds(), "ms", 100 });
    }

}
}
