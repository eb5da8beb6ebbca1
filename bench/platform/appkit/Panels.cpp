// SPDX-License-Identifier: Apache-2.0
#include <fstream>

#include <dirent.h>

#include "../../../tests/support/HeadlessScreen.h"
#include "../../../tests/support/TemporaryFolder.h"
#include "appkit/NSAlert.h"
#include "appkit/panels/FileBrowserPrivate.h"
#include "foundation/NSDate.h"
#include "support/Measure.h"
#include "support/Topics.h"

// What a user waits for before a panel or an alert is there.

namespace brindle::bench {

namespace {

    constexpr int kFiles = 100'000;

    /// A folder of very many files; made once.
    const std::filesystem::path& largeFolder()
    {
        static const auto* const folder = [] {
            auto* const made = new test::TemporaryFolder;
            std::atexit([] { std::filesystem::remove_all(largeFolder()); });
            for (int i = 0; i < kFiles; ++i)
                std::ofstream(made->path() / ("file " + std::to_string(i) + ".txt"));
            return &made->path();
        }();
        return *folder;
    }

    struct Anyone : files::BrowserClient {
        bool enables(const std::string&, bool) override { return true; }
        void folderChanged() override { }
        void contentsChanged() override { }
        void selectionChanged() override { }
        void confirm() override { }
    };

    /// Answers the milliseconds until the browser of the folder says so.
    double waitUntil(const std::function<bool(files::Browser&)>& isThere)
    {
        largeFolder();
        Anyone client;
        files::Browser browser(client);
        const Stopwatch watch(Stopwatch::Kind::wall);
        browser.show(largeFolder().string());
        while (!isThere(browser))
            NSRunLoop::cls().mainRunLoop()->runMode_beforeDate(
                NSDefaultRunLoopMode, NSDate::cls().dateWithTimeIntervalSinceNow(1).get());
        return watch.elapsed() / 1e6;
    }
    double readNames()
    {
        const Stopwatch watch(Stopwatch::Kind::wall);
        DIR* const folder = ::opendir(largeFolder().c_str());
        while (const dirent* const entry = ::readdir(folder))
            keep(entry->d_name[0]);
        ::closedir(folder);
        return watch.elapsed() / 1e6;
    }
    Reading firstRows()
    {
        return { waitUntil([](files::Browser& browser) { return browser.count() > 0; }), 0 };
    }
    Reading allRows()
    {
        const double ours = waitUntil([](files::Browser& browser) { return !browser.isReading(); });
        return { ours, readNames() };
    }

    /// The longest that the main thread was kept from events meanwhile, in milliseconds.
    Reading longestTurn()
    {
        largeFolder();
        Anyone client;
        files::Browser browser(client);
        browser.show(largeFolder().string());
        double longest = 0;
        while (browser.isReading()) {
            const Stopwatch watch; // of the thread: waiting does not count
            NSRunLoop::cls().mainRunLoop()->runMode_beforeDate(
                NSDefaultRunLoopMode, NSDate::cls().dateWithTimeIntervalSinceNow(1).get());
            longest = std::max(longest, watch.elapsed() / 1e6);
        }
        return { longest, 0 };
    }

    Reading alert()
    {
        HeadlessScreen screen { 1000, 700 };
        const auto show = [&] {
            const Stopwatch watch(Stopwatch::Kind::wall);
            const Ref<NSAlert> made = make<NSAlert>();
            made->setMessageText("Delete all letters for ever?"_ns);
            made->setInformativeText("The folder holds seven of them. This cannot be undone."_ns);
            made->addButtonWithTitle("Delete"_ns);
            made->addButtonWithTitle("Cancel"_ns);
            made->beginSheetModalForWindow_completionHandler(nullptr, nullptr);
            screen.process();
            const double elapsed = watch.elapsed() / 1e6;
            made->window()->close();
            return elapsed;
        };
        show(); // fonts and colours are there afterwards
        std::vector<double> times;
        for (int i = 0; i < 15; ++i)
            times.push_back(show());
        return { median(times), 0 };
    }

}

void addPanels(Plan& plan)
{
    plan.read("panel: first rows of 100,000 files", "ms", atMost(100), firstRows);
    plan.read("panel: all rows of 100,000 files / read names", "ms", kNoBudget, allRows);
    plan.read("panel: longest turn of the main thread meanwhile", "ms", atMost(50), longestTurn);
    plan.read("alert: made, shown and drawn", "ms", atMost(16.7), alert);
}

}
