// SPDX-License-Identifier: Apache-2.0
#include "appkit/panels/FolderWatchPrivate.h"

#include <fstream>

#include <gtest/gtest.h>

#include "appkit/panels/FileBrowserPrivate.h"
#include "foundation/NSDate.h"
#include "support/TemporaryFolder.h"
#include "support/VirtualClock.h"

namespace brindle::files {

namespace {

    namespace fs = std::filesystem;

    struct Watching : testing::Test {
        test::VirtualClock clock;
        test::TemporaryFolder folder;

        fs::path place(const char* name) const { return folder.path() / name; }
        void put(const char* name) const { std::ofstream(place(name)) << "x"; }
        /// Lets the loop see what the system tells, and the time pass after which it is told on.
        void pass()
        {
            NSRunLoop::cls().mainRunLoop()->runUntilIdle(NSDefaultRunLoopMode);
            clock.advance(0.3);
        }
    };

}

TEST_F(Watching, AFileThatComesIsTold)
{
    int told = 0;
    const FolderWatch watch(folder.path().string(), [&] { ++told; });
    pass();
    EXPECT_EQ(told, 0);
    put("new");
    pass();
    EXPECT_EQ(told, 1);
}

TEST_F(Watching, ManyChangesTogetherAreToldOnce)
{
    int told = 0;
    const FolderWatch watch(folder.path().string(), [&] { ++told; });
    for (int i = 0; i < 500; ++i)
        put(std::to_string(i).c_str());
    pass();
    EXPECT_EQ(told, 1);
}

TEST_F(Watching, WhatGoesAndWhatIsRenamedIsTold)
{
    put("a");
    put("b");
    int told = 0;
    const FolderWatch watch(folder.path().string(), [&] { ++told; });
    fs::remove(place("a"));
    pass();
    fs::rename(place("b"), place("c"));
    pass();
    EXPECT_EQ(told, 2);
}

TEST_F(Watching, TheEndOfTheFolderIsTold)
{
    fs::create_directory(place("inside"));
    int told = 0;
    const FolderWatch watch(place("inside").string(), [&] { ++told; });
    fs::remove(place("inside"));
    pass();
    EXPECT_EQ(told, 1);
}

TEST_F(Watching, AWatchThatHasEndedTellsNothing)
{
    int told = 0;
    {
        const FolderWatch watch(folder.path().string(), [&] { ++told; });
        put("new");
        NSRunLoop::cls().mainRunLoop()->runUntilIdle(NSDefaultRunLoopMode);
    }
    clock.advance(1);
    EXPECT_EQ(told, 0);
}

TEST_F(Watching, ItMayEndWhileItTells)
{
    std::unique_ptr<FolderWatch> watch;
    watch = std::make_unique<FolderWatch>(folder.path().string(), [&] { watch = nullptr; });
    put("new");
    pass();
    EXPECT_EQ(watch, nullptr);
}

TEST_F(Watching, AFolderThatIsNotThereIsNotWatched)
{
    int told = 0;
    const FolderWatch watch(place("nothing").string(), [&] { ++told; });
    fs::create_directory(place("nothing"));
    pass();
    EXPECT_EQ(told, 0);
}

namespace {

    struct ShownFolder : Watching, BrowserClient {
        bool enables(const std::string&, bool) override { return true; }
        void folderChanged() override { }
        void contentsChanged() override { }
        void selectionChanged() override { ++selections; }
        void confirm() override { }

        void settle()
        {
            do {
                pass();
                while (browser.isReading())
                    NSRunLoop::cls().mainRunLoop()->runMode_beforeDate(
                        NSDefaultRunLoopMode, NSDate::cls().distantFuture().get());
            } while (browser.isReading());
        }

        int selections = 0;
        Browser browser { *this };
    };

}

TEST_F(ShownFolder, ShowsWhatComesAndGoesWithoutBeingAsked)
{
    put("a");
    browser.show(folder.path().string());
    settle();
    put("b");
    settle();
    EXPECT_EQ(browser.count(), 2U);
    fs::remove(place("a"));
    settle();
    ASSERT_EQ(browser.count(), 1U);
    EXPECT_EQ(browser.entry(0).name, "b");
}

TEST_F(ShownFolder, KeepsWhatIsSelected)
{
    put("b");
    browser.show(folder.path().string());
    settle();
    browser.select(0);
    selections = 0;
    put("a");
    settle();
    ASSERT_TRUE(browser.isSelected(1));
    EXPECT_EQ(browser.entry(1).name, "b");
}

TEST_F(ShownFolder, NoLongerFollowsAFolderThatWasLeft)
{
    fs::create_directory(place("inside"));
    browser.show(folder.path().string());
    settle();
    browser.show(place("inside").string());
    settle();
    put("a");
    settle();
    EXPECT_EQ(browser.count(), 0U);
    EXPECT_EQ(browser.folder(), place("inside").string());
}

TEST_F(ShownFolder, SaysWhenItsFolderHasGone)
{
    fs::create_directory(place("inside"));
    browser.show(place("inside").string());
    settle();
    EXPECT_EQ(browser.error(), 0);
    fs::remove(place("inside"));
    settle();
    EXPECT_EQ(browser.error(), ENOENT);
}

}
