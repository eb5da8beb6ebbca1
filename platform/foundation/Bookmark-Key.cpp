// SPDX-License-Identifier: Apache-2.0
#include "Bookmark.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include "NSString.h"

namespace brindle::bookmarks {

namespace {

    std::string dataFolder()
    {
        if (const char* const folder = std::getenv("XDG_DATA_HOME"); folder && folder[0] == '/')
            return folder;
        return utf8Of("~/.local/share"_ns->stringByExpandingTildeInPath());
    }

    /// Reads a key of this user that nobody else can read.
    std::optional<Key> readKey(const std::string& path)
    {
        const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
        if (file < 0)
            return std::nullopt;
        struct stat facts { };
        Key key {};
        const bool isPrivate = ::fstat(file, &facts) == 0 && S_ISREG(facts.st_mode)
            && facts.st_uid == ::geteuid() && (facts.st_mode & 077) == 0;
        const bool isRead = isPrivate && facts.st_size == static_cast<off_t>(key.size())
            && ::read(file, key.data(), key.size()) == static_cast<ssize_t>(key.size());
        ::close(file);
        return isRead ? std::optional(key) : std::nullopt;
    }

    /// Makes a key beside its place and links it there, so that of several processes one wins and none reads half a
    /// key.
    void makeKey(const std::string& path)
    {
        Key key {};
        if (::getrandom(key.data(), key.size(), 0) != static_cast<ssize_t>(key.size()))
            return;
        std::string fresh = path + ".XXXXXX";
        const int file = ::mkostemp(fresh.data(), O_CLOEXEC);
        if (file < 0)
            return;
        const bool isWritten
            = ::write(file, key.data(), key.size()) == static_cast<ssize_t>(key.size())
            && ::fsync(file) == 0;
        ::close(file);
        if (isWritten)
            static_cast<void>(::link(fresh.c_str(), path.c_str()));
        ::unlink(fresh.c_str());
    }

}

std::optional<Key> userKey()
{
    const std::string folder = dataFolder() + "/brindle";
    if (!folder.starts_with('/'))
        return std::nullopt; // a user without a home
    const std::string path = folder + "/bookmark-key";
    if (std::optional<Key> key = readKey(path))
        return key;
    std::error_code ignored; // the key that is not made says enough
    std::filesystem::create_directories(folder, ignored);
    makeKey(path);
    return readKey(path);
}

}
