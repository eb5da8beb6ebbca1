// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSFileManager.h"

#include <cerrno>
#include <cstdlib>
#include <fstream>

#include <sys/stat.h>

#include "foundation/NSArray.h"
#include "foundation/NSData.h"
#include "foundation/NSDate.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSError.h"
#include "foundation/NSNumber.h"
#include "foundation/NSURL.h"
#include "support/Strings.h"
#include "support/TemporaryFolder.h"
#include "support/Variables.h"

using namespace brindle;
namespace fs = std::filesystem;

namespace {

/// A folder to try things in, and the manager.
class FileManager : public testing::Test {
protected:
    Ref<NSString> at(const std::string& place) const
    {
        return stringFrom((folder_.path() / place).string());
    }
    void write(const std::string& place, const std::string& content = "") const
    {
        const fs::path file = folder_.path() / place;
        fs::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << content;
    }
    std::string read(const std::string& place) const
    {
        std::ifstream file(folder_.path() / place, std::ios::binary);
        return { std::istreambuf_iterator<char>(file), {} };
    }
    bool exists(const std::string& place) const
    {
        return fs::exists(fs::symlink_status(folder_.path() / place));
    }
    fs::path path(const std::string& place) const { return folder_.path() / place; }

    static NSFileManager& manager()
    {
        static const Ref<NSFileManager> shared = NSFileManager::cls().defaultManager();
        return *shared;
    }
    static std::string joined(const Ref<NSArray>& names)
    {
        return names ? utf8(names->componentsJoinedByString(" "_ns)) : "(nil)";
    }
    /// Answers the error's code and the system's below it: "516 17".
    static std::string codes(const Ref<NSError>& error)
    {
        if (!error)
            return "none";
        const auto below = cast<NSError>(error->userInfo()->objectForKey(NSUnderlyingErrorKey));
        return std::to_string(error->code()) + ' ' + std::to_string(maybe(below)->code());
    }

    test::TemporaryFolder folder_;
};

}

TEST_F(FileManager, KnowsWhatIsThere)
{
    write("a.txt");
    bool isFolder = true;
    EXPECT_TRUE(manager().fileExistsAtPath_isDirectory(at("a.txt").get(), &isFolder));
    EXPECT_FALSE(isFolder);
    EXPECT_TRUE(manager().fileExistsAtPath_isDirectory(at("").get(), &isFolder));
    EXPECT_TRUE(isFolder);
    EXPECT_FALSE(manager().fileExistsAtPath(at("b.txt").get()));
}

TEST_F(FileManager, NilAndEmptyPathsAreNotThere)
{
    EXPECT_FALSE(manager().fileExistsAtPath(nullptr));
    EXPECT_FALSE(manager().fileExistsAtPath(""_ns));
    EXPECT_FALSE(manager().fileExistsAtPath_isDirectory(nullptr, nullptr));
}

TEST_F(FileManager, APathWithAnEmbeddedEndIsNotThere)
{
    EXPECT_FALSE(manager().fileExistsAtPath(stringFrom(std::string_view("/tmp\0x", 6)).get()));
}

TEST_F(FileManager, FollowsALinkWhenItLooks)
{
    write("folder/a.txt");
    fs::create_symlink("folder", path("link"));
    fs::create_symlink("nowhere", path("broken"));
    bool isFolder = false;
    EXPECT_TRUE(manager().fileExistsAtPath_isDirectory(at("link").get(), &isFolder));
    EXPECT_TRUE(isFolder);
    EXPECT_FALSE(manager().fileExistsAtPath(at("broken").get()));
}

TEST_F(FileManager, KnowsWhatMayBeDone)
{
    write("a.txt");
    EXPECT_TRUE(manager().isReadableFileAtPath(at("a.txt").get()));
    EXPECT_TRUE(manager().isWritableFileAtPath(at("a.txt").get()));
    EXPECT_FALSE(manager().isExecutableFileAtPath(at("a.txt").get()));
    EXPECT_TRUE(manager().isDeletableFileAtPath(at("a.txt").get()));
    EXPECT_FALSE(manager().isDeletableFileAtPath(at("b.txt").get()));
    EXPECT_FALSE(manager().isReadableFileAtPath(nullptr));
}

TEST_F(FileManager, ListsAFolderInOrder)
{
    write("b");
    write("a");
    write(".hidden");
    write("c/d");
    EXPECT_EQ(
        joined(manager().contentsOfDirectoryAtPath_error(at("").get(), nullptr)), ".hidden a b c");
}

TEST_F(FileManager, WhatCannotBeListedIsAnError)
{
    write("a.txt");
    Ref<NSError> error;
    EXPECT_FALSE(manager().contentsOfDirectoryAtPath_error(at("no").get(), &error));
    EXPECT_EQ(codes(error), "260 " + std::to_string(ENOENT));
    EXPECT_EQ(
        utf8(cast<NSString>(error->userInfo()->objectForKey(NSFilePathErrorKey))), utf8(at("no")));
    EXPECT_FALSE(manager().contentsOfDirectoryAtPath_error(at("a.txt").get(), nullptr));
    EXPECT_FALSE(manager().contentsOfDirectoryAtPath_error(nullptr, &error));
}

TEST_F(FileManager, ListsAllThatIsBelow)
{
    write("b/d/e");
    write("b/c");
    write("a");
    fs::create_symlink(path("b"), path("z"));
    EXPECT_EQ(joined(manager().subpathsOfDirectoryAtPath_error(at("").get(), nullptr)),
        "a b b/c b/d b/d/e z");
    EXPECT_EQ(joined(manager().subpathsAtPath(at("no").get())), "(nil)");
}

TEST_F(FileManager, AnEnumeratorCanLeaveFoldersOut)
{
    write("b/d/e");
    write("c");
    const auto walk = manager().enumeratorAtPath(at("").get());
    std::string log;
    while (const auto next = walk->nextObject()) {
        log += textOf(next) + ":" + std::to_string(walk->level()) + " ";
        if (textOf(next) == "b/d")
            walk->skipDescendants();
    }
    EXPECT_EQ(log, "b:1 b/d:2 c:1 ");
    EXPECT_FALSE(walk->nextObject());
    EXPECT_FALSE(walk->fileAttributes());
    EXPECT_FALSE(manager().enumeratorAtPath(at("c").get()));
    EXPECT_FALSE(make<NSDirectoryEnumerator>()->nextObject());
}

TEST_F(FileManager, MakesAFolder)
{
    Ref<NSError> error;
    EXPECT_TRUE(manager().createDirectoryAtPath_withIntermediateDirectories_attributes_error(
        at("a").get(), false, nullptr, &error));
    EXPECT_FALSE(manager().createDirectoryAtPath_withIntermediateDirectories_attributes_error(
        at("a").get(), false, nullptr, &error));
    EXPECT_EQ(codes(error), "516 " + std::to_string(EEXIST));
    EXPECT_FALSE(manager().createDirectoryAtPath_withIntermediateDirectories_attributes_error(
        at("b/c").get(), false, nullptr, &error));
    EXPECT_EQ(codes(error), "4 " + std::to_string(ENOENT));
}

TEST_F(FileManager, MakesTheFoldersAboveWhenAsked)
{
    const auto make = [&](const char* place) {
        return manager().createDirectoryAtPath_withIntermediateDirectories_attributes_error(
            at(place).get(), true, nullptr, nullptr);
    };
    EXPECT_TRUE(make("a/b/c"));
    EXPECT_TRUE(make("a/b/c"));
    EXPECT_TRUE(make("a/b/d/"));
    EXPECT_TRUE(exists("a/b/d"));
    write("file");
    EXPECT_FALSE(make("file"));
    EXPECT_FALSE(make("file/below"));
}

TEST_F(FileManager, AFolderGetsItsAttributes)
{
    const auto attributes
        = makeDictionary({ { NSFilePosixPermissions, NSNumber::cls().numberWithInt(0700).get() } });
    EXPECT_TRUE(manager().createDirectoryAtPath_withIntermediateDirectories_attributes_error(
        at("a").get(), false, attributes.get(), nullptr));
    EXPECT_EQ(fs::status(path("a")).permissions(), fs::perms::owner_all);
}

TEST_F(FileManager, WritesAndReadsFiles)
{
    const auto data = "hello"_ns->dataUsingEncoding(NSUTF8StringEncoding);
    EXPECT_TRUE(manager().createFileAtPath_contents_attributes(at("a").get(), data.get(), nullptr));
    EXPECT_EQ(read("a"), "hello");
    EXPECT_TRUE(manager().contentsAtPath(at("a").get())->isEqual(data.get()));
    EXPECT_TRUE(manager().createFileAtPath_contents_attributes(at("a").get(), nullptr, nullptr));
    EXPECT_EQ(read("a"), "");
    EXPECT_FALSE(manager().createFileAtPath_contents_attributes(at("b/c").get(), nullptr, nullptr));
    EXPECT_FALSE(manager().contentsAtPath(at("b").get()));
}

TEST_F(FileManager, CopiesAFileWithItsPermissionsAndDate)
{
    write("a", "hello");
    fs::permissions(path("a"), fs::perms::owner_read | fs::perms::owner_exec);
    fs::last_write_time(path("a"), fs::file_time_type::clock::now() - std::chrono::hours(1000));
    EXPECT_TRUE(manager().copyItemAtPath_toPath_error(at("a").get(), at("b").get(), nullptr));
    EXPECT_EQ(read("b"), "hello");
    EXPECT_EQ(fs::status(path("b")).permissions(), fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_EQ(fs::last_write_time(path("a")), fs::last_write_time(path("b")));
}

TEST_F(FileManager, CopiesAFolderWithAllThatIsInIt)
{
    write("a/b/c", "deep");
    fs::create_symlink("b/c", path("a/link"));
    fs::permissions(path("a/b"), fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_TRUE(manager().copyItemAtPath_toPath_error(at("a").get(), at("z").get(), nullptr));
    EXPECT_EQ(read("z/b/c"), "deep");
    EXPECT_EQ(fs::read_symlink(path("z/link")), "b/c");
    EXPECT_EQ(fs::status(path("z/b")).permissions(), fs::perms::owner_read | fs::perms::owner_exec);
    fs::permissions(path("a/b"), fs::perms::owner_all);
    fs::permissions(path("z/b"), fs::perms::owner_all);
}

TEST_F(FileManager, ACopyReplacesNothing)
{
    write("a", "new");
    write("b", "old");
    Ref<NSError> error;
    EXPECT_FALSE(manager().copyItemAtPath_toPath_error(at("a").get(), at("b").get(), &error));
    EXPECT_EQ(codes(error), "516 " + std::to_string(EEXIST));
    EXPECT_EQ(read("b"), "old");
}

TEST_F(FileManager, ACopyOfNothingIsAnErrorOfReading)
{
    Ref<NSError> error;
    EXPECT_FALSE(manager().copyItemAtPath_toPath_error(at("a").get(), at("b").get(), &error));
    EXPECT_EQ(codes(error), "260 " + std::to_string(ENOENT));
    EXPECT_FALSE(manager().copyItemAtPath_toPath_error(nullptr, at("b").get(), nullptr));
}

TEST_F(FileManager, AFolderIsNotCopiedIntoItself)
{
    write("a/b");
    Ref<NSError> error;
    EXPECT_FALSE(manager().copyItemAtPath_toPath_error(at("a").get(), at("a/c").get(), &error));
    EXPECT_EQ(codes(error), "512 " + std::to_string(EINVAL));
    EXPECT_FALSE(exists("a/c"));
    EXPECT_TRUE(exists("a/b"));
}

TEST_F(FileManager, AFolderWhoseNameOnlyBeginsLikeTheSourceIsAnother)
{
    write("a/b");
    write("ab/c");
    EXPECT_TRUE(manager().copyItemAtPath_toPath_error(at("a").get(), at("ab/d").get(), nullptr));
}

TEST_F(FileManager, ACopyThatFailsLeavesNothing)
{
    write("a/b", "kept");
    ASSERT_EQ(::mkfifo(path("a/pipe").c_str(), 0600), 0);
    EXPECT_FALSE(manager().copyItemAtPath_toPath_error(at("a").get(), at("z").get(), nullptr));
    EXPECT_FALSE(exists("z"));
    EXPECT_EQ(read("a/b"), "kept");
}

TEST_F(FileManager, MovesFilesAndFolders)
{
    write("a/b", "content");
    EXPECT_TRUE(manager().moveItemAtPath_toPath_error(at("a").get(), at("z").get(), nullptr));
    EXPECT_EQ(read("z/b"), "content");
    EXPECT_FALSE(exists("a"));
}

TEST_F(FileManager, AMoveReplacesNothing)
{
    write("a", "new");
    write("b", "old");
    Ref<NSError> error;
    EXPECT_FALSE(manager().moveItemAtPath_toPath_error(at("a").get(), at("b").get(), &error));
    EXPECT_EQ(codes(error), "516 " + std::to_string(EEXIST));
    EXPECT_EQ(read("a") + read("b"), "newold");
    EXPECT_FALSE(manager().moveItemAtPath_toPath_error(at("no").get(), at("z").get(), &error));
    EXPECT_EQ(codes(error), "4 " + std::to_string(ENOENT));
}

TEST_F(FileManager, AFolderIsNotMovedIntoItself)
{
    write("a/b");
    EXPECT_FALSE(manager().moveItemAtPath_toPath_error(at("a").get(), at("a/c").get(), nullptr));
    EXPECT_TRUE(exists("a/b"));
}

TEST_F(FileManager, RemovesFoldersWithAllThatIsInThem)
{
    write("a/b/c/d");
    write("a/e");
    EXPECT_TRUE(manager().removeItemAtPath_error(at("a").get(), nullptr));
    EXPECT_FALSE(exists("a"));
    Ref<NSError> error;
    EXPECT_FALSE(manager().removeItemAtPath_error(at("a").get(), &error));
    EXPECT_EQ(codes(error), "4 " + std::to_string(ENOENT));
    EXPECT_FALSE(manager().removeItemAtPath_error(nullptr, nullptr));
}

TEST_F(FileManager, RemovingALinkLeavesWhatItMeans)
{
    write("a/b");
    fs::create_symlink(path("a"), path("link"));
    write("c/d");
    fs::create_symlink(path("a"), path("c/link"));
    EXPECT_TRUE(manager().removeItemAtPath_error(at("link").get(), nullptr));
    EXPECT_TRUE(manager().removeItemAtPath_error(at("c").get(), nullptr));
    EXPECT_TRUE(exists("a/b"));
    EXPECT_FALSE(exists("link"));
}

TEST_F(FileManager, DeepFoldersUseNoStack)
{
    const fs::path before = fs::current_path();
    fs::create_directory(path("deep"));
    fs::current_path(path("deep"));
    constexpr int kDepth = 400;
    for (int i = 0; i < kDepth; ++i) {
        fs::create_directory("d");
        fs::current_path("d");
    }
    fs::current_path(before);
    EXPECT_EQ(manager().subpathsAtPath(at("deep").get())->count(), static_cast<NSUInteger>(kDepth));
    EXPECT_TRUE(manager().copyItemAtPath_toPath_error(at("deep").get(), at("z").get(), nullptr));
    EXPECT_TRUE(manager().removeItemAtPath_error(at("deep").get(), nullptr));
}

TEST_F(FileManager, MakesAndReadsLinks)
{
    EXPECT_TRUE(manager().createSymbolicLinkAtPath_withDestinationPath_error(
        at("link").get(), "some/where"_ns, nullptr));
    EXPECT_EQ(utf8(manager().destinationOfSymbolicLinkAtPath_error(at("link").get(), nullptr)),
        "some/where");
    write("a", "one");
    EXPECT_TRUE(manager().linkItemAtPath_toPath_error(at("a").get(), at("b").get(), nullptr));
    EXPECT_EQ(fs::hard_link_count(path("a")), 2u);
    Ref<NSError> error;
    EXPECT_FALSE(manager().destinationOfSymbolicLinkAtPath_error(at("a").get(), &error));
    EXPECT_EQ(error->code(), NSFileReadUnknownError);
}

TEST_F(FileManager, ComparesContents)
{
    write("a/x", "1");
    write("b/x", "1");
    write("c/x", "2");
    write("d/y", "1");
    EXPECT_TRUE(manager().contentsEqualAtPath_andPath(at("a").get(), at("b").get()));
    EXPECT_TRUE(manager().contentsEqualAtPath_andPath(at("a/x").get(), at("b/x").get()));
    EXPECT_FALSE(manager().contentsEqualAtPath_andPath(at("a").get(), at("c").get()));
    EXPECT_FALSE(manager().contentsEqualAtPath_andPath(at("a").get(), at("d").get()));
    EXPECT_FALSE(manager().contentsEqualAtPath_andPath(at("a").get(), at("a/x").get()));
    EXPECT_FALSE(manager().contentsEqualAtPath_andPath(at("no").get(), at("no").get()));
    EXPECT_FALSE(manager().contentsEqualAtPath_andPath(nullptr, nullptr));
}

TEST_F(FileManager, TellsTheAttributesOfAFile)
{
    write("a", "12345");
    fs::permissions(path("a"), fs::perms::owner_read | fs::perms::owner_write);
    const auto all = manager().attributesOfItemAtPath_error(at("a").get(), nullptr);
    ASSERT_TRUE(all);
    EXPECT_EQ(textOf(all->objectForKey(NSFileType)), "NSFileTypeRegular");
    EXPECT_EQ(textOf(all->objectForKey(NSFileSize)), "5");
    EXPECT_EQ(textOf(all->objectForKey(NSFilePosixPermissions)), std::to_string(0600));
    EXPECT_EQ(textOf(all->objectForKey(NSFileReferenceCount)), "1");
    EXPECT_TRUE(maybe(all->objectForKey(NSFileModificationDate))->isKindOfClass(NSDate::cls()));
}

TEST_F(FileManager, TellsTheAttributesOfALinkItself)
{
    fs::create_symlink("nowhere", path("link"));
    const auto all = manager().attributesOfItemAtPath_error(at("link").get(), nullptr);
    ASSERT_TRUE(all);
    EXPECT_EQ(textOf(all->objectForKey(NSFileType)), "NSFileTypeSymbolicLink");
    Ref<NSError> error;
    EXPECT_FALSE(manager().attributesOfItemAtPath_error(at("no").get(), &error));
    EXPECT_EQ(codes(error), "260 " + std::to_string(ENOENT));
}

TEST_F(FileManager, SetsAttributes)
{
    write("a");
    const auto attributes = makeDictionary({
        { NSFilePosixPermissions, NSNumber::cls().numberWithInt(0640).get() },
        { NSFileModificationDate, NSDate::cls().dateWithTimeIntervalSince1970(1000.5).get() },
        { NSFileSize, "not a number, and not to be set"_ns },
    });
    EXPECT_TRUE(
        manager().setAttributes_ofItemAtPath_error(attributes.get(), at("a").get(), nullptr));
    const auto all = manager().attributesOfItemAtPath_error(at("a").get(), nullptr);
    EXPECT_EQ(textOf(all->objectForKey(NSFilePosixPermissions)), std::to_string(0640));
    EXPECT_EQ(
        cast<NSDate>(all->objectForKey(NSFileModificationDate))->timeIntervalSince1970(), 1000.5);
    Ref<NSError> error;
    EXPECT_FALSE(
        manager().setAttributes_ofItemAtPath_error(attributes.get(), at("no").get(), &error));
    EXPECT_EQ(codes(error), "4 " + std::to_string(ENOENT));
}

TEST_F(FileManager, KnowsTheRoomOnAVolume)
{
    const auto all = manager().attributesOfFileSystemForPath_error(at("").get(), nullptr);
    ASSERT_TRUE(all);
    EXPECT_GE(cast<NSNumber>(all->objectForKey(NSFileSystemSize))->unsignedLongLongValue(),
        cast<NSNumber>(all->objectForKey(NSFileSystemFreeSize))->unsignedLongLongValue());
    EXPECT_FALSE(manager().attributesOfFileSystemForPath_error(at("no").get(), nullptr));
}

// ---- URLs

TEST_F(FileManager, ListsAFolderAsURLs)
{
    write("folder/a");
    write(".hidden");
    const auto names = [&](NSDirectoryEnumerationOptions options) {
        const auto url = NSURL::cls().fileURLWithPath(at("").get());
        const auto all
            = manager().contentsOfDirectoryAtURL_includingPropertiesForKeys_options_error(
                url.get(), nullptr, options, nullptr);
        std::string text;
        for (NSURL* const item : each<NSURL>(all))
            text += utf8(item->lastPathComponent()) + ' ';
        return text;
    };
    EXPECT_EQ(names(0), ".hidden folder ");
    EXPECT_EQ(names(NSDirectoryEnumerationSkipsHiddenFiles), "folder ");
}

TEST_F(FileManager, ChangesFilesByURLs)
{
    const auto url = [&](const char* place) {
        return NSURL::cls().fileURLWithPath_isDirectory(at(place).get(), false);
    };
    write("a", "content");
    EXPECT_TRUE(manager().copyItemAtURL_toURL_error(url("a").get(), url("b").get(), nullptr));
    EXPECT_TRUE(manager().moveItemAtURL_toURL_error(url("b").get(), url("c").get(), nullptr));
    EXPECT_EQ(read("c"), "content");
    EXPECT_TRUE(manager().removeItemAtURL_error(url("c").get(), nullptr));
    EXPECT_FALSE(exists("c"));
    EXPECT_TRUE(manager().createDirectoryAtURL_withIntermediateDirectories_attributes_error(
        url("d/e").get(), true, nullptr, nullptr));
    EXPECT_FALSE(manager().removeItemAtURL_error(nullptr, nullptr));
}

TEST_F(FileManager, PutsAFileIntoTheTrash)
{
    const test::Variables variables { { "XDG_DATA_HOME", path("data").string() } };
    for (const char* const content : { "first", "second" }) {
        write("a b", content);
        Ref<NSURL> now;
        ASSERT_TRUE(manager().trashItemAtURL_resultingItemURL_error(
            NSURL::cls().fileURLWithPath(at("a b").get()).get(), &now, nullptr));
        EXPECT_FALSE(exists("a b"));
        EXPECT_TRUE(manager().fileExistsAtPath(now->path().get()));
    }
    EXPECT_EQ(read("data/Trash/files/a b"), "first");
    EXPECT_EQ(read("data/Trash/files/a b.2"), "second");
    const std::string record = read("data/Trash/info/a b.2.trashinfo");
    EXPECT_TRUE(
        record.starts_with("[Trash Info]\nPath=" + path("a%20b").string() + "\nDeletionDate="))
        << record;
}

TEST_F(FileManager, WhatIsNotThereDoesNotReachTheTrash)
{
    const test::Variables variables { { "XDG_DATA_HOME", path("data").string() } };
    Ref<NSError> error;
    EXPECT_FALSE(manager().trashItemAtURL_resultingItemURL_error(
        NSURL::cls().fileURLWithPath(at("no").get()).get(), nullptr, &error));
    EXPECT_EQ(codes(error), "4 " + std::to_string(ENOENT));
    EXPECT_FALSE(exists("data/Trash/info/no.trashinfo"));
}

TEST_F(FileManager, KnowsThePlacesAsURLs)
{
    const test::Variables variables { { "HOME", "/h" }, { "XDG_CACHE_HOME", "/c" },
        { "TMPDIR", "" } };
    const auto caches = manager().URLsForDirectory_inDomains(NSCachesDirectory, NSUserDomainMask);
    ASSERT_EQ(caches->count(), 1u);
    EXPECT_EQ(utf8(cast<NSURL>(caches->firstObject())->absoluteString()), "file:///c/");
    EXPECT_EQ(utf8(manager().homeDirectoryForCurrentUser()->absoluteString()), "file:///h/");
    EXPECT_EQ(utf8(manager().temporaryDirectory()->absoluteString()), "file:///tmp/");
}
