// SPDX-License-Identifier: Apache-2.0
#include <fstream>

#include <gtest/gtest.h>

#include "appkit/NSOpenPanel.h"
#include "appkit/panels/FilePanelPrivate.h"
#include "foundation/NSDate.h"
#include "support/DefaultsFolder.h"
#include "support/HeadlessScreen.h"
#include "support/OrdinaryUser.h"
#include "support/Strings.h"
#include "support/Variables.h"

namespace brindle {

namespace {

    namespace fs = std::filesystem;

    /// A browser of a folder, in which somebody types paths.
    struct TypedPaths : testing::Test, files::BrowserClient {
        bool enables(const std::string&, bool) override { return true; }
        void folderChanged() override { }
        void contentsChanged() override { }
        void selectionChanged() override { }
        void confirm() override { }

        TypedPaths() { browser.show(folder.path().string()); }
        ~TypedPaths() override { browser.disconnect(); }
        void put(const std::string& name) const { std::ofstream(folder.path() / name) << "x"; }
        void putFolder(const std::string& name) const
        {
            fs::create_directories(folder.path() / name);
        }
        std::string completed(const std::string& typed) const
        {
            return FilePanelAccess::completed(browser, typed);
        }
        std::string whole(const std::string& name) const { return (folder.path() / name).string(); }

        test::TemporaryFolder folder;
        files::Browser browser { *this };
    };

}

TEST_F(TypedPaths, GoOnWithTheOnlyName)
{
    put("report.txt");
    put("other");
    EXPECT_EQ(completed(whole("re")), whole("report.txt"));
}
TEST_F(TypedPaths, OfAFolderEndInASlash)
{
    putFolder("inside");
    EXPECT_EQ(completed(whole("in")), whole("inside/"));
}
TEST_F(TypedPaths, GoOnAsFarAsNamesAreAlike)
{
    put("report-1");
    put("report-2");
    EXPECT_EQ(completed(whole("r")), whole("report-"));
    EXPECT_EQ(completed(whole("report-")), whole("report-"));
}
TEST_F(TypedPaths, WithoutASlashBeginInTheFolderThatIsShown)
{
    putFolder("inside");
    put("inside/deep");
    EXPECT_EQ(completed("in"), "inside/");
    EXPECT_EQ(completed("inside/d"), "inside/deep");
}
TEST_F(TypedPaths, OfTheUsersFolderKeepTheirTilde)
{
    const test::Variables home { { "HOME", folder.path().string() } };
    putFolder("Music");
    EXPECT_EQ(completed("~"), "~/");
    EXPECT_EQ(completed("~/Mu"), "~/Music/");
}
TEST_F(TypedPaths, TakeAnotherCaseWhereNoneFits)
{
    put("Report");
    EXPECT_EQ(completed(whole("re")), whole("Report"));
    put("reply");
    EXPECT_EQ(completed(whole("re")), whole("reply"));
}
TEST_F(TypedPaths, MeanHiddenNamesOnlyWithADot)
{
    put(".secret");
    EXPECT_EQ(completed(whole("")), whole(""));
    EXPECT_EQ(completed(whole(".s")), whole(".secret"));
}
TEST_F(TypedPaths, StayWhereNothingFits)
{
    EXPECT_EQ(completed(whole("zz")), whole("zz"));
    EXPECT_EQ(completed(whole("no/such/folder")), whole("no/such/folder"));
    EXPECT_EQ(completed(""), "");
}
TEST_F(TypedPaths, StayInAFolderThatMayNotBeRead)
{
    putFolder("shut");
    put("shut/file");
    fs::permissions(folder.path(), fs::perms(0755));
    fs::permissions(folder.path() / "shut", fs::perms::none);
    {
        const test::OrdinaryUser user;
        ASSERT_TRUE(user.worked());
        EXPECT_EQ(completed(whole("shut/f")), whole("shut/f"));
    }
    fs::permissions(folder.path() / "shut", fs::perms(0755));
}
TEST_F(TypedPaths, NeverEndInHalfACharacter)
{
    put("\u00FCa"); // both begin with the same byte
    put("\u00FEb");
    EXPECT_EQ(completed(whole("")), whole(""));
}
TEST_F(TypedPaths, PassOverNamesThatAreNoText)
{
    put("re\xFF");
    EXPECT_EQ(completed(whole("re")), whole("re"));
}

TEST(TypedPath, IsCompletedByTheTabKey)
{
    const test::DefaultsFolder defaults;
    const test::TemporaryFolder folder;
    HeadlessScreen screen { 1000, 700 };
    fs::create_directory(folder.path() / "inside");
    const Ref<NSOpenPanel> panel = NSOpenPanel::cls().openPanel();
    panel->beginWithCompletionHandler([](NSModalResponse) {});
    files::Browser& browser = *FilePanelAccess::of(*panel).browser;
    while (browser.isReading())
        NSRunLoop::cls().mainRunLoop()->runMode_beforeDate(
            NSDefaultRunLoopMode, NSDate::cls().dateWithTimeIntervalSinceNow(1).get());
    screen.process();
    for (const char c : (folder.path() / "in").string())
        screen.keyboard().press(static_cast<char16_t>(c));
    screen.keyboard().press(u'\t');
    screen.keyboard().press(u'\r');
    EXPECT_EQ(browser.folder(), (folder.path() / "inside").string());
    panel->close();
}

}
