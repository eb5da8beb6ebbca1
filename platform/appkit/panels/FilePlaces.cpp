// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <filesystem>

#include "FilePanelPrivate.h"
#include "FilePicturesPrivate.h"
#include "foundation/Each.h"
#include "foundation/NSData.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSPathUtilities.h"
#include "foundation/NSUserDefaults.h"

namespace brindle {

using files::isFolder;

namespace {

    constexpr StringConstant<"NSNavLastRootDirectory"> kLastFolder;
    constexpr StringConstant<"NSNavRecentPlaces"> kRecentFolders;
    constexpr std::size_t kMostRecent = 8;

    Ref<NSUserDefaults> userDefaults() { return NSUserDefaults::cls().standardUserDefaults(); }

    std::string userFolder(NSSearchPathDirectory place)
    {
        const Ref<NSArray> found
            = NSSearchPathForDirectoriesInDomains(place, NSUserDomainMask, true);
        return found->count() > 0 ? utf8Of(cast<NSString>(Ref<NSObject>(found->objectAtIndex(0))))
                                  : std::string();
    }

    /// Answers the folders chosen before, the last one first; bookmarks find those that were renamed.
    std::vector<std::string> recentFolders()
    {
        std::vector<std::string> out;
        const Ref<NSArray> kept = userDefaults()->arrayForKey(kRecentFolders);
        for (NSObject* item : each<NSObject>(kept)) {
            if (out.size() >= kMostRecent || !item->isKindOfClass(NSData::cls()))
                continue;
            const Ref<NSURL> url
                = NSURL::cls()
                      .URLByResolvingBookmarkData_options_relativeToURL_bookmarkDataIsStale_error(
                          static_cast<NSData*>(item), NSURLBookmarkResolutionWithoutUI, nullptr,
                          nullptr, nullptr);
            const std::string path = utf8Of(maybe(url)->path());
            if (isFolder(path) && std::find(out.begin(), out.end(), path) == out.end())
                out.push_back(path);
        }
        return out;
    }

}

std::string FilePanelAccess::startFolder(const FilePanelState& state)
{
    if (!state.start.empty())
        return state.start;
    const std::string last = utf8Of(userDefaults()->stringForKey(kLastFolder));
    for (const std::string& folder :
        { last, userFolder(NSDocumentDirectory), utf8Of(NSHomeDirectory()) }) {
        if (folder.starts_with('/') && isFolder(folder))
            return folder;
    }
    return "/";
}

void FilePanelAccess::rememberFolder(const std::string& folder)
{
    const Ref<NSString> text = stringFrom(folder);
    if (!text)
        return;
    userDefaults()->setObject_forKey(text.get(), kLastFolder);
    std::vector<std::string> recent = recentFolders();
    std::erase(recent, folder);
    recent.insert(recent.begin(), folder);
    recent.resize(std::min(recent.size(), kMostRecent));
    const Ref<NSMutableArray> bookmarks = NSMutableArray::cls().array();
    for (const std::string& path : recent) {
        const Ref<NSData> bookmark
            = urlOf(path, true)
                  ->bookmarkDataWithOptions_includingResourceValuesForKeys_relativeToURL_error(
                      NSURLBookmarkCreationMinimalBookmark, nullptr, nullptr, nullptr);
        if (bookmark)
            bookmarks->addObject(bookmark.get());
    }
    userDefaults()->setObject_forKey(bookmarks.get(), kRecentFolders);
}

namespace files {

    bool isFolder(const std::string& path)
    {
        std::error_code ignored;
        return std::filesystem::is_directory(path, ignored);
    }

    std::vector<Place> places()
    {
        std::vector<Place> out { { "Places", "", 0 } };
        std::vector<std::string> known;
        const auto add = [&](const std::string& path, Sign sign, std::string name) {
            if (!isFolder(path) || std::find(known.begin(), known.end(), path) != known.end())
                return;
            known.push_back(path);
            out.push_back({ std::move(name), path, static_cast<int>(sign) });
        };
        const auto nameOf = [](const std::string& path) {
            return std::filesystem::path(path).filename().string();
        };
        add(utf8Of(NSHomeDirectory()), Sign::home, "Home");
        for (const NSSearchPathDirectory place : { NSDesktopDirectory, NSDocumentDirectory,
                 NSDownloadsDirectory, NSMusicDirectory, NSPicturesDirectory, NSMoviesDirectory })
            add(userFolder(place), Sign::folder, nameOf(userFolder(place)));
        add("/", Sign::disk, "Computer");

        out.push_back({ "Recent", "", 0 });
        for (const std::string& path : recentFolders())
            add(path, Sign::recent, nameOf(path));
        if (out.back().path.empty())
            out.pop_back();
        return out;
    }

}

}
