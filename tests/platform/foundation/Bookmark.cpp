// SPDX-License-Identifier: Apache-2.0
#include "foundation/Bookmark.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "foundation/NSArray.h"
#include "foundation/NSData.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSError.h"
#include "foundation/URLPrivate.h"
#include "support/Figures.h"
#include "support/Strings.h"
#include "support/TemporaryFolder.h"

namespace brindle {

namespace {

    using test::TemporaryFolder;
    namespace fs = std::filesystem;

    /// A user with a data folder of its own for the time of a test.
    class User {
    public:
        User()
            : was_(std::getenv("XDG_DATA_HOME") ? std::getenv("XDG_DATA_HOME") : "")
        {
            become();
        }
        ~User()
        {
            if (was_.empty())
                ::unsetenv("XDG_DATA_HOME");
            else
                ::setenv("XDG_DATA_HOME", was_.c_str(), 1);
        }
        void become() const { ::setenv("XDG_DATA_HOME", home_.path().c_str(), 1); }
        fs::path key() const { return home_.path() / "brindle" / "bookmark-key"; }

    private:
        TemporaryFolder home_;
        std::string was_;
    };

    class Bookmarks : public ::testing::Test {
    protected:
        fs::path place(const char* name) const { return folder.path() / name; }
        void put(const fs::path& path) const { std::ofstream(path) << "x"; }
        static Ref<NSURL> urlOf(const fs::path& path)
        {
            return NSURL::cls().fileURLWithPath(stringFrom(path.string()).get());
        }
        Ref<NSData> bookmark(const fs::path& path, NSURLBookmarkCreationOptions options = 0)
        {
            return urlOf(path)
                ->bookmarkDataWithOptions_includingResourceValuesForKeys_relativeToURL_error(
                    options, nullptr, nullptr, &error);
        }
        /// Answers the path behind a bookmark with "(stale)" where it is, or "refused".
        std::string follow(const Ref<NSData>& data, NSURL* base = nullptr)
        {
            bool isStale = false;
            url = NSURL::cls()
                      .URLByResolvingBookmarkData_options_relativeToURL_bookmarkDataIsStale_error(
                          data.get(), NSURLBookmarkResolutionWithSecurityScope, base, &isStale,
                          &error);
            return url ? utf8(url->path()) + (isStale ? " (stale)" : "") : "refused";
        }

        User user;
        TemporaryFolder folder;
        Ref<NSError> error;
        Ref<NSURL> url;
    };

    // ---- the way back

    TEST_F(Bookmarks, LeadBackToAFile)
    {
        put(place("a"));
        EXPECT_EQ(follow(bookmark(place("a"))), place("a"));
    }
    TEST_F(Bookmarks, LeadBackToAFolderWithASlash)
    {
        fs::create_directory(place("in"));
        follow(bookmark(place("in")));
        EXPECT_EQ(utf8(url->absoluteString()), "file://" + place("in").string() + "/");
    }
    TEST_F(Bookmarks, AreMadeOfExistingFilesOnly)
    {
        EXPECT_EQ(bookmark(place("no")), nullptr);
        EXPECT_EQ(error->code(), NSFileReadNoSuchFileError);
    }
    TEST_F(Bookmarks, AreMadeOfFileURLsOnly)
    {
        const auto http = NSURL::cls().URLWithString("http://h/"_ns);
        EXPECT_EQ(http->bookmarkDataWithOptions_includingResourceValuesForKeys_relativeToURL_error(
                      0, nullptr, nullptr, &error),
            nullptr);
        EXPECT_EQ(error->code(), NSFileReadUnsupportedSchemeError);
    }
    TEST_F(Bookmarks, AreStaleAfterARename)
    {
        put(place("a"));
        const auto data = bookmark(place("a"));
        fs::rename(place("a"), place("b"));
        EXPECT_EQ(follow(data), place("b").string() + " (stale)");
    }
    TEST_F(Bookmarks, AreStaleAfterAMoveNearby)
    {
        put(place("a"));
        fs::create_directories(place("one/two"));
        const auto data = bookmark(place("a"));
        fs::rename(place("a"), place("one/two/a"));
        EXPECT_EQ(follow(data), place("one/two/a").string() + " (stale)");
    }
    TEST_F(Bookmarks, AreStaleWhenAFolderAboveIsRenamed)
    {
        fs::create_directories(place("one/two"));
        put(place("one/two/a"));
        const auto data = bookmark(place("one/two/a"));
        fs::rename(place("one"), place("uno"));
        EXPECT_EQ(follow(data), place("uno/two/a").string() + " (stale)");
    }
    TEST_F(Bookmarks, AreStaleWhenTheFileIsReplaced)
    {
        put(place("a"));
        put(place("b"));
        const auto data = bookmark(place("a"));
        fs::rename(place("b"), place("a"));
        EXPECT_EQ(follow(data), place("a").string() + " (stale)");
    }
    TEST_F(Bookmarks, OfAFileThatIsGoneAreRefused)
    {
        put(place("a"));
        const auto data = bookmark(place("a"));
        fs::remove(place("a"));
        EXPECT_EQ(follow(data), "refused");
        EXPECT_EQ(error->code(), NSFileNoSuchFileError);
    }
    TEST_F(Bookmarks, DoNotFollowALoopOfLinks)
    {
        put(place("a"));
        const auto data = bookmark(place("a"));
        fs::remove(place("a"));
        fs::create_symlink(".", place("loop"));
        EXPECT_EQ(follow(data), "refused");
    }

    TEST_F(Bookmarks, OfAFileThatIsGoneDoNotLeadToANewOneWithItsNumber)
    {
        put(place("a"));
        const auto data = bookmark(place("a"));
        fs::remove(place("a"));
        for (char name = 'b'; name < 'z'; ++name)
            put(folder.path() / std::string(1, name));
        EXPECT_EQ(follow(data), "refused");
    }

    // ---- damage

    TEST_F(Bookmarks, WithAnyBitChangedAreRefused)
    {
        put(place("a"));
        const auto data = bookmark(place("a"));
        const auto good = bytesOf(data.get());
        for (std::size_t bit = 0; bit < good.size() * 8; ++bit) {
            std::vector<unsigned char> bytes(good.begin(), good.end());
            bytes[bit / 8] = static_cast<unsigned char>(bytes[bit / 8] ^ 1u << bit % 8);
            ASSERT_EQ(follow(dataFrom(bytes)), "refused") << "bit " << bit;
        }
        test::publish({ "bookmarks with each bit changed: not refused",
            static_cast<long>(good.size()) * 8, 0, "bookmarks", 0 });
    }
    TEST_F(Bookmarks, CutShortOrMadeLongerAreRefused)
    {
        put(place("a"));
        const auto data = bookmark(place("a"));
        const auto good = bytesOf(data.get());
        for (std::size_t length = 0; length < good.size(); ++length)
            ASSERT_EQ(follow(dataFrom(good.first(length))), "refused") << length;
        std::vector<unsigned char> longer(good.begin(), good.end());
        longer.push_back(0);
        EXPECT_EQ(follow(dataFrom(longer)), "refused");
        EXPECT_EQ(follow(nullptr), "refused");
        test::publish({ "bookmarks cut short at each byte: not refused",
            static_cast<long>(good.size()), 0, "bookmarks", 0 });
    }
    TEST_F(Bookmarks, OfAnotherUserAreRefused)
    {
        put(place("a"));
        const auto data = bookmark(place("a"));
        const User other;
        EXPECT_EQ(follow(data), "refused");
        EXPECT_EQ(error->code(), NSFileReadCorruptFileError);
        user.become();
        EXPECT_EQ(follow(data), place("a"));
    }
    TEST_F(Bookmarks, WithABaseWantThatBase)
    {
        put(place("a"));
        const auto base = urlOf(folder.path());
        const auto data
            = urlOf(place("a"))
                  ->bookmarkDataWithOptions_includingResourceValuesForKeys_relativeToURL_error(
                      0, nullptr, base.get(), nullptr);
        EXPECT_EQ(follow(data), "refused");
        EXPECT_EQ(follow(data, urlOf(place("a")).get()), "refused");
        EXPECT_EQ(follow(data, base.get()), place("a"));
    }
    TEST_F(Bookmarks, RememberTheirPath)
    {
        put(place("a"));
        const auto data = bookmark(place("a"));
        fs::remove(place("a"));
        const auto keys = NSArray::cls().arrayWithObjects(NSURLPathKey.get(), NSURLNameKey.get());
        const auto values
            = NSURL::cls().resourceValuesForKeys_fromBookmarkData(keys.get(), data.get());
        EXPECT_EQ(textOf(values->objectForKey(NSURLPathKey)), place("a"));
        EXPECT_EQ(textOf(values->objectForKey(NSURLNameKey)), "a");
        EXPECT_EQ(
            NSURL::cls().resourceValuesForKeys_fromBookmarkData(keys.get(), nullptr), nullptr);
    }

    // ---- the key

    TEST_F(Bookmarks, TheKeyIsReadableByTheUserOnly)
    {
        put(place("a"));
        bookmark(place("a"));
        struct stat facts { };
        ASSERT_EQ(::stat(user.key().c_str(), &facts), 0);
        EXPECT_EQ(facts.st_mode & 0777, 0600u);
        EXPECT_EQ(facts.st_size, 16);
    }
    TEST_F(Bookmarks, AKeyThatOthersCanReadIsNotUsed)
    {
        put(place("a"));
        bookmark(place("a"));
        ::chmod(user.key().c_str(), 0644);
        EXPECT_EQ(bookmark(place("a")), nullptr);
        EXPECT_EQ(error->code(), NSFileWriteUnknownError);
    }
    TEST_F(Bookmarks, AKeyBehindALinkIsNotUsed)
    {
        put(place("a"));
        bookmark(place("a"));
        fs::rename(user.key(), place("key"));
        fs::create_symlink(place("key"), user.key());
        EXPECT_EQ(bookmark(place("a")), nullptr);
    }
    TEST(BookmarkSeal, AnswersTheKnownValue)
    {
        // The first two of the published test vectors: key 00 to 0f, message 00, 01, ...
        bookmarks::Key key {};
        for (std::size_t i = 0; i < key.size(); ++i)
            key[i] = static_cast<unsigned char>(i);
        std::vector<unsigned char> message;
        const bookmarks::Key empty { 0xa3, 0x81, 0x7f, 0x04, 0xba, 0x25, 0xa8, 0xe6, 0x6d, 0xf6,
            0x72, 0x14, 0xc7, 0x55, 0x02, 0x93 };
        EXPECT_EQ(bookmarks::seal(key, message), empty);
        message.push_back(0);
        const bookmarks::Key one { 0xda, 0x87, 0xc1, 0xd8, 0x6b, 0x99, 0xaf, 0x44, 0x34, 0x76, 0x59,
            0x11, 0x9b, 0x22, 0xfc, 0x45 };
        EXPECT_EQ(bookmarks::seal(key, message), one);
    }

    // ---- access

    TEST_F(Bookmarks, ScopedOnesGiveAccessThatNests)
    {
        put(place("a"));
        follow(bookmark(place("a"), NSURLBookmarkCreationWithSecurityScope));
        EXPECT_TRUE(url->startAccessingSecurityScopedResource());
        EXPECT_TRUE(url->startAccessingSecurityScopedResource());
        EXPECT_EQ(URLAccess::accesses(*url.get()), 2);
        url->stopAccessingSecurityScopedResource();
        EXPECT_EQ(URLAccess::accesses(*url.get()), 1);
        url->stopAccessingSecurityScopedResource();
        url->stopAccessingSecurityScopedResource();
        EXPECT_EQ(URLAccess::accesses(*url.get()), 0);
    }
    TEST_F(Bookmarks, OthersGiveNone)
    {
        put(place("a"));
        follow(bookmark(place("a")));
        EXPECT_FALSE(url->startAccessingSecurityScopedResource());
        EXPECT_FALSE(urlOf(place("a"))->startAccessingSecurityScopedResource());
    }
    TEST_F(Bookmarks, APanelCanGrantAccess)
    {
        const auto granted = urlOf(folder.path());
        URLAccess::grant(*granted.get());
        EXPECT_TRUE(granted->startAccessingSecurityScopedResource());
    }

}

}
