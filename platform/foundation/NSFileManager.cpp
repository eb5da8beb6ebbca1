// SPDX-License-Identifier: Apache-2.0
#include "NSFileManager.h"

#include <algorithm>
#include <cerrno>
#include <climits>

#include <sys/stat.h>
#include <unistd.h>

#include "FileTreesPrivate.h"
#include "FilesPrivate.h"
#include "NSArray.h"
#include "NSBundlePrivate.h"
#include "NSData.h"
#include "NSError.h"
#include "runtime/Table.h"

namespace brindle {

using bundles::pathFrom;

/// What an enumerator of a folder keeps.
struct NSDirectoryEnumerator::State {
    std::string root;
    files::TreeWalk walk;
    std::string last;
};

struct DirectoryAccess {
    static Ref<NSDirectoryEnumerator> enumerator(const std::string& root)
    {
        auto out = make<NSDirectoryEnumerator>();
        out->state_ = std::make_shared<NSDirectoryEnumerator::State>(
            NSDirectoryEnumerator::State { root, files::TreeWalk(root), {} });
        return out;
    }
    static NSDirectoryEnumerator::State* state(NSDirectoryEnumerator& self)
    {
        return self.state_.get();
    }
};

namespace {

    enum class Purpose { reading, writing };

    /// Says in `error` what the system answered; whether that was nothing.
    bool succeeded(
        int systemError, NSString* path, Ref<NSError>* error, Purpose purpose = Purpose::writing)
    {
        if (systemError)
            reportFileError(error, systemError, purpose == Purpose::writing, path);
        return systemError == 0;
    }

    int resultOf(int answer) { return answer == 0 ? 0 : errno; }

    bool mayAccess(const NSString* path, int how)
    {
        const std::string place = pathFrom(path);
        return !place.empty() && ::access(place.c_str(), how) == 0;
    }

    Ref<NSArray> arrayOf(const std::vector<std::string>& names)
    {
        std::vector<Ref<NSObject>> all;
        for (const std::string& name : names)
            all.emplace_back(files::textFrom(name));
        return makeArray(std::move(all));
    }

    std::vector<std::string> below(const std::string& folder)
    {
        std::vector<std::string> all;
        files::TreeWalk walk(folder);
        for (std::string path = walk.next(); !path.empty(); path = walk.next())
            all.push_back(path);
        return all;
    }

    bool isLink(const std::string& path)
    {
        struct stat status { };
        return ::lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
    }

    /// Compares two things that are no folders.
    bool areEqualFiles(const std::string& a, const std::string& b)
    {
        if (isLink(a) || isLink(b)) {
            char first[PATH_MAX];
            char second[PATH_MAX];
            const ssize_t length = ::readlink(a.c_str(), first, sizeof first);
            return length >= 0 && length == ::readlink(b.c_str(), second, sizeof second)
                && std::equal(first, first + length, second);
        }
        const auto one = files::read(a.c_str());
        const auto other = files::read(b.c_str());
        return one && other && one->length() == other->length()
            && std::equal(one->bytes(), one->bytes() + one->length(), other->bytes());
    }

}

template <> struct NSFileManager::Methods<struct Questions> {

    static Ref<NSFileManager> defaultManager(Class&)
    {
        static NSFileManager* const manager = make<NSFileManager>().leak();
        return manager;
    }
    static bool existsAs(NSFileManager&, NSString* path, bool* isDirectory)
    {
        struct stat status { };
        const std::string place = pathFrom(path);
        if (place.empty() || ::stat(place.c_str(), &status) != 0)
            return false;
        if (isDirectory)
            *isDirectory = S_ISDIR(status.st_mode);
        return true;
    }
    static bool exists(NSFileManager& self, NSString* path)
    {
        return self.fileExistsAtPath_isDirectory(path, nullptr);
    }
    static bool isReadable(NSFileManager&, NSString* path) { return mayAccess(path, R_OK); }
    static bool isWritable(NSFileManager&, NSString* path) { return mayAccess(path, W_OK); }
    static bool isExecutable(NSFileManager&, NSString* path) { return mayAccess(path, X_OK); }
    static bool isDeletable(NSFileManager&, NSString* path)
    {
        struct stat status { };
        const std::string place = pathFrom(path);
        if (place.empty() || ::lstat(place.c_str(), &status) != 0)
            return false;
        const auto folder = path->stringByDeletingLastPathComponent();
        return mayAccess(folder->length() ? folder.get() : "."_ns, W_OK | X_OK);
    }
    static bool contentsEqual(NSFileManager&, NSString* a, NSString* b)
    {
        const std::string first = pathFrom(a);
        const std::string second = pathFrom(b);
        const auto isFolder
            = [](const std::string& path) { return !isLink(path) && bundles::isFolder(path); };
        if (!isFolder(first) || !isFolder(second))
            return !isFolder(first) && !isFolder(second) && areEqualFiles(first, second);
        const auto names = below(first);
        if (names != below(second))
            return false;
        return std::all_of(names.begin(), names.end(), [&](const std::string& name) {
            const std::string one = first + '/' + name;
            const std::string other = second + '/' + name;
            return isFolder(one) ? isFolder(other) : !isFolder(other) && areEqualFiles(one, other);
        });
    }
    static Ref<NSString> displayName(NSFileManager&, NSString* path)
    {
        return maybe(path)->lastPathComponent();
    }
    static Ref<NSString> currentFolder(NSFileManager&)
    {
        char room[PATH_MAX];
        return ::getcwd(room, sizeof room) ? files::textFrom(room) : nullptr;
    }
    static bool changeFolder(NSFileManager&, NSString* path)
    {
        const std::string place = pathFrom(path);
        return !place.empty() && ::chdir(place.c_str()) == 0;
    }

    static void table(Builder& t)
    {
        t.classMethods({ { "defaultManager", imp<defaultManager> } });
        t.methods({
            { "fileExistsAtPath:", imp<exists> },
            { "fileExistsAtPath:isDirectory:", imp<existsAs> },
            { "isReadableFileAtPath:", imp<isReadable> },
            { "isWritableFileAtPath:", imp<isWritable> },
            { "isExecutableFileAtPath:", imp<isExecutable> },
            { "isDeletableFileAtPath:", imp<isDeletable> },
            { "contentsEqualAtPath:andPath:", imp<contentsEqual> },
            { "displayNameAtPath:", imp<displayName> },
            { "currentDirectoryPath", imp<currentFolder> },
            { "changeCurrentDirectoryPath:", imp<changeFolder> },
        });
    }
};
BRINDLE_RECORD(NSFileManager, Questions)

template <> struct NSFileManager::Methods<struct Changing> {

    static Ref<NSArray> contents(NSFileManager&, NSString* path, Ref<NSError>* error)
    {
        std::vector<std::string> names;
        const int answer = files::list(pathFrom(path), names);
        return succeeded(answer, path, error, Purpose::reading) ? arrayOf(names) : nullptr;
    }
    static Ref<NSArray> subpaths(NSFileManager&, NSString* path, Ref<NSError>* error)
    {
        std::vector<std::string> names;
        const int answer = files::list(pathFrom(path), names);
        return succeeded(answer, path, error, Purpose::reading) ? arrayOf(below(pathFrom(path)))
                                                                : nullptr;
    }
    static Ref<NSArray> subpathsAt(NSFileManager& self, NSString* path)
    {
        return self.subpathsOfDirectoryAtPath_error(path, nullptr);
    }
    static Ref<NSDirectoryEnumerator> enumerator(NSFileManager&, NSString* path)
    {
        const std::string root = pathFrom(path);
        return bundles::isFolder(root) ? DirectoryAccess::enumerator(root) : nullptr;
    }
    static bool createFolder(NSFileManager& self, NSString* path, bool intermediate,
        NSDictionary* attributes, Ref<NSError>* error)
    {
        const std::string place = pathFrom(path);
        const int answer = place.empty() ? ENOENT
            : intermediate               ? files::makeFolders(place, 0777)
                                         : resultOf(::mkdir(place.c_str(), 0777));
        return succeeded(answer, path, error)
            && (!attributes || self.setAttributes_ofItemAtPath_error(attributes, path, error));
    }

    static Ref<NSData> contentsOfFile(NSFileManager&, NSString* path)
    {
        return pathFrom(path).empty() ? nullptr : NSData::cls().dataWithContentsOfFile(path);
    }
    static bool createFile(
        NSFileManager& self, NSString* path, NSData* contents, NSDictionary* attributes)
    {
        const std::string place = pathFrom(path);
        const auto* const bytes = static_cast<const unsigned char*>(maybe(contents)->bytes());
        return !place.empty() && files::write(place.c_str(), { bytes, maybe(contents)->length() })
            && (!attributes || self.setAttributes_ofItemAtPath_error(attributes, path, nullptr));
    }
    static bool copyItem(NSFileManager&, NSString* from, NSString* to, Ref<NSError>* error)
    {
        const int answer = files::copyTree(pathFrom(from), pathFrom(to));
        return succeeded(answer, answer == EEXIST ? to : from, error,
            answer == ENOENT ? Purpose::reading : Purpose::writing);
    }
    static bool moveItem(NSFileManager&, NSString* from, NSString* to, Ref<NSError>* error)
    {
        const int answer = files::moveTree(pathFrom(from), pathFrom(to));
        return succeeded(answer, answer == EEXIST ? to : from, error);
    }
    static bool linkItem(NSFileManager&, NSString* from, NSString* to, Ref<NSError>* error)
    {
        const int answer = resultOf(::link(pathFrom(from).c_str(), pathFrom(to).c_str()));
        return succeeded(answer, answer == EEXIST ? to : from, error);
    }
    static bool removeItem(NSFileManager&, NSString* path, Ref<NSError>* error)
    {
        return succeeded(files::removeTree(pathFrom(path)), path, error);
    }
    static bool createLink(
        NSFileManager&, NSString* path, NSString* destination, Ref<NSError>* error)
    {
        return succeeded(resultOf(::symlink(pathFrom(destination).c_str(), pathFrom(path).c_str())),
            path, error);
    }
    static Ref<NSString> destinationOfLink(NSFileManager&, NSString* path, Ref<NSError>* error)
    {
        char room[PATH_MAX];
        const ssize_t length = ::readlink(pathFrom(path).c_str(), room, sizeof room);
        if (!succeeded(length < 0 ? errno : 0, path, error, Purpose::reading))
            return nullptr;
        return files::textFrom(std::string(room, static_cast<std::size_t>(length)));
    }

    static void table(Builder& t)
    {
        t.methods({
            { "contentsOfDirectoryAtPath:error:", imp<contents> },
            { "subpathsOfDirectoryAtPath:error:", imp<subpaths> },
            { "subpathsAtPath:", imp<subpathsAt> },
            { "enumeratorAtPath:", imp<enumerator> },
            { "createDirectoryAtPath:withIntermediateDirectories:attributes:error:",
                imp<createFolder> },
            { "contentsAtPath:", imp<contentsOfFile> },
            { "createFileAtPath:contents:attributes:", imp<createFile> },
            { "copyItemAtPath:toPath:error:", imp<copyItem> },
            { "moveItemAtPath:toPath:error:", imp<moveItem> },
            { "linkItemAtPath:toPath:error:", imp<linkItem> },
            { "removeItemAtPath:error:", imp<removeItem> },
            { "createSymbolicLinkAtPath:withDestinationPath:error:", imp<createLink> },
            { "destinationOfSymbolicLinkAtPath:error:", imp<destinationOfLink> },
        });
    }
};
BRINDLE_RECORD(NSFileManager, Changing)

template <> struct NSDirectoryEnumerator::Methods<struct Walking> {

    static Ref<NSObject> nextObject(NSDirectoryEnumerator& self)
    {
        NSDirectoryEnumerator::State* const state = DirectoryAccess::state(self);
        if (!state)
            return nullptr;
        state->last = state->walk.next();
        return state->last.empty() ? nullptr : files::textFrom(state->last);
    }
    static void skip(NSDirectoryEnumerator& self)
    {
        if (auto* const state = DirectoryAccess::state(self))
            state->walk.skipDescendants();
    }
    static NSUInteger level(NSDirectoryEnumerator& self)
    {
        auto* const state = DirectoryAccess::state(self);
        return state ? state->walk.level() : 0;
    }
    static Ref<NSDictionary> attributes(NSDirectoryEnumerator& self)
    {
        auto* const state = DirectoryAccess::state(self);
        if (!state || state->last.empty())
            return nullptr;
        const auto path = files::textFrom(state->root + '/' + state->last);
        return NSFileManager::cls().defaultManager()->attributesOfItemAtPath_error(
            path.get(), nullptr);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "nextObject", imp<nextObject> },
            { "skipDescendants", imp<skip> },
            { "level", imp<level> },
            { "fileAttributes", imp<attributes> },
        });
    }
};
BRINDLE_RECORD(NSDirectoryEnumerator, Walking)

}
