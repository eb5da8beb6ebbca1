// SPDX-License-Identifier: Apache-2.0
#include "NSFileManager.h"

#include <cerrno>
#include <cmath>

#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include "FilesPrivate.h"
#include "NSBundlePrivate.h"
#include "NSDate.h"
#include "NSError.h"
#include "NSNumber.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    NSString* typeOf(unsigned mode)
    {
        switch (mode & S_IFMT) {
        case S_IFREG:
            return NSFileTypeRegular;
        case S_IFDIR:
            return NSFileTypeDirectory;
        case S_IFLNK:
            return NSFileTypeSymbolicLink;
        case S_IFSOCK:
            return NSFileTypeSocket;
        case S_IFCHR:
            return NSFileTypeCharacterSpecial;
        case S_IFBLK:
            return NSFileTypeBlockSpecial;
        default:
            return NSFileTypeUnknown;
        }
    }

    Ref<NSNumber> number(std::uint64_t value)
    {
        return NSNumber::cls().numberWithUnsignedLongLong(value);
    }

    Ref<NSDate> dateOf(const statx_timestamp& stamp)
    {
        return NSDate::cls().dateWithTimeIntervalSince1970(
            static_cast<double>(stamp.tv_sec) + stamp.tv_nsec / 1e9);
    }

    Ref<NSString> ownerName(unsigned user)
    {
        passwd entry {};
        passwd* found = nullptr;
        char room[4096];
        return getpwuid_r(user, &entry, room, sizeof room, &found) == 0 && found
            ? files::textFrom(found->pw_name)
            : nullptr;
    }
    Ref<NSString> groupName(unsigned group)
    {
        struct group entry { };
        struct group* found = nullptr;
        char room[4096];
        return getgrgid_r(group, &entry, room, sizeof room, &found) == 0 && found
            ? files::textFrom(found->gr_name)
            : nullptr;
    }

    void set(const Ref<NSMutableDictionary>& all, NSString* key, const Ref<NSObject>& value)
    {
        if (value)
            all->setObject_forKey(value.get(), key);
    }

    template <class T> Ref<T> valueOf(const NSDictionary* attributes, NSString* key)
    {
        const auto value = maybe(attributes)->objectForKey(key);
        return maybe(value)->isKindOfClass(T::cls()) ? cast<T>(value) : nullptr;
    }

    timespec stampOf(double since1970)
    {
        // A file system has no more: the year 1 and the year 9999.
        const double seconds = std::fmin(std::fmax(since1970, -62135596800.0), 253402300799.0);
        const double whole = std::floor(seconds);
        return { static_cast<time_t>(whole), static_cast<long>((seconds - whole) * 1e9) };
    }

    int setDate(const std::string& path, const NSDate& date)
    {
        const double moment = date.timeIntervalSince1970();
        if (std::isnan(moment))
            return EINVAL;
        const timespec stamps[] { { 0, UTIME_OMIT }, stampOf(moment) };
        return ::utimensat(AT_FDCWD, path.c_str(), stamps, 0) == 0 ? 0 : errno;
    }

    int setAll(const std::string& path, const NSDictionary* attributes)
    {
        const auto user = valueOf<NSNumber>(attributes, NSFileOwnerAccountID);
        const auto group = valueOf<NSNumber>(attributes, NSFileGroupOwnerAccountID);
        // Minus one leaves it as it is.
        const uid_t owner = user ? user->unsignedIntValue() : static_cast<uid_t>(-1);
        const gid_t circle = group ? group->unsignedIntValue() : static_cast<gid_t>(-1);
        if ((user || group) && ::chown(path.c_str(), owner, circle) != 0)
            return errno;
        // After the owner: a change of that one takes some permissions away.
        const auto permissions = valueOf<NSNumber>(attributes, NSFilePosixPermissions);
        if (permissions && ::chmod(path.c_str(), permissions->unsignedIntValue() & 07777) != 0)
            return errno;
        const auto date = valueOf<NSDate>(attributes, NSFileModificationDate);
        return date ? setDate(path, *date.get()) : 0;
    }

}

template <> struct NSFileManager::Methods<struct Attributes> {

    static Ref<NSDictionary> attributes(NSFileManager&, NSString* path, Ref<NSError>* error)
    {
        struct statx status { };
        const std::string place = bundles::pathFrom(path);
        if (::statx(AT_FDCWD, place.c_str(), AT_SYMLINK_NOFOLLOW, STATX_BASIC_STATS | STATX_BTIME,
                &status)
            != 0) {
            reportFileError(error, errno, false, path);
            return nullptr;
        }
        const auto all = make<NSMutableDictionary>();
        set(all, NSFileType, typeOf(status.stx_mode));
        set(all, NSFileSize, number(status.stx_size));
        set(all, NSFileModificationDate, dateOf(status.stx_mtime));
        if (status.stx_mask & STATX_BTIME)
            set(all, NSFileCreationDate, dateOf(status.stx_btime));
        set(all, NSFilePosixPermissions, number(status.stx_mode & 07777));
        set(all, NSFileReferenceCount, number(status.stx_nlink));
        set(all, NSFileOwnerAccountID, number(status.stx_uid));
        set(all, NSFileGroupOwnerAccountID, number(status.stx_gid));
        set(all, NSFileOwnerAccountName, ownerName(status.stx_uid));
        set(all, NSFileGroupOwnerAccountName, groupName(status.stx_gid));
        set(all, NSFileSystemNumber,
            number(gnu_dev_makedev(status.stx_dev_major, status.stx_dev_minor)));
        set(all, NSFileSystemFileNumber, number(status.stx_ino));
        return cast<NSDictionary>(all->copy());
    }

    static bool setAttributes(
        NSFileManager&, NSDictionary* attributes, NSString* path, Ref<NSError>* error)
    {
        const std::string place = bundles::pathFrom(path);
        const int answer = ::access(place.c_str(), F_OK) == 0 ? setAll(place, attributes) : ENOENT;
        if (answer)
            reportFileError(error, answer, true, path);
        return answer == 0;
    }

    static Ref<NSDictionary> fileSystem(NSFileManager&, NSString* path, Ref<NSError>* error)
    {
        struct statvfs volume { };
        struct stat status { };
        const std::string place = bundles::pathFrom(path);
        if (::statvfs(place.c_str(), &volume) != 0 || ::stat(place.c_str(), &status) != 0) {
            reportFileError(error, errno, false, path);
            return nullptr;
        }
        return makeDictionary({
            { NSFileSystemSize, number(volume.f_blocks * volume.f_frsize).get() },
            { NSFileSystemFreeSize, number(volume.f_bavail * volume.f_frsize).get() },
            { NSFileSystemNumber, number(status.st_dev).get() },
        });
    }

    static void table(Builder& t)
    {
        t.methods({
            { "attributesOfItemAtPath:error:", imp<attributes> },
            { "setAttributes:ofItemAtPath:error:", imp<setAttributes> },
            { "attributesOfFileSystemForPath:error:", imp<fileSystem> },
        });
    }
};
BRINDLE_RECORD(NSFileManager, Attributes)

}
