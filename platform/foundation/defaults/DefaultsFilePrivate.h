// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <string>

#include <sys/stat.h>

#include "foundation/FilesPrivate.h"
#include "runtime/NSObject.h"

namespace brindle {

class NSDictionary;

}

namespace brindle::defaults {

/// A moment of the system's own clock: who waits for another process cannot turn a virtual one. `{}` is long past.
using Deadline = std::chrono::steady_clock::time_point;

/// What stands in the way of the file's system calls, for tests: it is asked before each, with the call's name.
/// - Returns: 0 lets the call be made, an error number makes it fail, `kShort` lets a write take half.
using Fault = int (*)(const char* call);
inline constexpr int kShort = -1;
inline constinit std::atomic<Fault> fault { nullptr };

/// A dictionary on the disk, as a binary property list, that several processes read and change.
///
/// The folder holds "defaults.plist" and "defaults.lock", whose lock a process takes for each replacement and the
/// system takes back when that process dies. The new list is written to "defaults.plist.new", brought to the disk and
/// renamed, so that at every moment the file is the old list or the new one.
///
/// What stands in the file's place and is no such list (damaged, a folder, a pipe, a link, which is not followed)
/// counts as empty, stays untouched until the first replacement and is then kept as "defaults.plist.damaged", unless
/// an earlier one is kept there.
/// Thread: one at a time.
class File {
public:
    /// - folder: absolute; made when something is written. With "" nothing is kept.
    explicit File(std::string folder)
        : folder_(std::move(folder))
    {
    }

    bool isKept() const { return !folder_.empty(); }
    /// Answers what was read or written last, never nil.
    Ref<NSDictionary> contents() const;
    /// Counts how often the contents were read, so that who keeps something made of them knows.
    std::uint64_t readings() const { return readings_; }
    /// Reads the file again if it is not the one that was read or written last.
    /// - Returns: false when the system failed to read it; the contents stay as they were.
    bool refresh();
    /// Replaces the contents by what `change` makes of those that the file has then, while no other process can.
    /// - change: answers nil to leave the file as it is.
    /// - Returns: whether the contents are safe on the disk; after false the file is the old one or the new one.
    bool update(Deadline deadline, const std::function<Ref<NSDictionary>(NSDictionary*)>& change);

private:
    /// Tells one file from another, and one state of it from the next. The file stays open, so that its
    /// number goes to no other file meanwhile.
    struct Identity {
        dev_t device = 0;
        ino_t number = 0;
        off_t size = 0;
        std::int64_t seconds = 0;
        std::int64_t nanoseconds = 0;

        bool operator==(const Identity&) const = default;
    };
    enum class State { unread, absent, good, damaged };

    static Identity identityOf(const struct stat& status);
    bool read(int folder);
    bool readOpen(files::Descriptor file);
    void hold(
        State state, const Identity& identity, files::Descriptor file, Ref<NSDictionary> contents);
    void holdNothing();
    bool replace(int folder, NSDictionary* contents);
    bool syncName(int folder);
    bool setDamagedAside(int folder);
    void sweep(int folder);

    std::string folder_;
    State state_ = State::unread;
    Identity identity_;
    files::Descriptor file_;
    Ref<NSDictionary> contents_;
    std::uint64_t readings_ = 0;
    bool isNameSafe_ = true; // the folder was brought to the disk since the file got its name
};

}
