// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "Dispatch.h"

namespace brindle {

namespace queues {

    // Nobody could say later who handed these over: the line comes at once.
    inline void requireClosure(const void* closure)
    {
        if (!closure) [[unlikely]]
            fatal("a null closure was handed to a queue");
    }
    inline void requireQueue(const void* queue)
    {
        if (!queue) [[unlikely]]
            fatal("a closure was handed to a null queue");
    }
    inline void requireGroup(const void* group)
    {
        if (!group) [[unlikely]]
            fatal("a null group was used");
    }
    inline void requireSemaphore(const void* semaphore)
    {
        if (!semaphore) [[unlikely]]
            fatal("a null semaphore was used");
    }

    inline constexpr int kPriorities = 4; // high, default, low, background

    /// Gives a closure to the pool's threads.
    void submit(int priority, Block<void()> block, DispatchQueue* queue);
    /// Answers the number of threads that run side by side when none is blocked.
    std::size_t width();
    /// Answers whether a task waits for a thread or runs on one that is not known to be blocked.
    bool isBusy();

    /// Tells the pool that this thread waits, so that another one takes over meanwhile.
    class Blocked {
    public:
        Blocked();
        ~Blocked();
        Blocked(const Blocked&) = delete;
        Blocked& operator=(const Blocked&) = delete;

    private:
        bool counted_;
    };

    /// Keeps a closure for a queue other than the main one until its moment.
    void delay(std::int64_t due, DispatchQueue* queue, const Block<void()>& block);
    /// Under a virtual clock the main loop moves time, and hands over here what has become due.
    void fireDelayed(std::int64_t now);
    std::int64_t nextDelayed();
    /// Under the system's clock the pool does both: it looks at what waits since the other clock.
    void watchDelayed();

    /// One event that somebody waits for.
    class Completion {
    public:
        void signal()
        {
            const std::lock_guard guard(mutex_);
            done_ = true;
            condition_.notify_all();
        }
        void wait()
        {
            const Blocked blocked;
            std::unique_lock lock(mutex_);
            condition_.wait(lock, [this] { return done_; });
        }

    private:
        std::mutex mutex_;
        std::condition_variable condition_;
        bool done_ = false;
    };

    /// Posts a closure and waits until it has run, even when an exception left it or nobody will run it.
    void runAndWait(
        const std::function<void(const Block<void()>&)>& post, const Block<void()>& block);

    /// Answers the system's moment that many nanoseconds from now, or as far off as anybody waits.
    inline std::chrono::steady_clock::time_point systemMomentIn(std::uint64_t nanoseconds)
    {
        constexpr std::uint64_t kLongest = std::uint64_t { 1 } << 61; // seventy years
        const auto length = static_cast<std::int64_t>(std::min(nanoseconds, kLongest));
        return std::chrono::steady_clock::now() + std::chrono::nanoseconds(length);
    }

    /// Waits on a condition until a moment of the queues' time. - Returns: false when the moment came first.
    template <class Ready>
    bool waitUntil(std::condition_variable& condition, std::unique_lock<std::mutex>& lock,
        dispatch_time_t limit, Ready ready);

    /// Names the queue whose closure the calling thread runs; frames nest by `dispatch_sync`.
    class Frame {
    public:
        explicit Frame(DispatchQueue* queue);
        ~Frame();
        Frame(const Frame&) = delete;
        Frame& operator=(const Frame&) = delete;
        static bool contains(const DispatchQueue* queue);

    private:
        DispatchQueue* queue_;
        Frame* outer_;
    };

}

/// A queue as an object.
class DispatchQueue : public NSObject {
    BRINDLE_OBJECT(DispatchQueue, NSObject)

public:
    enum class Kind : std::uint8_t { main, global, serial, concurrent };

    static Ref<DispatchQueue> create(Kind kind, int priority, const char* label);
    /// Answers one that lives as long as the process.
    static DispatchQueue* createShared(Kind kind, int priority, const char* label);

    Kind kind() const { return kind_; }
    const std::string& label() const { return label_; }
    void add(Block<void()> block, bool alone);
    void runHere(const Block<void()>& block, bool alone);
    /// Answers whether what is added waits for the end of a barrier.
    bool isHeldBack();

private:
    class Turn;
    struct Item {
        Block<void()> block;
        bool alone;
    };
    void startLocked();
    void runItem(const Item& item);
    void finished(bool alone);
    void drainSerial();

    Kind kind_ = Kind::serial;
    int priority_ = 1;
    std::string label_;
    std::mutex mutex_;
    std::deque<Item> items_; // what has not begun
    std::size_t running_ = 0;
    bool alone_ = false; // the one that runs wants nobody beside it
};

/// Counts what has been entered and not left.
class DispatchGroup : public NSObject {
    BRINDLE_OBJECT(DispatchGroup, NSObject)

public:
    void enter();
    void leave();
    void notify(DispatchQueue* queue, const Block<void()>& block);
    bool wait(dispatch_time_t limit);

private:
    struct Notice {
        Ref<DispatchQueue> queue;
        Block<void()> block;
    };
    std::mutex mutex_;
    std::condition_variable condition_;
    std::size_t count_ = 0;
    std::vector<Notice> notices_;
};

/// A number of things that threads take and give back.
class DispatchSemaphore : public NSObject {
    BRINDLE_OBJECT(DispatchSemaphore, NSObject)

public:
    static Ref<DispatchSemaphore> create(std::intptr_t value);
    bool wait(dispatch_time_t limit);
    bool signal();

private:
    std::mutex mutex_;
    std::condition_variable condition_;
    std::intptr_t value_ = 0;
    std::size_t waiting_ = 0;
};

namespace queues {

    template <class Ready>
    bool waitUntil(std::condition_variable& condition, std::unique_lock<std::mutex>& lock,
        dispatch_time_t limit, Ready ready)
    {
        if (ready())
            return true;
        if (limit == DISPATCH_TIME_NOW)
            return false;
        const Blocked blocked;
        if (limit == DISPATCH_TIME_FOREVER) {
            condition.wait(lock, ready);
            return true;
        }
        // The wait is one of the system's time, whatever the clock is: a blocked thread cannot turn a clock.
        const auto now = static_cast<dispatch_time_t>(dispatch_time(DISPATCH_TIME_NOW, 0));
        return condition.wait_until(lock, systemMomentIn(limit > now ? limit - now : 0), ready);
    }

}

}
