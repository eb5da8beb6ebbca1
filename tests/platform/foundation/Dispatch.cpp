// SPDX-License-Identifier: Apache-2.0
#include "foundation/Dispatch.h"

#include <algorithm>
#include <atomic>
#include <gtest/gtest.h>
#include <limits>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "foundation/NSRunLoop.h"
#include "foundation/NSThread.h"
#include "runtime/NSException.h"
#include "support/Memory.h"
#include "support/VirtualClock.h"

using namespace brindle;
using brindle::test::VirtualClock;

namespace {

void turn() { NSRunLoop::cls().mainRunLoop()->runUntilIdle(NSDefaultRunLoopMode); }

dispatch_queue_t global() { return dispatch_get_global_queue(DISPATCH_QUEUE_PRIORITY_DEFAULT, 0); }

dispatch_time_t inTenSeconds() { return dispatch_time(DISPATCH_TIME_NOW, 10'000'000'000); }

/// Raises the number of closures that run at the same time to what `wanted` says, or waits for ever.
void meet(std::atomic<int>& here, int wanted)
{
    ++here;
    while (here < wanted)
        std::this_thread::yield();
}

}

TEST(DispatchTime, SaturatesInsteadOfWrapping)
{
    constexpr auto kMost = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(dispatch_time(DISPATCH_TIME_NOW, kMost), DISPATCH_TIME_FOREVER);
    EXPECT_EQ(dispatch_time(DISPATCH_TIME_FOREVER, -1), DISPATCH_TIME_FOREVER);
}

TEST(DispatchTime, OfANegativeDeltaIsPastAndNotNow)
{
    VirtualClock clock;
    const auto now = static_cast<dispatch_time_t>(Clock::now());
    EXPECT_EQ(dispatch_time(DISPATCH_TIME_NOW, -1000), now - 1000);
    EXPECT_EQ(dispatch_time(5, std::numeric_limits<std::int64_t>::min()), 1u);
}

TEST(SaturatingInteger, CutsTowardsZero)
{
    EXPECT_EQ(saturatingInteger(1.9), 1);
    EXPECT_EQ(saturatingInteger(-1.9), -1);
    EXPECT_EQ(saturatingInteger(0.0000000015 * 1e9), 1);
}

TEST(SaturatingInteger, StopsAtTheLimits)
{
    EXPECT_EQ(saturatingInteger(1e300), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(saturatingInteger(-INFINITY), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(saturatingInteger(NAN), 0);
}

TEST(DispatchMainQueue, RunsInOrderOnTheMainThread)
{
    std::string order;
    bool isMain = false;
    dispatch_async(dispatch_get_main_queue(), [&] { order += "a"; });
    dispatch_async(dispatch_get_main_queue(), [&] {
        order += "b";
        isMain = NSThread::cls().isMainThread();
    });
    EXPECT_EQ(order, "");
    turn();
    EXPECT_EQ(order, "ab");
    EXPECT_TRUE(isMain);
}

TEST(DispatchMainQueue, RunsInEachCommonMode)
{
    for (NSString* mode : { NSDefaultRunLoopMode.get(), NSEventTrackingRunLoopMode.get(),
             NSModalPanelRunLoopMode.get() }) {
        bool ran = false;
        dispatch_async(dispatch_get_main_queue(), [&] { ran = true; });
        NSRunLoop::cls().mainRunLoop()->runUntilIdle(mode);
        EXPECT_TRUE(ran);
    }
}

TEST(DispatchMainQueue, KeepsTheOrderBetweenThreads)
{
    std::string order;
    std::thread([&] { dispatch_async(dispatch_get_main_queue(), [&] { order += "a"; }); }).join();
    dispatch_async(dispatch_get_main_queue(), [&] { order += "b"; });
    std::thread([&] { dispatch_async(dispatch_get_main_queue(), [&] { order += "c"; }); }).join();
    dispatch_async(dispatch_get_main_queue(), [&] { order += "d"; });
    turn();
    EXPECT_EQ(order, "abcd");
}

TEST(DispatchMainQueue, HoldsAClosureUntilItHasRun)
{
    auto probe = std::make_shared<int>(0);
    dispatch_async(dispatch_get_main_queue(), [probe] {});
    EXPECT_EQ(probe.use_count(), 2);
    turn();
    EXPECT_EQ(probe.use_count(), 1);
}

TEST(DispatchMainQueue, LetsAnExceptionOutOfTheRunLoopAndGoesOn)
{
    bool ran = false;
    dispatch_async(dispatch_get_main_queue(), [] { raise("Test", "thrown"); });
    dispatch_async(dispatch_get_main_queue(), [&] { ran = true; });
    EXPECT_THROW(turn(), Exception);
    turn();
    EXPECT_TRUE(ran);
}

TEST(DispatchMainQueue, TakesAClosureFromAThreadThatEnds)
{
    struct Last {
        ~Last()
        {
            if (target)
                dispatch_async(dispatch_get_main_queue(), [here = target] { *here = true; });
        }
        bool* target = nullptr;
    };
    bool ran = false;
    std::thread([&] {
        static thread_local Last last;
        last.target = &ran;
    }).join();
    turn();
    EXPECT_TRUE(ran);
}

TEST(DispatchDeathTest, EndsTheProcessForANullClosure)
{
    constexpr const char* kLine = "brindle: a null closure was handed to a queue";
    const dispatch_queue_t queue = dispatch_get_global_queue(0, 0);
    const Block<void()> none;
    const Ref<DispatchGroup> group = dispatch_group_create();
    dispatch_once_t once = 0;
    EXPECT_DEATH(dispatch_async(queue, none), kLine);
    EXPECT_DEATH(dispatch_sync(queue, none), kLine);
    EXPECT_DEATH(dispatch_after(DISPATCH_TIME_NOW, queue, none), kLine);
    EXPECT_DEATH(dispatch_group_async(group.get(), queue, none), kLine);
    EXPECT_DEATH(dispatch_group_notify(group.get(), queue, none), kLine);
    EXPECT_DEATH(dispatch_apply(0, queue, Block<void(std::size_t)>()), kLine);
    EXPECT_DEATH(dispatch_once(&once, none), kLine);
}
TEST(DispatchDeathTest, EndsTheProcessForANullQueue)
{
    constexpr const char* kLine = "brindle: a closure was handed to a null queue";
    const Block<void()> work = [] {};
    const Ref<DispatchGroup> group = dispatch_group_create();
    EXPECT_DEATH(dispatch_async(nullptr, work), kLine);
    EXPECT_DEATH(dispatch_sync(dispatch_get_global_queue(77, 0), work), kLine);
    EXPECT_DEATH(dispatch_barrier_async(nullptr, work), kLine);
    EXPECT_DEATH(dispatch_barrier_sync(nullptr, work), kLine);
    EXPECT_DEATH(dispatch_after(DISPATCH_TIME_NOW, nullptr, work), kLine);
    EXPECT_DEATH(dispatch_group_async(group.get(), nullptr, work), kLine);
    EXPECT_DEATH(dispatch_group_notify(group.get(), nullptr, work), kLine);
    EXPECT_DEATH(dispatch_apply(1, nullptr, [](std::size_t) {}), kLine);
}
TEST(DispatchDeathTest, EndsTheProcessForANullGroupOrSemaphore)
{
    const dispatch_queue_t queue = dispatch_get_global_queue(0, 0);
    const Block<void()> work = [] {};
    EXPECT_DEATH(dispatch_group_enter(nullptr), "brindle: a null group was used");
    EXPECT_DEATH(dispatch_group_leave(nullptr), "brindle: a null group was used");
    EXPECT_DEATH(dispatch_group_async(nullptr, queue, work), "brindle: a null group was used");
    EXPECT_DEATH(dispatch_group_notify(nullptr, queue, work), "brindle: a null group was used");
    EXPECT_DEATH(dispatch_group_wait(nullptr, 0), "brindle: a null group was used");
    EXPECT_DEATH(dispatch_semaphore_wait(nullptr, 0), "brindle: a null semaphore was used");
    EXPECT_DEATH(dispatch_semaphore_signal(nullptr), "brindle: a null semaphore was used");
}

TEST(DispatchMainQueueDeathTest, EndsTheProcessForASyncFromItself)
{
    EXPECT_DEATH(dispatch_sync(dispatch_get_main_queue(), [] {}),
        "brindle: dispatch_sync was called on the queue that it would wait for");
}

TEST(DispatchMainQueue, MakesASyncFromAnotherThreadWait)
{
    std::atomic<bool> done { false };
    bool ran = false;
    std::thread thread([&] {
        dispatch_sync(dispatch_get_main_queue(), [&] { ran = true; });
        done = true;
    });
    while (!done)
        turn();
    thread.join();
    EXPECT_TRUE(ran);
}

TEST(DispatchAfter, RunsAPastMomentInALaterTurn)
{
    VirtualClock clock;
    bool ran = false;
    dispatch_after(
        dispatch_time(DISPATCH_TIME_NOW, -1), dispatch_get_main_queue(), [&] { ran = true; });
    EXPECT_FALSE(ran);
    turn();
    EXPECT_TRUE(ran);
}

TEST(DispatchAfter, KeepsTheOrderOfEqualMoments)
{
    VirtualClock clock;
    std::string order;
    const dispatch_time_t when = dispatch_time(DISPATCH_TIME_NOW, NSEC_PER_SEC);
    for (const char c : std::string("abc"))
        dispatch_after(when, dispatch_get_main_queue(), [&order, c] { order += c; });
    clock.advance(0.999);
    EXPECT_EQ(order, "");
    clock.advance(0.001);
    EXPECT_EQ(order, "abc");
}

TEST(DispatchAfter, RunsWhileAControlTracks)
{
    VirtualClock clock;
    bool ran = false;
    dispatch_after(
        dispatch_time(DISPATCH_TIME_NOW, 1), dispatch_get_main_queue(), [&] { ran = true; });
    Clock::advance(1);
    NSRunLoop::cls().mainRunLoop()->runUntilIdle(NSEventTrackingRunLoopMode);
    EXPECT_TRUE(ran);
}

TEST(DispatchAfter, ReachesOtherQueuesUnderAVirtualClock)
{
    VirtualClock clock;
    std::atomic<bool> ran { false };
    dispatch_after(dispatch_time(DISPATCH_TIME_NOW, 2'000'000'000), global(), [&] { ran = true; });
    clock.advance(1.9);
    EXPECT_FALSE(ran);
    clock.advance(0.2);
    EXPECT_TRUE(ran);
}

TEST(DispatchAfter, ReachesOtherQueuesInRealTime)
{
    const auto semaphore = dispatch_semaphore_create(0);
    dispatch_after(dispatch_time(DISPATCH_TIME_NOW, 1'000'000), global(),
        [&] { dispatch_semaphore_signal(semaphore.get()); });
    EXPECT_EQ(dispatch_semaphore_wait(semaphore.get(), DISPATCH_TIME_FOREVER), 0);
}

TEST(DispatchSemaphores, AreWaitedForUntilMomentsThatNoClockReaches)
{
    for (const dispatch_time_t limit :
        { std::numeric_limits<dispatch_time_t>::max() / 2, DISPATCH_TIME_FOREVER - 1 }) {
        const auto semaphore = dispatch_semaphore_create(0);
        dispatch_after(dispatch_time(DISPATCH_TIME_NOW, 10'000'000), global(),
            [semaphore] { dispatch_semaphore_signal(semaphore.get()); });
        EXPECT_EQ(dispatch_semaphore_wait(semaphore.get(), limit), 0);
    }
}

TEST(DispatchAfter, KeepsItsMomentWhenTheClockRunsByItselfAgain)
{
    const Ref<DispatchSemaphore> end = dispatch_semaphore_create(0);
    {
        const VirtualClock clock;
        dispatch_after(dispatch_time(DISPATCH_TIME_NOW, 1'000'000), global(),
            [end] { dispatch_semaphore_signal(end.get()); });
        const dispatch_time_t later = dispatch_time(DISPATCH_TIME_NOW, 20'000'000);
        EXPECT_NE(dispatch_semaphore_wait(end.get(), later), 0); // the clock stands still
    }
    EXPECT_EQ(dispatch_semaphore_wait(end.get(), inTenSeconds()), 0);
}

TEST(DispatchAfter, DropsWhatIsNeverDue)
{
    auto probe = std::make_shared<int>(0);
    dispatch_after(DISPATCH_TIME_FOREVER, dispatch_get_main_queue(), [probe] {});
    EXPECT_EQ(probe.use_count(), 1);
}

TEST(DispatchGlobalQueue, ExistsForFourPriorities)
{
    for (const long priority : { 2, 0, -2, -32768 })
        EXPECT_NE(dispatch_get_global_queue(priority, 0), nullptr);
    EXPECT_EQ(dispatch_get_global_queue(1, 0), nullptr);
    EXPECT_EQ(global(), global());
}

TEST(DispatchGlobalQueue, RunsSideBySide)
{
    const auto group = dispatch_group_create();
    std::atomic<int> here { 0 };
    for (int i = 0; i < 2; ++i)
        dispatch_group_async(group.get(), global(), [&] { meet(here, 2); });
    dispatch_group_wait(group.get(), DISPATCH_TIME_FOREVER);
    EXPECT_EQ(here, 2);
}

TEST(DispatchGlobalQueue, GoesOnWhenItsTasksBlock)
{
    const auto group = dispatch_group_create();
    const auto gate = dispatch_semaphore_create(0);
    for (int i = 0; i < 20; ++i)
        dispatch_group_async(group.get(), global(),
            [&] { dispatch_semaphore_wait(gate.get(), DISPATCH_TIME_FOREVER); });
    dispatch_group_async(group.get(), global(), [&] {
        for (int i = 0; i < 20; ++i)
            dispatch_semaphore_signal(gate.get());
    });
    EXPECT_EQ(dispatch_group_wait(group.get(), DISPATCH_TIME_FOREVER), 0);
}

TEST(DispatchGlobalQueue, GoesOnWhenItsTasksBlockInTheirOwnWay)
{
    const auto group = dispatch_group_create();
    std::mutex gate;
    gate.lock();
    for (int i = 0; i < 6; ++i)
        dispatch_group_async(group.get(), global(), [&] { const std::lock_guard guard(gate); });
    const auto last = dispatch_semaphore_create(0);
    dispatch_group_async(group.get(), global(), [&] { dispatch_semaphore_signal(last.get()); });
    EXPECT_EQ(dispatch_semaphore_wait(last.get(), DISPATCH_TIME_FOREVER), 0);
    gate.unlock();
    dispatch_group_wait(group.get(), DISPATCH_TIME_FOREVER);
}

TEST(DispatchGlobalQueueDeathTest, EndsTheProcessForAnUncaughtException)
{
    EXPECT_DEATH(
        {
            dispatch_async(global(), [] { raise("Odd", "thrown in a task"); });
            dispatch_semaphore_wait(dispatch_semaphore_create(0).get(), DISPATCH_TIME_FOREVER);
        },
        "\\*\\*\\* Terminating app due to uncaught exception 'Odd', reason: 'thrown in a task'");
}

TEST(DispatchSerialQueue, RunsOneAfterAnother)
{
    const auto queue = dispatch_queue_create("serial", DISPATCH_QUEUE_SERIAL);
    std::vector<int> order;
    for (int i = 0; i < 1000; ++i)
        dispatch_async(queue.get(), [&order, i] { order.push_back(i); });
    dispatch_sync(queue.get(), [] {});
    ASSERT_EQ(order.size(), 1000u);
    for (int i = 0; i < 1000; ++i)
        EXPECT_EQ(order[static_cast<std::size_t>(i)], i);
}

TEST(DispatchSerialQueue, RunsASyncOnTheCallersThreadWhenItIsFree)
{
    const auto queue = dispatch_queue_create(nullptr, DISPATCH_QUEUE_SERIAL);
    std::thread::id seen;
    dispatch_sync(queue.get(), [&] { seen = std::this_thread::get_id(); });
    EXPECT_EQ(seen, std::this_thread::get_id());
    EXPECT_STREQ(dispatch_queue_get_label(queue.get()), "");
}

TEST(DispatchSerialQueue, IsFreeAgainAfterASyncThrew)
{
    const auto queue = dispatch_queue_create("q", DISPATCH_QUEUE_SERIAL);
    EXPECT_THROW(dispatch_sync(queue.get(), [] { raise("Test", "thrown"); }), Exception);
    bool ran = false;
    dispatch_sync(queue.get(), [&] { ran = true; });
    EXPECT_TRUE(ran);
}

TEST(DispatchSerialQueueDeathTest, EndsTheProcessForASyncFromItself)
{
    const auto queue = dispatch_queue_create("q", DISPATCH_QUEUE_SERIAL);
    EXPECT_DEATH(
        dispatch_sync(queue.get(), [&] { dispatch_sync(queue.get(), [] {}); }), "would wait for");
}

TEST(DispatchSerialQueue, LivesUntilItsClosuresHaveRun)
{
    const auto done = dispatch_semaphore_create(0);
    dispatch_async(dispatch_queue_create("q", DISPATCH_QUEUE_SERIAL).get(),
        [&] { dispatch_semaphore_signal(done.get()); });
    EXPECT_EQ(dispatch_semaphore_wait(done.get(), DISPATCH_TIME_FOREVER), 0);
}

TEST(DispatchConcurrentQueue, RunsABarrierAlone)
{
    const auto queue = dispatch_queue_create("c", DISPATCH_QUEUE_CONCURRENT);
    std::atomic<int> running { 0 };
    std::atomic<int> begun { 0 };
    int beside = -1;
    int before = -1;
    const auto work = [&] {
        ++running;
        ++begun;
        std::this_thread::yield();
        --running;
    };
    for (int i = 0; i < 50; ++i)
        dispatch_async(queue.get(), work);
    dispatch_barrier_async(queue.get(), [&] {
        beside = running;
        before = begun;
    });
    for (int i = 0; i < 50; ++i)
        dispatch_async(queue.get(), work);
    dispatch_barrier_sync(queue.get(), [] {});
    EXPECT_EQ(beside, 0);
    EXPECT_EQ(before, 50);
    EXPECT_EQ(begun, 100);
}

TEST(DispatchApply, RunsEachIndexOnce)
{
    std::vector<std::atomic<int>> counts(1000);
    dispatch_apply(1000, global(), [&](std::size_t i) { ++counts[i]; });
    for (const auto& count : counts)
        EXPECT_EQ(count, 1);
}

TEST(DispatchApply, RunsInABarrierOfItsOwnQueue)
{
    const Ref<DispatchQueue> queue = dispatch_queue_create("own", DISPATCH_QUEUE_CONCURRENT);
    const auto runs = std::make_shared<std::atomic<int>>(0);
    const Ref<DispatchSemaphore> end = dispatch_semaphore_create(0);
    dispatch_barrier_async(queue.get(), [queue, runs, end] {
        dispatch_apply(4, queue.get(), [runs](std::size_t) { ++*runs; });
        dispatch_semaphore_signal(end.get());
    });
    EXPECT_EQ(dispatch_semaphore_wait(end.get(), inTenSeconds()), 0);
    EXPECT_EQ(*runs, 4);
}

TEST(DispatchApply, DoesNotWaitForABarrierThatWaitsForItsCaller)
{
    const Ref<DispatchQueue> queue = dispatch_queue_create("own", DISPATCH_QUEUE_CONCURRENT);
    const auto runs = std::make_shared<std::atomic<int>>(0);
    const Ref<DispatchSemaphore> end = dispatch_semaphore_create(0);
    dispatch_async(queue.get(), [queue, runs, end] {
        dispatch_barrier_async(queue.get(), [] {});
        dispatch_apply(4, queue.get(), [runs](std::size_t) { ++*runs; });
        dispatch_semaphore_signal(end.get());
    });
    EXPECT_EQ(dispatch_semaphore_wait(end.get(), inTenSeconds()), 0);
    EXPECT_EQ(*runs, 4);
}

TEST(DispatchApply, LeavesItsClosureToTheCallerWhenItReturns)
{
    const Ref<DispatchQueue> queue = dispatch_queue_create("own", DISPATCH_QUEUE_CONCURRENT);
    const Ref<DispatchSemaphore> end = dispatch_semaphore_create(0);
    dispatch_barrier_async(
        queue.get(), [end] { EXPECT_EQ(dispatch_semaphore_wait(end.get(), inTenSeconds()), 0); });
    const auto probe = std::make_shared<int>(0);
    dispatch_apply(4, queue.get(), [probe](std::size_t) {});
    EXPECT_EQ(probe.use_count(), 1); // though helpers wait for the barrier to end
    dispatch_semaphore_signal(end.get());
    dispatch_barrier_sync(queue.get(), [] {});
}

TEST(DispatchApply, LeavesNothingBehindWhereABarrierWouldHoldItBack)
{
    const Ref<DispatchQueue> queue = dispatch_queue_create("own", DISPATCH_QUEUE_CONCURRENT);
    const auto growth = [queue] {
        const std::size_t before = test::allocatedBytes();
        for (int i = 0; i < 20'000; ++i)
            dispatch_apply(4, queue.get(), [](std::size_t) {});
        return static_cast<std::ptrdiff_t>(test::allocatedBytes() - before);
    };
    std::ptrdiff_t inside = 0;
    dispatch_barrier_sync(queue.get(), [&] { inside = growth(); });
    std::ptrdiff_t ahead = 0;
    dispatch_sync(queue.get(), [&] {
        dispatch_barrier_async(queue.get(), [] {});
        ahead = growth();
    });
    EXPECT_LT(std::max(inside, ahead), 1'000'000);
}

TEST(DispatchOnce, RunsOnceAmongManyThreads)
{
    dispatch_once_t once = 0;
    std::atomic<int> runs { 0 };
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([&] {
            dispatch_once(&once, [&] { ++runs; });
            EXPECT_EQ(runs, 1);
        });
    for (auto& thread : threads)
        thread.join();
}

TEST(DispatchOnce, RunsAgainAfterAnException)
{
    dispatch_once_t once = 0;
    EXPECT_THROW(dispatch_once(&once, [] { raise("Test", "thrown"); }), Exception);
    bool ran = false;
    dispatch_once(&once, [&] { ran = true; });
    EXPECT_TRUE(ran);
}

TEST(DispatchGroup, NotifiesWhenItIsEmpty)
{
    const auto group = dispatch_group_create();
    bool told = false;
    dispatch_group_enter(group.get());
    dispatch_group_notify(group.get(), dispatch_get_main_queue(), [&] { told = true; });
    turn();
    EXPECT_FALSE(told);
    dispatch_group_leave(group.get());
    turn();
    EXPECT_TRUE(told);
}

TEST(DispatchGroup, WaitsOnlyUntilTheLimit)
{
    const auto group = dispatch_group_create();
    dispatch_group_enter(group.get());
    EXPECT_NE(dispatch_group_wait(group.get(), DISPATCH_TIME_NOW), 0);
    EXPECT_NE(dispatch_group_wait(group.get(), dispatch_time(DISPATCH_TIME_NOW, 1'000'000)), 0);
    dispatch_group_leave(group.get());
    EXPECT_EQ(dispatch_group_wait(group.get(), DISPATCH_TIME_NOW), 0);
}

TEST(DispatchSemaphore, CountsWhatWasGiven)
{
    const auto semaphore = dispatch_semaphore_create(1);
    EXPECT_EQ(dispatch_semaphore_wait(semaphore.get(), DISPATCH_TIME_NOW), 0);
    EXPECT_NE(dispatch_semaphore_wait(semaphore.get(), DISPATCH_TIME_NOW), 0);
    dispatch_semaphore_signal(semaphore.get());
    EXPECT_EQ(dispatch_semaphore_wait(semaphore.get(), DISPATCH_TIME_NOW), 0);
    EXPECT_FALSE(dispatch_semaphore_create(-1));
}

TEST(Dispatch, RunsEachClosureOfManyThreadsOnceAndInTheirOrder)
{
    constexpr int kThreads = 8;
    constexpr int kEach = 5000;
    std::vector<int> last(kThreads, -1);
    int total = 0;
    bool inOrder = true;
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([&, t] {
            for (int i = 0; i < kEach; ++i)
                dispatch_async(dispatch_get_main_queue(), [&, t, i] {
                    int& before = last[static_cast<std::size_t>(t)];
                    inOrder = inOrder && before == i - 1;
                    before = i;
                    ++total;
                });
        });
    while (total < kThreads * kEach)
        NSRunLoop::cls().mainRunLoop()->runMode_beforeDate(nullptr, nullptr);
    for (auto& thread : threads)
        thread.join();
    EXPECT_TRUE(inOrder);
}
