// SPDX-License-Identifier: Apache-2.0
#include "foundation/Dispatch.h"

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "foundation/NSDate.h"
#include "foundation/NSRunLoop.h"
#include "support/Measure.h"
#include "support/Memory.h"
#include "support/Topics.h"

namespace brindle::bench {

namespace {

    constexpr std::size_t kPosts = 1'000'000;

    double postAndRun(std::size_t count)
    {
        const dispatch_queue_t queue = dispatch_get_main_queue();
        const Ref<NSRunLoop> loop = NSRunLoop::cls().mainRunLoop();
        std::size_t ran = 0;
        const Stopwatch watch;
        for (std::size_t i = 0; i < count; ++i)
            dispatch_async(queue, [&ran] { ++ran; });
        while (ran < count)
            loop->runUntilIdle(NSDefaultRunLoopMode);
        return watch.elapsed();
    }

    /// A queue of one's own under a spin lock that nobody contends; what it has grown to is kept for the next block.
    Sample postAndRunBare()
    {
        using Closures = std::vector<std::function<void()>>;
        return [queue = Closures(), taken = Closures()](std::size_t count) mutable {
            std::atomic_flag locked = ATOMIC_FLAG_INIT;
            std::size_t ran = 0;
            queue.reserve(count);
            const Stopwatch watch;
            for (std::size_t i = 0; i < count; ++i) {
                while (locked.test_and_set(std::memory_order_acquire)) { }
                queue.emplace_back([&ran] { ++ran; });
                locked.clear(std::memory_order_release);
            }
            taken.swap(queue);
            for (const auto& closure : taken)
                closure();
            taken.clear();
            return watch.elapsed();
        };
    }

    /// Runs `post` on so many threads of its own while `drain` runs here.
    template <class Post, class Drain> double meanwhile(std::size_t threads, Post post, Drain drain)
    {
        const Stopwatch watch(Stopwatch::Kind::wall);
        std::vector<std::thread> posters;
        for (std::size_t i = 0; i < threads; ++i)
            posters.emplace_back(post);
        drain();
        const double elapsed = watch.elapsed();
        for (std::thread& poster : posters)
            poster.join();
        return elapsed;
    }

    double postFromThreads(std::size_t count, std::size_t threads)
    {
        const Ref<NSRunLoop> loop = NSRunLoop::cls().mainRunLoop();
        std::size_t ran = 0; // only touched here: the main queue is serial
        const auto post = [&ran, share = count / threads] {
            const dispatch_queue_t queue = dispatch_get_main_queue();
            for (std::size_t i = 0; i < share; ++i)
                dispatch_async(queue, [&ran] { ++ran; });
        };
        return meanwhile(threads, post, [&] {
            while (ran < count)
                loop->runMode_beforeDate(nullptr, NSDate::cls().distantFuture().get());
        });
    }

    double postFromThreadsBare(std::size_t count, std::size_t threads)
    {
        std::mutex mutex;
        std::condition_variable changed;
        std::vector<std::function<void()>> queue;
        std::size_t ran = 0;
        const auto post = [&, share = count / threads] {
            for (std::size_t i = 0; i < share; ++i) {
                const std::lock_guard guard(mutex);
                queue.emplace_back([&ran] { ++ran; });
                changed.notify_one();
            }
        };
        return meanwhile(threads, post, [&] {
            std::vector<std::function<void()>> taken;
            while (ran < count) {
                std::unique_lock lock(mutex);
                changed.wait(lock, [&] { return !queue.empty(); });
                taken.swap(queue);
                lock.unlock();
                for (const auto& closure : taken)
                    closure();
                taken.clear();
            }
        });
    }

    Pair fromThreads(std::size_t threads)
    {
        return { [=](std::size_t count) { return postFromThreads(count, threads); },
            [=](std::size_t count) { return postFromThreadsBare(count, threads); }, kPosts, 7 };
    }

    Reading allocations()
    {
        constexpr std::size_t kClosures = 100'000;
        postAndRun(kClosures); // what the queue keeps for the next time is there now
        const std::size_t before = allocationsMade();
        postAndRun(kClosures);
        return { static_cast<double>(allocationsMade() - before) / kClosures };
    }

}

void addDispatch(Plan& plan)
{
    plan.time("post and run 1,000,000 closures, same thread", timesFloor(20.0 / 9), [] {
        return Pair { postAndRun, postAndRunBare(), kPosts, 9 };
    });
    // Times and not ratios: how two threads meet at a lock changes the floor several times over.
    plan.time("post and run 1,000,000 closures, one other thread", atMost(100),
        [] { return fromThreads(1); });
    plan.time("post and run 1,000,000 closures, four threads", atMost(100),
        [] { return fromThreads(4); });
    plan.read("blocks of memory asked for by a posted closure", "blocks", kNoBudget, allocations);
}

}
