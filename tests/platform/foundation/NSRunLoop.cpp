// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSRunLoop.h"

#include <cstdio>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <poll.h>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

#include "foundation/Dispatch.h"
#include "foundation/NSDate.h"
#include "foundation/NSTimer.h"
#include "runtime/NSException.h"
#include "support/VirtualClock.h"

using namespace brindle;
using brindle::test::VirtualClock;

namespace {

struct Pipe {
    Pipe() { EXPECT_EQ(::pipe(ends), 0); }
    ~Pipe()
    {
        ::close(ends[0]);
        ::close(ends[1]);
    }
    void write() { EXPECT_EQ(::write(ends[1], "x", 1), 1); }
    void read()
    {
        char byte = 0;
        EXPECT_EQ(::read(ends[0], &byte, 1), 1);
    }
    int ends[2];
};

Ref<NSRunLoop> loop() { return NSRunLoop::cls().currentRunLoop(); }

void after(double seconds, std::function<void()> work, NSString* mode = NSDefaultRunLoopMode)
{
    loop()->addTimer_forMode(
        NSTimer::cls()
            .timerWithTimeInterval_repeats_block(seconds, false, [work](NSTimer*) { work(); })
            .get(),
        mode);
}

Ref<NSRunLoopSource> addSource(int descriptor, NSUInteger events,
    std::function<void(NSUInteger)> handler, NSString* mode = NSDefaultRunLoopMode)
{
    const auto source = NSRunLoopSource::cls().sourceWithFileDescriptor_events_handler(
        descriptor, events, std::move(handler));
    loop()->addSource_forMode(source.get(), mode);
    return source;
}

/// Whether the loop's host would step now.
bool wakesItsHost()
{
    pollfd polled { loop()->embeddingDescriptor(), POLLIN, 0 };
    return ::poll(&polled, 1, 0) == 1;
}

/// A closure of another thread makes this thread's descriptor readable until a step has run it.
void expectWakenByAPost()
{
    const Ref<NSRunLoop> here = loop();
    pollfd polled { here->embeddingDescriptor(), POLLIN, 0 };
    EXPECT_EQ(::poll(&polled, 1, 0), 0);
    bool ran = false;
    std::thread([&] { here->performBlock([&] { ran = true; }); }).join();
    EXPECT_EQ(::poll(&polled, 1, 0), 1);
    here->embeddingStep();
    EXPECT_TRUE(ran);
    EXPECT_EQ(::poll(&polled, 1, 0), 0);
}

}

TEST(NSRunLoop, IsOneForAThread)
{
    EXPECT_EQ(loop(), loop());
    EXPECT_EQ(loop(), NSRunLoop::cls().mainRunLoop());
}

TEST(NSRunLoop, IsAnotherOneOnAnotherThread)
{
    Ref<NSRunLoop> other;
    std::thread([&] { other = loop(); }).join();
    EXPECT_FALSE(other == loop());
}

TEST(NSRunLoop, KnowsItsModeOnlyWhileItRuns)
{
    VirtualClock clock;
    EXPECT_FALSE(loop()->currentMode());
    Ref<NSString> seen;
    loop()->performBlock([&] { seen = loop()->currentMode(); });
    loop()->runUntilIdle(NSModalPanelRunLoopMode);
    EXPECT_TRUE(seen->isEqual(NSModalPanelRunLoopMode));
    EXPECT_FALSE(loop()->currentMode());
}

TEST(NSRunLoop, AnswersNoForAModeWithNothingInIt)
{
    EXPECT_FALSE(loop()->runMode_beforeDate("Empty"_ns, nullptr));
}

TEST(NSRunLoop, RunsOneTurnForANilDate)
{
    VirtualClock clock;
    EXPECT_TRUE(loop()->runMode_beforeDate(nullptr, nullptr));
}

TEST(NSRunLoop, RunsBlocksInOrder)
{
    std::string order;
    for (const char c : std::string("abc"))
        loop()->performBlock([&order, c] { order += c; });
    loop()->runUntilIdle(NSDefaultRunLoopMode);
    EXPECT_EQ(order, "abc");
}

TEST(NSRunLoop, RunsWhatAnItemAddsInALaterTurn)
{
    std::string order;
    loop()->performBlock([&] {
        loop()->performBlock([&] { order += "c"; });
        order += "a";
    });
    loop()->performBlock([&] { order += "b"; });
    loop()->runMode_beforeDate(nullptr, nullptr);
    EXPECT_EQ(order, "ab");
    loop()->runMode_beforeDate(nullptr, nullptr);
    EXPECT_EQ(order, "abc");
}

TEST(NSRunLoop, LeavesItemsAloneInAModeThatIsNotCommon)
{
    bool ran = false;
    loop()->performBlock([&] { ran = true; });
    after(
        3600, [] {}, "Private"_ns);
    loop()->runUntilIdle("Private"_ns);
    EXPECT_FALSE(ran);
    loop()->runUntilIdle(NSDefaultRunLoopMode);
    EXPECT_TRUE(ran);
}

TEST(NSRunLoop, GoesOnWithItsItemsInsideALoopThatOneOfThemRuns)
{
    std::string order;
    loop()->performBlock([&] {
        order += "a";
        loop()->runUntilIdle(NSModalPanelRunLoopMode);
        order += "d";
    });
    loop()->performBlock([&] { order += "b"; });
    loop()->performBlock([&] { order += "c"; });
    loop()->runUntilIdle(NSDefaultRunLoopMode);
    EXPECT_EQ(order, "abcd");
}

TEST(NSRunLoop, CanBeUsedAfterAnItemThrew)
{
    std::string order;
    loop()->performBlock([&] { raise("Test", "thrown"); });
    loop()->performBlock([&] { order += "b"; });
    EXPECT_THROW(loop()->runUntilIdle(NSDefaultRunLoopMode), Exception);
    EXPECT_FALSE(loop()->currentMode());
    loop()->runUntilIdle(NSDefaultRunLoopMode);
    EXPECT_EQ(order, "b");
}

TEST(NSRunLoop, CanBeUsedAfterATimerThrew)
{
    VirtualClock clock;
    bool ran = false;
    after(1, [] { raise("Test", "thrown"); });
    after(1, [&] { ran = true; });
    EXPECT_THROW(clock.advance(1), Exception);
    clock.advance(0);
    EXPECT_TRUE(ran);
}

TEST(NSRunLoop, RunsTimersOfTheModeOnly)
{
    VirtualClock clock;
    std::string order;
    after(
        1, [&] { order += "t"; }, NSEventTrackingRunLoopMode);
    after(
        1, [&] { order += "c"; }, NSRunLoopCommonModes);
    clock.advance(2);
    EXPECT_EQ(order, "c");
    loop()->runUntilIdle(NSEventTrackingRunLoopMode);
    EXPECT_EQ(order, "ct");
}

TEST(NSRunLoop, MeetsDueMomentsInOrderOfTimeAcrossModes)
{
    VirtualClock clock;
    std::string order;
    after(3, [&] { order += "3"; });
    after(
        1, [&] { order += "1"; }, NSRunLoopCommonModes);
    after(2, [&] { order += "2"; });
    clock.advance(10);
    EXPECT_EQ(order, "123");
}

TEST(NSRunLoop, ShowsEachDueMomentItsOwnTime)
{
    VirtualClock clock;
    const double begin = Clock::wall();
    std::vector<double> times;
    after(2, [&] { times.push_back(Clock::wall() - begin); });
    after(1, [&] { times.push_back(Clock::wall() - begin); });
    clock.advance(5);
    ASSERT_EQ(times.size(), 2u);
    EXPECT_NEAR(times[0], 1, 1e-6);
    EXPECT_NEAR(times[1], 2, 1e-6);
    EXPECT_NEAR(Clock::wall() - begin, 5, 1e-6);
}

TEST(NSRunLoop, TurnsAVirtualClockInsteadOfSleeping)
{
    VirtualClock clock;
    bool ran = false;
    after(3600, [&] { ran = true; });
    loop()->runUntilDate(NSDate::cls().dateWithTimeIntervalSinceNow(7200).get());
    EXPECT_TRUE(ran);
}

TEST(NSRunLoop, EndsTheInnermostRunWhenItIsWoken)
{
    VirtualClock clock;
    after(1, [] { loop()->wakeUp(); });
    EXPECT_TRUE(loop()->runMode_beforeDate(nullptr, NSDate::cls().distantFuture().get()));
}

TEST(NSRunLoop, CallsASourceWhileItsDescriptorIsReady)
{
    Pipe pipe;
    NSUInteger seen = 0;
    const auto source = NSRunLoopSource::cls().sourceWithFileDescriptor_events_handler(
        pipe.ends[0], NSRunLoopSourceReadable, [&](NSUInteger events) {
            seen = events;
            pipe.read();
        });
    loop()->addSource_forMode(source.get(), NSDefaultRunLoopMode);
    loop()->runUntilIdle(NSDefaultRunLoopMode);
    EXPECT_EQ(seen, 0u);
    pipe.write();
    loop()->runUntilIdle(NSDefaultRunLoopMode);
    EXPECT_EQ(seen, NSRunLoopSourceReadable);
    source->invalidate();
}

TEST(NSRunLoop, DoesNotCallASourceThatAnotherOneTookOut)
{
    Pipe a;
    Pipe b;
    a.write();
    b.write();
    int calls = 0;
    Ref<NSRunLoopSource> sources[2];
    for (int i = 0; i < 2; ++i)
        sources[i] = NSRunLoopSource::cls().sourceWithFileDescriptor_events_handler(
            (i ? b : a).ends[0], NSRunLoopSourceReadable, [&](NSUInteger) {
                ++calls;
                sources[0]->invalidate();
                sources[1]->invalidate();
            });
    loop()->addSource_forMode(sources[0].get(), NSDefaultRunLoopMode);
    loop()->addSource_forMode(sources[1].get(), NSDefaultRunLoopMode);
    loop()->runUntilIdle(NSDefaultRunLoopMode);
    EXPECT_EQ(calls, 1);
}

TEST(NSRunLoop, CallsNoSourceForWhatALoopInsideItHasHandled)
{
    for (const int inner : { 0, 1 }) {
        Pipe pipes[2];
        int calls = 0;
        const auto handle = [&](Pipe& pipe) {
            ++calls;
            pipe.read();
            if (inner)
                loop()->runMode_beforeDate(NSDefaultRunLoopMode, nullptr);
        };
        Ref<NSRunLoopSource> sources[2];
        for (int i = 0; i < 2; ++i) {
            pipes[i].write();
            sources[i] = addSource(pipes[i].ends[0], NSRunLoopSourceReadable,
                [&, i](NSUInteger) { handle(pipes[i]); });
            ASSERT_EQ(
                ::fcntl(pipes[i].ends[0], F_SETFL, O_NONBLOCK), 0); // a second call does not hang
        }
        loop()->runUntilIdle(NSDefaultRunLoopMode);
        EXPECT_EQ(calls, 2);
        for (const auto& source : sources)
            source->invalidate();
    }
}

TEST(NSRunLoop, ReturnsAfterASourceWasHandled)
{
    Pipe pipe;
    const auto source = NSRunLoopSource::cls().sourceWithFileDescriptor_events_handler(
        pipe.ends[0], NSRunLoopSourceReadable, [&](NSUInteger) { pipe.read(); });
    loop()->addSource_forMode(source.get(), "Private"_ns);
    std::thread writer([&] { pipe.write(); });
    EXPECT_TRUE(loop()->runMode_beforeDate("Private"_ns, NSDate::cls().distantFuture().get()));
    writer.join();
    source->invalidate();
}

TEST(NSRunLoop, CallsObserversInTheirOrderAtTheEndOfATurn)
{
    std::string order;
    const auto second
        = NSRunLoopObserver::cls().observerWithOrder_handler(2, [&] { order += "2"; });
    const auto first = NSRunLoopObserver::cls().observerWithOrder_handler(1, [&] { order += "1"; });
    loop()->addObserver_forMode(second.get(), NSRunLoopCommonModes);
    loop()->addObserver_forMode(first.get(), NSRunLoopCommonModes);
    loop()->performBlock([&] { order += "i"; });
    loop()->runMode_beforeDate(nullptr, nullptr);
    EXPECT_EQ(order, "i12");
    first->invalidate();
    second->invalidate();
    loop()->runMode_beforeDate(nullptr, nullptr);
    EXPECT_EQ(order, "i12");
}

TEST(NSRunLoop, SleepsUntilAnotherThreadPosts)
{
    bool ran = false;
    const NSUInteger before = loop()->wakeCount();
    std::thread poster([&] { dispatch_async(dispatch_get_main_queue(), [&] { ran = true; }); });
    while (!ran)
        loop()->runMode_beforeDate(nullptr, NSDate::cls().distantFuture().get());
    poster.join();
    EXPECT_LE(loop()->wakeCount() - before, 1u);
}

TEST(NSRunLoop, HasNothingToWakeForWhenItIsIdle)
{
    loop()->runUntilIdle(NSDefaultRunLoopMode);
    loop()->embeddingDescriptor();
    EXPECT_LT(loop()->embeddingTimeout(), 0);
}

TEST(NSRunLoop, WakesOnceForOneMomentAtMost)
{
    bool ran = false;
    after(0.003, [&] { ran = true; });
    const NSUInteger before = loop()->wakeCount();
    loop()->runUntilDate(NSDate::cls().dateWithTimeIntervalSinceNow(0.005).get());
    EXPECT_TRUE(ran);
    EXPECT_LE(loop()->wakeCount() - before, 2u); // the timer and the end
}

TEST(NSRunLoop, TellsAnotherLoopWhenItMustStep)
{
    VirtualClock clock;
    loop()->embeddingStep();
    after(2, [] {});
    EXPECT_NEAR(loop()->embeddingTimeout(), 2, 1e-6);
    clock.advance(2);
}

TEST(NSRunLoop, MakesItsDescriptorReadableForAPostFromAnotherThread)
{
    const int descriptor = loop()->embeddingDescriptor();
    loop()->embeddingStep();
    pollfd polled { descriptor, POLLIN, 0 };
    EXPECT_EQ(::poll(&polled, 1, 0), 0);
    bool ran = false;
    std::thread([&] { dispatch_async(dispatch_get_main_queue(), [&] { ran = true; }); }).join();
    EXPECT_EQ(::poll(&polled, 1, 0), 1);
    loop()->embeddingStep();
    EXPECT_TRUE(ran);
    EXPECT_EQ(::poll(&polled, 1, 0), 0);
}

TEST(NSRunLoop, MakesItsDescriptorReadableForAPostOfItsOwnThread)
{
    const int descriptor = loop()->embeddingDescriptor();
    loop()->embeddingStep();
    dispatch_async(dispatch_get_main_queue(), [] {});
    pollfd polled { descriptor, POLLIN, 0 };
    EXPECT_EQ(::poll(&polled, 1, 0), 1);
    loop()->embeddingStep();
    EXPECT_EQ(::poll(&polled, 1, 0), 0);
}

TEST(NSRunLoop, WakesItsHostAfterTheHostHasRunItItself)
{
    loop()->embeddingStep();
    loop()->runUntilIdle(NSDefaultRunLoopMode);
    expectWakenByAPost();
    loop()->runMode_beforeDate(NSDefaultRunLoopMode, nullptr);
    expectWakenByAPost();
}

TEST(NSRunLoop, WakesItsHostAfterAStepThatRaised)
{
    loop()->embeddingStep();
    dispatch_async(dispatch_get_main_queue(), [] { brindle::raise("Broken", "by an item"); });
    EXPECT_THROW(loop()->embeddingStep(), Exception);
    expectWakenByAPost();
}

TEST(NSRunLoop, StepsAtOnceWhenItWasWokenBeforeItHadAHost)
{
    std::thread([] {
        loop()->wakeUp();
        loop()->embeddingDescriptor();
        EXPECT_EQ(loop()->embeddingTimeout(), 0);
        loop()->embeddingStep();
        EXPECT_LT(loop()->embeddingTimeout(), 0);
        expectWakenByAPost();
    }).join();
}

TEST(NSRunLoop, WakesAHostThatAskedForTheDescriptorInsideARun)
{
    std::thread([] {
        loop()->performBlock([] { loop()->embeddingDescriptor(); });
        loop()->runUntilIdle(NSDefaultRunLoopMode);
        EXPECT_LT(loop()->embeddingTimeout(), 0);
        expectWakenByAPost();
    }).join();
}

TEST(NSRunLoop, WakesItsHostForEverySourceOfADescriptor)
{
    loop()->embeddingStep();
    Pipe pipe;
    int calls = 0;
    const auto reader = addSource(pipe.ends[0], NSRunLoopSourceReadable, [&](NSUInteger) {
        ++calls;
        pipe.read();
    });
    const auto writer = addSource(pipe.ends[0], NSRunLoopSourceWritable, [](NSUInteger) {});
    const auto other = addSource(
        pipe.ends[0], NSRunLoopSourceWritable, [](NSUInteger) {}, "Private"_ns);
    for (const auto& one : { writer, other }) {
        EXPECT_FALSE(wakesItsHost());
        pipe.write();
        EXPECT_TRUE(wakesItsHost());
        loop()->embeddingStep();
        EXPECT_FALSE(wakesItsHost());
        one->invalidate();
        pipe.write();
        EXPECT_TRUE(wakesItsHost());
        loop()->embeddingStep();
    }
    EXPECT_EQ(calls, 4);
    reader->invalidate();
    pipe.write();
    EXPECT_FALSE(wakesItsHost());
}

TEST(NSRunLoop, StepsAtOnceForADescriptorThatIsAlwaysReady)
{
    loop()->embeddingDescriptor();
    loop()->embeddingStep();
    const std::unique_ptr<std::FILE, decltype(&std::fclose)> file(std::tmpfile(), &std::fclose);
    ASSERT_TRUE(file);
    int calls = 0;
    const auto source
        = addSource(fileno(file.get()), NSRunLoopSourceReadable, [&](NSUInteger) { ++calls; });
    EXPECT_EQ(loop()->embeddingTimeout(), 0);
    loop()->embeddingStep();
    EXPECT_EQ(calls, 1);
    source->setEvents(0);
    EXPECT_LT(loop()->embeddingTimeout(), 0);
    source->setEvents(NSRunLoopSourceReadable);
    EXPECT_EQ(loop()->embeddingTimeout(), 0);
    source->invalidate();
    EXPECT_LT(loop()->embeddingTimeout(), 0);
}

TEST(NSRunLoop, WakesItsHostForWhatARunHasLeft)
{
    VirtualClock clock;
    const auto runPrivately = [](std::function<void()> work) {
        after(0, std::move(work), "Private"_ns);
        loop()->embeddingStep();
        EXPECT_LT(loop()->embeddingTimeout(), 0);
        EXPECT_FALSE(wakesItsHost());
        loop()->runMode_beforeDate("Private"_ns, NSDate::cls().distantFuture().get());
        EXPECT_TRUE(wakesItsHost());
        loop()->embeddingStep();
        EXPECT_FALSE(wakesItsHost());
    };
    bool ran = false;
    runPrivately([&] { dispatch_async(dispatch_get_main_queue(), [&] { ran = true; }); });
    EXPECT_TRUE(ran);
    runPrivately([] { std::thread([here = loop()] { here->performBlock([] {}); }).join(); });
    runPrivately([] { after(5, [] {}); });
    EXPECT_NEAR(loop()->embeddingTimeout(), 5, 1e-6);
    clock.advance(5);
}

TEST(NSRunLoop, RunsOnAnotherThreadUntilNothingIsLeft)
{
    int fired = 0;
    std::thread([&] {
        after(0.001, [&] { ++fired; });
        after(0.002, [&] { ++fired; });
        loop()->run();
    }).join();
    EXPECT_EQ(fired, 2);
}

TEST(NSRunLoop, TakesManyTimersOfAnotherThread)
{
    constexpr int kMany = 100000;
    int fired = 0;
    const Ref<NSRunLoop> here = loop();
    std::thread([&] {
        const Ref<NSDate> past = NSDate::cls().distantPast();
        for (int i = 0; i < kMany; ++i) {
            const Ref<NSTimer> timer = alloc<NSTimer>();
            timer->initWithFireDate_interval_repeats_block(
                past.get(), 0, false, [&](NSTimer*) { ++fired; });
            here->addTimer_forMode(timer.get(), NSDefaultRunLoopMode);
        }
    }).join();
    here->runUntilIdle(NSDefaultRunLoopMode);
    EXPECT_EQ(fired, kMany);
}

TEST(NSRunLoop, DropsWhatWaitsWhenItsThreadEnds)
{
    const auto probe = std::make_shared<int>(0);
    std::thread([probe] { after(3600, [probe] {}); }).join();
    EXPECT_EQ(probe.use_count(), 1);
}
