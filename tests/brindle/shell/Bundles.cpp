// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSRunningApplication.h"
#include "core/NSBundle+Brindle.h"
#include "foundation/NSDictionary.h"
#include "shell/NSApplication+GWAboutPanel.h"
#include "shell/NSBundle+AppBundleInFramework.h"
#include "support/BundleFolder.h"
#include "support/HeadlessScreen.h"
#include "support/Strings.h"

#include <gtest/gtest.h>

namespace brindle {
namespace {

    constexpr const char* kInfo
        = "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>CFBundleIdentifier</key>"
          "<string>org.example.Notes</string><key>CFBundleName</key><string>Notes</string></dict></"
          "plist>";

    struct HostBundle : ::testing::Test {
        HeadlessScreen screen;
        NSApplication& application = screen.application();
    };

    TEST_F(HostBundle, IsFoundByTheApplicationsIdentifier)
    {
        const test::BundleFolder folder;
        folder.add("Info.plist", kInfo);
        const test::MainBundle main(folder);
        EXPECT_EQ(utf8(bundleIdentifier(application)), "org.example.Notes");
        EXPECT_EQ(appBundle(NSBundle::cls()), NSBundle::cls().mainBundle());
    }
    TEST_F(HostBundle, TellsItsInfo)
    {
        const test::BundleFolder folder;
        folder.add("Info.plist", kInfo);
        const test::MainBundle main(folder);
        EXPECT_EQ(textOf(infoDictionary(application)->objectForKey("CFBundleName"_ns)), "Notes");
        EXPECT_EQ(utf8(appName(application)), "Notes");
    }
    TEST_F(HostBundle, BelongsToTheRunningApplication)
    {
        EXPECT_EQ(thisRunningApp(application), NSRunningApplication::cls().currentApplication());
    }
    TEST_F(HostBundle, IsNilWithoutAnIdentifier)
    {
        const test::BundleFolder folder;
        const test::MainBundle main(folder);
        EXPECT_EQ(bundleIdentifier(application), nullptr);
        EXPECT_EQ(appBundle(NSBundle::cls()), nullptr);
        EXPECT_EQ(infoDictionary(application), nullptr);
    }
    TEST_F(HostBundle, IsNotTheFrameworksOwn)
    {
        EXPECT_EQ(utf8(BrindleFrameworkBundle(NSBundle::cls())->bundleIdentifier()),
            "org.brindle.Brindle");
    }

}
}
