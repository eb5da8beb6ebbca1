// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSString.h"

#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>

#include "support/Strings.h"
#include "support/TemporaryFolder.h"

namespace brindle {

namespace {

    /// One home folder for a test.
    class Home {
    public:
        explicit Home(const char* folder)
            : before_(std::getenv("HOME") ? std::getenv("HOME") : "")
        {
            setenv("HOME", folder, 1);
        }
        ~Home() { setenv("HOME", before_.c_str(), 1); }
        Home(const Home&) = delete;
        Home& operator=(const Home&) = delete;

    private:
        std::string before_;
    };

    struct Case {
        const char* path;
        const char* answer;
    };

    void expectEach(std::initializer_list<Case> cases, Ref<NSString> (NSString::*operation)() const)
    {
        for (const Case& c : cases)
            EXPECT_EQ(utf8((stringFrom(c.path).get()->*operation)()), c.answer) << "of " << c.path;
    }

    TEST(NSStringPaths, TheLastComponentIsTheName)
    {
        expectEach({ { "/a/b", "b" }, { "/a/b/", "b" }, { "/", "/" }, { "///", "/" }, { "a", "a" },
                       { "", "" }, { "/ä", "ä" } },
            &NSString::lastPathComponent);
    }
    TEST(NSStringPaths, DeletingTheLastComponentGoesUp)
    {
        expectEach({ { "/a/b", "/a" }, { "/a", "/" }, { "a", "" }, { "/", "/" }, { "/a/b/", "/a" },
                       { "a/b", "a" }, { "a//b", "a" }, { "", "" }, { "//a", "/" } },
            &NSString::stringByDeletingLastPathComponent);
    }
    TEST(NSStringPaths, TheExtensionFollowsTheLastFullStop)
    {
        expectEach(
            { { "a.txt", "txt" }, { "/x.y/a", "" }, { "a.tar.gz", "gz" }, { ".hidden", "" },
                { "a.", "" }, { "/x/a.app/", "app" }, { "", "" }, { "/", "" }, { "..", "" } },
            &NSString::pathExtension);
    }
    TEST(NSStringPaths, ExtensionsAreDeleted)
    {
        expectEach({ { "a.txt", "a" }, { "/x.y/a", "/x.y/a" }, { "/x/.hidden", "/x/.hidden" },
                       { "/a.app/", "/a" } },
            &NSString::stringByDeletingPathExtension);
    }
    TEST(NSStringPaths, ComponentsAreAppendedWithOneSlash)
    {
        const auto appended = [](NSString* path, NSString* component) {
            return utf8(path->stringByAppendingPathComponent(component));
        };
        EXPECT_EQ(appended("/tmp"_ns, "a"_ns), "/tmp/a");
        EXPECT_EQ(appended("/tmp/"_ns, "a"_ns), "/tmp/a");
        EXPECT_EQ(appended("/tmp"_ns, "/a/"_ns), "/tmp/a");
        EXPECT_EQ(appended("/"_ns, "a"_ns), "/a");
        EXPECT_EQ(appended(""_ns, "a"_ns), "a");
        EXPECT_EQ(appended("/tmp"_ns, ""_ns), "/tmp");
    }
    TEST(NSStringPaths, ExtensionsAreAppended)
    {
        EXPECT_EQ(utf8("/a/b"_ns->stringByAppendingPathExtension("txt"_ns)), "/a/b.txt");
    }
    TEST(NSStringPaths, AbsolutePathsBeginWithASlashOrTilde)
    {
        EXPECT_TRUE("/a"_ns->isAbsolutePath());
        EXPECT_TRUE("~/a"_ns->isAbsolutePath());
        EXPECT_FALSE("a"_ns->isAbsolutePath());
        EXPECT_FALSE(""_ns->isAbsolutePath());
    }
    TEST(NSStringPaths, StandardPathsHaveNoDots)
    {
        expectEach({ { "/a/./b//c/", "/a/b/c" }, { "/a/../b", "/b" }, { "/../..", "/" },
                       { "a/../b", "a/../b" }, { "./a", "a" }, { "", "" } },
            &NSString::stringByStandardizingPath);
    }
    TEST(NSStringPaths, ATildeIsTheHomeFolder)
    {
        const Home home("/homes/me");
        expectEach({ { "~", "/homes/me" }, { "~/a", "/homes/me/a" }, { "a~", "a~" }, { "/~", "/~" },
                       { "~nobody-of-this-name/a", "~nobody-of-this-name/a" } },
            &NSString::stringByExpandingTildeInPath);
    }
    TEST(NSStringPaths, TheHomeFolderMayBeATilde)
    {
        const Home home("/homes/me");
        expectEach(
            { { "/homes/me", "~" }, { "/homes/me/a", "~/a" }, { "/homes/mean", "/homes/mean" } },
            &NSString::stringByAbbreviatingWithTildeInPath);
    }
    TEST(NSStringPaths, LinksAreFollowedAsFarAsThePathExists)
    {
        namespace fs = std::filesystem;
        const test::TemporaryFolder temporary;
        const fs::path& folder = temporary.path();
        fs::create_directory(folder / "real");
        fs::create_directory_symlink(folder / "real", folder / "link");
        const Ref<NSString> path = stringFrom((folder / "link" / "new.txt").string());
        EXPECT_EQ(
            utf8(path->stringByResolvingSymlinksInPath()), (folder / "real" / "new.txt").string());
    }
    TEST(NSStringPaths, ANulInAPathNeverReachesTheDisk)
    {
        const Ref<NSString> path = stringFrom(std::string_view("/a/../b\0c", 9));
        EXPECT_EQ(utf8Of(path->stringByResolvingSymlinksInPath()), std::string("/b\0c", 4));
    }
    TEST(NSStringPaths, ALoopOfLinksIsLeftAlone)
    {
        const test::TemporaryFolder temporary;
        const std::string loop = (temporary.path() / "loop").string();
        std::filesystem::create_symlink("loop", loop);
        EXPECT_EQ(utf8(stringFrom(loop)->stringByResolvingSymlinksInPath()), loop);
    }

}

}
