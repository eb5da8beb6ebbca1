// SPDX-License-Identifier: Apache-2.0
#include "NSPathUtilities.h"

#include <cstdlib>
#include <string_view>

#include <pwd.h>
#include <unistd.h>

#include "FilesPrivate.h"
#include "NSArray.h"

namespace brindle {

namespace {

    /// Answers a variable that names a folder by its whole path; "" otherwise, as the agreement wants.
    std::string folderOf(const char* variable)
    {
        const char* const value = std::getenv(variable);
        return value && *value == '/' ? value : "";
    }

    struct User {
        std::string home;
        std::string name;
        std::string fullName;
    };

    template <class Find> User userBy(Find find)
    {
        passwd entry {};
        passwd* found = nullptr;
        char room[4096];
        if (find(&entry, room, sizeof room, &found) != 0 || !found)
            return {};
        const std::string details = found->pw_gecos ? found->pw_gecos : "";
        return { found->pw_dir, found->pw_name, details.substr(0, details.find(',')) };
    }
    User thisUser()
    {
        return userBy([](passwd* entry, char* room, std::size_t size, passwd** found) {
            return getpwuid_r(getuid(), entry, room, size, found);
        });
    }

    std::string homeFolder()
    {
        const std::string home = folderOf("HOME");
        if (!home.empty())
            return home;
        const std::string listed = thisUser().home;
        return listed.empty() ? "/" : listed;
    }

    std::string baseFolder(const char* variable, const char* otherwise)
    {
        const std::string folder = folderOf(variable);
        return folder.empty() ? homeFolder() + otherwise : folder;
    }

    /// Reads a line such as `XDG_MUSIC_DIR="$HOME/Musik"` of the user's list; "" for none.
    std::string listedFolder(std::string_view name)
    {
        const auto file
            = files::read((baseFolder("XDG_CONFIG_HOME", "/.config") + "/user-dirs.dirs").c_str());
        if (!file)
            return "";
        const std::string text
            = '\n' + std::string(reinterpret_cast<const char*>(file->bytes()), file->length());
        const std::string begin = "\nXDG_" + std::string(name) + "_DIR=\"";
        const std::size_t at = text.find(begin);
        if (at == std::string::npos)
            return "";
        const std::size_t from = at + begin.size();
        std::string folder = text.substr(from, text.find_first_of("\"\n", from) - from);
        if (folder.starts_with("$HOME"))
            folder.replace(0, 5, homeFolder());
        return folder.starts_with('/') ? folder : "";
    }

    struct Place {
        NSSearchPathDirectory place;
        const char* listed; // name in the user's list, or nullptr
        const char* inHome; // where it is otherwise
        const char* shared; // below /usr and /usr/local, or nullptr
    };
    constexpr Place kPlaces[] {
        { NSDocumentDirectory, "DOCUMENTS", "/Documents", nullptr },
        { NSDesktopDirectory, "DESKTOP", "/Desktop", nullptr },
        { NSDownloadsDirectory, "DOWNLOAD", "/Downloads", nullptr },
        { NSMoviesDirectory, "VIDEOS", "/Videos", nullptr },
        { NSMusicDirectory, "MUSIC", "/Music", nullptr },
        { NSPicturesDirectory, "PICTURES", "/Pictures", nullptr },
        { NSSharedPublicDirectory, "PUBLICSHARE", "/Public", nullptr },
        { NSUserDirectory, nullptr, "", nullptr },
        { NSApplicationDirectory, nullptr, "/.local/share/applications", "/share/applications" },
        { NSDocumentationDirectory, nullptr, "/.local/share/doc", "/share/doc" },
        { NSLibraryDirectory, nullptr, "/.local/share", "/share" },
        { NSApplicationSupportDirectory, nullptr, "/.local/share", "/share" },
        { NSCachesDirectory, nullptr, "/.cache", nullptr },
        { NSAutosavedInformationDirectory, nullptr, "/.local/state", nullptr },
        { NSTrashDirectory, nullptr, "/.local/share/Trash/files", nullptr },
    };

    struct Base {
        std::string_view inHome;
        const char* variable;
    };
    constexpr Base kBases[] {
        { "/.local/share", "XDG_DATA_HOME" },
        { "/.local/state", "XDG_STATE_HOME" },
        { "/.cache", "XDG_CACHE_HOME" },
    };

    std::string usersFolder(const Place& place)
    {
        const std::string listed = place.listed ? listedFolder(place.listed) : "";
        if (!listed.empty())
            return listed;
        const std::string_view inHome = place.inHome;
        for (const Base& base : kBases) {
            if (inHome.starts_with(base.inHome))
                return baseFolder(base.variable, base.inHome.data())
                    + std::string(inHome.substr(base.inHome.size()));
        }
        return homeFolder() + place.inHome;
    }

}

Ref<NSString> NSHomeDirectory() { return files::textFrom(homeFolder()); }

Ref<NSString> NSHomeDirectoryForUser(NSString* name)
{
    if (!name)
        return NSHomeDirectory();
    const std::string wanted = utf8Of(name);
    const User user = userBy([&](passwd* entry, char* room, std::size_t size, passwd** found) {
        return getpwnam_r(wanted.c_str(), entry, room, size, found);
    });
    return user.home.empty() ? nullptr : files::textFrom(user.home);
}

Ref<NSString> NSTemporaryDirectory()
{
    std::string folder = folderOf("TMPDIR");
    if (folder.empty())
        folder = "/tmp";
    if (folder.back() != '/')
        folder += '/';
    return files::textFrom(folder);
}

Ref<NSString> NSUserName()
{
    const std::string name = thisUser().name;
    return files::textFrom(name.empty() ? std::to_string(getuid()) : name);
}

Ref<NSString> NSFullUserName()
{
    const std::string name = thisUser().fullName;
    return name.empty() ? NSUserName() : files::textFrom(name);
}

Ref<NSArray> NSSearchPathForDirectoriesInDomains(
    NSSearchPathDirectory place, NSSearchPathDomainMask domains, bool expandTilde)
{
    std::vector<Ref<NSObject>> all;
    for (const Place& known : kPlaces) {
        if (known.place != place)
            continue;
        if (domains & NSUserDomainMask) {
            const Ref<NSString> path = files::textFrom(usersFolder(known));
            all.emplace_back(expandTilde ? path : path->stringByAbbreviatingWithTildeInPath());
        }
        if (known.shared && (domains & NSLocalDomainMask))
            all.emplace_back(files::textFrom(std::string("/usr/local") + known.shared));
        if (known.shared && (domains & NSSystemDomainMask))
            all.emplace_back(files::textFrom(std::string("/usr") + known.shared));
    }
    return makeArray(std::move(all));
}

}
