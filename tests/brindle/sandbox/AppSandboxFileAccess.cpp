// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <functional>
#include <random>
#include <thread>

#include "SandboxHost.h"
#include "appkit/NSApplication.h"
#include "foundation/Dispatch.h"
#include "foundation/Exceptions.h"
#include "foundation/NSDate.h"
#include "foundation/NSRunLoop.h"
#include "foundation/NSThread.h"
#include "runtime/Table.h"
#include "support/BundleFolder.h"
#include "support/Figures.h"
#include "support/GrantedURL.h"
#include "support/HeadlessScreen.h"

namespace brindle {

/// Writes down which messages it is sent while it gives access.
class LoggingAccess : public AppSandboxFileAccess {
    BRINDLE_OBJECT(LoggingAccess, AppSandboxFileAccess)

public:
    std::string log_;
    Ref<NSURL> granted_; // answered in place of the user's choice
};
template <> struct LoggingAccess::Methods<struct Log> {
    static Ref<NSURL> ask(LoggingAccess& self, NSURL* url)
    {
        self.log_ += "ask " + utf8(url->lastPathComponent()) + " ";
        return self.granted_;
    }
    static void persist(LoggingAccess& self, NSURL* url)
    {
        self.log_ += "persist " + utf8(url->lastPathComponent()) + " ";
        super<LoggingAccess, "persistPermissionURL:">(self, url);
    }
    static void table(Builder& t)
    {
        t.methods({
            { "askPermissionForUrl:", imp<ask> },
            { "persistPermissionURL:", imp<persist> },
        });
    }
};
BRINDLE_RECORD(LoggingAccess, Log)

namespace {

    using test::Sandbox;
    namespace fs = std::filesystem;

    // ---- texts

    TEST(SandboxTexts, AreThoseOfAnApplicationThatAsks)
    {
        const test::BundleFolder bundle;
        bundle.add("Info.plist", "{ CFBundleName = Short; CFBundleDisplayName = \"Long Name\"; }");
        const test::MainBundle main(bundle);
        const auto access = AppSandboxFileAccess::cls().fileAccess();
        EXPECT_EQ(utf8(access->title()), "Allow Access");
        EXPECT_EQ(utf8(access->prompt()), "Allow");
        EXPECT_EQ(utf8(access->message()),
            "Long Name needs to access this path to continue. Click Allow to continue.");
    }
    TEST(SandboxTexts, TakeTheShortNameWhereThereIsNoOther)
    {
        const test::BundleFolder bundle;
        bundle.add("Info.plist", "{ CFBundleName = Short; }");
        const test::MainBundle main(bundle);
        EXPECT_EQ(utf8(make<AppSandboxFileAccess>()->message()),
            "Short needs to access this path to continue. Click Allow to continue.");
    }
    TEST(SandboxTexts, CanBeChanged)
    {
        const auto access = AppSandboxFileAccess::cls().fileAccess();
        access->setTitle("T"_ns);
        access->setMessage("M"_ns);
        access->setPrompt(nullptr);
        EXPECT_EQ(utf8(access->title()), "T");
        EXPECT_EQ(utf8(access->message()), "M");
        EXPECT_EQ(access->prompt(), nullptr);
    }

    // ---- asking

    TEST_F(Sandbox, WithoutABookmarkTheUserIsAsked)
    {
        choice = place("top/other");
        EXPECT_TRUE(accesses(place("top/other")));
        EXPECT_EQ(asked, 1);
        EXPECT_EQ(runs, 1);
        EXPECT_EQ(kept(place("top/other")), nullptr);
    }
    TEST_F(Sandbox, WhoCancelsGetsNothingRun)
    {
        EXPECT_FALSE(accesses(place("top/other"), true));
        EXPECT_EQ(asked, 1);
        EXPECT_EQ(runs, 0);
        EXPECT_EQ(kept(place("top/other")), nullptr);
    }
    TEST_F(Sandbox, ThePanelSaysWhatItIsFor)
    {
        seen = [&](NSOpenPanel& panel) {
            EXPECT_EQ(utf8(panel.title()), "Allow Access");
            EXPECT_EQ(utf8(panel.prompt()), "Allow");
            EXPECT_EQ(utf8(panel.message()), utf8(access->message()));
            EXPECT_FALSE(panel.canCreateDirectories());
            EXPECT_TRUE(panel.canChooseFiles());
            EXPECT_TRUE(panel.canChooseDirectories());
            EXPECT_FALSE(panel.allowsMultipleSelection());
            EXPECT_FALSE(panel.showsHiddenFiles());
            EXPECT_FALSE(panel.isExtensionHidden());
            EXPECT_NE(panel.delegate(), nullptr);
        };
        accesses(place("top/other"));
        EXPECT_EQ(asked, 1);
    }
    TEST_F(Sandbox, TheApplicationComesToTheFrontForThePanel)
    {
        HeadlessScreen screen;
        screen.application().deactivate();
        bool isActive = false;
        seen = [&](NSOpenPanel&) { isActive = screen.application().isActive(); };
        accesses(place("top/other"));
        EXPECT_TRUE(isActive);
    }
    TEST_F(Sandbox, ThePanelShowsTheFolderOfTheFile)
    {
        accesses(place("top/in/file"));
        EXPECT_EQ(shown, "file://" + place("top/in") + "/");
    }
    TEST_F(Sandbox, ForAFileThatIsNotThereYetItShowsTheNearestFolder)
    {
        choice = place("top");
        EXPECT_TRUE(accesses(place("top/new/deep/file")));
        EXPECT_EQ(shown, "file://" + place("top") + "/");
        EXPECT_EQ(runs, 1);
    }
    TEST_F(Sandbox, TheUserCanChooseTheFileAndTheFoldersAboveOnly)
    {
        for (const char* name : { "top/in/file", "top/in", "top", "" }) {
            choice = place(name);
            EXPECT_TRUE(accesses(place("top/in/file"))) << name;
        }
        choice = "/";
        EXPECT_TRUE(accesses(place("top/in/file")));
        std::ofstream(place("top/in/sibling")) << "x";
        for (const char* name : { "top/other", "top/in/sibling", "top/in/file/below" }) {
            choice = place(name);
            EXPECT_FALSE(accesses(place("top/in/file"))) << name;
        }
    }
    TEST_F(Sandbox, AskingAnswersTheChoice)
    {
        choice = place("top");
        const auto granted = access->askPermissionForUrl(url(place("top/other")).get());
        EXPECT_EQ(utf8(granted->absoluteString()), "file://" + place("top") + "/");
        choice = "";
        EXPECT_EQ(access->askPermissionForUrl(url(place("top/other")).get()), nullptr);
    }
    TEST_F(Sandbox, NilAndWhatIsNoFileAreNo)
    {
        EXPECT_FALSE(access->accessFilePath_withBlock_persistPermission(
            nullptr, [this] { ++runs; }, true));
        EXPECT_FALSE(access->accessFileURL_withBlock_persistPermission(
            nullptr, [this] { ++runs; }, true));
        EXPECT_EQ(runs + asked, 0);
        access->persistPermissionPath(nullptr);
        access->persistPermissionURL(nullptr);
        EXPECT_FALSE(access->accessFileURL_withBlock_persistPermission(
            NSURL::cls().URLWithString("http://h/a"_ns).get(), [this] { ++runs; }, true));
        EXPECT_EQ(runs, 0);
    }

    // ---- bookmarks

    TEST_F(Sandbox, APersistedPermissionIsNotAskedForAgain)
    {
        choice = place("top/other");
        EXPECT_TRUE(accesses(place("top/other"), true));
        EXPECT_NE(kept(place("top/other")), nullptr);
        choice = "";
        defaults.restart();
        EXPECT_TRUE(accesses(place("top/other")));
        EXPECT_EQ(asked, 1);
        EXPECT_EQ(runs, 2);
    }
    TEST_F(Sandbox, ABookmarkOfAFolderAboveIsEnough)
    {
        access->persistPermissionPath(text(place("top")).get());
        EXPECT_TRUE(accesses(place("top/in/file")));
        EXPECT_EQ(asked, 0);
        EXPECT_EQ(runs, 1);
    }
    TEST_F(Sandbox, TheChosenFolderIsWhatIsKept)
    {
        choice = place("top");
        EXPECT_TRUE(accesses(place("top/in/file"), true));
        EXPECT_NE(kept(place("top")), nullptr);
        EXPECT_EQ(kept(place("top/in/file")), nullptr);
        EXPECT_TRUE(accesses(place("top/other")));
        EXPECT_EQ(asked, 1);
    }
    TEST_F(Sandbox, AGoodBookmarkIsNotWrittenAgain)
    {
        keep(place("top"), bookmark(place("top")).get());
        const auto before = kept(place("top"));
        EXPECT_TRUE(accesses(place("top/other"), true));
        EXPECT_EQ(kept(place("top/other")), nullptr);
        EXPECT_TRUE(before->isEqual(kept(place("top")).get()));
    }
    TEST_F(Sandbox, AStaleBookmarkIsUsedAndMadeAnew)
    {
        keep(place("top/other"), bookmark(place("top/other")).get());
        fs::rename(place("top/other"), place("top/moved"));
        EXPECT_TRUE(accesses(place("top/other"), true));
        EXPECT_EQ(asked, 0);
        EXPECT_EQ(runs, 1);
        EXPECT_NE(kept(place("top/moved")), nullptr);
    }
    TEST_F(Sandbox, AStaleBookmarkOfAReplacedFileIsReplaced)
    {
        keep(place("top/other"), bookmark(place("top/other")).get());
        const auto before = kept(place("top/other"));
        std::ofstream(place("top/new")) << "x";
        fs::rename(place("top/new"), place("top/other"));
        EXPECT_TRUE(accesses(place("top/other"), true));
        EXPECT_EQ(asked, 0);
        EXPECT_FALSE(before->isEqual(kept(place("top/other")).get()));
        bool isStale = true;
        EXPECT_NE(
            NSURL::cls().URLByResolvingBookmarkData_options_relativeToURL_bookmarkDataIsStale_error(
                kept(place("top/other")).get(), 1280, nullptr, &isStale, nullptr),
            nullptr);
        EXPECT_FALSE(isStale);
    }
    TEST_F(Sandbox, AStaleBookmarkStaysWhereNothingIsToBeKept)
    {
        keep(place("top/other"), bookmark(place("top/other")).get());
        const auto before = kept(place("top/other"));
        fs::rename(place("top/other"), place("top/moved"));
        EXPECT_TRUE(accesses(place("top/other"), false));
        EXPECT_TRUE(before->isEqual(kept(place("top/other")).get()));
        EXPECT_EQ(kept(place("top/moved")), nullptr);
    }
    TEST_F(Sandbox, ABookmarkThatLeadsNowhereStaysAndTheUserIsAsked)
    {
        keep(place("top/other"), bookmark(place("top/other")).get());
        const auto before = kept(place("top/other"));
        fs::remove(place("top/other"));
        choice = place("top");
        EXPECT_TRUE(accesses(place("top/other"), true));
        EXPECT_EQ(asked, 1);
        EXPECT_TRUE(before->isEqual(kept(place("top/other")).get()));
        EXPECT_EQ(kept(place("top")), nullptr);
    }
    TEST_F(Sandbox, WhatCannotBeBookmarkedIsNotKeptAndStillRuns)
    {
        const auto logging = make<LoggingAccess>();
        logging->granted_ = url(place("top/none"));
        EXPECT_TRUE(logging->accessFilePath_withBlock_persistPermission(
            text(place("top/none")).get(), [this] { ++runs; }, true));
        EXPECT_EQ(logging->log_, "ask none persist none ");
        EXPECT_EQ(kept(place("top/none")), nullptr);
        EXPECT_EQ(runs, 1);
    }
    TEST_F(Sandbox, ItsStepsAreMessagesThatASubclassCanTake)
    {
        const auto logging = make<LoggingAccess>();
        EXPECT_FALSE(logging->accessFilePath_withBlock_persistPermission(
            text(place("top/other")).get(), [this] { ++runs; }, true));
        EXPECT_EQ(logging->log_, "ask other ");
        EXPECT_EQ(runs, 0);
    }

    // ---- the bracket

    TEST_F(Sandbox, TheClosureRunsBetweenStartAndStop)
    {
        const auto logging = make<LoggingAccess>();
        logging->granted_ = url(place("top/other"));
        test::grant(*logging->granted_);
        std::intptr_t during = 0;
        EXPECT_TRUE(logging->accessFilePath_withBlock_persistPermission(
            text(place("top/other")).get(), [&] { during = test::accessesTo(*logging->granted_); },
            false));
        EXPECT_EQ(during, 1);
        EXPECT_EQ(test::accessesTo(*logging->granted_), 0);
    }
    TEST_F(Sandbox, AnExceptionGoesOnAfterTheAccessHasEnded)
    {
        const auto logging = make<LoggingAccess>();
        logging->granted_ = url(place("top/other"));
        test::grant(*logging->granted_);
        const Ref<NSException> thrown
            = NSException::cls().exceptionWithName_reason_userInfo("Own"_ns, "x"_ns, nullptr);
        NSObject* caught = nullptr;
        try {
            logging->accessFilePath_withBlock_persistPermission(
                text(place("top/other")).get(), [&] { thrown->raise(); }, false);
        } catch (const Exception& exception) {
            caught = exception.get();
        }
        EXPECT_EQ(caught, thrown.get());
        EXPECT_EQ(test::accessesTo(*logging->granted_), 0);
    }
    TEST_F(Sandbox, AnyExceptionGoesThrough)
    {
        keep(place("top"), bookmark(place("top")).get());
        EXPECT_THROW(access->accessFilePath_withBlock_persistPermission(
                         text(place("top/other")).get(), [] { throw 7; }, false),
            int);
    }
    TEST_F(Sandbox, AccessesCanBeNested)
    {
        keep(place("top"), bookmark(place("top")).get());
        EXPECT_TRUE(access->accessFilePath_withBlock_persistPermission(
            text(place("top/other")).get(), [&] { EXPECT_TRUE(accesses(place("top/in/file"))); },
            false));
        EXPECT_EQ(runs, 1);
    }

    TEST_F(Sandbox, RandomNestsOfAccessesThatThrowLeaveNoneOpen)
    {
        const auto logging = make<LoggingAccess>();
        logging->granted_ = url(place("top/other"));
        test::grant(*logging->granted_);
        std::minstd_rand random(7);
        std::intptr_t most = 0;
        const std::function<void(int)> nest = [&](int depth) {
            logging->accessFilePath_withBlock_persistPermission(
                text(place("top/other")).get(),
                [&] {
                    EXPECT_EQ(test::accessesTo(*logging->granted_), depth);
                    most = std::max<std::intptr_t>(most, depth);
                    while (random() % 3 != 0 && depth < 40)
                        nest(depth + 1);
                    if (random() % 4 == 0)
                        raise("NestException", "out of the middle");
                },
                false);
            EXPECT_EQ(test::accessesTo(*logging->granted_), depth - 1);
        };
        for (int round = 0; round < 200; ++round) {
            try {
                nest(1);
            } catch (const Exception&) { // goes through every level
            }
            EXPECT_EQ(test::accessesTo(*logging->granted_), 0);
        }
        EXPECT_GT(most, 3);
        test::publish({ "random nests of accesses that throw: accesses left open", 200,
            static_cast<double>(test::accessesTo(*logging->granted_)), "accesses", 0 });
    }

    // ---- threads

    TEST_F(Sandbox, AnotherThreadWaitsForTheAnswerAndRunsItsOwnClosure)
    {
        choice = place("top");
        bool onMain = true;
        bool granted = false;
        std::atomic<bool> ended { false };
        std::thread caller([&] {
            granted = access->accessFilePath_withBlock_persistPermission(
                text(place("top/other")).get(), [&] { onMain = NSThread::cls().isMainThread(); },
                false);
            ended = true;
            NSRunLoop::cls().mainRunLoop()->wakeUp();
        });
        seen = [](NSOpenPanel&) { EXPECT_TRUE(NSThread::cls().isMainThread()); };
        while (!ended)
            NSRunLoop::cls().mainRunLoop()->runMode_beforeDate(
                NSDefaultRunLoopMode, NSDate::cls().dateWithTimeIntervalSinceNow(1).get());
        caller.join();
        EXPECT_TRUE(granted);
        EXPECT_FALSE(onMain);
        EXPECT_EQ(asked, 1);
    }
    TEST_F(Sandbox, ARealPanelAnswersAThreadWhileTheMainLoopRuns)
    {
        scripted::answerPanels(nullptr);
        HeadlessScreen screen { 1000, 700 };
        bool granted = false;
        std::atomic<bool> ended { false };
        std::thread caller([&] {
            granted = accesses(place("top/in"), true);
            ended = true;
            NSRunLoop::cls().mainRunLoop()->wakeUp();
        });
        bool pressed = false;
        const auto token = NSRunLoop::cls().mainRunLoop(); // keeps answering through the modal loop
        std::function<void()> answer = [&] { // goes on through the modal loop
            const Ref<NSWindow> panel = screen.application().modalWindow();
            if (panel && panel->isVisible() && !pressed) {
                pressed = true;
                panel->send<"ok:">(static_cast<NSObject*>(nullptr));
            } else if (!ended)
                dispatch_async(dispatch_get_main_queue(), [&] { answer(); });
        };
        dispatch_async(dispatch_get_main_queue(), [&] { answer(); });
        while (!ended)
            screen.process();
        caller.join();
        EXPECT_TRUE(granted);
        EXPECT_TRUE(pressed);
        EXPECT_NE(kept(place("top/in")), nullptr) << "the folder that was shown is the choice";
    }
    TEST_F(Sandbox, InATaskThatTheMainThreadWaitsForThePanelRunsAtOnce)
    {
        choice = place("top/other");
        const auto queue = dispatch_queue_create("waited for", DISPATCH_QUEUE_SERIAL);
        bool granted = false;
        dispatch_sync(queue.get(), [&] { granted = accesses(place("top/other")); });
        EXPECT_TRUE(granted);
    }
    TEST_F(Sandbox, AHundredThreadsAreAllAnswered)
    {
        choice = place("top/other");
        std::atomic<int> done { 0 };
        std::atomic<int> granted { 0 };
        std::vector<std::thread> callers;
        for (int i = 0; i < 100; ++i)
            callers.emplace_back([&] {
                const bool isGranted = access->accessFilePath_withBlock_persistPermission(
                    text(place("top/other")).get(), [] {}, false);
                granted += isGranted ? 1 : 0;
                ++done;
                NSRunLoop::cls().mainRunLoop()->wakeUp();
            });
        while (done < 100)
            NSRunLoop::cls().mainRunLoop()->runMode_beforeDate(
                NSDefaultRunLoopMode, NSDate::cls().dateWithTimeIntervalSinceNow(1).get());
        for (std::thread& caller : callers)
            caller.join();
        EXPECT_EQ(asked, 100);
        test::publish(
            { "threads that ask for a file: not answered", 100, 100.0 - granted, "threads", 0 });
    }
    TEST_F(Sandbox, WhatThePanelRaisesReachesTheThreadThatAsked)
    {
        seen = [](NSOpenPanel&) { raise("PanelException", "no"); };
        std::string raised;
        std::atomic<bool> ended { false };
        std::thread caller([&] {
            raised = raisedBy([&] { accesses(place("top/other")); });
            ended = true;
            NSRunLoop::cls().mainRunLoop()->wakeUp();
        });
        while (!ended)
            NSRunLoop::cls().mainRunLoop()->runMode_beforeDate(
                NSDefaultRunLoopMode, NSDate::cls().dateWithTimeIntervalSinceNow(1).get());
        caller.join();
        EXPECT_EQ(raised, "PanelException: no");
    }

}

}
