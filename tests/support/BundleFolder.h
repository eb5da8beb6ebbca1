// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <fstream>
#include <string>
#include <string_view>

#include "foundation/NSBundle.h"
#include "support/TemporaryFolder.h"

namespace brindle::test {

/// A bundle's folder that a test fills file by file.
class BundleFolder {
public:
    /// Writes a file, making the folders above it, and answers its path.
    std::string add(const std::string& place, std::string_view content = "") const
    {
        const std::filesystem::path file = path() / place;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << content;
        return file.string();
    }
    const std::filesystem::path& path() const { return folder_.path(); }
    Ref<NSString> pathText() const { return stringFrom(path().string()); }
    /// Opens it. What the bundle has read by then stays.
    Ref<NSBundle> open() const { return NSBundle::cls().bundleWithPath(pathText().get()); }

private:
    TemporaryFolder folder_;
};

/// Makes a bundle the main one for one test.
class MainBundle {
public:
    explicit MainBundle(const BundleFolder& folder) { setMainBundlePath(folder.pathText().get()); }
    ~MainBundle() { setMainBundlePath(nullptr); }
    MainBundle(const MainBundle&) = delete;
    MainBundle& operator=(const MainBundle&) = delete;
};

}
