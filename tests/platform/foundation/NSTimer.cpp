// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSTimer.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "foundation/NSDate.h"
#include "foundation/NSRunLoop.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"
#include "support/VirtualClock.h"

using brindle::test::VirtualClock;

namespace brindle {

class TimerListener : public NSObject {
    BRINDLE_OBJECT(TimerListener, NSObject)

public:
    int plain = 0;
    NSTimer* received = nullptr;
};

template <> struct TimerListener::Methods<struct Listening> {
    static void tick(TimerListener& self) { ++self.plain; }
    static void tickTimer(TimerListener& self, NSTimer* timer) { self.received = timer; }
    static void table(Builder& t)
    {
        t.methods({ { "tick", imp<tick> }, { "tick:", imp<tickTimer> } });
    }
};
BRINDLE_RECORD(TimerListener, Listening)

namespace {

    Ref<NSTimer> scheduled(double seconds, bool repeats, const Block<void(NSTimer*)>& block)
    {
        return NSTimer::cls().scheduledTimerWithTimeInterval_repeats_block(seconds, repeats, block);
    }

}

TEST(NSTimer, FiresOnceAndIsInvalidThen)
{
    VirtualClock clock;
    int fired = 0;
    const auto timer = scheduled(1, false, [&](NSTimer*) { ++fired; });
    clock.advance(0.9);
    EXPECT_EQ(fired, 0);
    clock.advance(5);
    EXPECT_EQ(fired, 1);
    EXPECT_FALSE(timer->isValid());
}

TEST(NSTimer, WaitsNoLongerThanItIsToldHoweverShort)
{
    VirtualClock clock;
    int fired = 0;
    const auto timer = scheduled(0.00002, false, [&](NSTimer*) { ++fired; });
    clock.advance(0.00001);
    EXPECT_EQ(fired, 0);
    clock.advance(0.00001);
    EXPECT_EQ(fired, 1);
}

TEST(NSTimer, FiresInTheOrderOfItsDelaysHoweverShort)
{
    VirtualClock clock;
    std::string log;
    scheduled(0.00005, false, [&](NSTimer*) { log += "c"; });
    scheduled(0.00002, false, [&](NSTimer*) { log += "b"; });
    scheduled(0, false, [&](NSTimer*) { log += "a"; });
    const auto repeating = scheduled(0.00005, true, [&](NSTimer*) { log += "d"; });
    clock.advance(0.00015);
    repeating->invalidate();
    EXPECT_EQ(log, "abcd");
}

TEST(NSTimer, LetsALoopBeIdleHoweverShortItsDelaysAre)
{
    VirtualClock clock;
    int fired = 0;
    Ref<NSTimer> latest;
    std::function<void(NSTimer*)> again = [&](NSTimer*) {
        if (++fired < 10'000) // else the clock would stand still for ever
            latest = scheduled(1e-10, false, again);
    };
    again(nullptr);
    NSRunLoop::cls().mainRunLoop()->runUntilIdle(NSDefaultRunLoopMode);
    EXPECT_EQ(fired, 1);
    clock.advance(0.001);
    EXPECT_LE(fired, 1001);
    latest->invalidate();
}

TEST(NSTimer, LetsALoopBeIdleHoweverLongItsHandlersTake)
{
    int fired = 0;
    std::vector<Ref<NSTimer>> made;
    std::function<void(NSTimer*)> again = [&](NSTimer*) {
        const std::int64_t end = Clock::now() + 2000; // nanoseconds: the next one is due by then
        while (Clock::now() < end) { }
        if (++fired < 10'000)
            made.push_back(scheduled(0, false, again));
    };
    again(nullptr);
    const std::int64_t begin = Clock::now();
    while (Clock::now() < begin + 2000) { }
    EXPECT_TRUE(NSRunLoop::cls().mainRunLoop()->runUntilIdle(NSDefaultRunLoopMode));
    EXPECT_LE(fired, 3);
    made.back()->invalidate();
}

TEST(NSTimer, ChainsKeepALoopFromNothingThatIsDue)
{
    // One that sets up its like takes so long that another one, which was there before, falls due.
    std::string log;
    Ref<NSTimer> next;
    const auto chain = scheduled(0, false, [&](NSTimer*) {
        next = scheduled(0, false, [&](NSTimer*) { log += "c"; });
        const std::int64_t end = Clock::now() + 3'000'000;
        while (Clock::now() < end) { }
        log += "a";
    });
    const auto other = scheduled(0.001, false, [&](NSTimer*) { log += "b"; });
    const std::int64_t begin = Clock::now();
    while (Clock::now() < begin + 2000) { }
    NSRunLoop::cls().mainRunLoop()->runUntilIdle(NSDefaultRunLoopMode);
    EXPECT_NE(log.find('b'), std::string::npos) << log;
}

TEST(NSTimer, KeepsToTheMomentsOfADateAlsoWhenAHandlerMakesIt)
{
    VirtualClock clock;
    Ref<NSTimer> made;
    std::vector<std::int64_t> times;
    const std::int64_t begin = Clock::now();
    scheduled(1, false, [&](NSTimer*) {
        made = alloc<NSTimer>()->initWithFireDate_interval_repeats_block(
            NSDate::cls().dateWithTimeIntervalSinceNow(-0.75).get(), 1, true,
            [&](NSTimer*) { times.push_back((Clock::now() - begin) / 1'000'000); });
        EXPECT_NEAR(made->fireDate()->timeIntervalSinceNow(), -0.75, 1e-6);
        NSRunLoop::cls().mainRunLoop()->addTimer_forMode(made.get(), NSDefaultRunLoopMode);
    });
    clock.advance(2.5);
    made->invalidate();
    EXPECT_EQ(times, (std::vector<std::int64_t> { 1000, 1250, 2250 }));
}

TEST(NSTimer, LetsAClockGoOnThatItsHandlersSetToNow)
{
    VirtualClock clock;
    const std::vector<std::function<Ref<NSTimer>(NSTimer*, const Block<void(NSTimer*)>&)>> ways {
        [](NSTimer* timer, const auto&) {
            timer->setFireDate(NSDate::cls().date().get());
            return Ref<NSTimer>(timer);
        },
        [](NSTimer* timer, const auto&) {
            timer->setFireDate(NSDate::cls().distantPast().get());
            return Ref<NSTimer>(timer);
        },
        [](NSTimer*, const auto& handler) {
            const Ref<NSTimer> next = alloc<NSTimer>()->initWithFireDate_interval_repeats_block(
                NSDate::cls().date().get(), 0, false, handler);
            NSRunLoop::cls().currentRunLoop()->addTimer_forMode(next.get(), NSDefaultRunLoopMode);
            return next;
        },
    };
    for (const auto& way : ways) {
        int fired = 0;
        Ref<NSTimer> latest;
        std::function<void(NSTimer*)> again = [&](NSTimer* timer) {
            if (++fired < 10'000)
                latest = way(timer, again);
        };
        latest = scheduled(0, false, again);
        clock.advance(0.001);
        EXPECT_LE(fired, 1001);
        EXPECT_GE(fired, 900);
        latest->invalidate();
    }
}

TEST(NSTimer, RepeatsWithoutDrift)
{
    VirtualClock clock;
    const std::int64_t begin = Clock::now();
    std::vector<std::int64_t> times;
    const auto timer = scheduled(0.25, true, [&](NSTimer*) {
        times.push_back(Clock::now() - begin);
        Clock::advance(0.1);
    });
    clock.advance(1);
    timer->invalidate();
    EXPECT_EQ(times, (std::vector<std::int64_t> { 250000000, 500000000, 750000000, 1000000000 }));
}

TEST(NSTimer, LeavesOutMomentsThatWereMissed)
{
    VirtualClock clock;
    const std::int64_t begin = Clock::now();
    std::vector<std::int64_t> times;
    const auto timer = scheduled(1, true, [&](NSTimer*) { times.push_back(Clock::now() - begin); });
    Clock::advance(3.5);
    clock.advance(1);
    timer->invalidate();
    EXPECT_EQ(times, (std::vector<std::int64_t> { 3500000000, 4000000000 }));
}

TEST(NSTimer, SendsASelectorWithoutParameter)
{
    VirtualClock clock;
    const auto listener = make<TimerListener>();
    NSTimer::cls().scheduledTimerWithTimeInterval_target_selector_userInfo_repeats(
        1, listener.get(), selector<"tick">, nullptr, false);
    clock.advance(1);
    EXPECT_EQ(listener->plain, 1);
}

TEST(NSTimer, SendsItselfToASelectorWithAParameter)
{
    VirtualClock clock;
    const auto listener = make<TimerListener>();
    const auto timer
        = NSTimer::cls().scheduledTimerWithTimeInterval_target_selector_userInfo_repeats(
            1, listener.get(), selector<"tick:">, nullptr, false);
    clock.advance(1);
    EXPECT_EQ(listener->received, timer.get());
}

TEST(NSTimer, KeepsItsTargetUntilItIsInvalid)
{
    VirtualClock clock;
    auto listener = make<TimerListener>();
    const WeakRef<TimerListener> weak(listener);
    const auto timer
        = NSTimer::cls().scheduledTimerWithTimeInterval_target_selector_userInfo_repeats(
            1, listener.get(), selector<"tick">, nullptr, true);
    listener = nullptr;
    clock.advance(2);
    EXPECT_TRUE(weak.get());
    timer->invalidate();
    EXPECT_FALSE(weak.get());
}

TEST(NSTimer, DoesNotFireAfterItWasInvalidated)
{
    VirtualClock clock;
    int fired = 0;
    scheduled(1, false, [&](NSTimer*) { ++fired; })->invalidate();
    clock.advance(2);
    EXPECT_EQ(fired, 0);
}

TEST(NSTimer, CanBeInvalidatedWhileItFires)
{
    VirtualClock clock;
    int fired = 0;
    scheduled(1, true, [&](NSTimer* timer) {
        ++fired;
        timer->invalidate();
    });
    clock.advance(5);
    EXPECT_EQ(fired, 1);
}

TEST(NSTimer, GoesOnRepeatingAfterItThrew)
{
    VirtualClock clock;
    int fired = 0;
    const auto timer = scheduled(1, true, [&](NSTimer*) {
        if (++fired == 1)
            raise("Test", "thrown");
    });
    EXPECT_THROW(clock.advance(1), Exception);
    clock.advance(1);
    EXPECT_EQ(fired, 2);
    timer->invalidate();
}

TEST(NSTimer, IsNotCalledAgainByALoopThatItRuns)
{
    VirtualClock clock;
    int deepest = 0;
    int depth = 0;
    const auto timer = scheduled(1, true, [&](NSTimer*) {
        deepest = std::max(deepest, ++depth);
        clock.advance(3);
        --depth;
    });
    clock.advance(1);
    timer->invalidate();
    EXPECT_EQ(deepest, 1);
}

TEST(NSTimer, RestartsInPlace)
{
    VirtualClock clock;
    int fired = 0;
    const auto timer = scheduled(1, false, [&](NSTimer*) { ++fired; });
    for (int i = 0; i < 10; ++i) {
        clock.advance(0.9);
        timer->restart(1);
    }
    EXPECT_EQ(fired, 0);
    clock.advance(1);
    EXPECT_EQ(fired, 1);
}

TEST(NSTimer, ForgetsItsLoopWhenItIsInitialisedOnceMore)
{
    VirtualClock clock;
    int first = 0;
    int second = 0;
    const auto timer = scheduled(1, true, [&](NSTimer*) { ++first; });
    timer->initWithFireDate_interval_repeats_block(
        NSDate::cls().dateWithTimeIntervalSinceNow(1).get(), 1, false, [&](NSTimer*) { ++second; });
    clock.advance(3);
    EXPECT_EQ(first + second, 0);
    EXPECT_EQ(timer->timeInterval(), 0);
    NSRunLoop::cls().mainRunLoop()->addTimer_forMode(timer.get(), NSDefaultRunLoopMode);
    clock.advance(3);
    EXPECT_EQ(first, 0);
    EXPECT_EQ(second, 1);
}

TEST(NSTimer, MayBeInitialisedOnceMoreWhileItFires)
{
    VirtualClock clock;
    int fired = 0;
    scheduled(1, true, [&](NSTimer* timer) {
        timer->initWithFireDate_interval_repeats_block(
            nullptr, 1, true, [&](NSTimer*) { ++fired; });
    });
    clock.advance(5);
    EXPECT_EQ(fired, 0);
}

TEST(NSTimer, KeepsTheOrderOfEqualMoments)
{
    VirtualClock clock;
    std::string order;
    for (const char c : std::string("abcdefgh"))
        scheduled(1, false, [&order, c](NSTimer*) { order += c; });
    clock.advance(1);
    EXPECT_EQ(order, "abcdefgh");
}

TEST(NSTimer, MovesToItsFireDate)
{
    VirtualClock clock;
    int fired = 0;
    const auto timer = scheduled(100, false, [&](NSTimer*) { ++fired; });
    timer->setFireDate(NSDate::cls().dateWithTimeIntervalSinceNow(2).get());
    EXPECT_NEAR(timer->fireDate()->timeIntervalSinceNow(), 2, 1e-6);
    clock.advance(2);
    EXPECT_EQ(fired, 1);
}

TEST(NSTimer, FiresByHandWithoutLosingItsMoment)
{
    VirtualClock clock;
    int fired = 0;
    const auto timer = scheduled(1, true, [&](NSTimer*) { ++fired; });
    timer->fire();
    EXPECT_EQ(fired, 1);
    clock.advance(1);
    EXPECT_EQ(fired, 2);
    timer->invalidate();
}

TEST(NSTimer, IsMovedAndRemovedAmongManyWithoutHarm)
{
    VirtualClock clock;
    std::vector<Ref<NSTimer>> timers;
    std::vector<int> fired;
    std::uint64_t random = 1;
    for (int i = 0; i < 1000; ++i) {
        random = random * 6364136223846793005u + 1442695040888963407u;
        timers.push_back(scheduled(static_cast<double>(random >> 54) + 1, false,
            [&fired, i](NSTimer*) { fired.push_back(i); }));
    }
    for (std::size_t i = 0; i < 1000; i += 3)
        timers[i]->restart(static_cast<double>(i % 7) + 1);
    for (std::size_t i = 1; i < 1000; i += 3)
        timers[i]->invalidate();
    std::vector<double> moments;
    for (const auto& timer : timers)
        moments.push_back(timer->fireDate()->timeIntervalSinceReferenceDate());
    clock.advance(2000);
    EXPECT_EQ(fired.size(), 667u);
    for (std::size_t i = 1; i < fired.size(); ++i)
        EXPECT_LE(moments[static_cast<std::size_t>(fired[i - 1])],
            moments[static_cast<std::size_t>(fired[i])] + 1e-6);
}

}
