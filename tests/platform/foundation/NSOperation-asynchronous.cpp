// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSOperation.h"

#include <atomic>
#include <gtest/gtest.h>
#include <thread>

#include "foundation/NSOperationQueue.h"
#include "foundation/NSRunLoop.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"

namespace brindle {

/// Work that goes on until somebody ends it.
class LongOperation : public NSOperation {
    BRINDLE_OBJECT(LongOperation, NSOperation)

public:
    std::atomic<int> starts_ { 0 };
    std::atomic<bool> finished_ { false };

    void end()
    {
        willChangeValueForKey("isFinished"_ns);
        finished_ = true;
        didChangeValueForKey("isFinished"_ns);
    }
};
template <> struct LongOperation::Methods<struct Work> {
    static void start(LongOperation& self)
    {
        ++self.starts_;
        if (self.isCancelled())
            self.end();
    }
    static bool yes(LongOperation&) { return true; }
    static bool isExecuting(LongOperation& self) { return self.starts_ > 0 && !self.finished_; }
    static bool isFinished(LongOperation& self) { return self.finished_; }
    static void table(Builder& t)
    {
        t.methods({ { "start", imp<start> }, { "isAsynchronous", imp<yes> },
            { "isExecuting", imp<isExecuting> }, { "isFinished", imp<isFinished> } });
    }
};
BRINDLE_RECORD(LongOperation, Work)

/// The same, which does not say that it goes on.
class QuietOperation : public LongOperation {
    BRINDLE_OBJECT(QuietOperation, LongOperation)
};
template <> struct QuietOperation::Methods<struct Work> {
    static bool no(QuietOperation&) { return false; }
    static void table(Builder& t) { t.methods({ { "isAsynchronous", imp<no> } }); }
};
BRINDLE_RECORD(QuietOperation, Work)

/// Work that cannot begin.
class BrokenOperation : public NSOperation {
    BRINDLE_OBJECT(BrokenOperation, NSOperation)
};
template <> struct BrokenOperation::Methods<struct Work> {
    static void start(BrokenOperation&) { brindle::raise("Broken", "at the start"); }
    static bool yes(BrokenOperation&) { return true; }
    static void table(Builder& t)
    {
        t.methods({ { "start", imp<start> }, { "isAsynchronous", imp<yes> } });
    }
};
BRINDLE_RECORD(BrokenOperation, Work)

TEST(AsynchronousOperation, LetsOthersWaitUntilItSaysThatItHasFinished)
{
    const Ref<LongOperation> work = make<LongOperation>();
    const Ref<NSOperation> next = make<NSOperation>();
    next->addDependency(work.get());
    work->start();
    EXPECT_TRUE(work->isAsynchronous());
    EXPECT_FALSE(next->isReady());
    work->end();
    EXPECT_TRUE(next->isReady());
    EXPECT_FALSE(next->isAsynchronous());
}
TEST(AsynchronousOperation, KeepsItsPlaceInTheQueueUntilThen)
{
    const Ref<NSOperationQueue> queue = make<NSOperationQueue>();
    queue->setMaxConcurrentOperationCount(1);
    const Ref<LongOperation> work = make<LongOperation>();
    std::atomic<int> runs { 0 };
    const auto next = NSBlockOperation::cls().blockOperationWithBlock([&] { ++runs; });
    bool completed = false;
    work->setCompletionBlock([&] { completed = true; });
    queue->addOperation(work.get());
    queue->addOperation(next.get());
    while (!work->isExecuting())
        std::this_thread::yield();
    EXPECT_EQ(queue->operationCount(), 2u);
    EXPECT_FALSE(next->isFinished());
    work->end();
    queue->waitUntilAllOperationsAreFinished();
    EXPECT_TRUE(completed);
    EXPECT_EQ(runs, 1);
}
TEST(AsynchronousOperation, EndsWhenItsStartSeesThatItWasCancelled)
{
    const Ref<NSOperationQueue> queue = make<NSOperationQueue>();
    queue->setSuspended(true);
    const Ref<LongOperation> work = make<LongOperation>();
    queue->addOperation(work.get());
    work->cancel();
    queue->setSuspended(false);
    queue->waitUntilAllOperationsAreFinished();
    EXPECT_EQ(work->starts_, 1);
    EXPECT_TRUE(work->isFinished());
}
TEST(AsynchronousOperation, EndsOnceHoweverOftenItIsSaid)
{
    const Ref<LongOperation> work = make<LongOperation>();
    int completions = 0;
    work->setCompletionBlock([&] { ++completions; });
    work->didChangeValueForKey("isFinished"_ns);
    EXPECT_EQ(completions, 0);
    work->end();
    work->setCompletionBlock([&] { ++completions; });
    work->end();
    work->didChangeValueForKey(nullptr);
    EXPECT_EQ(completions, 1);
}
TEST(AsynchronousOperation, EndsInItsQueueWithoutHavingBegun)
{
    const Ref<NSOperationQueue> queue = make<NSOperationQueue>();
    queue->setSuspended(true);
    const Ref<LongOperation> work = make<LongOperation>();
    queue->addOperation(work.get());
    work->end();
    EXPECT_EQ(queue->operationCount(), 0u);
    queue->setSuspended(false);
    queue->waitUntilAllOperationsAreFinished();
    EXPECT_EQ(work->starts_, 0);
}
TEST(AsynchronousOperation, IsNotTakenByAQueueOnceAHostHasStartedIt)
{
    const Ref<NSOperationQueue> queue = make<NSOperationQueue>();
    const Ref<LongOperation> work = make<LongOperation>();
    work->start();
    EXPECT_THROW(queue->addOperation(work.get()), Exception);
    work->end();
    EXPECT_THROW(queue->addOperation(work.get()), Exception);
    EXPECT_EQ(queue->operationCount(), 0u);
    queue->waitUntilAllOperationsAreFinished();
    EXPECT_EQ(work->starts_, 1);
}
TEST(AsynchronousOperation, IsNotStartedAgainByTheQueueThatHasIt)
{
    const Ref<LongOperation> works[] { make<LongOperation>(),
        Ref<LongOperation>(make<QuietOperation>()) };
    for (const Ref<LongOperation>& work : works) {
        const Ref<NSOperationQueue> queue = make<NSOperationQueue>();
        queue->setSuspended(true);
        queue->addOperation(work.get());
        work->start();
        queue->setSuspended(false);
        dispatch_barrier_sync(queue->underlyingQueue().get(), [] {}); // it has had its turn
        EXPECT_EQ(work->starts_, 1);
        EXPECT_EQ(queue->operationCount(), 1u);
        work->end();
        queue->waitUntilAllOperationsAreFinished();
    }
}
TEST(AsynchronousOperation, HasEndedWhenItsStartRaisesInAQueue)
{
    const Ref<NSOperationQueue> queue = NSOperationQueue::cls().mainQueue();
    const Ref<BrokenOperation> work = make<BrokenOperation>();
    const Ref<NSOperation> next = make<NSOperation>();
    next->addDependency(work.get());
    queue->addOperation(work.get());
    const Ref<NSRunLoop> loop = NSRunLoop::cls().mainRunLoop();
    EXPECT_THROW(loop->runUntilIdle(NSDefaultRunLoopMode), Exception);
    EXPECT_TRUE(next->isReady());
    EXPECT_EQ(queue->operationCount(), 0u);
}

}
