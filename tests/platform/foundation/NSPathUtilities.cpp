// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSPathUtilities.h"

#include <fstream>

#include "foundation/NSArray.h"
#include "support/Strings.h"
#include "support/TemporaryFolder.h"
#include "support/Variables.h"

using namespace brindle;
using test::Variables;

namespace {

std::string places(NSSearchPathDirectory place, NSSearchPathDomainMask domains = NSUserDomainMask)
{
    return utf8(NSSearchPathForDirectoriesInDomains(place, domains, true)
                    ->componentsJoinedByString(" "_ns));
}

}

TEST(PathUtilities, TheHomeFolderIsTheEnvironments)
{
    const Variables variables { { "HOME", "/h/somebody" } };
    EXPECT_EQ(utf8(NSHomeDirectory()), "/h/somebody");
}

TEST(PathUtilities, AHomeThatIsNoPathDoesNotCount)
{
    const Variables variables { { "HOME", "somewhere" } };
    EXPECT_TRUE(NSHomeDirectory()->isAbsolutePath());
    EXPECT_FALSE(NSHomeDirectoryForUser("nobody at all"_ns));
}

TEST(PathUtilities, TheTemporaryFolderEndsInASlash)
{
    {
        const Variables variables { { "TMPDIR", "/var/tmp" } };
        EXPECT_EQ(utf8(NSTemporaryDirectory()), "/var/tmp/");
    }
    const Variables variables { { "TMPDIR", "" } };
    EXPECT_EQ(utf8(NSTemporaryDirectory()), "/tmp/");
}

TEST(PathUtilities, PlacesFollowTheBaseFolders)
{
    const Variables variables { { "HOME", "/h" }, { "XDG_CACHE_HOME", "/c" },
        { "XDG_DATA_HOME", "" }, { "XDG_CONFIG_HOME", "" } };
    EXPECT_EQ(places(NSCachesDirectory), "/c");
    EXPECT_EQ(places(NSApplicationSupportDirectory), "/h/.local/share");
    EXPECT_EQ(places(NSTrashDirectory), "/h/.local/share/Trash/files");
    EXPECT_EQ(places(NSDocumentDirectory), "/h/Documents");
    EXPECT_EQ(places(NSUserDirectory), "/h");
}

TEST(PathUtilities, PlacesFollowTheUsersOwnList)
{
    const test::TemporaryFolder folder;
    std::ofstream(folder.path() / "user-dirs.dirs")
        << "# "
           "comment\nXDG_MUSIC_DIR=\"$HOME/Musik\"\nXDG_DOWNLOAD_DIR=\"/data/"
           "in\"\nXDG_DESKTOP_DIR=\"rel\"\n";
    const Variables variables { { "HOME", "/h" }, { "XDG_CONFIG_HOME", folder.path().string() } };
    EXPECT_EQ(places(NSMusicDirectory), "/h/Musik");
    EXPECT_EQ(places(NSDownloadsDirectory), "/data/in");
    EXPECT_EQ(places(NSDesktopDirectory), "/h/Desktop");
    EXPECT_EQ(places(NSPicturesDirectory), "/h/Pictures");
}

TEST(PathUtilities, TheUsersPlaceComesFirst)
{
    const Variables variables { { "HOME", "/h" }, { "XDG_DATA_HOME", "/d" } };
    EXPECT_EQ(
        places(NSApplicationSupportDirectory, NSAllDomainsMask), "/d /usr/local/share /usr/share");
    EXPECT_EQ(places(NSApplicationSupportDirectory, NSNetworkDomainMask), "");
    EXPECT_EQ(places(static_cast<NSSearchPathDirectory>(7777), NSAllDomainsMask), "");
}

TEST(PathUtilities, ATildeCanStay)
{
    const Variables variables { { "HOME", "/h" }, { "XDG_CONFIG_HOME", "/none" } };
    EXPECT_EQ(utf8(NSSearchPathForDirectoriesInDomains(NSDesktopDirectory, NSUserDomainMask, false)
                       ->componentsJoinedByString(" "_ns)),
        "~/Desktop");
}

TEST(PathUtilities, TheUserHasAName)
{
    EXPECT_GT(NSUserName()->length(), 0u);
    EXPECT_GT(NSFullUserName()->length(), 0u);
}
