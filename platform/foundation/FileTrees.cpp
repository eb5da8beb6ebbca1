// SPDX-License-Identifier: Apache-2.0
#include "FileTreesPrivate.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "FilesPrivate.h"

namespace brindle::files {

namespace {

    using Status = struct stat;

    struct CloseFolder {
        void operator()(DIR* folder) const { ::closedir(folder); }
    };

    int statusOf(const std::string& path, Status& status)
    {
        return ::lstat(path.c_str(), &status) == 0 ? 0 : errno;
    }

    bool isFolder(const std::string& path)
    {
        Status status {};
        return statusOf(path, status) == 0 && S_ISDIR(status.st_mode);
    }

    std::string parentOf(const std::string& path)
    {
        const std::size_t end = path.find_last_not_of('/');
        const std::size_t slash = end == std::string::npos ? end : path.rfind('/', end);
        if (slash == std::string::npos)
            return path.starts_with('/') ? "/" : ".";
        return slash == 0 ? "/" : path.substr(0, slash);
    }

    std::string realPath(const std::string& path)
    {
        const std::unique_ptr<char, decltype(&std::free)> real(
            ::realpath(path.c_str(), nullptr), &std::free);
        return real ? real.get() : "";
    }

    /// Whether the target lies in the folder that is to be copied or moved there, which would never end.
    bool isInside(const std::string& from, const std::string& to)
    {
        const std::string folder = isFolder(from) ? realPath(from) : "";
        const std::string around = realPath(parentOf(to));
        return !folder.empty() && (around + '/').starts_with(folder + '/');
    }

    void keepDates(int number, const Status& status)
    {
        const timespec dates[] { status.st_atim, status.st_mtim };
        ::futimens(number, dates); // a file system without dates has nothing better
    }

    int copyContent(int from, int to)
    {
        unsigned char piece[1 << 16];
        for (;;) {
            const ssize_t count = ::read(from, piece, sizeof piece);
            if (count < 0 && errno == EINTR)
                continue;
            if (count <= 0)
                return count < 0 ? errno : 0;
            if (!writeAll(to, { piece, static_cast<std::size_t>(count) }))
                return errno;
        }
    }

    int copyFile(const std::string& from, const std::string& to, const Status& status)
    {
        const Descriptor source(::open(from.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
        if (!source)
            return errno;
        Descriptor target(::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
        if (!target)
            return errno;
        if (const int error = copyContent(source.number(), target.number()))
            return error;
        if (::fchmod(target.number(), status.st_mode & 07777) != 0)
            return errno;
        keepDates(target.number(), status);
        return target.close() ? 0 : errno;
    }

    int copyLink(const std::string& from, const std::string& to)
    {
        char target[4096];
        const ssize_t length = ::readlink(from.c_str(), target, sizeof target);
        if (length < 0)
            return errno;
        const std::string text(target, static_cast<std::size_t>(length));
        return ::symlink(text.c_str(), to.c_str()) == 0 ? 0 : errno;
    }

    /// Copies one thing; a folder without its content, open for its owner only.
    int copyOne(const std::string& from, const std::string& to, const Status& status)
    {
        if (S_ISDIR(status.st_mode))
            return ::mkdir(to.c_str(), 0700) == 0 ? 0 : errno;
        if (S_ISLNK(status.st_mode))
            return copyLink(from, to);
        return S_ISREG(status.st_mode) ? copyFile(from, to, status) : ENOTSUP;
    }

    /// What a copied folder gets when all is in it: with its own permissions nothing might be written there.
    int finishFolder(const std::string& path, const Status& status)
    {
        const Descriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (!folder || ::fchmod(folder.number(), status.st_mode & 07777) != 0)
            return errno;
        keepDates(folder.number(), status);
        return 0;
    }

    int copyAll(const std::string& from, const std::string& to, const Status& top)
    {
        if (const int error = copyOne(from, to, top))
            return error;
        if (!S_ISDIR(top.st_mode))
            return 0;
        std::vector<std::pair<std::string, Status>> folders { { to, top } };
        TreeWalk walk(from);
        for (std::string below = walk.next(); !below.empty(); below = walk.next()) {
            const std::string source = from + '/' + below;
            const std::string target = to + '/' + below;
            Status status {};
            int error = statusOf(source, status);
            if (!error)
                error = copyOne(source, target, status);
            if (error)
                return error;
            if (S_ISDIR(status.st_mode))
                folders.emplace_back(target, status);
        }
        for (std::size_t i = folders.size(); i-- > 0;) {
            if (const int error = finishFolder(folders[i].first, folders[i].second))
                return error;
        }
        return 0;
    }

}

int list(const std::string& folder, std::vector<std::string>& names)
{
    const int number = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (number < 0)
        return errno;
    const std::unique_ptr<DIR, CloseFolder> open(::fdopendir(number));
    if (!open) {
        ::close(number);
        return ENOMEM;
    }
    for (;;) {
        errno = 0;
        const dirent* const entry = ::readdir(open.get());
        if (!entry)
            break;
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..")
            names.emplace_back(name);
    }
    const int error = errno;
    std::sort(names.begin(), names.end());
    return error;
}

int removeTree(const std::string& path)
{
    if (!isFolder(path))
        return ::unlink(path.c_str()) == 0 ? 0 : errno;
    std::vector<std::string> folders { path };
    while (!folders.empty()) {
        const std::string folder = folders.back();
        std::vector<std::string> names;
        if (const int error = list(folder, names))
            return error;
        bool isEmpty = true;
        for (const std::string& name : names) {
            const std::string item = folder + '/' + name;
            if (isFolder(item)) {
                folders.push_back(item);
                isEmpty = false;
            } else if (::unlink(item.c_str()) != 0) {
                return errno;
            }
        }
        if (!isEmpty)
            continue; // it comes up again when its folders are gone
        if (::rmdir(folder.c_str()) != 0)
            return errno;
        folders.pop_back();
    }
    return 0;
}

int copyTree(const std::string& from, const std::string& to)
{
    Status source {};
    Status target {};
    if (const int error = statusOf(from, source))
        return error;
    if (statusOf(to, target) == 0)
        return EEXIST;
    if (isInside(from, to))
        return EINVAL;
    const int error = copyAll(from, to, source);
    if (error && error != EEXIST)
        removeTree(to);
    return error;
}

int moveTree(const std::string& from, const std::string& to)
{
    Status source {};
    if (const int error = statusOf(from, source))
        return error;
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return 0;
    int error = errno;
    if (error == EINVAL && !isInside(from, to)) { // a file system that cannot refuse to replace
        Status target {};
        if (statusOf(to, target) == 0)
            return EEXIST;
        error = ::rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
    }
    if (error != EXDEV)
        return error;
    error = copyTree(from, to);
    return error ? error : removeTree(from);
}

int makeFolders(const std::string& path, unsigned permissions)
{
    std::vector<std::string> missing;
    std::string folder = path;
    for (;;) {
        if (::mkdir(folder.c_str(), folder == path ? permissions : 0777) == 0)
            break;
        const int error = errno;
        Status status {};
        const bool isThere = ::stat(folder.c_str(), &status) == 0;
        if (isThere && S_ISDIR(status.st_mode))
            break;
        const std::string above = parentOf(folder);
        if (isThere || error != ENOENT || above == folder)
            return isThere ? EEXIST : error;
        missing.push_back(folder);
        folder = above;
    }
    for (std::size_t i = missing.size(); i-- > 0;) {
        if (::mkdir(missing[i].c_str(), i == 0 ? permissions : 0777) != 0 && errno != EEXIST)
            return errno;
    }
    return 0;
}

TreeWalk::TreeWalk(std::string root)
    : root_(std::move(root))
{
    enter("");
}

void TreeWalk::enter(std::string prefix)
{
    Folder folder;
    // A folder that cannot be read has nothing in it.
    list(root_ + '/' + prefix, folder.names);
    folder.prefix = std::move(prefix);
    folders_.push_back(std::move(folder));
}

std::string TreeWalk::next()
{
    if (!last_.empty() && isFolder(root_ + '/' + last_))
        enter(last_ + '/');
    while (!folders_.empty() && folders_.back().at == folders_.back().names.size())
        folders_.pop_back();
    last_.clear();
    if (!folders_.empty()) {
        Folder& folder = folders_.back();
        last_ = folder.prefix + folder.names[folder.at++];
    }
    return last_;
}

}
