// SPDX-License-Identifier: Apache-2.0
#include "DefaultsStorePrivate.h"

#include <cstdlib>
#include <map>
#include <memory>
#include <vector>

#include <unistd.h>

#include "foundation/CollectionsPrivate.h"
#include "foundation/Dispatch.h"
#include "runtime/NSException.h"

namespace brindle::defaults {

namespace {

    constexpr std::int64_t kWriteDelay = 200 * static_cast<std::int64_t>(NSEC_PER_MSEC);
    constexpr std::chrono::seconds kPatience { 10 }; // for other processes, in the background
    constexpr std::chrono::seconds kPatienceAtExit { 5 };

    Deadline after(std::chrono::seconds patience)
    {
        return std::chrono::steady_clock::now() + patience;
    }

    std::string rootFromEnvironment()
    {
        const char* const config = std::getenv("XDG_CONFIG_HOME");
        if (config && config[0] == '/')
            return config;
        const char* const home = std::getenv("HOME");
        return home && home[0] == '/' ? std::string(home) + "/.config" : "";
    }

    /// Answers a domain's name as one component of a path, no two names as the same.
    std::string componentFor(const std::string& name)
    {
        constexpr char kDigits[] = "0123456789ABCDEF";
        std::string component;
        for (const char character : name) {
            const auto byte = static_cast<unsigned char>(character);
            const bool isPlain
                = byte >= 0x20 && byte != '/' && byte != '%' && !(byte == '.' && component.empty());
            if (isPlain)
                component += character;
            else
                (((component += '%') += kDigits[byte >> 4]) += kDigits[byte & 15]);
        }
        return component;
    }

}

struct Store::Registry {
    std::mutex mutex;
    std::string root = rootFromEnvironment();
    std::map<std::string, std::unique_ptr<Store>> stores;
    const pid_t process = ::getpid();

    std::vector<Store*> all()
    {
        const std::lock_guard guard(mutex);
        std::vector<Store*> list;
        for (const auto& [name, store] : stores)
            list.push_back(store.get());
        return list;
    }
};

/// Never ended: defaults are read and written until the very end of the process.
Store::Registry& Store::registry()
{
    static Registry* const registry = [] {
        std::atexit(flushAllAtExit);
        return new Registry;
    }();
    return *registry;
}

/// The right to deal with the file, waited for until a moment.
class Store::Turn {
public:
    Turn(Store& store, Deadline deadline)
        : store_(store)
    {
        std::unique_lock lock(store_.turnMutex_);
        isHeld_ = store_.turnEnded_.wait_until(lock, deadline, [this] { return !store_.isTaken_; });
        if (isHeld_)
            store_.isTaken_ = true;
    }
    ~Turn()
    {
        if (!isHeld_)
            return;
        {
            const std::lock_guard guard(store_.turnMutex_);
            store_.isTaken_ = false;
        }
        store_.turnEnded_.notify_one();
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

    explicit operator bool() const { return isHeld_; }

private:
    Store& store_;
    bool isHeld_;
};

std::string Store::root()
{
    Registry& all = registry();
    const std::lock_guard guard(all.mutex);
    return all.root;
}

std::string Store::folderFor(const std::string& name)
{
    const std::string folder = root();
    return folder.empty() ? folder : folder + '/' + componentFor(name);
}

Store& Store::named(const std::string& name)
{
    Registry& all = registry();
    std::unique_ptr<Store> made;
    {
        const std::lock_guard guard(all.mutex);
        const auto found = all.stores.find(name);
        if (found != all.stores.end())
            return *found->second;
    }
    made.reset(new Store(name));
    const std::lock_guard guard(all.mutex);
    return *all.stores.try_emplace(name, std::move(made)).first->second;
}

void Store::flushAllAtExit()
{
    // A forked child has its parent's changes, which are the parent's to write.
    if (registry().process != ::getpid())
        return;
    const Deadline deadline = after(kPatienceAtExit);
    for (Store* const store : registry().all()) {
        const Turn turn(*store, deadline);
        if (turn)
            store->writeChanges(deadline);
    }
}

void Store::lookAtAll()
{
    for (Store* const store : registry().all()) {
        const Turn turn(*store, Deadline {});
        if (turn && store->isLoaded_.load(std::memory_order_acquire))
            store->refresh();
    }
}

void Store::moveAll(const char* root)
{
    Registry& all = registry();
    for (Store* const store : all.all())
        store->flush(after(kPatience), nullptr);
    {
        const std::lock_guard guard(all.mutex);
        all.root = root ? root : rootFromEnvironment();
    }
    for (Store* const store : all.all()) {
        const Turn turn(*store, Deadline::max());
        store->file_ = File(folderFor(store->name_));
        store->seenReadings_ = 0;
        store->isLoaded_.store(false, std::memory_order_release);
        const std::lock_guard guard(memory);
        store->values_ = nullptr;
        store->changes_ = {};
        store->isScheduled_ = false;
        ++store->move_;
    }
}

void Store::load()
{
    if (isLoaded_.load(std::memory_order_acquire))
        return;
    const Turn turn(*this, Deadline::max());
    if (!isLoaded_.load(std::memory_order_relaxed))
        refresh();
}

/// Reads what is new on the disk. The turn is the caller's.
bool Store::refresh()
{
    const bool isRead = file_.refresh();
    takeIn();
    isLoaded_.store(true, std::memory_order_release);
    return isRead;
}

namespace {

    /// Values that are too much alike to be compared count as different: a file may share its parts without end.
    bool areEqual(NSDictionary* some, NSDictionary* others)
    {
        std::size_t left = std::size_t { 1 } << 20;
        const collections::ComparisonLimit limit(&left);
        try {
            return some->isEqualToDictionary(others);
        } catch (const Exception&) {
            return false;
        }
    }

}

/// Makes the values anew where the file was read. - Returns: whether they are others now.
bool Store::takeIn()
{
    if (values_ && seenReadings_ == file_.readings())
        return false;
    seenReadings_ = file_.readings();
    Ref<NSMutableDictionary> fresh
        = NSMutableDictionary::cls().dictionaryWithDictionary(file_.contents().get());
    const std::lock_guard guard(memory);
    changes_.applyTo(fresh.get());
    const bool differs = !values_ || !areEqual(values_.get(), fresh.get());
    values_.swap(fresh);
    return differs;
}

Ref<NSDictionary> Store::snapshot()
{
    load();
    const std::lock_guard guard(memory);
    return NSDictionary::cls().dictionaryWithDictionary(values_.get());
}

bool Store::set(NSObject* key, NSObject* value)
{
    load();
    bool differs = false;
    unsigned move = 0;
    {
        const std::lock_guard guard(memory);
        move = move_;
        differs = setValue(values_.get(), key, value);
        changes_.set(key, value);
        if (std::exchange(isScheduled_, true))
            return differs;
    }
    writeSoon(move);
    return differs;
}

void Store::replaceAll(NSDictionary* values)
{
    load();
    Changes changes;
    changes.startFromNothing();
    if (values) {
        for (auto at = values->begin(); at != values->end(); ++at)
            changes.set(*at, at.value());
    }
    unsigned move = 0;
    {
        const std::lock_guard guard(memory);
        move = move_;
        changes.applyTo(values_.get());
        changes_ = std::move(changes);
        if (std::exchange(isScheduled_, true))
            return;
    }
    writeSoon(move);
}

void Store::writeSoon(unsigned move)
{
    dispatch_after(dispatch_time(DISPATCH_TIME_NOW, kWriteDelay),
        dispatch_get_global_queue(DISPATCH_QUEUE_PRIORITY_LOW, 0), [this, move] {
            {
                const std::lock_guard guard(memory);
                if (move != move_)
                    return;
                isScheduled_ = false;
            }
            flush(after(kPatience), nullptr);
        });
}

bool Store::flush(Deadline deadline, bool* differs)
{
    load();
    const Turn turn(*this, deadline);
    if (!turn)
        return false;
    const bool isWritten = writeChanges(deadline);
    if (isWritten)
        file_.refresh();
    const bool isOther = takeIn();
    if (differs)
        *differs = isOther;
    return isWritten;
}

/// Writes the changes of this moment; they stay when that fails. The turn is the caller's.
bool Store::writeChanges(Deadline deadline)
{
    Changes changes;
    {
        const std::lock_guard guard(memory);
        std::swap(changes, changes_);
    }
    if (changes.isEmpty())
        return true;
    const bool isWritten
        = file_.update(deadline, [&changes](NSDictionary* now) -> Ref<NSDictionary> {
              const Ref<NSMutableDictionary> next
                  = NSMutableDictionary::cls().dictionaryWithDictionary(now);
              return changes.applyTo(next.get()) ? cast<NSDictionary>(next->copy()) : nullptr;
          });
    if (!isWritten) {
        const std::lock_guard guard(memory);
        changes.add(changes_);
        changes_ = std::move(changes);
    }
    return isWritten;
}

}
