// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSWorkspace.h"

#include <fstream>
#include <thread>

#include <gtest/gtest.h>

#include "appkit/NSImage.h"
#include "appkit/ScriptedAnswers.h"
#include "appkit/application/DesktopPrivate.h"
#include "foundation/NSArray.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSNotificationCenter.h"
#include "foundation/NSURL.h"
#include "support/Strings.h"
#include "support/TemporaryFolder.h"
#include "support/Variables.h"

namespace brindle {

namespace {

    using test::TemporaryFolder;

    Ref<NSWorkspace> workspace() { return NSWorkspace::cls().sharedWorkspace(); }
    bool opens(const char* url)
    {
        return workspace()->openURL(NSURL::cls().URLWithString(stringFrom(url).get()).get());
    }

    /// Takes opened URLs in place of the desktop.
    class Opened {
    public:
        explicit Opened(bool takes = true)
        {
            scripted::takeOpenedURLs([this, takes](NSURL* url) {
                text += utf8(url->absoluteString()) + "\n";
                return takes;
            });
        }
        ~Opened() { scripted::takeOpenedURLs(nullptr); }
        Opened(const Opened&) = delete;
        Opened& operator=(const Opened&) = delete;

        std::string text;
    };

    TEST(Workspace, IsOneObject) { EXPECT_EQ(workspace(), workspace()); }

    TEST(Workspace, HandsAURLToTheDesktop)
    {
        const Opened opened;
        EXPECT_TRUE(opens("macappstore://host/path?id=1"));
        EXPECT_EQ(opened.text, "macappstore://host/path?id=1\n");
    }
    TEST(Workspace, AnswersNoWhereTheDesktopDoes)
    {
        const Opened opened(false);
        EXPECT_FALSE(opens("http://h/"));
    }
    TEST(Workspace, OpensNoNilAndNoURLWithoutAScheme)
    {
        const Opened opened;
        EXPECT_FALSE(workspace()->openURL(nullptr));
        EXPECT_FALSE(opens("-rf"));
        EXPECT_EQ(opened.text, "");
    }
    TEST(Workspace, OpensFilesThatAreThere)
    {
        const Opened opened;
        const TemporaryFolder folder;
        EXPECT_TRUE(workspace()->openFile(stringFrom(folder.path().string()).get()));
        EXPECT_EQ(opened.text, "file://" + folder.path().string() + "/\n");
    }
    TEST(Workspace, OpensNoFileThatIsNot)
    {
        const Opened opened;
        EXPECT_FALSE(workspace()->openFile("/no/such/file"_ns));
        EXPECT_FALSE(workspace()->openFile(nullptr));
        EXPECT_FALSE(opens("file:///no/such/file"));
        EXPECT_EQ(opened.text, "");
    }
    TEST(Workspace, ShowsEachFolderOfSomeFilesOnce)
    {
        const Opened opened;
        const auto list
            = NSArray::cls().arrayWithObjects(NSURL::cls().URLWithString("file:///usr/a"_ns).get(),
                NSURL::cls().URLWithString("file:///usr/b"_ns).get(),
                NSURL::cls().URLWithString("file:///etc/c"_ns).get());
        workspace()->activateFileViewerSelectingURLs(list.get());
        EXPECT_EQ(opened.text, "file:///usr/\nfile:///etc/\n");
    }
    TEST(Workspace, ShowsTheFolderOfAFile)
    {
        const Opened opened;
        EXPECT_TRUE(workspace()->selectFile_inFileViewerRootedAtPath("/etc/passwd"_ns, ""_ns));
        EXPECT_EQ(opened.text, "file:///etc/\n");
    }
    TEST(Workspace, HasAPictureForEverything)
    {
        EXPECT_TRUE(workspace()->iconForFile("/usr"_ns)->isValid());
        EXPECT_TRUE(workspace()->iconForFile(nullptr)->isValid());
        EXPECT_EQ(workspace()->iconForFileType(".PNG"_ns), workspace()->iconForFileType("png"_ns));
        EXPECT_NE(workspace()->iconForFileType("txt"_ns), workspace()->iconForFileType("png"_ns));
    }

    // ---- the desktop itself

    /// A desktop of its own: an opener that writes its arguments to a file, and the lists of handlers.
    class Desktop : public ::testing::Test {
    protected:
        Desktop()
        {
            write("bin/xdg-open",
                "#!/bin/sh\nprintf '%s\\n' \"$@\" > \"" + place("called.new") + "\"\nmv \""
                    + place("called.new") + "\" \"" + place("called") + "\"\n");
            std::filesystem::permissions(
                folder.path() / "bin/xdg-open", std::filesystem::perms::owner_all);
        }
        std::string place(const char* name) const { return (folder.path() / name).string(); }
        void write(const char* name, const std::string& text) const
        {
            const std::filesystem::path path = folder.path() / name;
            std::filesystem::create_directories(path.parent_path());
            std::ofstream(path) << text;
        }
        /// Waits for the opener, which runs beside the test.
        std::string called() const
        {
            while (!std::filesystem::exists(place("called")))
                std::this_thread::yield();
            std::ifstream in(place("called"));
            return { std::istreambuf_iterator<char>(in), {} };
        }

        TemporaryFolder folder;
        test::Variables variables { { "PATH", place("bin") + ":/usr/bin:/bin" },
            { "DISPLAY", ":77" }, { "XDG_CONFIG_HOME", place("config") },
            { "XDG_CONFIG_DIRS", place("none") }, { "XDG_DATA_HOME", place("data") },
            { "XDG_DATA_DIRS", place("none") } };
    };

    TEST_F(Desktop, GetsTheURLAsOneArgument)
    {
        EXPECT_TRUE(opens("http://h/a?b=c&d=%20$(touch)"));
        EXPECT_EQ(called(), "http://h/a?b=c&d=%20$(touch)\n");
    }
    TEST_F(Desktop, TakesNothingWithoutASession)
    {
        const test::Variables without { { "DISPLAY", "" }, { "WAYLAND_DISPLAY", "" } };
        EXPECT_FALSE(opens("http://h/"));
    }
    TEST_F(Desktop, TakesNothingWithoutAnOpener)
    {
        const test::Variables without { { "PATH", place("empty") } };
        EXPECT_FALSE(opens("http://h/"));
    }
    TEST_F(Desktop, TakesNoSchemeThatNothingIsRegisteredFor)
    {
        EXPECT_FALSE(opens("macappstore://host/"));
    }
    TEST_F(Desktop, TakesASchemeOfTheUsersList)
    {
        write("config/mimeapps.list",
            "[Default Applications]\nx-scheme-handler/macappstore=store.desktop\n");
        EXPECT_TRUE(opens("MacAppStore://host/"));
        called();
    }
    TEST_F(Desktop, TakesASchemeOfAnInstalledProgram)
    {
        write(
            "data/applications/mimeinfo.cache", "[MIME Cache]\nx-scheme-handler/foo=a.desktop;\n");
        EXPECT_TRUE(desktop::hasHandler("foo"));
        EXPECT_FALSE(desktop::hasHandler("fo"));
    }
    TEST_F(Desktop, DoesNotTakeARemovedAssociation)
    {
        write("config/mimeapps.list", "[Removed Associations]\nx-scheme-handler/foo=a.desktop;\n");
        EXPECT_FALSE(desktop::hasHandler("foo"));
    }
    TEST_F(Desktop, StartsProgramsAndTellsItsObservers)
    {
        std::string told;
        const auto token
            = workspace()->notificationCenter()->addObserverForName_object_queue_usingBlock(
                nullptr, nullptr, nullptr, [&](NSNotification* note) {
                    told += utf8(note->name()) + " "
                        + textOf(note->userInfo()->objectForKey("NSApplicationName"_ns)) + "\n";
                });
        EXPECT_TRUE(workspace()->launchApplication("xdg-open"_ns));
        called();
        EXPECT_FALSE(workspace()->launchApplication("no-such-program"_ns));
        EXPECT_FALSE(workspace()->launchApplication(nullptr));
        workspace()->notificationCenter()->removeObserver(token.get());
        EXPECT_EQ(told,
            "NSWorkspaceWillLaunchApplicationNotification xdg-open\n"
            "NSWorkspaceDidLaunchApplicationNotification xdg-open\n"
            "NSWorkspaceWillLaunchApplicationNotification no-such-program\n");
    }
    TEST_F(Desktop, OpensAFileWithAProgram)
    {
        EXPECT_TRUE(workspace()->openFile_withApplication("/etc/passwd"_ns, "xdg-open"_ns));
        EXPECT_EQ(called(), "/etc/passwd\n");
    }

}

}
