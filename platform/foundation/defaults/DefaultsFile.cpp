// SPDX-License-Identifier: Apache-2.0
#include "DefaultsFilePrivate.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>

#include "foundation/NSData.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSPropertyListSerialization.h"

namespace brindle::defaults {

namespace {

    using files::Descriptor;

    constexpr const char* kName = "defaults.plist";
    constexpr const char* kFreshName = "defaults.plist.new";
    constexpr const char* kDamagedName = "defaults.plist.damaged";
    constexpr const char* kLockName = "defaults.lock";
    constexpr std::int64_t kLargest = 64 << 20; // bytes; more are no settings

    int faultFor(const char* call)
    {
        const Fault ask = fault.load(std::memory_order_relaxed);
        return ask ? ask(call) : 0;
    }

    /// Makes a system call, again while it is interrupted.
    template <class Call> auto retried(const char* name, Call call) -> decltype(call())
    {
        for (;;) {
            if (const int error = faultFor(name); error > 0)
                errno = error;
            else if (const auto answer = call(); answer >= 0)
                return answer;
            if (errno != EINTR)
                return -1;
        }
    }

    Descriptor open(int folder, const char* name, int flags)
    {
        // A pipe must not make the process wait, and a link not lead it elsewhere.
        constexpr int kAlways = O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
        return Descriptor(
            retried("openat", [&] { return ::openat(folder, name, flags | kAlways, 0600); }));
    }

    Descriptor openFolder(const std::string& path)
    {
        constexpr int kFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
        return Descriptor(retried("open", [&] { return ::open(path.c_str(), kFlags); }));
    }

    /// Makes the folders of a path that do not exist, readable for nobody else.
    void makeFolders(const std::string& path)
    {
        for (std::size_t end = 1; end != std::string::npos;) {
            end = path.find('/', end + 1);
            const std::string part = path.substr(0, end);
            retried("mkdir", [&] { return ::mkdir(part.c_str(), 0700); });
        }
    }

    Descriptor ensureFolder(const std::string& path)
    {
        Descriptor folder = openFolder(path);
        if (!folder && errno == ENOENT) {
            makeFolders(path);
            folder = openFolder(path);
        }
        return folder;
    }

    bool statusOf(int folder, const char* name, struct stat& status)
    {
        return retried("fstatat", [&] {
            return ::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW);
        }) == 0;
    }

    bool statusOf(const Descriptor& file, struct stat& status)
    {
        return retried("fstat", [&] { return ::fstat(file.number(), &status); }) == 0;
    }

    bool remove(int folder, const char* name)
    {
        return retried("unlinkat", [&] { return ::unlinkat(folder, name, 0); }) == 0;
    }

    bool rename(int folder, const char* from, const char* to)
    {
        return retried("renameat", [&] { return ::renameat(folder, from, folder, to); }) == 0;
    }

    bool sync(int file)
    {
        return retried("fsync", [&] { return ::fsync(file); }) == 0;
    }

    /// Reads to the end. - Returns: nothing on an error, and when it is longer than any settings.
    std::optional<ByteBuffer> readAll(const Descriptor& file)
    {
        ByteBuffer buffer;
        unsigned char piece[16384];
        while (static_cast<std::int64_t>(buffer.length()) <= kLargest) {
            const ssize_t count
                = retried("read", [&] { return ::read(file.number(), piece, sizeof piece); });
            if (count == 0)
                return buffer;
            if (count < 0 || !buffer.append(piece, static_cast<std::size_t>(count)))
                return std::nullopt;
        }
        return std::nullopt;
    }

    bool writeAll(const Descriptor& file, std::span<const unsigned char> bytes)
    {
        while (!bytes.empty()) {
            const bool half = faultFor("write length") == kShort;
            const std::size_t length = half ? (bytes.size() + 1) / 2 : bytes.size();
            const ssize_t written
                = retried("write", [&] { return ::write(file.number(), bytes.data(), length); });
            if (written <= 0)
                return false;
            bytes = bytes.subspan(static_cast<std::size_t>(written));
        }
        return true;
    }

    /// Holds the folder's lock. The system gives it back when the process ends in any way.
    class Lock {
    public:
        Lock(int folder, Deadline deadline)
            : file_(open(folder, kLockName, O_RDWR | O_CREAT))
        {
            // Asking again and again, because a wait for a lock has no limit and the holder may be a stopped process.
            for (auto pause = std::chrono::microseconds(50); file_;
                 pause = std::min(2 * pause, std::chrono::microseconds(2000))) {
                held_ = retried("flock", [this] {
                    return ::flock(file_.number(), LOCK_EX | LOCK_NB);
                }) == 0;
                if (held_ || errno != EWOULDBLOCK || std::chrono::steady_clock::now() >= deadline)
                    return;
                std::this_thread::sleep_for(pause);
            }
        }
        ~Lock()
        {
            // A child that was forked meanwhile shares the open file: closing it alone would not give it back.
            if (held_)
                ::flock(file_.number(), LOCK_UN);
        }
        Lock(const Lock&) = delete;
        Lock& operator=(const Lock&) = delete;

        explicit operator bool() const { return held_; }

    private:
        Descriptor file_;
        bool held_ = false;
    };

    Ref<NSDictionary> emptyDictionary() { return NSDictionary::cls().dictionary(); }

    /// - Nil: for bytes that are no property list, or one of another kind.
    Ref<NSDictionary> dictionaryFrom(const ByteBuffer& bytes)
    {
        const Ref<NSData> data = dataFrom({ bytes.bytes(), bytes.length() });
        Ref<NSObject> list
            = NSPropertyListSerialization::cls().propertyListWithData_options_format_error(
                data.get(), NSPropertyListImmutable, nullptr, nullptr);
        return list && list->isKindOfClass(NSDictionary::cls()) ? cast<NSDictionary>(list)
                                                                : nullptr;
    }

    Ref<NSData> bytesFrom(NSDictionary* contents)
    {
        return NSPropertyListSerialization::cls().dataWithPropertyList_format_options_error(
            contents, NSPropertyListBinaryFormat_v1_0, 0, nullptr);
    }

}

File::Identity File::identityOf(const struct stat& status)
{
    return { status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec,
        status.st_mtim.tv_nsec };
}

Ref<NSDictionary> File::contents() const { return contents_ ? contents_ : emptyDictionary(); }

void File::hold(State state, const Identity& identity, Descriptor file, Ref<NSDictionary> contents)
{
    state_ = state;
    identity_ = identity;
    file_ = std::move(file);
    contents_ = std::move(contents);
    ++readings_;
}

void File::holdNothing()
{
    if (state_ != State::absent)
        hold(State::absent, {}, {}, nullptr);
}

bool File::refresh()
{
    if (!isKept())
        return true;
    const Descriptor folder = openFolder(folder_);
    if (!folder) {
        if (errno != ENOENT && errno != ENOTDIR && errno != EACCES)
            return false;
        holdNothing();
        return true;
    }
    if (state_ == State::unread)
        sweep(folder.number());
    return read(folder.number());
}

/// A process that was killed while it wrote may have left its new file.
void File::sweep(int folder)
{
    struct stat status { };
    if (!statusOf(folder, kFreshName, status))
        return;
    if (const Lock lock(folder, Deadline {}); lock)
        remove(folder, kFreshName);
}

bool File::read(int folder)
{
    struct stat status { };
    if (!statusOf(folder, kName, status)) {
        if (errno != ENOENT)
            return false;
        holdNothing();
        return true;
    }
    if (state_ != State::unread && state_ != State::absent && identityOf(status) == identity_)
        return true;
    Descriptor file = open(folder, kName, O_RDONLY);
    if (file)
        return readOpen(std::move(file));
    if (errno == ENOENT) {
        holdNothing();
        return true;
    }
    // A link, a socket, or a file of somebody else.
    if (errno != ELOOP && errno != ENXIO && errno != EACCES && errno != EPERM)
        return false;
    hold(State::damaged, identityOf(status), {}, nullptr);
    return true;
}

bool File::readOpen(Descriptor file)
{
    struct stat status { };
    if (!statusOf(file, status))
        return false;
    Ref<NSDictionary> list;
    if (S_ISREG(status.st_mode) && status.st_size <= kLargest) {
        const std::optional<ByteBuffer> bytes = readAll(file);
        if (!bytes)
            return false;
        list = dictionaryFrom(*bytes);
    }
    const State state = list ? State::good : State::damaged;
    hold(state, identityOf(status), std::move(file), std::move(list));
    return true;
}

bool File::update(Deadline deadline, const std::function<Ref<NSDictionary>(NSDictionary*)>& change)
{
    if (!isKept())
        return false;
    const Descriptor folder = ensureFolder(folder_);
    if (!folder)
        return false;
    const Lock lock(folder.number(), deadline);
    if (!lock || !read(folder.number()))
        return false;
    const Ref<NSDictionary> changed = change(contents().get());
    if (changed && !replace(folder.number(), changed.get()))
        return false;
    return isNameSafe_ || syncName(folder.number());
}

bool File::replace(int folder, NSDictionary* contents)
{
    const Ref<NSData> bytes = bytesFrom(contents);
    if (!bytes || static_cast<std::int64_t>(bytes->length()) > kLargest)
        return false;
    constexpr int kFlags = O_WRONLY | O_CREAT | O_EXCL;
    Descriptor fresh = open(folder, kFreshName, kFlags);
    // Whoever made it did not end well: the lock says that nobody writes now.
    if (!fresh && errno == EEXIST && remove(folder, kFreshName))
        fresh = open(folder, kFreshName, kFlags);
    if (!fresh)
        return false;
    struct stat status { };
    const bool done = writeAll(fresh, bytesOf(bytes.get())) && sync(fresh.number())
        && statusOf(fresh, status) && (state_ != State::damaged || setDamagedAside(folder))
        && rename(folder, kFreshName, kName);
    if (!done) {
        remove(folder, kFreshName);
        return false;
    }
    hold(State::good, identityOf(status), std::move(fresh), contents);
    --readings_; // it was written
    isNameSafe_ = false;
    return true;
}

bool File::syncName(int folder)
{
    isNameSafe_
        = sync(folder) || errno == EINVAL; // a file system that cannot do it has nothing better
    return isNameSafe_;
}

bool File::setDamagedAside(int folder)
{
    struct stat status { };
    if (statusOf(folder, kDamagedName, status))
        return true; // once is enough: the rename that follows replaces a file, and fails for a folder
    return errno == ENOENT && rename(folder, kName, kDamagedName);
}

}
