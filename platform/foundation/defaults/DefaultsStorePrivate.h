// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <string>

#include "DefaultsFilePrivate.h"
#include "foundation/NSMutableDictionary.h"

namespace brindle::defaults {

/// Guards everything about defaults that is in memory. Under it nothing is read, written, encoded or posted: a
/// reader waits for the length of a few table operations at most.
inline constinit std::mutex memory;

/// Answers an immutable copy of a property list: strings, numbers, data, finite dates, arrays, dictionaries with
/// string keys. Children that are shared stay shared. Unpaired surrogates, which no file can hold, become U+FFFD.
/// - Nil: for anything else, for a container within itself, and for lists nested too deep to be written.
Ref<NSObject> frozen(NSObject* object);

/// Gives a key another value, a frozen one, or none when it is nil.
/// - Returns: whether that makes a difference; another array or dictionary always does.
bool setValue(NSMutableDictionary* values, NSObject* key, NSObject* value);

/// What was changed and is not on the disk yet: keys with their values, `NSNull` where the key was removed.
class Changes {
public:
    bool isEmpty() const { return !fromNothing_ && !keys_; }
    void set(NSObject* key, NSObject* value);
    /// From here on nothing of what the file holds counts.
    void startFromNothing();
    /// Takes changes that were made after these.
    void add(const Changes& later);
    /// - Returns: whether that made a difference.
    bool applyTo(NSMutableDictionary* values) const;

private:
    bool fromNothing_ = false;
    Ref<NSMutableDictionary> keys_;
};

/// One persistent domain in this process: what its file holds, and over it what was changed here.
///
/// A change is written a moment later in the background, with all that came in that moment, into what the file holds
/// then: keys that nobody changed here keep what other processes wrote. It stays until it is on the disk.
/// What other processes write is seen by `flush` and by `lookAtAll`.
/// Thread: any.
class Store {
public:
    /// Answers the store of a domain's name; it lives as long as the process. "NSGlobalDomain" is every application's.
    static Store& named(const std::string& name);
    /// Takes in what other processes wrote, of the stores that nobody is busy with.
    static void lookAtAll();
    /// Writes what is to be written and reads all stores anew from another folder; nil is the one that the
    /// environment names.
    static void moveAll(const char* root);
    /// Answers the folder in which each store has its own, "" when the environment names none.
    static std::string root();

    /// Makes sure that the file was read.
    void load();
    /// Answers the values, to be read under `memory` only; nil before `load`.
    NSMutableDictionary* values() const { return values_.get(); }
    Ref<NSDictionary> snapshot();
    /// Changes a value, a frozen one; nil removes it. - Returns: whether that made a difference.
    bool set(NSObject* key, NSObject* value);
    /// Gives all keys other values, frozen ones; nil leaves nothing.
    void replaceAll(NSDictionary* values);
    /// Writes what is to be written, else takes in what others wrote.
    /// - Returns: whether all changes are safe on the disk. - differs: set when values changed by it; may be nullptr.
    bool flush(Deadline deadline, bool* differs);

private:
    class Turn;
    struct Registry;

    explicit Store(std::string name)
        : name_(std::move(name))
        , file_(folderFor(name_))
    {
    }
    static Registry& registry();
    static std::string folderFor(const std::string& name);
    static void flushAllAtExit();
    bool refresh();
    bool writeChanges(Deadline deadline);
    bool takeIn();
    void writeSoon(unsigned move);

    const std::string name_;
    std::atomic<bool> isLoaded_ { false };
    // Guarded by `memory`.
    Ref<NSMutableDictionary> values_;
    Changes changes_;
    bool isScheduled_ = false;
    unsigned move_ = 0; // what was to be written before the last move is written
    // One thread at a time deals with the file.
    std::mutex turnMutex_;
    std::condition_variable turnEnded_;
    bool isTaken_ = false;
    File file_;
    std::uint64_t seenReadings_ = 0;
};

}
