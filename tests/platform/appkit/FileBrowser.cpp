// SPDX-License-Identifier: Apache-2.0
#include "appkit/panels/FileBrowserPrivate.h"

#include <fstream>
#include <set>
#include <thread>

#include <gtest/gtest.h>

#include "foundation/NSDate.h"
#include "foundation/NSRunLoop.h"
#include "runtime/NSException.h"
#include "support/OrdinaryUser.h"
#include "support/Strings.h"
#include "support/TemporaryFolder.h"

namespace brindle::files {

namespace {

    namespace fs = std::filesystem;

    /// A folder, a browser of it, and somebody who enables all but some names.
    class Browsing : public ::testing::Test, public BrowserClient {
    protected:
        bool enables(const std::string& path, bool isFolder) override
        {
            const std::string name = fs::path(path).filename().string();
            asked.insert(name + (isFolder ? "/" : ""));
            if (name == wanders && wandersAfter-- == 0)
                browser.show(place("elsewhere"));
            return !disabled.contains(name);
        }
        void folderChanged() override { log += "folder "; }
        void contentsChanged() override
        {
            log += "contents ";
            counts.insert(browser.count());
        }
        void selectionChanged() override { log += "selection "; }
        void confirm() override { log += "confirm "; }

        void put(const std::string& name, std::size_t size = 0) const
        {
            std::ofstream(folder.path() / name) << std::string(size, 'x');
        }
        void putFolder(const char* name) const { fs::create_directories(folder.path() / name); }
        std::string place(const char* name) const { return (folder.path() / name).string(); }
        /// Runs until the folder is read and everything has been asked for.
        void settle()
        {
            const Ref<NSRunLoop> loop = NSRunLoop::cls().mainRunLoop();
            while (browser.isReading())
                loop->runMode_beforeDate(
                    NSDefaultRunLoopMode, NSDate::cls().dateWithTimeIntervalSinceNow(1).get());
            loop->runUntilIdle(NSDefaultRunLoopMode);
        }
        void show(const std::string& name = "")
        {
            browser.show(name.empty() ? folder.path().string() : place(name.c_str()));
            settle();
        }
        std::string names()
        {
            std::string out;
            for (std::size_t i = 0; i < browser.count(); ++i)
                out += browser.entry(i).name + " ";
            return out;
        }
        std::string selected()
        {
            std::string out;
            for (const std::size_t i : browser.selection())
                out += browser.entry(i).name + " ";
            return out;
        }

        test::TemporaryFolder folder;
        std::set<std::string> asked;
        std::set<std::string> disabled;
        std::string wanders; // another folder is shown when this one is asked for
        int wandersAfter = 0; // so many times
        std::set<std::size_t> counts; // of entries, whenever they changed
        std::string log;
        Browser browser { *this };
    };

    // ---- listing

    TEST_F(Browsing, ListsNamesAsPeopleSortThem)
    {
        for (const char* name : { "b", "a10", "a9", "C", ".hidden" })
            put(name);
        putFolder("B2");
        show();
        EXPECT_EQ(names(), "a9 a10 b B2 C ");
    }
    TEST_F(Browsing, GoesElsewhereWhileItAsks)
    {
        putFolder("elsewhere");
        for (const char* name : { "a", "b", "c", "elsewhere/z" })
            put(name);
        browser.allowsMany = true;
        const auto wander = [&](int after, auto&& step) {
            show();
            browser.selectAll();
            wanders = "b";
            wandersAfter = after;
            step();
            settle();
            wanders.clear();
            EXPECT_EQ(names(), "z ");
            EXPECT_EQ(selected(), "");
        };
        wander(0, [&] { browser.forgetEnabled(); });
        wander(0, [&] {
            browser.reload();
            settle();
        });
        wander(0, [&] {
            browser.clearSelection();
            browser.show(folder.path().string(), "b");
            browser.reload();
            settle();
        });
    }
    TEST_F(Browsing, ListsHiddenFilesWhenAskedTo)
    {
        put(".hidden");
        show();
        EXPECT_EQ(names(), "");
        browser.setOrder({ .showsHidden = true });
        settle();
        EXPECT_EQ(names(), ".hidden ");
    }
    TEST_F(Browsing, SortsBySizeLargestFirstThenTheOtherWay)
    {
        put("small", 1);
        put("large", 100);
        putFolder("folder");
        show();
        browser.sortBy(Column::size);
        settle();
        EXPECT_EQ(names(), "large small folder ");
        browser.sortBy(Column::size);
        settle();
        EXPECT_EQ(names(), "folder small large ");
    }
    TEST_F(Browsing, SortsByDateNewestFirst)
    {
        put("old");
        put("new");
        fs::last_write_time(place("old"), fs::file_time_type::clock::now() - std::chrono::hours(5));
        show();
        browser.sortBy(Column::modified);
        settle();
        EXPECT_EQ(names(), "new old ");
    }
    TEST_F(Browsing, TellsWhyAFolderCannotBeRead)
    {
        show("none");
        EXPECT_EQ(browser.error(), ENOENT);
        put("file");
        show("file");
        EXPECT_EQ(browser.error(), ENOTDIR);
        EXPECT_EQ(browser.count(), 0u);
    }
    TEST_F(Browsing, AFolderThatMayNotBeReadSaysSo)
    {
        putFolder("shut");
        put("shut/file");
        fs::permissions(folder.path(), fs::perms(0755));
        fs::permissions(place("shut"), fs::perms::none);
        {
            const test::OrdinaryUser user;
            ASSERT_TRUE(user.worked());
            show("shut");
        }
        fs::permissions(place("shut"), fs::perms(0755));
        EXPECT_EQ(browser.error(), EACCES);
        EXPECT_EQ(browser.count(), 0u);
    }
    TEST_F(Browsing, AFolderWithNamesThatMayNotBeAskedForIsListed)
    {
        putFolder("dim");
        put("dim/file", 5);
        fs::permissions(folder.path(), fs::perms(0755));
        fs::permissions(place("dim"), fs::perms(0744)); // names, but nothing about them
        {
            const test::OrdinaryUser user;
            ASSERT_TRUE(user.worked());
            show("dim");
        }
        fs::permissions(place("dim"), fs::perms(0755));
        EXPECT_EQ(names(), "file ");
        EXPECT_EQ(browser.error(), 0);
    }
    TEST_F(Browsing, ALinkToAFolderIsAFolderAndOneToNothingIsNot)
    {
        putFolder("real");
        fs::create_symlink("real", place("link"));
        fs::create_symlink("nothing", place("broken"));
        show();
        EXPECT_EQ(names(), "broken link real ");
        EXPECT_FALSE(browser.entry(0).isFolder);
        EXPECT_TRUE(browser.entry(1).isFolder);
    }
    TEST_F(Browsing, ANameThatIsNoTextIsListed)
    {
        put("a\xff");
        show();
        EXPECT_EQ(browser.count(), 1u);
    }
    TEST_F(Browsing, TellsTheFirstOfManyBeforeAll)
    {
        for (int i = 0; i < 1000; ++i)
            put(std::to_string(i));
        show();
        EXPECT_EQ(browser.count(), 1000u);
        EXPECT_TRUE(counts.contains(400)) << "the first ones came only with all";
    }
    TEST_F(Browsing, WhatIsReadOfAFolderThatWasLeftIsForgotten)
    {
        putFolder("one");
        putFolder("two");
        put("two/inside");
        browser.show(place("one"));
        browser.show(place("two"));
        settle();
        EXPECT_EQ(names(), "inside ");
    }
    TEST_F(Browsing, CanGoWhileItIsReading)
    {
        auto other = std::make_unique<Browser>(*this);
        other->show(folder.path().string());
        other = nullptr;
        NSRunLoop::cls().mainRunLoop()->runUntilIdle(NSDefaultRunLoopMode);
        SUCCEED();
    }

    // ---- going

    TEST_F(Browsing, GoesBackAndForward)
    {
        putFolder("in");
        show();
        EXPECT_FALSE(browser.canGoBack());
        show("in");
        browser.goBack();
        settle();
        EXPECT_EQ(browser.folder(), folder.path().string());
        EXPECT_TRUE(browser.canGoForward());
        browser.goForward();
        EXPECT_EQ(browser.folder(), place("in"));
        EXPECT_FALSE(browser.canGoForward());
    }
    TEST_F(Browsing, GoingUpSelectsTheFolderThatWasLeft)
    {
        putFolder("a");
        putFolder("in");
        show("in");
        browser.goUp();
        settle();
        EXPECT_EQ(selected(), "in ");
    }
    TEST_F(Browsing, GoesDownIntoOneSelectedFolder)
    {
        putFolder("in");
        put("x");
        show();
        EXPECT_FALSE(browser.goDown());
        browser.select(1);
        EXPECT_FALSE(browser.goDown());
        browser.select(0);
        EXPECT_TRUE(browser.goDown());
        EXPECT_EQ(browser.folder(), place("in"));
    }
    TEST_F(Browsing, TheRootHasNothingAbove)
    {
        browser.show("/");
        browser.goUp();
        EXPECT_EQ(browser.folder(), "/");
        browser.show("///");
        EXPECT_EQ(browser.folder(), "/");
    }

    // ---- the rule

    TEST_F(Browsing, AsksForEveryEntry)
    {
        put("a");
        putFolder("b");
        show();
        EXPECT_EQ(asked, (std::set<std::string> { "a", "b/" }));
    }
    TEST_F(Browsing, AsksForEveryOneOfThousands)
    {
        for (int i = 0; i < 2000; ++i)
            put(std::to_string(i));
        show();
        EXPECT_EQ(asked.size(), 2000u);
    }
    TEST_F(Browsing, WhatIsNotEnabledIsNotSelected)
    {
        for (const char* name : { "a", "b", "c" })
            put(name);
        disabled = { "b" };
        show();
        browser.select(1);
        EXPECT_EQ(selected(), "");
        browser.allowsMany = true;
        browser.selectAll();
        EXPECT_EQ(selected(), "a c ");
    }
    TEST_F(Browsing, TheKeyboardPassesOverWhatIsNotEnabled)
    {
        for (const char* name : { "a", "b", "c", "d" })
            put(name);
        disabled = { "a", "b", "d" };
        show();
        browser.move(1);
        EXPECT_EQ(selected(), "c ");
        browser.move(1);
        EXPECT_EQ(selected(), "c ");
        browser.move(-1);
        EXPECT_EQ(selected(), "c ");
    }
    TEST_F(Browsing, AChangedRuleTakesTheSelectionAway)
    {
        put("a");
        show();
        browser.select(0);
        disabled = { "a" };
        browser.forgetEnabled();
        EXPECT_EQ(selected(), "");
    }

    // ---- selecting

    TEST_F(Browsing, OneAfterTheOther)
    {
        for (const char* name : { "a", "b", "c" })
            put(name);
        show();
        browser.select(0);
        browser.select(2, Extend::to);
        EXPECT_EQ(selected(), "c ") << "only one may be chosen";
        browser.allowsMany = true;
        browser.select(0, Extend::to);
        EXPECT_EQ(selected(), "a b c ");
        browser.select(1, Extend::toggling);
        EXPECT_EQ(selected(), "a c ");
        browser.clearSelection();
        EXPECT_EQ(selected(), "");
    }
    TEST_F(Browsing, PastTheEndStaysAtTheEnd)
    {
        for (const char* name : { "a", "b", "c" })
            put(name);
        show();
        browser.move(-1);
        EXPECT_EQ(selected(), "c ");
        browser.move(-100);
        EXPECT_EQ(selected(), "a ");
        browser.move(100);
        EXPECT_EQ(selected(), "c ");
        browser.selectFirst();
        EXPECT_EQ(selected(), "a ");
    }
    TEST_F(Browsing, SelectsByTheBeginningOfAName)
    {
        for (const char* name : { "Alpha", "beta", "Über" })
            put(name);
        show();
        EXPECT_TRUE(browser.selectByPrefix(u"B"));
        EXPECT_EQ(selected(), "beta ");
        EXPECT_TRUE(browser.selectByPrefix(u"ü"));
        EXPECT_EQ(selected(), "Über ");
        EXPECT_FALSE(browser.selectByPrefix(u"zz"));
        EXPECT_EQ(selected(), "Über ");
    }
    TEST_F(Browsing, TheSelectionStaysWhenFilesComeAndGo)
    {
        put("b");
        put("c");
        show();
        browser.select(1);
        put("a");
        browser.reload();
        settle();
        EXPECT_EQ(selected(), "c ");
    }
    TEST_F(Browsing, IndexesOutsideSelectNothing)
    {
        show();
        browser.select(7);
        browser.move(1);
        browser.selectLast();
        browser.confirm();
        EXPECT_EQ(selected(), "");
        EXPECT_TRUE(log.ends_with("confirm "));
    }

}

}
