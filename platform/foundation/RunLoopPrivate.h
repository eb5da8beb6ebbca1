// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <deque>
#include <limits>
#include <memory>
#include <vector>

#include "Dispatch.h"
#include "NSRunLoop.h"

struct pollfd;

namespace brindle {

inline constexpr std::int64_t kNever = std::numeric_limits<std::int64_t>::max();

/// Answers the moment some seconds after another, never past `kNever`. Negative seconds and NaN count as none.
inline std::int64_t momentAfter(std::int64_t moment, double seconds)
{
    if (!(seconds > 0))
        return moment;
    const std::int64_t delta = saturatingInteger(seconds * 1e9);
    std::int64_t sum = 0;
    return __builtin_add_overflow(moment, delta, &sum) ? kNever : sum;
}
/// Makes loops that sleep look at the clock again.
void wakeEveryLoop();
/// Sends a message with one object or none and drops the answer.
void performNow(NSObject* target, SEL selector, NSObject* argument);
/// 1 on the thread that started the process, -1 on others, 0 where nobody has asked yet.
[[gnu::tls_model("initial-exec")]] extern constinit thread_local signed char mainThreadness;
bool findMainThread();
/// Answers whether this is the thread that started the process.
inline bool isMainThread()
{
    const signed char known = mainThreadness;
    return known ? known > 0 : findMainThread();
}

/// A lock that is held for a few instructions: spins a little, then sleeps.
class ShortLock {
public:
    void lock()
    {
        int free = 0;
        if (!state_.compare_exchange_strong(free, 1, std::memory_order_acquire)) [[unlikely]]
            wait();
    }
    void unlock()
    {
        if (state_.exchange(0, std::memory_order_release) == 2) [[unlikely]]
            state_.notify_one();
    }

private:
    void wait();

    std::atomic<int> state_ { 0 }; // 0 free, 1 held, 2 held and somebody sleeps
};

/// Closures in order; each is owned by one count.
class ClosureRing {
public:
    using Item = Closure<void()>*;

    ClosureRing() = default;
    ClosureRing(const ClosureRing&) = delete;
    ClosureRing& operator=(const ClosureRing&) = delete;
    ~ClosureRing() { clear(); }

    /// Numbers of the first item and of the next one to come; they only grow.
    std::uint64_t head() const { return head_; }
    std::uint64_t tail() const { return tail_; }
    bool empty() const { return head_ == tail_; }
    bool hasRoom() const { return tail_ - head_ < room_; }
    void push(Item item)
    {
        if (!hasRoom()) [[unlikely]]
            resize(room_ ? room_ * 2 : 64);
        place(item);
    }
    /// The same where there is room.
    void place(Item item) { items_[tail_++ & (room_ - 1)] = item; }
    Item pop()
    {
        // After a burst the closures have left the cache: what comes soon is on its way while this one runs.
        constexpr std::uint64_t kAhead = 8;
        __builtin_prefetch(items_[(head_ + kAhead) & (room_ - 1)]);
        return items_[head_++ & (room_ - 1)];
    }
    /// Whether a great burst has left room behind.
    bool isRoomy() const { return empty() && items_.size() > kKept; }
    /// Gives that room back.
    void shrink()
    {
        if (isRoomy()) {
            items_ = std::vector<Item>();
            room_ = 0;
        }
    }
    void clear();

private:
    static constexpr std::size_t kKept = 16384;

    void resize(std::size_t size);

    std::vector<Item> items_;
    std::uint64_t room_ = 0; // how many they are: none or a power of two
    std::uint64_t head_ = 0;
    std::uint64_t tail_ = 0;
};

/// What other threads hand to a loop. Their writing wakes it, with a system call only when it sleeps.
class Inbox {
public:
    Inbox();
    ~Inbox();
    Inbox(const Inbox&) = delete;
    Inbox& operator=(const Inbox&) = delete;

    /// Adds a closure for the common modes; takes its count over. A closed inbox ends it.
    void post(ClosureRing::Item item);
    /// Adds a closure that runs in the next turn of whatever mode.
    void postControl(const Block<void()>& block);
    /// - stop: ends the innermost run after its turn too.
    enum class Wake { look, stop };
    void wake(Wake kind);

    bool hasItems() const { return itemCount_.load(std::memory_order_acquire) != 0; }
    bool hasControls() const { return hasControls_.load(std::memory_order_acquire); }
    bool hasStop() const { return stop_.load(std::memory_order_relaxed); }
    /// Moves the closures for the common modes to the end of a ring.
    void takeItems(ClosureRing& ring);
    std::vector<Block<void()>> takeControls();
    /// Answers whether somebody asked the innermost run to end, once.
    bool takeStop() { return stop_.load(std::memory_order_relaxed) && stop_.exchange(false); }

    /// From now on whoever writes also wakes. - Returns: false, and nothing changes, when something is here already.
    bool beginSleep(bool itemsCount);
    /// The same for another program's loop, which sleeps in any case: what is here already wakes it.
    /// - wakes: whether it is to be woken at once whatever is here.
    void beginSleepOutside(bool wakes);
    void endSleep();
    int descriptor() const { return descriptor_; }
    /// Nothing will read this any more.
    void close();

private:
    bool hasAnythingLocked(bool itemsCount) const;
    void signalLocked();

    ShortLock lock_;
    std::vector<ClosureRing::Item> items_;
    std::vector<ClosureRing::Item> spare_; // the loop's thread only
    std::vector<Block<void()>> controls_;
    std::atomic<std::size_t> itemCount_ { 0 };
    std::atomic<bool> hasControls_ { false };
    std::atomic<bool> stop_ { false };
    bool sleeping_ = false;
    bool signalled_ = false;
    bool closed_ = false;
    int descriptor_ = -1;
};

class TimerLane;

/// Something that a loop runs at a moment. It knows its place in the heap, so moving and removing are cheap.
struct Scheduled {
    std::int64_t due = kNever;
    std::uint64_t order = 0;
    TimerLane* lane = nullptr; ///< nullptr while it is not scheduled
    std::size_t place = 0;
    void (*fire)(Scheduled*) = nullptr; ///< called when it is out of the heap
    void (*drop)(Scheduled*) = nullptr; ///< called instead when the loop ends
};

/// The scheduled entries of one set of modes: a heap by moment, then by order of arrival.
class TimerLane {
public:
    explicit TimerLane(std::uint64_t laneModes)
        : modes(laneModes)
    {
    }

    const std::uint64_t modes;

    Scheduled* first() const { return heap_.empty() ? nullptr : heap_.front().entry; }
    void add(Scheduled& entry);
    void remove(Scheduled& entry);
    /// Puts an entry where its moment and order, which were changed, want it.
    void moved(Scheduled& entry)
    {
        if (heap_.size() == 1)
            heap_.front().due = entry.due;
        else
            movedAmongOthers(entry);
    }
    std::size_t size() const { return heap_.size(); }

private:
    /// Two words, handed on in registers.
    struct Slot {
        std::int64_t due;
        Scheduled* entry;
        bool before(Slot other) const
        {
            return due != other.due ? due < other.due : entry->order < other.entry->order;
        }
    };
    void movedAmongOthers(Scheduled& entry);
    void put(std::size_t place, Slot slot);
    void rise(std::size_t place, Slot slot);
    void sink(std::size_t place, Slot slot);

    std::vector<Slot> heap_;
};

struct Perform;

/// The delayed performs of a loop, found by target.
class PerformTable {
public:
    PerformTable() = default;
    PerformTable(const PerformTable&) = delete;
    PerformTable& operator=(const PerformTable&) = delete;
    ~PerformTable();

    Perform* make(NSObject* target, SEL selector, NSObject* argument);
    /// Takes an entry that is out of the heap out of the table.
    void unlink(Perform* perform);
    void recycle(Perform* perform);
    /// Answers one that waits for this target, selector and argument; selector zero stands for everything.
    Perform* find(NSObject* target, SEL selector, NSObject* argument) const;

private:
    std::size_t bucketOf(const NSObject* target) const
    {
        return (reinterpret_cast<std::uintptr_t>(target) * 0x9E3779B97F4A7C15u) >> 32
            & (buckets_.size() - 1);
    }
    void grow();

    std::vector<Perform*> buckets_;
    std::size_t count_ = 0;
    Perform* free_ = nullptr;
    std::size_t freeCount_ = 0;
};

/// The loop itself. Everything but the inbox belongs to the loop's thread.
class RunLoopCore {
public:
    /// Modes as bits: the three common ones, then others in the order in which they were first named.
    using Modes = std::uint64_t;
    static constexpr Modes kDefault = 1;
    static constexpr Modes kCommon = 7;

    explicit RunLoopCore(bool isMain);
    ~RunLoopCore();

    static RunLoopCore& current();
    static RunLoopCore& main()
    {
        RunLoopCore* const core = mainCore.load(std::memory_order_acquire);
        return core ? *core : makeMain();
    }
    /// - Raises: `NSInternalInconsistencyException` for a loop that no thread has made.
    static RunLoopCore& of(NSRunLoop& loop)
    {
        if (!loop.core_) [[unlikely]]
            refuseUnmade();
        return *loop.core_;
    }
    [[noreturn]] static void refuseUnmade();
    /// Answers a new loop for a thread.
    static Ref<NSRunLoop> makeLoop(bool isMain);

    /// - Raises: `NSInvalidArgumentException` for the 62nd name.
    Modes modesNamed(NSString* mode);
    const std::shared_ptr<Inbox>& inbox() const { return inbox_; }
    bool isOwnThread() const;
    /// Lets go of everything that waits; the thread ends.
    void close();

    // Entries. A moment that has passed counts as now, so that equal ones keep their order.
    void schedule(Scheduled& entry, Modes modes, std::int64_t due);
    void unschedule(Scheduled& entry);
    void reschedule(Scheduled& entry, std::int64_t due)
    {
        entry.due = due;
        entry.order = ++order_;
        entry.lane->moved(entry);
        if (outside_) [[unlikely]]
            inbox_->wake(Inbox::Wake::look);
    }
    std::int64_t nextDue(Modes mode) const;
    PerformTable& performs() { return performs_; }

    /// Adds a closure of this thread for the common modes; takes its count over.
    void enqueue(ClosureRing::Item item)
    {
        if (!items_.hasRoom() || inbox_->hasItems() || outside_) [[unlikely]]
            return enqueueSlowly(item);
        items_.place(item);
    }

    void addSource(NSRunLoopSource& source, Modes modes);
    void removeSource(NSRunLoopSource& source, Modes modes);
    void sourceChanged(NSRunLoopSource& source);
    void addObserver(NSRunLoopObserver& observer, Modes modes);
    void removeObserver(NSRunLoopObserver& observer, Modes modes);

    bool run(Modes mode, NSString* name, std::int64_t limit);
    bool runUntilIdle(Modes mode, NSString* name);
    void advance(double seconds);
    bool hasAnything(Modes mode) const;
    Ref<NSString> currentMode() const { return currentMode_; }

    int embeddingDescriptor();
    double embeddingTimeout() const;
    void embeddingStep();
    std::uint64_t wakes() const { return wakes_; }

private:
    static std::atomic<RunLoopCore*> mainCore;
    static RunLoopCore& makeMain();

    class Running;
    struct Done {
        bool anything = false;
        bool sources = false; ///< something other than timers
        bool earlier = false; ///< a timer that was scheduled no later than `since`
    };

    void enqueueSlowly(ClosureRing::Item item);
    TimerLane& laneFor(Modes modes);
    /// - since: the number of the last timer that counts as an earlier one.
    Done turn(Modes mode, std::uint64_t since = 0);
    bool runControls();
    Done fireDue(Modes mode, std::uint64_t since);
    bool drainItems(Modes mode);
    bool pollSources(Modes mode);
    static NSUInteger eventsNow(const NSRunLoopSource& source);
    void callObservers(Modes mode);
    void collect(Modes mode, std::vector<pollfd>& polled) const;
    void wait(Modes mode, std::int64_t limit);
    void sleep(Modes mode, std::int64_t until);
    bool settle(Modes mode);
    /// Sleeps in another program's loop from now on, which wakes at once when something is left or due earlier than before.
    void goOutside(bool isEarlier);
    /// Has that loop wait for what the sources of a descriptor want in the default mode.
    void watch(int descriptor);

    const bool isMain_;
    bool outside_ = false; // another program's loop waits for us
    std::uint64_t wakes_ = 0;
    std::uint64_t turns_ = 0;
    std::uint64_t order_ = 0;
    std::vector<std::unique_ptr<TimerLane>> lanes_;
    PerformTable performs_;
    ClosureRing items_;
    std::shared_ptr<Inbox> inbox_;
    std::deque<Block<void()>> controls_;
    std::vector<Ref<NSString>> modeNames_;
    std::vector<Ref<NSRunLoopSource>> sources_;
    std::vector<Ref<NSRunLoopObserver>> observers_;
    Ref<NSString> currentMode_;
    int depth_ = 0;
    int embedding_ = -1;
    std::vector<int> unwatched_; // files and such, which are always ready
};

struct Perform : Scheduled {
    Ref<NSObject> target;
    Ref<NSObject> argument;
    SEL selector;
    RunLoopCore* loop = nullptr;
    Perform* next = nullptr;
};

/// Adds a closure to the main queue; takes its count over. Thread: any, also one that ends.
void postToMain(ClosureRing::Item item);

}
