// SPDX-License-Identifier: Apache-2.0
#include <atomic>
#include <random>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "core/BlockAfterDelay.h"
#include "core/NSObject+SelectorAndBlockTimeout.h"
#include "foundation/Clock.h"
#include "foundation/Dispatch.h"
#include "support/Rounds.h"
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
        EXPECT_EQ(outOfOrder, 0);
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
    }

    TEST(ManyClosures, WithDelaysRunOnceEachNeverEarlyAndAtMostFiveMillisecondsLate)
    {
        test::VirtualClock clock;
        std::mt19937 random(7);
        const int count = rounds(10000);
        int ran = 0;
        int early = 0;
        int late = 0;
        for (int i = 0; i < count; ++i) {
            const double delay = static_cast<double>(random() % 1000000) / 1e6;
            const std::int64_t due = Clock::now() + static_cast<std::int64_t>(delay * 1e9);
            blockAfterDelay(delay, [&, due] {
                ++ran;
                early += Clock::now() < due;
                late += Clock::now() > due + 5'000'000;
            });
        }
        for (int step = 0; step < 1100; ++step)
            clock.advance(0.001);
        EXPECT_EQ(ran, count);
        EXPECT_EQ(early, 0);
        EXPECT_EQ(late, 0);
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
    }

}
}
