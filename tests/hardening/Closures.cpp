// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <atomic>
#include <random>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "core/BlockAfterDelay.h"
#include "core/NSObject+SelectorAndBlockTimeout.h"
#include "foundation/Clock.h"
#include "foundation/Dispatch.h"
#include "foundation/NSDate.h"
#include "foundation/NSRunLoop.h"
#include "support/AheadOfOthers.h"
#include "support/Figures.h"
#include "support/VirtualClock.h"

namespace brindle {
namespace {

    using test::rounds;

    constexpr int kThreads = 8;

    TEST(ManyClosures, OfEightThreadsRunOnceEachAndEveryThreadsInItsOrder)
    {
        test::VirtualClock clock;
        const int each = rounds(1000000) / kThreads;
        std::vector<int> next(kThreads, 0); // touched on the main thread only
        int outOfOrder = 0;
        std::vector<std::thread> threads;
        for (int t = 0; t < kThreads; ++t)
            threads.emplace_back([&, t] {
                for (int i = 0; i < each; ++i)
                    dispatch_async(dispatch_get_main_queue(), [&next, &outOfOrder, t, i] {
                        outOfOrder += next[static_cast<std::size_t>(t)]++ != i;
                    });
            });
        for (std::thread& thread : threads)
            thread.join();
        clock.advance(0);
        EXPECT_EQ(next, std::vector<int>(kThreads, each));
        test::publish({ "closures of 8 threads on the main queue: lost, twice or out of order",
            long { each } * kThreads, static_cast<double>(outOfOrder), "closures", 0 });
    }

    TEST(ManyClosures, OnAllQueuesRunOnceEach)
    {
        const int each = rounds(1000000) / kThreads;
        std::vector<std::atomic<int>> ran(static_cast<std::size_t>(each) * kThreads);
        const auto group = dispatch_group_create();
        std::vector<std::thread> threads;
        for (std::size_t t = 0; t < kThreads; ++t)
            threads.emplace_back([&, t] {
                for (std::size_t i = t; i < ran.size(); i += kThreads)
                    dispatch_group_async(group.get(),
                        dispatch_get_global_queue(DISPATCH_QUEUE_PRIORITY_DEFAULT, 0),
                        [&ran, i] { ++ran[i]; });
            });
        for (std::thread& thread : threads)
            thread.join();
        dispatch_group_wait(group.get(), DISPATCH_TIME_FOREVER);
        for (const std::atomic<int>& count : ran)
            ASSERT_EQ(count, 1);
        test::publish({ "closures of 8 threads on all queues: lost or twice",
            long { each } * kThreads, 0, "closures", 0 });
    }

    TEST(ManyClosures, WithDelaysRunOnceEachNeverEarlyAndAtMostFiveMillisecondsLate)
    {
        test::VirtualClock clock;
        std::mt19937 random(7);
        const int count = rounds(10000);
        int ran = 0;
        int early = 0;
        std::int64_t latest = 0;
        for (int i = 0; i < count; ++i) {
            const double delay = static_cast<double>(random() % 1000000) / 1e6;
            const std::int64_t due = Clock::now() + static_cast<std::int64_t>(delay * 1e9);
            blockAfterDelay(delay, [&, due] {
                ++ran;
                early += Clock::now() < due;
                latest = std::max(latest, Clock::now() - due);
            });
        }
        for (int step = 0; step < 1100; ++step)
            clock.advance(0.001);
        EXPECT_EQ(ran, count);
        EXPECT_EQ(early, 0);
        test::publish({ "delayed closures: lateness, by a clock turned by hand", count,
            static_cast<double>(latest) / 1e6, "ms", 5 });
    }

    TEST(ManyClosures, WithDelaysByTheSystemsClockComeAtMostFiveMillisecondsLate)
    {
        const test::AheadOfOthers ahead;
        constexpr int kCount = 10000;
        test::Slowest lateness;
        std::mt19937 random(7);
        for (int i = 0; i < kCount; ++i) {
            const std::int64_t delay = random() % 1'000'000'000;
            const std::int64_t due = Clock::now() + delay;
            blockAfterDelay(static_cast<double>(delay) / 1e9,
                [&, due] { lateness.add(std::chrono::nanoseconds(Clock::now() - due)); });
        }
        while (lateness.rounds() < kCount)
            NSRunLoop::cls().mainRunLoop()->runMode_beforeDate(
                NSDefaultRunLoopMode, NSDate::cls().dateWithTimeIntervalSinceNow(1).get());
        test::publish({ "delayed closures within a second: lateness", kCount,
            lateness.milliseconds(), "ms", 5 });
    }

    TEST(ManyClosures, OfATimeoutThatIsRestartedEachTimeRunOnlyTheLast)
    {
        test::VirtualClock clock;
        const auto object = make<NSObject>();
        const int restarts = rounds(10000);
        int ran = 0;
        int last = -1;
        for (int i = 0; i < restarts; ++i) {
            timeoutToBlock_afterDelay(
                object.get(),
                [&, i] {
                    ++ran;
                    last = i;
                },
                0.1);
            clock.advance(0.01);
        }
        clock.advance(1);
        EXPECT_EQ(ran, 1);
        EXPECT_EQ(last, restarts - 1);
        test::publish({ "restarts of a timeout: closures that ran besides the last", restarts,
            ran - 1.0, "closures", 0 });
    }

}
}
