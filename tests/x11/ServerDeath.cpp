// SPDX-License-Identifier: Apache-2.0
#include <random>

#include "XDriver.h"
#include "appkit/NSApplication.h"
#include "appkit/NSView.h"
#include "appkit/NSWindow.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSTimer.h"
#include "foundation/NSUserDefaults.h"
#include "foundation/defaults/DefaultsDomainsPrivate.h"
#include "foundation/defaults/DefaultsFilePrivate.h"
#include "support/Rounds.h"
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
        /// Answers a moment of the next milliseconds.
        double moment() { return static_cast<double>(random_() % 60) / 1000; }

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

    [[noreturn]] void runUntilTheServerDies(int round, const std::string& folder)
    {
        setDefaultsFolder(folder.c_str());
        display::XServerProcess server;
        display::installX11(server);
        const Ref<NSApplication> application = NSApplication::cls().sharedApplication();
        Restless window(static_cast<std::uint32_t>(round));
        const Ref<NSTimer> killer = NSTimer::cls().scheduledTimerWithTimeInterval_repeats_block(
            window.moment(), false, [&](NSTimer*) {
                NSUserDefaults::cls().standardUserDefaults()->setInteger_forKey(round, "round"_ns);
                server.kill();
            });
        application->run();
        std::exit(0);
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
        GTEST_FLAG_SET(death_test_style, "fast"); // the folder is the same in both processes
        const int rounds = std::max(5, test::rounds(200));
        for (int round = 1; round <= rounds; ++round) {
            const test::TemporaryFolder folder;
            EXPECT_EXIT(runUntilTheServerDies(round, folder.path()), testing::ExitedWithCode(1),
                "^brindle: lost the connection to the display server\n$");
            EXPECT_EQ(roundKeptIn(folder.path()), std::to_string(round));
        }
    }

}
}
