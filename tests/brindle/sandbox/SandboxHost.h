// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "appkit/NSOpenPanel.h"
#include "appkit/ScriptedAnswers.h"
#include "foundation/NSArray.h"
#include "foundation/NSData.h"
#include "foundation/NSUserDefaults.h"
#include "sandbox/AppSandboxFileAccess.h"
#include "sandbox/AppSandboxFileAccessOpenSavePanelDelegate.h"
#include "sandbox/AppSandboxFileAccessPersist.h"
#include "support/DefaultsFolder.h"
#include "support/Strings.h"
#include "support/Variables.h"

namespace brindle::test {

namespace fs = std::filesystem;

/// A user with files "top/in/file" and "top/other", defaults and a key of bookmarks of its own, who is asked for access by
/// a panel that nobody sees.
class Sandbox : public ::testing::Test {
protected:
    Sandbox()
    {
        fs::create_directories(place("top/in"));
        for (const char* name : { "top/in/file", "top/other" })
            std::ofstream(place(name)) << name;
        scripted::answerPanels([this](NSSavePanel* panel) -> Ref<NSArray> {
            ++asked;
            shown = utf8(panel->directoryURL()->absoluteString());
            if (seen)
                seen(static_cast<NSOpenPanel&>(*panel));
            if (choice.empty())
                return nullptr;
            return NSArray::cls().arrayWithObjects(url(choice).get());
        });
        access = AppSandboxFileAccess::cls().fileAccess();
    }
    ~Sandbox() override { scripted::answerPanels(nullptr); }

    std::string place(const std::string& name) const { return (files.path() / name).string(); }
    static Ref<NSString> text(const std::string& words) { return stringFrom(words); }
    static Ref<NSURL> url(const std::string& path)
    {
        return NSURL::cls().fileURLWithPath(text(path).get());
    }
    /// Asks for access to a file. - Returns: whether it was given; `runs` counts the closure's runs.
    bool accesses(const std::string& path, bool persist = false)
    {
        return access->accessFilePath_withBlock_persistPermission(
            text(path).get(), [this] { ++runs; }, persist);
    }
    Ref<NSData> kept(const std::string& path) const
    {
        const auto key
            = AppSandboxFileAccessPersist::cls().keyForBookmarkDataForURL(url(path).get());
        return NSUserDefaults::cls().standardUserDefaults()->dataForKey(key.get());
    }
    static void keep(const std::string& path, NSData* data)
    {
        AppSandboxFileAccessPersist::cls().setBookmarkData_forURL(data, url(path).get());
    }
    static Ref<NSData> bookmark(const std::string& path)
    {
        return url(path)
            ->bookmarkDataWithOptions_includingResourceValuesForKeys_relativeToURL_error(
                NSURLBookmarkCreationWithSecurityScope, nullptr, nullptr, nullptr);
    }

    TemporaryFolder data;
    Variables variables { { "XDG_DATA_HOME", data.path().string() } };
    DefaultsFolder defaults;
    TemporaryFolder files;
    Ref<AppSandboxFileAccess> access;
    int asked = 0;
    int runs = 0;
    std::string choice; // what the user chooses; "" cancels
    std::string shown; // the folder that the panel showed
    std::function<void(NSOpenPanel&)> seen;
};

}
