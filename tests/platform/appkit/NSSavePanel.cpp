// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSSavePanel.h"

#include <fstream>

#include <gtest/gtest.h>

#include "appkit/NSAlert.h"
#include "appkit/NSButton.h"
#include "appkit/ScriptedAnswers.h"
#include "appkit/panels/FilePanelPrivate.h"
#include "foundation/NSDate.h"
#include "support/DefaultsFolder.h"
#include "support/HeadlessScreen.h"
#include "support/Strings.h"

namespace brindle {

namespace {

    namespace fs = std::filesystem;

    /// A folder with a file "there.txt" and a folder "in", and a save panel on it.
    class SavePanel : public ::testing::Test {
    protected:
        SavePanel()
        {
            fs::create_directories(place("in"));
            std::ofstream(place("there.txt")) << "x";
            panel = NSSavePanel::cls().savePanel();
            panel->setDirectoryURL(
                NSURL::cls().fileURLWithPath(stringFrom(folder.path().string()).get()).get());
        }
        ~SavePanel() override
        {
            scripted::answerPanels(nullptr);
            panel->close();
        }
        std::string place(const std::string& name) const { return (folder.path() / name).string(); }
        files::Browser& browser() { return *FilePanelAccess::of(*panel).browser; }
        void settle()
        {
            while (browser().isReading())
                NSRunLoop::cls().mainRunLoop()->runMode_beforeDate(
                    NSDefaultRunLoopMode, NSDate::cls().dateWithTimeIntervalSinceNow(1).get());
            screen.process();
            screen.process();
        }
        void begin(const char* name)
        {
            panel->setNameFieldStringValue(stringFrom(name).get());
            panel->beginWithCompletionHandler(
                [this](NSModalResponse code) { log += std::to_string(code) + " "; });
            settle();
        }
        void press(char16_t key)
        {
            screen.keyboard().press(key);
            settle();
        }
        std::string chosen() { return utf8(maybe(panel->URL())->lastPathComponent()); }

        test::DefaultsFolder defaults;
        test::TemporaryFolder folder;
        HeadlessScreen screen { 1000, 700 };
        Ref<NSSavePanel> panel;
        std::string log;
    };

    TEST_F(SavePanel, SaysSave)
    {
        EXPECT_EQ(utf8(panel->prompt()), "Save");
        EXPECT_EQ(utf8(panel->title()), "Save");
        EXPECT_EQ(utf8(panel->nameFieldLabel()), "Save As:");
        EXPECT_EQ(utf8(panel->nameFieldStringValue()), "Untitled");
    }
    TEST_F(SavePanel, AnswersTheNameInTheFolder)
    {
        begin("new.txt");
        press(u'\r');
        EXPECT_EQ(log, "1 ");
        EXPECT_EQ(utf8(panel->URL()->path()), place("new.txt"));
        EXPECT_TRUE(panel->URL()->startAccessingSecurityScopedResource());
    }
    TEST_F(SavePanel, TypingReplacesTheStemOfTheName)
    {
        begin("new.txt");
        screen.keyboard().type(u"other");
        EXPECT_EQ(utf8(panel->nameFieldStringValue()), "other.txt");
        press(u'\r');
        EXPECT_EQ(chosen(), "other.txt");
    }
    TEST_F(SavePanel, AddsTheFirstAllowedType)
    {
        panel->setAllowedFileTypes(NSArray::cls().arrayWithObjects("png"_ns, "jpg"_ns).get());
        begin("picture");
        press(u'\r');
        EXPECT_EQ(chosen(), "picture.png");
    }
    TEST_F(SavePanel, KeepsAnAllowedTypeInAnyCase)
    {
        panel->setAllowedFileTypes(NSArray::cls().arrayWithObjects("png"_ns, "jpg"_ns).get());
        begin("picture.JPG");
        press(u'\r');
        EXPECT_EQ(chosen(), "picture.JPG");
    }
    TEST_F(SavePanel, KeepsAnotherTypeOnlyWhereOthersAreAllowed)
    {
        panel->setAllowedFileTypes(NSArray::cls().arrayWithObjects("png"_ns).get());
        begin("a.gif");
        EXPECT_EQ(chosen(), "a.gif.png");
        panel->setAllowsOtherFileTypes(true);
        EXPECT_EQ(chosen(), "a.gif");
    }
    TEST_F(SavePanel, AnEmptyNameIsNotConfirmed)
    {
        begin("");
        press(u'\r');
        EXPECT_EQ(log, "");
        EXPECT_EQ(panel->URL(), nullptr);
    }
    TEST_F(SavePanel, DotsAreNoNames)
    {
        for (const char* name : { ".", ".." }) {
            panel->setNameFieldStringValue(stringFrom(name).get());
            begin(name);
            panel->ok(nullptr);
            EXPECT_EQ(log, "") << name;
        }
    }
    TEST_F(SavePanel, APathInTheFieldGoesThere)
    {
        begin(place("in").c_str());
        press(u'\r');
        EXPECT_EQ(browser().folder(), place("in"));
        EXPECT_EQ(log, "");
    }
    TEST_F(SavePanel, ANameOfAFolderGoesIntoIt)
    {
        begin("in");
        press(u'\r');
        EXPECT_EQ(browser().folder(), place("in"));
        EXPECT_EQ(log, "");
    }
    TEST_F(SavePanel, AsksBeforeItReplacesAFile)
    {
        begin("there.txt");
        press(u'\r');
        ASSERT_NE(panel->attachedSheet(), nullptr);
        EXPECT_EQ(log, "");
        press(u'\r');
        EXPECT_NE(panel->attachedSheet(), nullptr) << "Return alone does not replace";
        press(0x1b);
        EXPECT_EQ(panel->attachedSheet(), nullptr);
        EXPECT_EQ(log, "");
        press(u'\r');
        const Ref<NSAlert> alert = cast<NSAlert>(panel->attachedSheet()->delegate());
        const auto buttons = alert->buttons();
        cast<NSButton>(Ref<NSObject>(buttons->objectAtIndex(0)))->performClick(nullptr);
        EXPECT_EQ(log, "1 ");
        EXPECT_EQ(chosen(), "there.txt");
    }
    TEST_F(SavePanel, SelectingAFileTakesItsName)
    {
        begin("new.txt");
        browser().selectLast();
        EXPECT_EQ(utf8(panel->nameFieldStringValue()), "there.txt");
    }
    TEST_F(SavePanel, MakesFoldersAndShowsThem)
    {
        begin("x");
        FilePanelAccess::makeFolder(*panel, "fresh"_ns);
        EXPECT_TRUE(fs::is_directory(place("fresh")));
        EXPECT_EQ(browser().folder(), place("fresh"));
    }
    TEST_F(SavePanel, AFolderThatCannotBeMadeIsReported)
    {
        begin("x");
        FilePanelAccess::makeFolder(*panel, "in"_ns);
        EXPECT_NE(panel->attachedSheet(), nullptr);
        EXPECT_EQ(browser().folder(), folder.path().string());
    }
    TEST_F(SavePanel, AFolderIsAskedForByName)
    {
        begin("x");
        panel->contentView()->send<"askForFolder:">(static_cast<NSObject*>(nullptr));
        screen.process();
        ASSERT_NE(panel->attachedSheet(), nullptr);
        screen.keyboard().type(u"made");
        press(u'\r');
        EXPECT_TRUE(fs::is_directory(place("made")));
    }
    TEST_F(SavePanel, NamesOutsideTheFolderAreNoFolders)
    {
        begin("x");
        for (NSString* name : { ""_ns, "."_ns, ".."_ns, "a/b"_ns })
            FilePanelAccess::makeFolder(*panel, name);
        FilePanelAccess::makeFolder(*panel, nullptr);
        EXPECT_EQ(panel->attachedSheet(), nullptr);
        EXPECT_EQ(browser().folder(), folder.path().string());
    }
    TEST_F(SavePanel, AScriptedPersonNamesAFile)
    {
        const auto url = NSURL::cls().fileURLWithPath(stringFrom(place("scripted.txt")).get());
        scripted::answerPanels(
            [&](NSSavePanel*) { return NSArray::cls().arrayWithObjects(url.get()); });
        EXPECT_EQ(panel->runModal(), 1);
        EXPECT_EQ(chosen(), "scripted.txt");
    }
    TEST_F(SavePanel, TheAccessoryIsShown)
    {
        const Ref<NSView> accessory = alloc<NSView>()->initWithFrame(NSMakeRect(0, 0, 200, 30));
        panel->setAccessoryView(accessory.get());
        begin("x");
        EXPECT_EQ(accessory->window(), panel.get());
        panel->setAccessoryView(nullptr);
        EXPECT_EQ(accessory->window(), nullptr);
    }

}

}
