// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSOpenPanel.h"

#include <fstream>

#include <gtest/gtest.h>
#include <unistd.h>

#include "appkit/ScriptedAnswers.h"
#include "appkit/panels/FilePanelPrivate.h"
#include "foundation/Dispatch.h"
#include "foundation/Each.h"
#include "foundation/NSDate.h"
#include "foundation/NSError.h"
#include "runtime/Table.h"
#include "support/DefaultsFolder.h"
#include "support/HeadlessScreen.h"
#include "support/Strings.h"
#include "support/Variables.h"

namespace brindle {

/// Enables all but some names, refuses to agree, and writes down what it is told.
class PanelRule : public NSObject {
    BRINDLE_OBJECT(PanelRule, NSObject)

public:
    std::string disabled_;
    std::string asked_;
    std::string log_;
    bool agrees_ = true;
};
template <> struct PanelRule::Methods<struct Asked> {
    static bool enable(PanelRule& self, NSObject*, NSURL* url)
    {
        self.asked_ += utf8(url->lastPathComponent()) + (url->hasDirectoryPath() ? "/ " : " ");
        return self.disabled_.empty()
            || utf8(url->lastPathComponent()).find(self.disabled_) == std::string::npos;
    }
    static bool validate(PanelRule& self, NSObject*, NSURL*, Ref<NSError>* error)
    {
        reportError(error, NSFileReadUnknownError);
        return self.agrees_;
    }
    static void moved(PanelRule& self, NSObject*, NSURL* url)
    {
        self.log_
            += "in " + utf8(url->lastPathComponent()) + (url->hasDirectoryPath() ? "/ " : " ");
    }
    static void selected(PanelRule& self, NSObject*) { self.log_ += "selected "; }
    static void table(Builder& t)
    {
        t.methods({
            { "panel:shouldEnableURL:", imp<enable> },
            { "panel:validateURL:error:", imp<validate> },
            { "panel:didChangeToDirectoryURL:", imp<moved> },
            { "panelSelectionDidChange:", imp<selected> },
        });
    }
};
BRINDLE_RECORD(PanelRule, Asked)

namespace {

    namespace fs = std::filesystem;
    constexpr char16_t kDown = NSDownArrowFunctionKey;
    constexpr char16_t kUp = NSUpArrowFunctionKey;

    /// Files "a.txt", "b.png" and "c.txt" and a folder "in" with "inside", and an open panel on them.
    class OpenPanel : public ::testing::Test {
    protected:
        OpenPanel()
        {
            fs::create_directories(place("in"));
            for (const char* name : { "a.txt", "b.png", "c.txt", "in/inside" })
                std::ofstream(place(name)) << "x";
            panel = NSOpenPanel::cls().openPanel();
            panel->setDirectoryURL(url(folder.path()).get());
        }
        ~OpenPanel() override
        {
            scripted::answerPanels(nullptr);
            panel->close();
        }
        std::string place(const std::string& name) const { return (folder.path() / name).string(); }
        static Ref<NSURL> url(const fs::path& path)
        {
            return NSURL::cls().fileURLWithPath(stringFrom(path.string()).get());
        }
        files::Browser& browser() { return *FilePanelAccess::of(*panel).browser; }
        void settle()
        {
            while (browser().isReading())
                NSRunLoop::cls().mainRunLoop()->runMode_beforeDate(
                    NSDefaultRunLoopMode, NSDate::cls().dateWithTimeIntervalSinceNow(1).get());
            screen.process();
            screen.process();
        }
        /// Shows it as a window of its own; `log` gets its code.
        void begin()
        {
            panel->beginWithCompletionHandler(
                [this](NSModalResponse code) { log += std::to_string(code) + " "; });
            settle();
        }
        void press(char16_t key, NSEventModifierFlags flags = 0)
        {
            screen.keyboard().press(key, flags);
            settle();
        }
        std::string chosen()
        {
            std::string out;
            for (NSURL* one : each<NSURL>(panel->URLs()))
                out += utf8(one->path()).substr(folder.path().string().size())
                    + (one->hasDirectoryPath() ? "/ " : " ");
            return out;
        }
        std::string answer(std::initializer_list<fs::path> paths)
        {
            std::vector<Ref<NSObject>> urls;
            for (const fs::path& path : paths)
                urls.push_back(url(path));
            const Ref<NSArray> list = makeArray(std::move(urls));
            scripted::answerPanels([list](NSSavePanel*) { return list; });
            const std::string code = std::to_string(panel->runModal());
            return code + " " + chosen();
        }

        test::DefaultsFolder defaults;
        test::TemporaryFolder folder;
        HeadlessScreen screen { 1000, 700 };
        Ref<NSOpenPanel> panel;
        std::string log;
    };

    // ---- before it is shown

    TEST_F(OpenPanel, BeginsWithFilesOnly)
    {
        EXPECT_TRUE(panel->canChooseFiles());
        EXPECT_FALSE(panel->canChooseDirectories());
        EXPECT_FALSE(panel->allowsMultipleSelection());
        EXPECT_TRUE(panel->canCreateDirectories());
        EXPECT_FALSE(panel->showsHiddenFiles());
        EXPECT_EQ(utf8(panel->prompt()), "Open");
        EXPECT_EQ(utf8(panel->title()), "Open");
        EXPECT_EQ(utf8(panel->message()), "");
        EXPECT_EQ(panel->URL(), nullptr);
        EXPECT_EQ(panel->URLs()->count(), 0u);
    }
    TEST_F(OpenPanel, NilTextsAreTheOrdinaryOnes)
    {
        panel->setPrompt("Allow"_ns);
        EXPECT_EQ(utf8(panel->prompt()), "Allow");
        panel->setPrompt(nullptr);
        panel->setMessage(nullptr);
        EXPECT_EQ(utf8(panel->prompt()), "Open");
        EXPECT_EQ(utf8(panel->message()), "");
    }
    TEST_F(OpenPanel, TheDirectoryOfAFileIsItsFolder)
    {
        panel->setDirectoryURL(url(place("a.txt")).get());
        EXPECT_EQ(utf8(panel->directoryURL()->path()), folder.path().string());
        EXPECT_TRUE(panel->directoryURL()->hasDirectoryPath());
    }
    TEST_F(OpenPanel, WithoutADirectoryItBeginsWhereTheLastOneEnded)
    {
        EXPECT_EQ(answer({ place("in/inside") }), "1 /in/inside ");
        panel = NSOpenPanel::cls().openPanel();
        EXPECT_EQ(utf8(panel->directoryURL()->path()), place("in"));
    }

    // ---- choosing by keys

    TEST_F(OpenPanel, AnswersTheSelectedFile)
    {
        begin();
        press(kDown);
        EXPECT_EQ(chosen(), "/a.txt ");
        press(u'\r');
        EXPECT_EQ(log, "1 ");
        EXPECT_EQ(chosen(), "/a.txt ");
        EXPECT_FALSE(panel->isVisible());
    }
    TEST_F(OpenPanel, EscapeCancels)
    {
        begin();
        press(kDown);
        press(0x1b);
        EXPECT_EQ(log, "0 ");
        EXPECT_EQ(panel->URL(), nullptr);
    }
    TEST_F(OpenPanel, TheCloseButtonCancels)
    {
        begin();
        panel->performClose(nullptr);
        EXPECT_EQ(log, "0 ");
        EXPECT_FALSE(panel->isVisible());
    }
    TEST_F(OpenPanel, NothingIsConfirmedWithoutASelection)
    {
        begin();
        press(u'\r');
        EXPECT_EQ(log, "");
        EXPECT_EQ(panel->URL(), nullptr);
    }
    TEST_F(OpenPanel, ConfirmingAFolderGoesIntoIt)
    {
        begin();
        press(u'i');
        press(u'\r');
        EXPECT_EQ(browser().folder(), place("in"));
        press(kDown);
        press(u'\r');
        EXPECT_EQ(chosen(), "/in/inside ");
    }
    TEST_F(OpenPanel, AFolderIsChosenWhereFoldersMayBe)
    {
        panel->setCanChooseDirectories(true);
        begin();
        press(u'i');
        press(u'\r');
        EXPECT_EQ(log, "1 ");
        EXPECT_EQ(chosen(), "/in/ ");
    }
    TEST_F(OpenPanel, WithoutASelectionTheFolderThatIsShownIsChosen)
    {
        panel->setCanChooseDirectories(true);
        begin();
        press(u'\r');
        EXPECT_EQ(log, "1 ");
        EXPECT_EQ(utf8(panel->URL()->absoluteString()), "file://" + folder.path().string() + "/");
    }
    TEST_F(OpenPanel, SeveralAreChosenWhereSeveralMayBe)
    {
        panel->setAllowsMultipleSelection(true);
        begin();
        press(kDown);
        press(kDown, NSShiftKeyMask);
        press(u'\r');
        EXPECT_EQ(chosen(), "/a.txt /b.png ");
    }
    TEST_F(OpenPanel, GoesUpAndDownByKeys)
    {
        begin();
        press(u'i');
        press(kDown, NSCommandKeyMask);
        EXPECT_EQ(browser().folder(), place("in"));
        press(kUp, NSCommandKeyMask);
        EXPECT_EQ(browser().folder(), folder.path().string());
        press(u'[', NSCommandKeyMask);
        EXPECT_EQ(browser().folder(), place("in"));
    }
    TEST_F(OpenPanel, GoesToATypedPath)
    {
        begin();
        for (const char c : place("in"))
            press(static_cast<char16_t>(c));
        press(u'\r');
        EXPECT_EQ(browser().folder(), place("in"));
        EXPECT_EQ(log, "");
    }
    TEST_F(OpenPanel, EscapeEndsTheTypingOfAPathOnly)
    {
        begin();
        press(u'/');
        press(0x1b);
        EXPECT_TRUE(panel->isVisible());
        press(0x1b);
        EXPECT_EQ(log, "0 ");
    }
    TEST_F(OpenPanel, ATypedPathOfAFileSelectsIt)
    {
        begin();
        EXPECT_TRUE(FilePanelAccess::goTo(*panel, place("c.txt")));
        settle();
        EXPECT_EQ(chosen(), "/c.txt ");
        EXPECT_FALSE(FilePanelAccess::goTo(*panel, "/no/such"));
    }

    // ---- by pointer

    TEST_F(OpenPanel, ADoubleClickChoosesAFileAndGoesIntoAFolder)
    {
        begin();
        const Ref<NSView> list = cast<NSView>(panel->firstResponder());
        const auto placeOf = [&](CGFloat row) {
            const NSPoint inWindow = list->convertPoint_toView({ 60, row * 22 + 11 }, nullptr);
            return panel->convertPointToScreen(inWindow);
        };
        screen.pointer().click(placeOf(3), 2);
        settle();
        EXPECT_EQ(browser().folder(), place("in"));
        screen.pointer().click(placeOf(0), 1);
        EXPECT_EQ(chosen(), "/in/inside ");
        screen.pointer().click(placeOf(0), 2);
        EXPECT_EQ(log, "1 ");
    }

    // ---- rules

    TEST_F(OpenPanel, AsksItsDelegateForEveryEntryAndTheFolder)
    {
        const auto rule = make<PanelRule>();
        panel->setDelegate(rule.get());
        panel->setCanChooseDirectories(true);
        begin();
        for (const char* name : { "a.txt ", "b.png ", "c.txt ", "in/ " })
            EXPECT_NE(rule->asked_.find(name), std::string::npos) << name;
        EXPECT_NE(rule->asked_.find(folder.path().filename().string() + "/ "), std::string::npos);
    }
    TEST_F(OpenPanel, TheFolderIsNotChosenWhereTheDelegateDisablesIt)
    {
        const auto rule = make<PanelRule>();
        rule->disabled_ = folder.path().filename().string();
        panel->setDelegate(rule.get());
        panel->setCanChooseDirectories(true);
        begin();
        press(u'\r');
        EXPECT_EQ(log, "");
    }
    TEST_F(OpenPanel, WhatTheDelegateDisablesIsNotChosen)
    {
        const auto rule = make<PanelRule>();
        rule->disabled_ = "a.txt";
        panel->setDelegate(rule.get());
        begin();
        press(kDown);
        EXPECT_EQ(chosen(), "/b.png ");
    }
    TEST_F(OpenPanel, DoesNotKeepItsDelegate)
    {
        auto rule = make<PanelRule>();
        panel->setDelegate(rule.get());
        rule = nullptr;
        EXPECT_EQ(panel->delegate(), nullptr);
    }
    TEST_F(OpenPanel, TellsItsDelegateWhereItIs)
    {
        const auto rule = make<PanelRule>();
        panel->setDelegate(rule.get());
        begin();
        rule->log_.clear();
        press(u'i');
        press(kDown, NSCommandKeyMask);
        EXPECT_EQ(rule->log_, "selected in in/ selected ");
    }
    TEST_F(OpenPanel, OnlyAllowedTypesAreChosen)
    {
        panel->setAllowedFileTypes(NSArray::cls().arrayWithObjects("PNG"_ns, ".foo"_ns).get());
        begin();
        press(kDown);
        EXPECT_EQ(chosen(), "/b.png ");
    }
    TEST_F(OpenPanel, AnEmptyListOfTypesAllowsAll)
    {
        panel->setAllowedFileTypes(NSArray::cls().array().get());
        begin();
        press(kDown);
        EXPECT_EQ(chosen(), "/a.txt ");
    }
    TEST_F(OpenPanel, ADelegateThatDoesNotAgreeKeepsItOpenAndSaysWhy)
    {
        const auto rule = make<PanelRule>();
        rule->agrees_ = false;
        panel->setDelegate(rule.get());
        begin();
        press(kDown);
        press(u'\r');
        EXPECT_EQ(log, "");
        EXPECT_NE(panel->attachedSheet(), nullptr);
    }
    TEST_F(OpenPanel, AnUnreadableFolderCannotBeChosen)
    {
        panel->setCanChooseDirectories(true);
        panel->setDirectoryURL(url(place("none")).get());
        begin();
        EXPECT_EQ(browser().error(), ENOENT);
        press(u'\r');
        EXPECT_EQ(log, "");
    }

    // ---- ways of showing

    TEST_F(OpenPanel, RunsModallyAndAnswersOne)
    {
        dispatch_async(dispatch_get_main_queue(), [this] {
            EXPECT_EQ(screen.application().modalWindow(), panel.get());
            while (browser().isReading())
                NSRunLoop::cls().mainRunLoop()->runMode_beforeDate(
                    NSModalPanelRunLoopMode, NSDate::cls().dateWithTimeIntervalSinceNow(1).get());
            browser().selectFirst();
            panel->ok(nullptr);
        });
        EXPECT_EQ(panel->runModal(), NSFileHandlingPanelOKButton);
        EXPECT_EQ(chosen(), "/a.txt ");
        EXPECT_FALSE(panel->isVisible());
    }
    TEST_F(OpenPanel, RunsModallyAndAnswersZero)
    {
        dispatch_async(dispatch_get_main_queue(), [this] { panel->performClose(nullptr); });
        EXPECT_EQ(panel->runModal(), NSFileHandlingPanelCancelButton);
        EXPECT_EQ(panel->URL(), nullptr);
    }
    TEST_F(OpenPanel, RunsInAMainQueueItemWhileTheQueueGoesOn)
    {
        NSModalResponse code = -7;
        bool ended = false;
        dispatch_async(dispatch_get_main_queue(), [&] {
            dispatch_async(dispatch_get_main_queue(), [&] { panel->cancel(nullptr); });
            code = panel->runModal();
            ended = true;
        });
        while (!ended)
            screen.process();
        EXPECT_EQ(code, 0);
    }
    TEST_F(OpenPanel, ShownAlreadyItAnswersZeroAtOnce)
    {
        begin();
        EXPECT_EQ(panel->runModal(), 0);
        EXPECT_TRUE(panel->isVisible());
    }
    TEST_F(OpenPanel, IsASheetOfAWindow)
    {
        const Ref<NSWindow> host = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            NSMakeRect(50, 20, 880, 600), NSTitledWindowMask, NSBackingStoreBuffered, true);
        host->makeKeyAndOrderFront(nullptr);
        panel->beginSheetModalForWindow_completionHandler(
            host.get(), [this](NSModalResponse code) { log += std::to_string(code); });
        settle();
        EXPECT_EQ(host->attachedSheet(), panel.get());
        press(kDown);
        press(u'\r');
        EXPECT_EQ(log, "1");
        EXPECT_EQ(chosen(), "/a.txt ");
        host->close();
    }
    TEST_F(OpenPanel, ClosingTheHostCancelsIt)
    {
        const Ref<NSWindow> host = alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
            NSMakeRect(50, 20, 880, 600), NSTitledWindowMask, NSBackingStoreBuffered, true);
        host->makeKeyAndOrderFront(nullptr);
        panel->beginSheetModalForWindow_completionHandler(
            host.get(), [this](NSModalResponse code) { log += std::to_string(code); });
        host->close();
        EXPECT_EQ(log, "0");
    }

    TEST_F(OpenPanel, AFileThatHasGoneIsNotChosenAndThePanelSaysSo)
    {
        begin();
        press(kDown);
        fs::remove(place("a.txt"));
        panel->send<"ok:">(static_cast<NSObject*>(nullptr));
        EXPECT_TRUE(panel->isVisible());
        ASSERT_NE(panel->attachedSheet(), nullptr);
        press(u'\r'); // of the alert
        EXPECT_EQ(panel->attachedSheet(), nullptr);
        EXPECT_EQ(browser().count(), 3u);
        EXPECT_EQ(log, "");
        press(kDown);
        press(u'\r');
        EXPECT_EQ(log, "1 ");
        EXPECT_EQ(chosen(), "/b.png ");
    }
    TEST_F(OpenPanel, TheApplicationCanBeQuitWhileItIsOpen)
    {
        EXPECT_EXIT(
            {
                dispatch_async(dispatch_get_main_queue(), [&] {
                    for (const fs::path& made : { folder.path(), defaults.path() })
                        fs::remove_all(made); // no destructor of this process will
                    screen.application().terminate(nullptr);
                });
                panel->runModal();
            },
            testing::ExitedWithCode(0), "");
    }

    // ---- rights

    TEST_F(OpenPanel, WhatIsChosenIsGranted)
    {
        EXPECT_EQ(answer({ place("a.txt") }), "1 /a.txt ");
        EXPECT_TRUE(panel->URL()->startAccessingSecurityScopedResource());
        panel->URL()->stopAccessingSecurityScopedResource();
    }
    TEST_F(OpenPanel, ALinkIsAnsweredAsWhatItLeadsTo)
    {
        fs::create_symlink("a.txt", place("link"));
        EXPECT_EQ(answer({ place("link") }), "1 /a.txt ");
        panel->setResolvesAliases(false);
        EXPECT_EQ(answer({ place("link") }), "1 /link ");
    }

    // ---- a scripted person

    TEST_F(OpenPanel, AScriptedPersonChoosesOnlyWhatAPersonCould)
    {
        EXPECT_EQ(answer({ place("a.txt") }), "1 /a.txt ");
        EXPECT_EQ(answer({}), "0 ");
        EXPECT_EQ(answer({ place("none") }), "0 ");
        EXPECT_EQ(answer({ place("in") }), "0 ");
        EXPECT_EQ(answer({ place("a.txt"), place("b.png") }), "0 ");
        panel->setAllowsMultipleSelection(true);
        panel->setCanChooseDirectories(true);
        EXPECT_EQ(answer({ place("a.txt"), place("in") }), "1 /a.txt /in/ ");
        panel->setCanChooseFiles(false);
        EXPECT_EQ(answer({ place("a.txt") }), "0 ");
    }
    TEST_F(OpenPanel, AScriptedPersonCannotChooseWhatTheDelegateDisables)
    {
        const auto rule = make<PanelRule>();
        rule->disabled_ = "a.txt";
        panel->setDelegate(rule.get());
        EXPECT_EQ(answer({ place("a.txt") }), "0 ");
        EXPECT_EQ(answer({ place("c.txt") }), "1 /c.txt ");
    }

    // ---- places

    TEST_F(OpenPanel, FoldersChosenBeforeAreAmongThePlaces)
    {
        answer({ place("in/inside") });
        const auto found = files::places();
        EXPECT_EQ(found.back().path, place("in"));
        fs::rename(place("in"), place("moved"));
        EXPECT_EQ(files::places().back().path, place("moved"));
    }
    TEST_F(OpenPanel, PlacesThatAreGoneAreNotShown)
    {
        answer({ place("in/inside") });
        fs::remove_all(place("in"));
        for (const files::Place& one : files::places())
            EXPECT_NE(one.path, place("in"));
    }

}

}
