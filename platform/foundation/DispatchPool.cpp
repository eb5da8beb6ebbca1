// SPDX-License-Identifier: Apache-2.0
#include <atomic>
#include <chrono>
#include <csignal>
#include <map>
#include <pthread.h>
#include <thread>

#include "DispatchPrivate.h"
#include "Exceptions.h"
#include "RunLoopPrivate.h"

// The threads behind all queues but the main one.
//
// As many tasks run side by side as there are processors, at least two. A thread that waits in one of our own
// operations says so and another takes over at once; for any other way of blocking a keeper thread looks every two
// milliseconds, while tasks wait and no thread is free, whether one was begun meanwhile, and adds a thread if not.
// Without tasks nothing wakes up: threads leave after some idle seconds.

namespace brindle::queues {

namespace {

    using namespace std::chrono_literals;

    constexpr std::size_t kMostThreads = 512;
    constexpr auto kIdleTime = 5s;
    constexpr auto kLook = 2ms;

    struct Job {
        Block<void()> block;
        DispatchQueue* queue = nullptr;
    };
    struct Delayed {
        Ref<DispatchQueue> queue;
        Block<void()> block;
    };
    struct Moment {
        std::int64_t due;
        std::uint64_t order;
        friend auto operator<=>(const Moment&, const Moment&) = default;
    };

    struct Pool {
        std::mutex mutex;
        std::condition_variable work; // for threads without a task
        std::condition_variable keeper; // for the keeper
        std::deque<Job> jobs[kPriorities];
        std::size_t waiting = 0; // jobs
        std::size_t threads = 0;
        std::size_t idle = 0;
        std::size_t blocked = 0;
        std::uint64_t begun = 0;
        bool hasKeeper = false;
        bool keeperLooks = false;
        std::map<Moment, Delayed> delayed;
        std::uint64_t order = 0;
        std::atomic<std::size_t> delayedCount { 0 };
    };

    Pool& pool()
    {
        static Pool* const shared = new Pool; // threads may outlive main
        return *shared;
    }

    [[gnu::tls_model("initial-exec")]] constinit thread_local bool isPoolThread = false;

    /// Starts a thread that nobody waits for. Signals are for the program's own threads.
    bool launch(const char* name, void* (*entry)(void*))
    {
        sigset_t all;
        sigset_t before;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before);
        pthread_t thread {};
        const bool started = pthread_create(&thread, nullptr, entry, const_cast<char*>(name)) == 0;
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
        if (started)
            pthread_detach(thread);
        return started;
    }

    /// Answers whether more tasks wait than there are threads on their way to them.
    bool isShortLocked(const Pool& p) { return p.waiting > p.idle; }

    bool isBusyLocked(const Pool& p) { return p.waiting > 0 || p.threads - p.idle > p.blocked; }

    /// A main loop under a virtual clock waits for the end of background work.
    void tellIfQuiet(bool busy)
    {
        if (!busy && Clock::isVirtual())
            RunLoopCore::main().inbox()->wake(Inbox::Wake::look);
    }

    bool takeJob(Pool& p, std::unique_lock<std::mutex>& lock, Job& job)
    {
        const auto leave = std::chrono::steady_clock::now() + kIdleTime;
        while (p.waiting == 0) {
            ++p.idle;
            const bool busy = isBusyLocked(p);
            if (!busy && Clock::isVirtual()) {
                lock.unlock();
                tellIfQuiet(busy);
                lock.lock();
            }
            const bool late
                = p.waiting == 0 && p.work.wait_until(lock, leave) == std::cv_status::timeout;
            --p.idle;
            if (late && p.waiting == 0)
                return false;
        }
        for (auto& jobs : p.jobs) {
            if (jobs.empty())
                continue;
            job = std::move(jobs.front());
            jobs.pop_front();
            break;
        }
        --p.waiting;
        ++p.begun;
        return true;
    }

    // Nobody can catch what a task throws, hence noexcept: it ends the process as an uncaught exception.
    void* runThread(void* name) noexcept
    {
        pthread_setname_np(pthread_self(), static_cast<const char*>(name));
        isPoolThread = true;
        Pool& p = pool();
        std::unique_lock lock(p.mutex);
        for (;;) {
            Job job;
            if (!takeJob(p, lock, job))
                break;
            lock.unlock();
            {
                const Frame frame(job.queue);
                job.block();
                job.block = nullptr;
            }
            lock.lock();
        }
        --p.threads;
        return nullptr;
    }

    bool addThreadLocked(Pool& p)
    {
        if (p.threads >= kMostThreads || !launch("brindle-pool", &runThread))
            return false;
        ++p.threads;
        return true;
    }

    void handOver(std::vector<Delayed>& due)
    {
        for (Delayed& each : due)
            dispatch_async(each.queue.get(), std::move(each.block));
    }

    std::vector<Delayed> takeDueLocked(Pool& p, std::int64_t now)
    {
        std::vector<Delayed> due;
        while (!p.delayed.empty() && p.delayed.begin()->first.due <= now) {
            due.push_back(std::move(p.delayed.begin()->second));
            p.delayed.erase(p.delayed.begin());
        }
        p.delayedCount.store(p.delayed.size(), std::memory_order_release);
        return due;
    }

    void keepOnce(Pool& p, std::unique_lock<std::mutex>& lock)
    {
        const bool virtualTime = Clock::isVirtual();
        auto until = std::chrono::steady_clock::time_point::max();
        const bool stuck = isShortLocked(p);
        p.keeperLooks = stuck;
        if (stuck)
            until = std::chrono::steady_clock::now() + kLook;
        if (!virtualTime && !p.delayed.empty()) {
            const std::int64_t left = p.delayed.begin()->first.due - Clock::now();
            until = std::min(
                until, systemMomentIn(static_cast<std::uint64_t>(std::max<std::int64_t>(left, 0))));
        }
        const std::uint64_t begun = p.begun;
        if (until == std::chrono::steady_clock::time_point::max())
            p.keeper.wait(lock);
        else if (p.keeper.wait_until(lock, until) == std::cv_status::timeout && stuck
            && isShortLocked(p) && p.begun == begun)
            addThreadLocked(p);
        if (virtualTime || p.delayed.empty())
            return;
        std::vector<Delayed> due = takeDueLocked(p, Clock::now());
        lock.unlock();
        handOver(due);
        due.clear();
        lock.lock();
    }

    void* runKeeper(void* name) noexcept
    {
        pthread_setname_np(pthread_self(), static_cast<const char*>(name));
        Pool& p = pool();
        std::unique_lock lock(p.mutex);
        for (;;)
            keepOnce(p, lock);
    }

    void wakeKeeperLocked(Pool& p)
    {
        if (!p.hasKeeper)
            p.hasKeeper = launch("brindle-keeper", &runKeeper);
        p.keeper.notify_one();
    }

    /// Sees to it that somebody runs what waits.
    void staffLocked(Pool& p)
    {
        if (!isShortLocked(p))
            p.work.notify_one();
        else if (p.threads - p.blocked < width() && addThreadLocked(p))
            return;
        else if (!p.keeperLooks)
            wakeKeeperLocked(p); // it goes on looking by itself
    }

}

std::size_t width()
{
    static const std::size_t processors
        = std::max<std::size_t>(std::thread::hardware_concurrency(), 2);
    return processors;
}

void submit(int priority, Block<void()> block, DispatchQueue* queue)
{
    installUncaughtHandler();
    Pool& p = pool();
    const std::lock_guard guard(p.mutex);
    p.jobs[priority].push_back({ std::move(block), queue });
    ++p.waiting;
    staffLocked(p);
}

bool isBusy()
{
    Pool& p = pool();
    const std::lock_guard guard(p.mutex);
    return isBusyLocked(p);
}

Blocked::Blocked()
    : counted_(isPoolThread)
{
    if (!counted_)
        return;
    Pool& p = pool();
    bool busy = true;
    {
        const std::lock_guard guard(p.mutex);
        ++p.blocked;
        if (isShortLocked(p))
            addThreadLocked(p);
        busy = isBusyLocked(p);
    }
    tellIfQuiet(busy);
}

Blocked::~Blocked()
{
    if (!counted_)
        return;
    const std::lock_guard guard(pool().mutex);
    --pool().blocked;
}

void delay(std::int64_t due, DispatchQueue* queue, const Block<void()>& block)
{
    Pool& p = pool();
    const std::lock_guard guard(p.mutex);
    p.delayed.emplace(Moment { due, ++p.order }, Delayed { Ref<DispatchQueue>(queue), block });
    p.delayedCount.store(p.delayed.size(), std::memory_order_release);
    wakeKeeperLocked(p);
}

void watchDelayed()
{
    Pool& p = pool();
    const std::lock_guard guard(p.mutex);
    if (!p.delayed.empty())
        wakeKeeperLocked(p);
}

void fireDelayed(std::int64_t now)
{
    Pool& p = pool();
    if (p.delayedCount.load(std::memory_order_acquire) == 0)
        return;
    std::vector<Delayed> due;
    {
        const std::lock_guard guard(p.mutex);
        due = takeDueLocked(p, now);
    }
    handOver(due);
}

std::int64_t nextDelayed()
{
    Pool& p = pool();
    if (p.delayedCount.load(std::memory_order_acquire) == 0)
        return kNever;
    const std::lock_guard guard(p.mutex);
    return p.delayed.empty() ? kNever : p.delayed.begin()->first.due;
}

void runAndWait(const std::function<void(const Block<void()>&)>& post, const Block<void()>& block)
{
    // The signal is the end of the closure itself: it comes whatever became of the closure.
    struct Signal {
        std::shared_ptr<Completion> completion;
        ~Signal() { completion->signal(); }
    };
    const auto completion = std::make_shared<Completion>();
    {
        auto signal = std::shared_ptr<Signal>(new Signal { completion });
        post([kept = std::move(signal), block] { block(); });
    }
    completion->wait();
}

}
