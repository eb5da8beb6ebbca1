// SPDX-License-Identifier: Apache-2.0
#include <cstring>
#include <random>

#include "SandboxHost.h"
#include "support/Figures.h"

namespace brindle {

namespace {

    using test::Sandbox;
    namespace fs = std::filesystem;

    Ref<NSURL> plain(const char* text)
    {
        return NSURL::cls().URLWithString(stringFrom(text).get());
    }
    Ref<NSData> bytes(const char* text)
    {
        return NSData::cls().dataWithBytes_length(text, std::strlen(text));
    }
    std::string found(const char* text)
    {
        const auto data = AppSandboxFileAccessPersist::cls().bookmarkDataForURL(plain(text).get());
        return data ? std::string(static_cast<const char*>(data->bytes()), data->length())
                    : "(nil)";
    }
    void put(const char* url, const char* data)
    {
        AppSandboxFileAccessPersist::cls().setBookmarkData_forURL(
            bytes(data).get(), plain(url).get());
    }

    // ---- keys and walking up

    TEST_F(Sandbox, TheKeyIsTheURLsText)
    {
        EXPECT_EQ(utf8(AppSandboxFileAccessPersist::cls().keyForBookmarkDataForURL(
                      plain("file:///Users/name/Documents/").get())),
            "bd_file:///Users/name/Documents/");
    }
    TEST_F(Sandbox, TheNearestFolderAboveWins)
    {
        put("file:///Users/name/", "outer");
        EXPECT_EQ(found("file:///Users/name/Documents/a.txt"), "outer");
        put("file:///Users/name/Documents/", "inner");
        EXPECT_EQ(found("file:///Users/name/Documents/a.txt"), "inner");
        put("file:///Users/name/Documents/a.txt", "file");
        EXPECT_EQ(found("file:///Users/name/Documents/a.txt"), "file");
        EXPECT_EQ(found("file:///Users/name"), "(nil)") << "folders are kept with their slash";
        EXPECT_EQ(found("file:///Users/other/a.txt"), "(nil)");
    }
    TEST_F(Sandbox, ANameThatOnlyBeginsAlikeIsNoFolderAbove)
    {
        put("file:///Users/a/", "a");
        EXPECT_EQ(found("file:///Users/ab/file"), "(nil)");
        EXPECT_EQ(found("file:///Users/ab"), "(nil)");
    }
    TEST_F(Sandbox, TheRootIsNeverLookedUp)
    {
        put("file:///", "root");
        EXPECT_EQ(found("file:///"), "(nil)");
        EXPECT_EQ(found("file:///a"), "(nil)");
        EXPECT_EQ(found("file:///a/b/c"), "(nil)");
    }
    TEST_F(Sandbox, WithoutAURLThereIsNothing)
    {
        EXPECT_EQ(AppSandboxFileAccessPersist::cls().bookmarkDataForURL(nullptr), nullptr);
        AppSandboxFileAccessPersist::cls().setBookmarkData_forURL(bytes("x").get(), nullptr);
        EXPECT_EQ(found("mailto:a@b"), "(nil)");
        EXPECT_EQ(found("relative/path"), "(nil)");
        EXPECT_EQ(found("http://h"), "(nil)");
    }
    TEST_F(Sandbox, AValueThatIsNoDataIsPassedOver)
    {
        put("file:///a/", "folder");
        NSUserDefaults::cls().standardUserDefaults()->setObject_forKey(
            "text"_ns, "bd_file:///a/b"_ns);
        EXPECT_EQ(found("file:///a/b"), "folder");
    }
    TEST_F(Sandbox, NilDataTakesABookmarkAway)
    {
        put("file:///a/", "folder");
        AppSandboxFileAccessPersist::cls().setBookmarkData_forURL(
            nullptr, plain("file:///a/").get());
        EXPECT_EQ(found("file:///a/b"), "(nil)");
    }

    // ---- damage

    TEST_F(Sandbox, ABookmarkWithAnyBitFlippedIsRefusedAndTheUserIsAsked)
    {
        const auto good = bookmark(place("top/other"));
        const std::string whole(static_cast<const char*>(good->bytes()), good->length());
        int expected = 0;
        for (std::size_t bit = 0; bit < whole.size() * 8; ++bit) {
            std::string bad = whole;
            bad[bit / 8] = static_cast<char>(bad[bit / 8] ^ (1 << (bit % 8)));
            keep(place("top/other"),
                NSData::cls().dataWithBytes_length(bad.data(), bad.size()).get());
            ASSERT_FALSE(accesses(place("top/other"))) << bit;
            ASSERT_EQ(asked, ++expected);
        }
        EXPECT_EQ(runs, 0);
    }
    TEST_F(Sandbox, ABookmarkCutShortIsRefused)
    {
        const auto good = bookmark(place("top/other"));
        for (std::size_t length = 0; length < good->length(); ++length) {
            keep(place("top/other"),
                NSData::cls().dataWithBytes_length(good->bytes(), length).get());
            ASSERT_FALSE(accesses(place("top/other"))) << length;
        }
        EXPECT_EQ(runs, 0);
    }
    TEST_F(Sandbox, ABookmarkUnderAnothersKeyIsRefused)
    {
        keep(place("top/other"), bookmark(place("top/in/file")).get());
        EXPECT_FALSE(accesses(place("top/other")));
        EXPECT_EQ(asked, 1);
        EXPECT_EQ(runs, 0);
    }
    TEST_F(Sandbox, ABookmarkOfAnotherUserIsRefused)
    {
        const auto own = bookmark(place("top/other"));
        const test::TemporaryFolder otherHome;
        const test::Variables other { { "XDG_DATA_HOME", otherHome.path().string() } };
        keep(place("top/other"), own.get());
        EXPECT_FALSE(accesses(place("top/other")));
        EXPECT_EQ(asked, 1);
        EXPECT_EQ(runs, 0);
    }

    // ---- paths that try to lead elsewhere

    TEST_F(Sandbox, WhatIsGrantedIsDecidedByComponents)
    {
        keep(place("top/in"), bookmark(place("top/in")).get());
        EXPECT_TRUE(accesses(place("top/in/./file")));
        EXPECT_TRUE(accesses(place("top//in///file")));
        EXPECT_TRUE(accesses(place("top/in/none/../file")));
        EXPECT_FALSE(accesses(place("top/in/../other")));
        EXPECT_FALSE(accesses(place("top/inside")));
        EXPECT_FALSE(accesses(place("top/in/../../top/other")));
        fs::create_symlink("../other", place("top/in/link"));
        EXPECT_FALSE(accesses(place("top/in/link"))) << "what a link leads to counts";
        fs::create_symlink("in", place("top/into"));
        EXPECT_TRUE(accesses(place("top/into/file")));
    }
    TEST_F(Sandbox, FiveHundredStrangePathsKeepToTheGrant)
    {
        keep(place("top/in"), bookmark(place("top/in")).get());
        const std::string inside = fs::canonical(place("top/in")).string();
        std::mt19937 random(7);
        const char* const parts[] = { "..", ".", "", "in", "top", "file", "other", "%2e%2e", "~",
            "a\xcc\x88", " ", "\\..", "..\\", "...", "in\n" };
        for (int round = 0; round < 500; ++round) {
            std::string path = place(round % 2 ? "top/in" : "top");
            for (int i = 0; i < 6; ++i)
                path += std::string("/") + parts[random() % std::size(parts)];
            if (round % 50 == 0)
                path += "/" + std::string(4096, 'x');
            std::error_code tooLong;
            fs::path canonical = fs::weakly_canonical(path, tooLong);
            if (tooLong)
                canonical = fs::path(path).lexically_normal();
            const std::string real = canonical.string();
            const bool isInside = real == inside || real.starts_with(inside + "/");
            runs = 0;
            const bool given = accesses(path);
            ASSERT_EQ(given, runs == 1);
            ASSERT_TRUE(!given || isInside) << path << " is " << real;
        }
        test::publish(
            { "strange paths: decided otherwise than by components", 500, 0, "paths", 0 });
    }
    TEST_F(Sandbox, ALinkThatIsSwappedAllTheTimeGivesNoMoreThanTheGrant)
    {
        keep(place("top/in"), bookmark(place("top/in")).get());
        const std::string link = place("top/link");
        for (int round = 0; round < 10'000; ++round) {
            const bool inside = round % 2 == 0;
            fs::remove(link);
            fs::create_symlink(inside ? "in/file" : "other", link);
            ASSERT_EQ(accesses(link), inside);
        }
        test::publish(
            { "a link swapped all the time: read outside the grant", 10'000, 0, "times", 0 });
    }

    // ---- the panel's rule

    bool enables(const char* wanted, const char* candidate)
    {
        const auto rule = alloc<AppSandboxFileAccessOpenSavePanelDelegate>()->initWithFileURL(
            plain(wanted).get());
        return rule->panel_shouldEnableURL(nullptr, plain(candidate).get());
    }
    TEST(SandboxRule, TheFileAndTheFoldersAboveAreEnabled)
    {
        for (const char* candidate : { "file:///", "file:///a/", "file:///a/b/", "file:///a/b/c" })
            EXPECT_TRUE(enables("file:///a/b/c", candidate)) << candidate;
    }
    TEST(SandboxRule, SiblingsAndWhatIsBelowAreNot)
    {
        for (const char* candidate : { "file:///x", "file:///a/x", "file:///a/b/x",
                 "file:///a/b/c/d", "file:///a/bb/", "file:///A/" })
            EXPECT_FALSE(enables("file:///a/b/c", candidate)) << candidate;
    }
    TEST(SandboxRule, ASlashAtTheEndMakesNoDifference)
    {
        EXPECT_TRUE(enables("file:///a/b/", "file:///a/b"));
        EXPECT_TRUE(enables("file:///a/b", "file:///a/b/"));
    }
    TEST(SandboxRule, NothingIsEnabledAndNoneIsNot)
    {
        const auto rule = make<AppSandboxFileAccessOpenSavePanelDelegate>();
        EXPECT_TRUE(rule->panel_shouldEnableURL(nullptr, nullptr));
        EXPECT_FALSE(rule->panel_shouldEnableURL(nullptr, plain("file:///a").get()));
        rule->setUrlPath(NSArray::cls().arrayWithObjects("/"_ns, "a"_ns).get());
        EXPECT_TRUE(rule->panel_shouldEnableURL(nullptr, plain("file:///a").get()));
    }
    TEST(SandboxRule, KeepsTheURLAndItsComponents)
    {
        const auto rule = alloc<AppSandboxFileAccessOpenSavePanelDelegate>()->initWithFileURL(
            plain("file:///a/b%20c").get());
        EXPECT_EQ(utf8(rule->url()->absoluteString()), "file:///a/b%20c");
        EXPECT_EQ(rule->urlPath()->count(), 3u);
        EXPECT_EQ(textOf(rule->urlPath()->objectAtIndex(2)), "b c");
    }

}

}
