// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSObject+DelayedPerforming.h"

#include <gtest/gtest.h>
#include <string>
#include <thread>

#include "foundation/NSArray.h"
#include "foundation/NSRunLoop.h"
#include "runtime/Table.h"
#include "support/VirtualClock.h"

using brindle::test::VirtualClock;

namespace brindle {

class DelayListener : public NSObject {
    BRINDLE_OBJECT(DelayListener, NSObject)

public:
    std::string log;
};

template <> struct DelayListener::Methods<struct Listening> {
    static void ping(DelayListener& self) { self.log += "ping "; }
    static void take(DelayListener& self, NSObject* object)
    {
        self.log += object ? utf8Of(object->description().get()) + " " : "nil ";
    }
    static Ref<NSObject> make(DelayListener& self)
    {
        self.log += "made ";
        return brindle::make<NSObject>();
    }
    static void cancelAll(DelayListener& self)
    {
        self.log += "cancel ";
        cancelPreviousPerformRequestsWithTarget(DelayListener::cls(), &self);
    }
    static void table(Builder& t)
    {
        t.methods({
            { "ping", imp<ping> },
            { "take:", imp<take> },
            { "make", imp<make> },
            { "cancelAll", imp<cancelAll> },
        });
    }
};
BRINDLE_RECORD(DelayListener, Listening)

namespace {

    void cancel(DelayListener* target, SEL sel, NSObject* argument)
    {
        cancelPreviousPerformRequestsWithTarget_selector_object(
            DelayListener::cls(), target, sel, argument);
    }

    constexpr SEL kPing = selector<"ping">;
    constexpr SEL kTake = selector<"take:">;

}

TEST(DelayedPerforming, WaitsForALaterTurnWithoutDelay)
{
    VirtualClock clock;
    const auto listener = make<DelayListener>();
    performSelector_withObject_afterDelay(listener, kPing, nullptr, 0);
    EXPECT_EQ(listener->log, "");
    clock.advance(0);
    EXPECT_EQ(listener->log, "ping ");
}

TEST(DelayedPerforming, TreatsANegativeDelayAsNone)
{
    VirtualClock clock;
    const auto listener = make<DelayListener>();
    performSelector_withObject_afterDelay(listener, kPing, nullptr, -5);
    EXPECT_EQ(listener->log, "");
    clock.advance(0);
    EXPECT_EQ(listener->log, "ping ");
}

TEST(DelayedPerforming, KeepsTheOrderOfEqualMoments)
{
    VirtualClock clock;
    const auto listener = make<DelayListener>();
    for (NSString* text : { "a"_ns, "b"_ns, "c"_ns })
        performSelector_withObject_afterDelay(listener, kTake, text, 1);
    clock.advance(1);
    EXPECT_EQ(listener->log, "a b c ");
}

TEST(DelayedPerforming, DropsWhatTheSelectorAnswers)
{
    VirtualClock clock;
    const auto listener = make<DelayListener>();
    performSelector_withObject_afterDelay(listener, selector<"make">, nullptr, 0);
    clock.advance(0);
    EXPECT_EQ(listener->log, "made ");
}

TEST(DelayedPerforming, KeepsTargetAndArgument)
{
    VirtualClock clock;
    auto listener = make<DelayListener>();
    auto argument = make<NSObject>();
    const WeakRef<DelayListener> target(listener);
    const WeakRef<NSObject> weak(argument);
    performSelector_withObject_afterDelay(listener, kTake, argument.get(), 1);
    listener = nullptr;
    argument = nullptr;
    EXPECT_TRUE(target.get() && weak.get());
    clock.advance(1);
    EXPECT_FALSE(target.get() || weak.get());
}

TEST(DelayedPerforming, WaitsOutOtherModes)
{
    VirtualClock clock;
    const auto listener = make<DelayListener>();
    performSelector_withObject_afterDelay(listener, kPing, nullptr, 0);
    NSRunLoop::cls().currentRunLoop()->runUntilIdle(NSEventTrackingRunLoopMode);
    EXPECT_EQ(listener->log, "");
    clock.advance(0);
    EXPECT_EQ(listener->log, "ping ");
}

TEST(DelayedPerforming, RunsInTheModesThatWereNamed)
{
    VirtualClock clock;
    const auto listener = make<DelayListener>();
    performSelector_withObject_afterDelay_inModes(
        listener, kPing, nullptr, 0, makeArray({ NSModalPanelRunLoopMode }).get());
    clock.advance(0);
    EXPECT_EQ(listener->log, "");
    NSRunLoop::cls().currentRunLoop()->runUntilIdle(NSModalPanelRunLoopMode);
    EXPECT_EQ(listener->log, "ping ");
}

TEST(DelayedPerforming, TakesBackEveryEqualRequest)
{
    VirtualClock clock;
    const auto listener = make<DelayListener>();
    const auto text = stringFrom(std::string_view("a"));
    performSelector_withObject_afterDelay(listener, kTake, "a"_ns, 1);
    performSelector_withObject_afterDelay(listener, kTake, "b"_ns, 1);
    performSelector_withObject_afterDelay(listener, kTake, "a"_ns, 2);
    cancel(listener.get(), kTake, text.get());
    clock.advance(3);
    EXPECT_EQ(listener->log, "b ");
}

TEST(DelayedPerforming, MatchesNilWithNilOnly)
{
    VirtualClock clock;
    const auto listener = make<DelayListener>();
    performSelector_withObject_afterDelay(listener, kTake, "a"_ns, 1);
    performSelector_withObject_afterDelay(listener, kTake, nullptr, 1);
    cancel(listener.get(), kTake, nullptr);
    clock.advance(1);
    EXPECT_EQ(listener->log, "a ");
}

TEST(DelayedPerforming, LeavesOtherTargetsAndSelectorsAlone)
{
    VirtualClock clock;
    const auto listener = make<DelayListener>();
    const auto other = make<DelayListener>();
    performSelector_withObject_afterDelay(listener, kPing, nullptr, 1);
    performSelector_withObject_afterDelay(other, kPing, nullptr, 1);
    cancel(listener.get(), kTake, nullptr);
    cancel(other.get(), kPing, nullptr);
    clock.advance(1);
    EXPECT_EQ(listener->log, "ping ");
    EXPECT_EQ(other->log, "");
}

TEST(DelayedPerforming, CanBeTakenBackWhileOneRuns)
{
    VirtualClock clock;
    const auto listener = make<DelayListener>();
    performSelector_withObject_afterDelay(listener, selector<"cancelAll">, nullptr, 0);
    performSelector_withObject_afterDelay(listener, kPing, nullptr, 0);
    clock.advance(1);
    EXPECT_EQ(listener->log, "cancel ");
}

TEST(DelayedPerforming, LetsGoOfATargetThatNobodyElseKeeps)
{
    VirtualClock clock;
    auto listener = make<DelayListener>();
    const WeakRef<DelayListener> weak(listener);
    performSelector_withObject_afterDelay(listener, kPing, nullptr, 1);
    DelayListener* const bare = listener.get();
    listener = nullptr;
    cancel(bare, kPing, nullptr);
    EXPECT_FALSE(weak.get());
}

TEST(DelayedPerforming, RunsOnTheMainThreadForAThreadThatWaits)
{
    const auto listener = make<DelayListener>();
    std::atomic<bool> done { false };
    std::thread thread([&] {
        performSelectorOnMainThread_withObject_waitUntilDone(listener, kTake, "x"_ns, true);
        done = true;
    });
    while (listener->log.empty())
        NSRunLoop::cls().currentRunLoop()->runUntilIdle(NSModalPanelRunLoopMode);
    thread.join();
    EXPECT_TRUE(done);
    EXPECT_EQ(listener->log, "x ");
}

TEST(DelayedPerforming, RunsAtOnceOnTheMainThreadThatWaits)
{
    const auto listener = make<DelayListener>();
    performSelectorOnMainThread_withObject_waitUntilDone(listener, kPing, nullptr, true);
    EXPECT_EQ(listener->log, "ping ");
    performSelectorOnMainThread_withObject_waitUntilDone(listener, kPing, nullptr, false);
    EXPECT_EQ(listener->log, "ping ");
    NSRunLoop::cls().currentRunLoop()->runUntilIdle(NSDefaultRunLoopMode);
    EXPECT_EQ(listener->log, "ping ping ");
}

}
