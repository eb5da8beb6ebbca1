// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSThread.h"

#include <atomic>
#include <gtest/gtest.h>
#include <pthread.h>
#include <thread>

#include "foundation/Dispatch.h"
#include "foundation/NSDate.h"
#include "foundation/NSMutableDictionary.h"
#include "foundation/NSObject+DelayedPerforming.h"
#include "foundation/NSRunLoop.h"
#include "foundation/NSTimer.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"

namespace brindle {

class ThreadListener : public NSObject {
    BRINDLE_OBJECT(ThreadListener, NSObject)

public:
    std::atomic<int> calls { 0 };
    std::thread::id where;
};

template <> struct ThreadListener::Methods<struct Listening> {
    static void call(ThreadListener& self)
    {
        self.where = std::this_thread::get_id();
        ++self.calls;
    }
    static void table(Builder& t) { t.methods({ { "call", imp<call> } }); }
};
BRINDLE_RECORD(ThreadListener, Listening)

namespace {

    void waitFor(NSThread* thread)
    {
        while (!thread->isFinished())
            std::this_thread::yield();
    }

}

TEST(NSThread, KnowsTheMainThread)
{
    EXPECT_TRUE(NSThread::cls().isMainThread());
    EXPECT_EQ(NSThread::cls().currentThread(), NSThread::cls().mainThread());
    bool elsewhere = true;
    std::thread([&] { elsewhere = NSThread::cls().isMainThread(); }).join();
    EXPECT_FALSE(elsewhere);
}

TEST(NSThread, RunsItsClosureOnAThreadOfItsOwn)
{
    std::thread::id seen;
    Ref<NSThread> inside;
    const auto thread = alloc<NSThread>()->initWithBlock([&] {
        seen = std::this_thread::get_id();
        inside = NSThread::cls().currentThread();
    });
    EXPECT_FALSE(thread->isExecuting());
    thread->start();
    waitFor(thread.get());
    EXPECT_NE(seen, std::this_thread::get_id());
    EXPECT_EQ(inside, thread);
}

TEST(NSThread, SendsItsMessage)
{
    const auto listener = make<ThreadListener>();
    const auto thread = alloc<NSThread>()->initWithTarget_selector_object(
        listener.get(), selector<"call">, nullptr);
    thread->start();
    waitFor(thread.get());
    EXPECT_EQ(listener->calls, 1);
}

TEST(NSThread, RaisesWhenItIsStartedTwice)
{
    const auto thread = alloc<NSThread>()->initWithBlock([] {});
    thread->start();
    EXPECT_THROW(thread->start(), Exception);
    waitFor(thread.get());
}

TEST(NSThread, CarriesItsNameToTheSystem)
{
    char name[16] {};
    const auto thread
        = alloc<NSThread>()->initWithBlock([&] { pthread_getname_np(pthread_self(), name, 16); });
    thread->setName("a name that is long"_ns);
    thread->start();
    waitFor(thread.get());
    EXPECT_STREQ(name, "a name that is ");
}

TEST(NSThread, KeepsADictionaryOfItsOwn)
{
    const auto mine = NSThread::cls().currentThread()->threadDictionary();
    EXPECT_EQ(mine, NSThread::cls().currentThread()->threadDictionary());
    Ref<NSMutableDictionary> other;
    std::thread([&] { other = NSThread::cls().currentThread()->threadDictionary(); }).join();
    EXPECT_FALSE(other == mine);
}

TEST(NSThread, OnlyNotesThatItWasCancelled)
{
    const auto thread = alloc<NSThread>()->initWithBlock([] {});
    thread->cancel();
    EXPECT_TRUE(thread->isCancelled());
}

TEST(NSThread, TakesMessagesInItsRunLoop)
{
    const auto listener = make<ThreadListener>();
    std::atomic<bool> stop { false };
    const auto thread = alloc<NSThread>()->initWithBlock([&] {
        const auto keepAlive = NSTimer::cls().scheduledTimerWithTimeInterval_repeats_block(
            3600, true, [](NSTimer*) {});
        while (!stop)
            NSRunLoop::cls().currentRunLoop()->runMode_beforeDate(
                nullptr, NSDate::cls().distantFuture().get());
        keepAlive->invalidate();
    });
    thread->start();
    performSelector_onThread_withObject_waitUntilDone(
        listener, selector<"call">, thread.get(), nullptr, true);
    EXPECT_EQ(listener->calls, 1);
    EXPECT_NE(listener->where, std::this_thread::get_id());
    stop = true;
    performSelector_onThread_withObject_waitUntilDone(
        listener, selector<"call">, thread.get(), nullptr, false);
    waitFor(thread.get());
}

TEST(NSThread, TakesAMessageWithoutInit)
{
    const auto listener = make<ThreadListener>();
    const Ref<NSThread> thread = alloc<NSThread>();
    performSelector_onThread_withObject_waitUntilDone(
        listener, selector<"call">, thread.get(), nullptr, false);
    EXPECT_EQ(listener->calls, 0);
}

TEST(NSThread, DoesNotMakeAnybodyWaitOnceItHasEnded)
{
    const auto listener = make<ThreadListener>();
    const auto thread = alloc<NSThread>()->initWithBlock([] {});
    thread->start();
    waitFor(thread.get());
    performSelector_onThread_withObject_waitUntilDone(
        listener, selector<"call">, thread.get(), nullptr, true);
    EXPECT_EQ(listener->calls, 0);
}

TEST(NSThread, RunsAMessageInTheBackground)
{
    const auto listener = make<ThreadListener>();
    performSelectorInBackground_withObject(listener, selector<"call">, nullptr);
    while (listener->calls == 0)
        std::this_thread::yield();
    EXPECT_NE(listener->where, std::this_thread::get_id());
}

}
