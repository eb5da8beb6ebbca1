// SPDX-License-Identifier: Apache-2.0
#include "sandbox/AppSandboxFileAccess.h"

#include <filesystem>
#include <unordered_map>

#include "../../../tests/support/TemporaryFolder.h"
#include "../../../tests/support/Variables.h"
#include "foundation/NSData.h"
#include "foundation/NSUserDefaults.h"
#include "sandbox/AppSandboxFileAccessPersist.h"
#include "support/Measure.h"
#include "support/Topics.h"

namespace brindle::bench {

namespace {

    /// Defaults, a key of bookmarks and a file of their own.
    struct Grants {
        Grants() { setDefaultsFolder(settings.path().c_str()); }
        ~Grants() { setDefaultsFolder(nullptr); }
        Grants(const Grants&) = delete;
        Grants& operator=(const Grants&) = delete;

        test::TemporaryFolder data;
        test::Variables variables { { "XDG_DATA_HOME", data.path().string() } };
        test::TemporaryFolder settings;
        test::TemporaryFolder files;
    };

    Pair findFiftyUp()
    {
        constexpr int kStored = 10'000;
        const auto grants = std::make_shared<Grants>();
        const auto floor = std::make_shared<std::unordered_map<std::string, std::string>>();
        const Ref<NSData> data = NSData::cls().dataWithBytes_length("bookmark", 8);
        const auto store = [&](const std::string& url) {
            AppSandboxFileAccessPersist::cls().setBookmarkData_forURL(
                data.get(), NSURL::cls().URLWithString(stringFrom(url).get()).get());
            (*floor)["bd_" + url] = "bookmark";
        };
        for (int i = 0; i < kStored; ++i)
            store("file:///elsewhere/" + std::to_string(i) + "/");
        store("file:///top/");
        std::string deep = "file:///top/";
        for (int i = 0; i < 50; ++i)
            deep += "folder" + std::to_string(i) + "/";
        deep += "file";
        const Ref<NSURL> url = NSURL::cls().URLWithString(stringFrom(deep).get());
        return { repeated([grants, url](std::size_t) {
                    keep(AppSandboxFileAccessPersist::cls().bookmarkDataForURL(url.get()));
                }),
            repeated([floor, deep](std::size_t) {
                std::string path = "bd_" + deep;
                while (!floor->contains(path)) {
                    path.pop_back();
                    path.resize(path.rfind('/') + 1);
                }
                keep(path);
            }) };
    }

    Pair accessByBookmark()
    {
        const auto grants = std::make_shared<Grants>();
        const std::string path = grants->files.path() / "in/file";
        std::filesystem::create_directories(path);
        const Ref<NSString> folder = stringFrom(grants->files.path().string());
        const Ref<AppSandboxFileAccess> access = AppSandboxFileAccess::cls().fileAccess();
        access->persistPermissionPath(folder.get());
        const Ref<NSString> wanted = stringFrom(path);
        return { repeated([grants, access, wanted](std::size_t) {
                    keep(access->accessFilePath_withBlock_persistPermission(
                        wanted.get(), [] {}, false));
                }),
            repeated(
                [path](std::size_t) { keep(std::filesystem::canonical(path).native().size()); }) };
    }

}

void addFileAccess(Plan& plan)
{
    plan.time("file access: bookmark 50 folders up of 10,000", kNoBudget, findFiftyUp);
    plan.time("file access: by a bookmark / canonical path", kNoBudget, accessByBookmark);
}

}
