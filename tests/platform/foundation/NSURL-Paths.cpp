// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSURL.h"

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "URLs.h"
#include "foundation/NSArray.h"
#include "foundation/NSDate.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSError.h"
#include "foundation/NSNumber.h"
#include "support/TemporaryFolder.h"

namespace brindle {

namespace {

    using test::TemporaryFolder;

    Ref<NSURL> fileURL(const std::string& path)
    {
        return NSURL::cls().fileURLWithPath(stringFrom(path).get());
    }
    std::string joined(const Ref<NSArray>& array)
    {
        if (!array)
            return "(nil)";
        std::string out;
        for (NSUInteger i = 0; i < array->count(); ++i)
            out += (i ? "|" : "") + textOf(array->objectAtIndex(i));
        return out;
    }

    // ---- files

    TEST(NSURLPaths, AFileURLEscapesItsPath)
    {
        EXPECT_EQ(
            absolute(fileURL("/no such/ä;b?c#%d")), "file:///no%20such/%C3%A4%3Bb%3Fc%23%25d");
        EXPECT_EQ(utf8(fileURL("/no such/ä;b?c#%d")->path()), "/no such/ä;b?c#%d");
    }
    TEST(NSURLPaths, AnExistingFolderGetsASlash)
    {
        const TemporaryFolder folder;
        EXPECT_EQ(absolute(fileURL(folder.path())), "file://" + folder.path().string() + "/");
        EXPECT_EQ(absolute(fileURL("/")), "file:///");
    }
    TEST(NSURLPaths, AMissingFileGetsNoSlash)
    {
        EXPECT_EQ(absolute(fileURL("/no/such")), "file:///no/such");
    }
    TEST(NSURLPaths, ASlashAtTheEndStays)
    {
        EXPECT_EQ(absolute(fileURL("/no/such/")), "file:///no/such/");
        EXPECT_EQ(absolute(fileURL("/no/such//")), "file:///no/such/");
    }
    TEST(NSURLPaths, TheKindCanBeGiven)
    {
        EXPECT_EQ(
            absolute(NSURL::cls().fileURLWithPath_isDirectory("/no"_ns, true)), "file:///no/");
        EXPECT_EQ(absolute(NSURL::cls().fileURLWithPath_isDirectory("/"_ns, false)), "file:///");
    }
    TEST(NSURLPaths, ARelativePathIsBehindTheWorkingFolder)
    {
        const std::string folder = std::filesystem::current_path();
        EXPECT_EQ(utf8(fileURL("no-such/x")->path()), folder + "/no-such/x");
    }
    TEST(NSURLPaths, ANilPathRaises)
    {
        EXPECT_EQ(raisedBy([] { NSURL::cls().fileURLWithPath(nullptr); }),
            "NSInvalidArgumentException: *** -[NSURL initFileURLWithPath:]: nil string parameter");
    }
    TEST(NSURLPaths, APathWithUnpairedSurrogatesHasNoURL)
    {
        EXPECT_EQ(
            NSURL::cls().fileURLWithPath(stringFrom(std::u16string_view(u"/a\xd800", 3)).get()),
            nullptr);
    }
    TEST(NSURLPaths, TheFileSystemTakesUTF8)
    {
        EXPECT_STREQ(fileURL("/no/ä")->fileSystemRepresentation(), "/no/ä");
        EXPECT_EQ(url("http://h/a"_ns)->fileSystemRepresentation(), nullptr);
    }

    // ---- components

    TEST(NSURLPaths, HasComponents)
    {
        EXPECT_EQ(joined(url("file:///Users/"_ns)->pathComponents()), "/|Users");
        EXPECT_EQ(joined(url("file:///Users"_ns)->pathComponents()), "/|Users");
        EXPECT_EQ(joined(url("file:///a%20b//c"_ns)->pathComponents()), "/|a b|c");
        EXPECT_EQ(joined(url("file:///"_ns)->pathComponents()), "/");
        EXPECT_EQ(joined(url("http://h"_ns)->pathComponents()), "");
        EXPECT_EQ(joined(url("mailto:a"_ns)->pathComponents()), "(nil)");
    }
    TEST(NSURLPaths, AnEscapedSlashSeparatesAsTheFileSystemSeesIt)
    {
        EXPECT_EQ(joined(url("file:///a%2Fb"_ns)->pathComponents()), "/|a|b");
    }
    TEST(NSURLPaths, HasALastComponentAndAnExtension)
    {
        EXPECT_EQ(utf8(url("file:///a/b.c/"_ns)->lastPathComponent()), "b.c");
        EXPECT_EQ(utf8(url("file:///a/b.c/"_ns)->pathExtension()), "c");
        EXPECT_EQ(utf8(url("file:///"_ns)->lastPathComponent()), "/");
    }
    TEST(NSURLPaths, DeletingTheLastComponentLeavesASlash)
    {
        const auto up
            = [](NSString* text) { return absolute(url(text)->URLByDeletingLastPathComponent()); };
        EXPECT_EQ(up("file:///a/b"_ns), "file:///a/");
        EXPECT_EQ(up("file:///a/b/"_ns), "file:///a/");
        EXPECT_EQ(up("file:///a"_ns), "file:///");
        EXPECT_EQ(up("a/b"_ns), "a/");
        EXPECT_EQ(up("a"_ns), "./");
        EXPECT_EQ(up("http://h/a/b?q#f"_ns), "http://h/a/?q#f");
        EXPECT_EQ(up("http://h"_ns), "http://h");
        EXPECT_EQ(up("mailto:a"_ns), "mailto:a");
    }
    TEST(NSURLPaths, NothingIsAboveTheRoot)
    {
        EXPECT_EQ(absolute(url("file:///"_ns)->URLByDeletingLastPathComponent()), "file:///");
    }
    TEST(NSURLPaths, DeletingFollowsDotsFirst)
    {
        const auto up
            = [](NSString* text) { return absolute(url(text)->URLByDeletingLastPathComponent()); };
        EXPECT_EQ(up("file:///a/b/.."_ns), "file:///");
        EXPECT_EQ(up("file:///a/b/."_ns), "file:///a/");
        EXPECT_EQ(up("file:///../.."_ns), "file:///");
    }
    TEST(NSURLPaths, AWalkUpwardEnds)
    {
        auto u = url("file:///a/../b//c/./d/%2e%2e/..//"_ns);
        int steps = 0;
        while (u->path()->length() > 1 && steps < 100) {
            u = u->URLByDeletingLastPathComponent();
            ++steps;
        }
        EXPECT_LT(steps, 10);
    }
    TEST(NSURLPaths, AWalkUpwardFromABaseEnds)
    {
        auto u = url(".././x"_ns, "http://h/a/b/c/d"_ns);
        std::string way;
        for (int steps = 0; u->path()->length() > 1 && steps < 100; ++steps) {
            way += utf8(u->path()) + " ";
            u = u->URLByDeletingLastPathComponent();
        }
        EXPECT_EQ(way, "/a/b/x /a/b /a ");
    }
    TEST(NSURLPaths, AWalkUpwardOfDotsEnds)
    {
        for (NSString* text : { ".."_ns, "../.."_ns, "a/.."_ns, "./"_ns, ".//"_ns })
            EXPECT_EQ(absolute(url(text)->URLByDeletingLastPathComponent()), "./") << utf8(text);
    }
    TEST(NSURLPaths, AppendsAComponent)
    {
        const auto add = [](NSString* text, NSString* component) {
            return absolute(url(text)->URLByAppendingPathComponent(component));
        };
        EXPECT_EQ(add("file:///no/a"_ns, "b c"_ns), "file:///no/a/b%20c");
        EXPECT_EQ(add("file:///no/a/"_ns, "/b"_ns), "file:///no/a/b");
        EXPECT_EQ(add("http://h"_ns, "a/b"_ns), "http://h/a/b");
        EXPECT_EQ(add("http://h/x?q#f"_ns, "a?"_ns), "http://h/x/a%3F?q#f");
        EXPECT_EQ(add("file:///no"_ns, "a/"_ns), "file:///no/a/");
        EXPECT_EQ(add("mailto:a"_ns, "b"_ns), "mailto:a");
    }
    TEST(NSURLPaths, AnAppendedComponentIsNoScheme)
    {
        EXPECT_EQ(absolute(url("?q"_ns)->URLByAppendingPathComponent("a:b"_ns)), "./a:b?q");
    }
    TEST(NSURLPaths, AppendingLooksForAFolder)
    {
        const TemporaryFolder folder;
        std::filesystem::create_directory(folder.path() / "in");
        EXPECT_TRUE(
            fileURL(folder.path())->URLByAppendingPathComponent("in"_ns)->hasDirectoryPath());
        EXPECT_FALSE(fileURL(folder.path())
                         ->URLByAppendingPathComponent_isDirectory("in"_ns, false)
                         ->hasDirectoryPath());
    }
    TEST(NSURLPaths, AppendingNilRaises)
    {
        EXPECT_NE(raisedBy([] { url("a"_ns)->URLByAppendingPathComponent(nullptr); }), "");
    }
    TEST(NSURLPaths, ARelativeURLKeepsItsBase)
    {
        const auto u = url("b"_ns, "http://h/a/"_ns)->URLByAppendingPathComponent("c"_ns);
        EXPECT_EQ(utf8(u->relativeString()), "b/c");
        EXPECT_EQ(absolute(u), "http://h/a/b/c");
    }
    TEST(NSURLPaths, ChangesExtensions)
    {
        EXPECT_EQ(absolute(url("file:///a/b.c/"_ns)->URLByDeletingPathExtension()), "file:///a/b/");
        EXPECT_EQ(absolute(url("file:///a/.c"_ns)->URLByDeletingPathExtension()), "file:///a/.c");
        EXPECT_EQ(absolute(url("file:///a.b/c"_ns)->URLByDeletingPathExtension()), "file:///a.b/c");
        EXPECT_EQ(absolute(url("file:///a/b"_ns)->URLByAppendingPathExtension("c d"_ns)),
            "file:///a/b.c%20d");
        EXPECT_EQ(absolute(url("file:///a/b/"_ns)->URLByAppendingPathExtension("c"_ns)),
            "file:///a/b.c/");
        EXPECT_EQ(absolute(url("file:///"_ns)->URLByAppendingPathExtension("c"_ns)), "file:///");
        EXPECT_EQ(
            absolute(url("file:///a"_ns)->URLByAppendingPathExtension("c/d"_ns)), "file:///a");
        EXPECT_EQ(absolute(url("file:///a"_ns)->URLByAppendingPathExtension(""_ns)), "file:///a");
    }
    TEST(NSURLPaths, StandardizesTheWayOfAFile)
    {
        const auto standard
            = [](NSString* text) { return absolute(url(text)->URLByStandardizingPath()); };
        EXPECT_EQ(standard("file:///a//b/./c/../d"_ns), "file:///a/b/d");
        EXPECT_EQ(standard("file:///a/b/"_ns), "file:///a/b/");
        EXPECT_EQ(standard("file:///a/b/.."_ns), "file:///a/");
        EXPECT_EQ(standard("http://h//a/.."_ns), "http://h//a/..");
        EXPECT_EQ(standard("file:///%2e%2e/a"_ns), "file:///a");
    }
    TEST(NSURLPaths, ResolvesLinksAsFarAsThePathExists)
    {
        const TemporaryFolder folder;
        std::filesystem::create_directory(folder.path() / "real");
        std::filesystem::create_symlink("real", folder.path() / "link");
        const std::string real = "file://" + (folder.path() / "real").string();
        const auto resolved = [&](const char* tail) {
            return absolute(url(stringFrom("file://" + folder.path().string() + tail).get())
                                ->URLByResolvingSymlinksInPath());
        };
        EXPECT_EQ(resolved("/link/no/such"), real + "/no/such");
        EXPECT_EQ(resolved("/link"), real);
        EXPECT_EQ(resolved("/link/"), real + "/");
    }

    // ---- resources

    TEST(NSURLResources, KnowsWhetherAFileIsThere)
    {
        const TemporaryFolder folder;
        EXPECT_TRUE(fileURL(folder.path())->checkResourceIsReachableAndReturnError(nullptr));
        Ref<NSError> error;
        EXPECT_FALSE(fileURL(folder.path() / "no")->checkResourceIsReachableAndReturnError(&error));
        EXPECT_EQ(error->code(), NSFileReadNoSuchFileError);
    }
    TEST(NSURLResources, OnlyFilesCanBeReached)
    {
        Ref<NSError> error;
        EXPECT_FALSE(url("http://h/"_ns)->checkResourceIsReachableAndReturnError(&error));
        EXPECT_EQ(error->code(), NSFileReadUnsupportedSchemeError);
    }
    TEST(NSURLResources, HasValuesOfAFile)
    {
        const TemporaryFolder folder;
        std::ofstream(folder.path() / ".x") << "abc";
        const auto u = fileURL(folder.path() / ".x");
        const auto value = [&](NSString* key) {
            Ref<NSObject> out;
            EXPECT_TRUE(u->getResourceValue_forKey_error(&out, key, nullptr));
            return textOf(out);
        };
        EXPECT_EQ(value(NSURLNameKey), ".x");
        EXPECT_EQ(value(NSURLFileSizeKey), "3");
        EXPECT_EQ(value(NSURLIsRegularFileKey), "1");
        EXPECT_EQ(value(NSURLIsDirectoryKey), "0");
        EXPECT_EQ(value(NSURLIsSymbolicLinkKey), "0");
        EXPECT_EQ(value(NSURLIsHiddenKey), "1");
        EXPECT_EQ(value(NSURLIsReadableKey), "1");
        EXPECT_EQ(value(NSURLIsExecutableKey), "0");
        EXPECT_EQ(value(NSURLParentDirectoryURLKey), "file://" + folder.path().string() + "/");
        EXPECT_EQ(value("unknown"_ns), "(nil)");
    }
    TEST(NSURLResources, HasSeveralValuesAtOnce)
    {
        const auto keys = NSArray::cls().arrayWithObjects(
            NSURLIsDirectoryKey.get(), NSURLContentModificationDateKey.get(), "unknown"_ns);
        const auto values = fileURL("/")->resourceValuesForKeys_error(keys.get(), nullptr);
        EXPECT_EQ(values->count(), 2u);
        EXPECT_TRUE(
            values->objectForKey(NSURLContentModificationDateKey)->isKindOfClass(NSDate::cls()));
        EXPECT_EQ(fileURL("/no/such")->resourceValuesForKeys_error(keys.get(), nullptr), nullptr);
    }

}

}
