// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSRunningApplication.h"
#include "appkit/NSImage.h"
#include "foundation/NSProcessInfo.h"
#include "support/BundleFolder.h"
#include "support/HeadlessScreen.h"
#include "support/Strings.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace brindle {
namespace {

    std::string infoWith(const std::string& rows)
    {
        return "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict>" + rows + "</dict></plist>";
    }
    std::string row(const std::string& key, const std::string& value)
    {
        return "<key>" + key + "</key><string>" + value + "</string>";
    }
    Ref<NSRunningApplication> current() { return NSRunningApplication::cls().currentApplication(); }

    TEST(RunningApplication, IsOneObject) { EXPECT_EQ(current(), current()); }
    TEST(RunningApplication, IsNamedByItsDisplayName)
    {
        const test::BundleFolder folder;
        folder.add("Info.plist",
            infoWith(row("CFBundleName", "Short") + row("CFBundleDisplayName", "Long")));
        const test::MainBundle main(folder);
        EXPECT_EQ(utf8Of(current()->localizedName()), "Long");
    }
    TEST(RunningApplication, IsNamedByItsBundleNameWithoutADisplayName)
    {
        const test::BundleFolder folder;
        folder.add(
            "Info.plist", infoWith(row("CFBundleName", "Short") + row("CFBundleDisplayName", "")));
        const test::MainBundle main(folder);
        EXPECT_EQ(utf8Of(current()->localizedName()), "Short");
    }
    TEST(RunningApplication, IsNamedByItsProgramWithoutEither)
    {
        EXPECT_EQ(current()->localizedName(), NSProcessInfo::cls().processInfo()->processName());
    }
    TEST(RunningApplication, HasTheIdentifierOfTheBundle)
    {
        const test::BundleFolder folder;
        folder.add("Info.plist", infoWith(row("CFBundleIdentifier", "org.example.Notes")));
        const test::MainBundle main(folder);
        EXPECT_EQ(utf8Of(current()->bundleIdentifier()), "org.example.Notes");
    }
    TEST(RunningApplication, HasNoIdentifierWithoutABundle)
    {
        const test::BundleFolder folder;
        const test::MainBundle main(folder);
        EXPECT_EQ(current()->bundleIdentifier(), nullptr);
    }
    TEST(RunningApplication, IsFoundByItsProcess)
    {
        EXPECT_EQ(current()->processIdentifier(), getpid());
        EXPECT_EQ(NSRunningApplication::cls().runningApplicationWithProcessIdentifier(getpid()),
            current());
        EXPECT_EQ(NSRunningApplication::cls().runningApplicationWithProcessIdentifier(1), nullptr);
    }
    TEST(RunningApplication, HasAnIconWithoutAPictureOfItsOwn)
    {
        ASSERT_NE(current()->icon(), nullptr);
        EXPECT_EQ(current()->icon()->size(), NSMakeSize(64, 64));
    }
    TEST(RunningApplication, FollowsTheApplication)
    {
        HeadlessScreen screen;
        EXPECT_TRUE(current()->isActive());
        EXPECT_TRUE(current()->hide());
        EXPECT_TRUE(current()->isHidden());
        EXPECT_FALSE(current()->isActive());
        EXPECT_TRUE(current()->unhide());
        EXPECT_TRUE(current()->isActive());
    }

}
}
