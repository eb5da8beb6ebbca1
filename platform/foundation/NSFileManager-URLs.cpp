// SPDX-License-Identifier: Apache-2.0
#include "NSFileManager.h"

#include <cctype>
#include <cerrno>
#include <cstring>
#include <ctime>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "Clock.h"
#include "FileTreesPrivate.h"
#include "FilesPrivate.h"
#include "NSArray.h"
#include "NSBundlePrivate.h"
#include "NSDate.h"
#include "NSError.h"
#include "NSURL.h"
#include "PercentEscapesPrivate.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    Ref<NSString> pathOf(const NSURL* url) { return maybe(url)->path(); }

    Ref<NSArray> fileURLs(const std::string& folder, const std::vector<std::string>& names,
        NSDirectoryEnumerationOptions options)
    {
        std::vector<Ref<NSObject>> all;
        for (const std::string& name : names) {
            const bool isHidden = name.starts_with('.');
            if (isHidden && (options & NSDirectoryEnumerationSkipsHiddenFiles))
                continue;
            const auto path = files::textFrom(folder + '/' + name);
            all.emplace_back(NSURL::cls().fileURLWithPath(path.get()));
        }
        return makeArray(std::move(all));
    }

    /// Answers what the trash's record of a removed file says.
    std::string trashRecord(const std::string& path)
    {
        const auto date = static_cast<std::time_t>(Clock::wall() + NSTimeIntervalSince1970);
        std::tm parts {};
        ::localtime_r(&date, &parts);
        char text[64];
        std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &parts);
        const auto isPlain
            = [](char c) { return std::isalnum(c) || std::strchr("/-_.~", c) != nullptr; };
        return "[Trash Info]\nPath=" + escapes::added(path, isPlain) + "\nDeletionDate=" + text
            + "\n";
    }

    /// Answers a name that the trash does not have yet, having written its record.
    int enterTrash(const std::string& trash, const std::string& path, std::string& name)
    {
        const std::string plain = path.substr(path.rfind('/') + 1);
        const std::string record = trashRecord(path);
        for (int count = 1; count < 10000; ++count) {
            name = count == 1 ? plain : plain + '.' + std::to_string(count);
            const std::string place = trash + "/info/" + name + ".trashinfo";
            files::Descriptor file(
                ::open(place.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
            if (!file && errno == EEXIST)
                continue;
            const auto* const bytes = reinterpret_cast<const unsigned char*>(record.data());
            if (!file)
                return errno;
            if (files::writeAll(file.number(), { bytes, record.size() }) && file.close())
                return 0;
            const int error = errno;
            ::unlink(place.c_str());
            return error;
        }
        return EEXIST;
    }

    /// Puts a file into the user's trash as all desktops agree; answers where it is now.
    int moveToTrash(const std::string& path, std::string& place)
    {
        const auto folders
            = NSSearchPathForDirectoriesInDomains(NSTrashDirectory, NSUserDomainMask, true);
        const std::string kept = utf8Of(cast<NSString>(folders->firstObject()));
        const std::string trash = kept.substr(0, kept.rfind('/'));
        struct stat status { };
        if (::lstat(path.c_str(), &status) != 0)
            return errno;
        for (const std::string& folder : { kept, trash + "/info" }) {
            if (const int error = files::makeFolders(folder, 0700))
                return error;
        }
        std::string name;
        if (const int error = enterTrash(trash, path, name))
            return error;
        place = kept + '/' + name;
        const int error = files::moveTree(path, place);
        if (error)
            ::unlink((trash + "/info/" + name + ".trashinfo").c_str());
        return error;
    }

}

template <> struct NSFileManager::Methods<struct URLs> {

    static Ref<NSArray> contents(NSFileManager&, NSURL* url, NSArray*,
        NSDirectoryEnumerationOptions options, Ref<NSError>* error)
    {
        const std::string folder = bundles::pathFrom(pathOf(url).get());
        std::vector<std::string> names;
        if (const int answer = files::list(folder, names)) {
            reportFileError(error, answer, false, pathOf(url).get());
            return nullptr;
        }
        return fileURLs(folder, names, options);
    }
    static bool createFolder(NSFileManager& self, NSURL* url, bool intermediate,
        NSDictionary* attributes, Ref<NSError>* error)
    {
        return self.createDirectoryAtPath_withIntermediateDirectories_attributes_error(
            pathOf(url).get(), intermediate, attributes, error);
    }
    static bool copyItem(NSFileManager& self, NSURL* from, NSURL* to, Ref<NSError>* error)
    {
        return self.copyItemAtPath_toPath_error(pathOf(from).get(), pathOf(to).get(), error);
    }
    static bool moveItem(NSFileManager& self, NSURL* from, NSURL* to, Ref<NSError>* error)
    {
        return self.moveItemAtPath_toPath_error(pathOf(from).get(), pathOf(to).get(), error);
    }
    static bool removeItem(NSFileManager& self, NSURL* url, Ref<NSError>* error)
    {
        return self.removeItemAtPath_error(pathOf(url).get(), error);
    }
    static bool trashItem(NSFileManager&, NSURL* url, Ref<NSURL>* resulting, Ref<NSError>* error)
    {
        const Ref<NSString> path = pathOf(url);
        std::string place;
        if (const int answer = moveToTrash(bundles::pathFrom(path.get()), place)) {
            reportFileError(error, answer, true, path.get());
            return false;
        }
        if (resulting)
            *resulting = NSURL::cls().fileURLWithPath(files::textFrom(place).get());
        return true;
    }
    static Ref<NSArray> places(
        NSFileManager&, NSSearchPathDirectory place, NSSearchPathDomainMask domains)
    {
        std::vector<Ref<NSObject>> all;
        for (NSString* const path :
            each<NSString>(NSSearchPathForDirectoriesInDomains(place, domains, true)))
            all.emplace_back(NSURL::cls().fileURLWithPath_isDirectory(path, true));
        return makeArray(std::move(all));
    }
    static Ref<NSURL> home(NSFileManager&)
    {
        return NSURL::cls().fileURLWithPath_isDirectory(NSHomeDirectory().get(), true);
    }
    static Ref<NSURL> temporary(NSFileManager&)
    {
        return NSURL::cls().fileURLWithPath_isDirectory(NSTemporaryDirectory().get(), true);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "contentsOfDirectoryAtURL:includingPropertiesForKeys:options:error:", imp<contents> },
            { "createDirectoryAtURL:withIntermediateDirectories:attributes:error:",
                imp<createFolder> },
            { "copyItemAtURL:toURL:error:", imp<copyItem> },
            { "moveItemAtURL:toURL:error:", imp<moveItem> },
            { "removeItemAtURL:error:", imp<removeItem> },
            { "trashItemAtURL:resultingItemURL:error:", imp<trashItem> },
            { "URLsForDirectory:inDomains:", imp<places> },
            { "homeDirectoryForCurrentUser", imp<home> },
            { "temporaryDirectory", imp<temporary> },
        });
    }
};
BRINDLE_RECORD(NSFileManager, URLs)

}
