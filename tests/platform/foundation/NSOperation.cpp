// SPDX-License-Identifier: Apache-2.0
#include "foundation/NSOperation.h"

#include <atomic>
#include <gtest/gtest.h>
#include <string>
#include <thread>

#include "foundation/NSArray.h"
#include "foundation/NSOperationQueue.h"
#include "foundation/NSRunLoop.h"
#include "foundation/NSThread.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"
#include "support/Memory.h"

namespace brindle {

/// Work of a class of its own.
class CountingOperation : public NSOperation {
    BRINDLE_OBJECT(CountingOperation, NSOperation)

public:
    int runs_ = 0;
};
template <> struct CountingOperation::Methods<struct Work> {
    static void main(CountingOperation& self) { ++self.runs_; }
    static void table(Builder& t) { t.methods({ { "main", imp<main> } }); }
};
BRINDLE_RECORD(CountingOperation, Work)

/// Work that is cancelled the moment after somebody has asked whether it is.
class LateCancelledOperation : public CountingOperation {
    BRINDLE_OBJECT(LateCancelledOperation, CountingOperation)
};
template <> struct LateCancelledOperation::Methods<struct Work> {
    static bool isCancelled(LateCancelledOperation& self)
    {
        const bool answer = super<LateCancelledOperation, "isCancelled", bool>(self);
        self.cancel();
        return answer;
    }
    static void table(Builder& t) { t.methods({ { "isCancelled", imp<isCancelled> } }); }
};
BRINDLE_RECORD(LateCancelledOperation, Work)

namespace {

    void turn() { NSRunLoop::cls().mainRunLoop()->runUntilIdle(NSDefaultRunLoopMode); }

    Ref<NSBlockOperation> operation(const Block<void()>& block)
    {
        return NSBlockOperation::cls().blockOperationWithBlock(block);
    }
    /// A queue that runs one at a time and begins when it is told to.
    Ref<NSOperationQueue> heldQueue()
    {
        Ref<NSOperationQueue> queue = make<NSOperationQueue>();
        queue->setMaxConcurrentOperationCount(1);
        queue->setSuspended(true);
        return queue;
    }
    void finish(const Ref<NSOperationQueue>& queue)
    {
        queue->setSuspended(false);
        queue->waitUntilAllOperationsAreFinished();
    }

}

// ---- by itself

TEST(NSOperation, RunsOnceWhereItIsStarted)
{
    const Ref<CountingOperation> work = make<CountingOperation>();
    EXPECT_TRUE(work->isReady());
    work->start();
    work->start();
    EXPECT_EQ(work->runs_, 1);
    EXPECT_TRUE(work->isFinished());
    EXPECT_FALSE(work->isExecuting());
}
TEST(NSOperation, EndsWithoutItsWorkWhenItWasCancelled)
{
    const Ref<CountingOperation> work = make<CountingOperation>();
    work->cancel();
    work->start();
    EXPECT_EQ(work->runs_, 0);
    EXPECT_TRUE(work->isFinished());
    EXPECT_TRUE(work->isCancelled());
}
TEST(NSOperation, CannotBeStartedBeforeWhatItWaitsFor)
{
    const Ref<CountingOperation> first = make<CountingOperation>();
    const Ref<CountingOperation> second = make<CountingOperation>();
    second->addDependency(first.get());
    EXPECT_FALSE(second->isReady());
    EXPECT_THROW(second->start(), Exception);
    first->start();
    EXPECT_TRUE(second->isReady());
    second->start();
    EXPECT_EQ(second->runs_, 1);
    EXPECT_EQ(second->dependencies()->count(), 0u);
}
TEST(NSOperation, DoesNotRunBeforeWhatItWaitsForWhenItIsCancelledMeanwhile)
{
    const Ref<CountingOperation> first = make<CountingOperation>();
    const Ref<LateCancelledOperation> second = make<LateCancelledOperation>();
    second->addDependency(first.get());
    EXPECT_THROW(second->start(), Exception);
    EXPECT_EQ(second->runs_, 0);
}
TEST(NSOperation, RemembersNobodyWhoNoLongerWaitsForIt)
{
    const Ref<CountingOperation> ended = make<CountingOperation>();
    ended->start();
    const Ref<CountingOperation> open = make<CountingOperation>();
    const std::size_t before = test::allocatedBytes();
    for (int i = 0; i < 20000; ++i) {
        make<CountingOperation>()->addDependency(ended.get());
        const Ref<CountingOperation> work = make<CountingOperation>();
        work->addDependency(open.get());
        work->removeDependency(open.get());
    }
    EXPECT_TRUE(test::allocatedBytes() < before + 100'000 || !test::growthCanBeMeasured());
}
TEST(NSOperation, WaitsNeitherForItselfNorForNil)
{
    const Ref<CountingOperation> work = make<CountingOperation>();
    EXPECT_THROW(work->addDependency(work.get()), Exception);
    EXPECT_THROW(work->addDependency(nullptr), Exception);
    EXPECT_TRUE(work->isReady());
}
TEST(NSOperation, CallsItsCompletionOnceAtTheEnd)
{
    std::string log;
    const auto work = operation([&] { log += "work "; });
    work->setCompletionBlock([&] { log += work->isFinished() ? "end" : "early"; });
    work->start();
    EXPECT_EQ(log, "work end");
    EXPECT_FALSE(work->completionBlock());
}
TEST(NSOperation, HasEndedWhenItsWorkRaises)
{
    const auto work = operation([] { brindle::raise("Broken", "by the work"); });
    EXPECT_THROW(work->start(), Exception);
    EXPECT_TRUE(work->isFinished());
}
TEST(NSBlockOperation, RunsAllItsBlocksAndTakesNoneAfterwards)
{
    std::atomic<int> runs { 0 };
    const auto work = operation([&] { ++runs; });
    work->addExecutionBlock([&] { ++runs; });
    work->addExecutionBlock([&] { ++runs; });
    work->start();
    EXPECT_EQ(runs, 3);
    EXPECT_THROW(work->addExecutionBlock([] {}), Exception);
}

// ---- in a queue

TEST(NSOperationQueue, BeginsNothingWhileItIsSuspended)
{
    const auto queue = heldQueue();
    std::atomic<int> runs { 0 };
    queue->addOperationWithBlock([&] { ++runs; });
    EXPECT_EQ(queue->operationCount(), 1u);
    EXPECT_EQ(runs, 0);
    finish(queue);
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(queue->operationCount(), 0u);
}
TEST(NSOperationQueue, TakesHigherPrioritiesFirstAndElseTheOrderOfAdding)
{
    const auto queue = heldQueue();
    std::string log;
    const auto add = [&](const char* name, NSOperationQueuePriority priority) {
        const auto work = operation([&log, name] { log += name; });
        work->setQueuePriority(priority);
        queue->addOperation(work.get());
    };
    add("a", NSOperationQueuePriorityNormal);
    add("b", NSOperationQueuePriorityLow);
    add("c", NSOperationQueuePriorityVeryHigh);
    add("d", NSOperationQueuePriorityNormal);
    finish(queue);
    EXPECT_EQ(log, "cadb");
}
TEST(NSOperationQueue, BeginsWhatWaitsForAnotherQueueWhenThatHasEnded)
{
    const auto first = heldQueue();
    const Ref<NSOperationQueue> second = make<NSOperationQueue>();
    std::string log;
    const auto early = operation([&] { log += "early "; });
    const auto late = operation([&] { log += "late"; });
    late->addDependency(early.get());
    second->addOperation(late.get());
    first->addOperation(early.get());
    EXPECT_FALSE(late->isReady());
    first->setSuspended(false);
    late->waitUntilFinished();
    EXPECT_EQ(log, "early late");
}
TEST(NSOperationQueue, GoesPastWhatIsNotReady)
{
    const auto queue = heldQueue();
    std::string log;
    const auto first = operation([&] { log += "first "; });
    const auto last = operation([&] { log += "last"; });
    first->addDependency(last.get());
    queue->addOperation(first.get());
    queue->addOperation(last.get());
    finish(queue);
    EXPECT_EQ(log, "lastfirst ");
}
TEST(NSOperationQueue, ADependencyThatIsRemovedHoldsNothingBack)
{
    const Ref<NSOperationQueue> queue = make<NSOperationQueue>();
    const auto never = operation([] {});
    const auto work = operation([] {});
    work->addDependency(never.get());
    queue->addOperation(work.get());
    EXPECT_FALSE(work->isFinished());
    work->removeDependency(never.get());
    work->waitUntilFinished();
    EXPECT_TRUE(work->isFinished());
}
TEST(NSOperationQueue, RunsNoMoreAtATimeThanItIsAllowed)
{
    const Ref<NSOperationQueue> queue = make<NSOperationQueue>();
    queue->setMaxConcurrentOperationCount(2);
    std::atomic<int> now { 0 };
    std::atomic<int> most { 0 };
    for (int i = 0; i < 40; ++i)
        queue->addOperationWithBlock([&] {
            const int here = ++now;
            int seen = most;
            while (here > seen && !most.compare_exchange_weak(seen, here)) { }
            std::this_thread::yield();
            --now;
        });
    queue->waitUntilAllOperationsAreFinished();
    EXPECT_LE(most, 2);
    EXPECT_EQ(now, 0);
}
TEST(NSOperationQueue, CancelsWhatHasNotBegun)
{
    const auto queue = heldQueue();
    std::atomic<int> runs { 0 };
    for (int i = 0; i < 3; ++i)
        queue->addOperationWithBlock([&] { ++runs; });
    queue->cancelAllOperations();
    finish(queue);
    EXPECT_EQ(runs, 0);
    EXPECT_EQ(queue->operationCount(), 0u);
}
TEST(NSOperationQueue, ACompletionIsCalledBeforeTheNextOneBegins)
{
    const auto queue = heldQueue();
    std::string log;
    for (const char* name : { "a", "b", "c" }) {
        const auto work = operation([&log, name] { log += name; });
        work->setCompletionBlock([&log] { log += "."; });
        queue->addOperation(work.get());
    }
    finish(queue);
    EXPECT_EQ(log, "a.b.c.");
}
TEST(NSOperationQueue, TakesNoOperationTwice)
{
    const auto queue = heldQueue();
    const auto work = operation([] {});
    queue->addOperation(work.get());
    EXPECT_THROW(queue->addOperation(work.get()), Exception);
    EXPECT_THROW(queue->addOperation(nullptr), Exception);
    finish(queue);
    EXPECT_THROW(queue->addOperation(work.get()), Exception);
}
TEST(NSOperationQueue, WaitsForThoseThatItWasGiven)
{
    const Ref<NSOperationQueue> queue = make<NSOperationQueue>();
    std::atomic<int> runs { 0 };
    const auto first = operation([&] { ++runs; });
    const auto second = operation([&] { ++runs; });
    queue->addOperations_waitUntilFinished(
        NSArray::cls().arrayWithObjects(first.get(), second.get()).get(), true);
    EXPECT_EQ(runs, 2);
}
TEST(NSOperationQueue, TheMainQueueRunsInOrderOnTheMainThread)
{
    std::string log;
    const Ref<NSOperationQueue> queue = NSOperationQueue::cls().mainQueue();
    queue->addOperationWithBlock([&] { log += "a"; });
    queue->addOperationWithBlock(
        [&] { log += NSThread::cls().isMainThread() ? "main" : "elsewhere"; });
    EXPECT_EQ(log, "");
    turn();
    EXPECT_EQ(log, "amain");
    EXPECT_EQ(queue->maxConcurrentOperationCount(), 1);
}
TEST(NSOperationQueue, KnowsWhichQueueRunsAnOperation)
{
    const Ref<NSOperationQueue> queue = make<NSOperationQueue>();
    Ref<NSOperationQueue> seen;
    const auto work = operation([&] { seen = NSOperationQueue::cls().currentQueue(); });
    queue->addOperation(work.get());
    work->waitUntilFinished();
    EXPECT_EQ(seen.get(), queue.get());
    EXPECT_EQ(
        NSOperationQueue::cls().currentQueue().get(), NSOperationQueue::cls().mainQueue().get());
}
TEST(NSOperationQueue, StaysUntilItsOperationsHaveEnded)
{
    std::atomic<bool> ran { false };
    const auto work = operation([&] { ran = true; });
    {
        const Ref<NSOperationQueue> queue = make<NSOperationQueue>();
        queue->addOperation(work.get());
    }
    work->waitUntilFinished();
    EXPECT_TRUE(ran);
}
TEST(NSOperationQueue, RunsManyAddedFromSeveralThreads)
{
    const Ref<NSOperationQueue> queue = make<NSOperationQueue>();
    queue->setMaxConcurrentOperationCount(3);
    std::atomic<int> runs { 0 };
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            Ref<NSOperation> last;
            for (int n = 0; n < 500; ++n) {
                const auto work = operation([&] { ++runs; });
                if (last && n % 3 == 0)
                    work->addDependency(last.get());
                queue->addOperation(work.get());
                last = Ref<NSOperation>(work);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    queue->waitUntilAllOperationsAreFinished();
    EXPECT_EQ(runs, 2000);
}

// ---- started by somebody else than their queue

TEST(NSOperationQueue, LeavesOutWhatAHostHasStarted)
{
    const auto queue = heldQueue();
    const Ref<CountingOperation> work = make<CountingOperation>();
    queue->addOperation(work.get());
    work->start();
    EXPECT_EQ(work->runs_, 1);
    EXPECT_EQ(queue->operationCount(), 0u);
    finish(queue);
    EXPECT_EQ(work->runs_, 1);
}
TEST(NSOperationQueue, RunsOnceWhatIsStartedWhileItBegins)
{
    const Ref<NSOperationQueue> queue = make<NSOperationQueue>();
    std::atomic<int> runs { 0 };
    for (int i = 0; i < 200; ++i) {
        const auto work = operation([&] { ++runs; });
        queue->addOperation(work.get());
        work->start();
    }
    queue->waitUntilAllOperationsAreFinished();
    EXPECT_EQ(runs, 200);
}
TEST(NSOperation, StartedAgainByItsOwnWorkRaisesWithoutAQueue)
{
    Ref<NSBlockOperation> work;
    work = operation([&] { EXPECT_THROW(work->start(), Exception); });
    work->start();
    EXPECT_TRUE(work->isFinished());
}

// ---- barriers

TEST(NSOperationQueue, ABarrierRunsAloneBetweenThoseBeforeAndThoseAfter)
{
    const Ref<NSOperationQueue> queue = make<NSOperationQueue>();
    queue->setSuspended(true);
    std::atomic<int> before { 0 };
    std::atomic<int> after { 0 };
    int seenBefore = -1;
    int seenAfter = -1;
    for (int i = 0; i < 8; ++i)
        queue->addOperationWithBlock([&] { ++before; });
    queue->addBarrierBlock([&] { seenBefore = before, seenAfter = after; });
    for (int i = 0; i < 8; ++i)
        queue->addOperationWithBlock([&] { ++after; });
    finish(queue);
    EXPECT_EQ(seenBefore, 8);
    EXPECT_EQ(seenAfter, 0);
    EXPECT_EQ(after, 8);
}
TEST(NSOperationQueue, ABarrierHoldsBackHigherPrioritiesThatComeLater)
{
    const auto queue = heldQueue();
    std::string log;
    queue->addOperationWithBlock([&] { log += "a"; });
    queue->addBarrierBlock([&] { log += "|"; });
    queue->addBarrierBlock([&] { log += "|"; });
    const auto urgent = operation([&] { log += "b"; });
    urgent->setQueuePriority(NSOperationQueuePriorityVeryHigh);
    queue->addOperation(urgent.get());
    finish(queue);
    EXPECT_EQ(log, "a||b");
}
TEST(NSOperationQueue, ABarrierInAnEmptyQueueRunsAtOnce)
{
    const Ref<NSOperationQueue> queue = make<NSOperationQueue>();
    std::string log;
    queue->addBarrierBlock([&] { log += "|"; });
    queue->waitUntilAllOperationsAreFinished();
    queue->addBarrierBlock([&] { log += "|"; });
    queue->waitUntilAllOperationsAreFinished();
    EXPECT_EQ(log, "||");
}
TEST(NSOperationQueue, TheMainQueueTakesBarriersInTheirOrder)
{
    std::string log;
    const Ref<NSOperationQueue> queue = NSOperationQueue::cls().mainQueue();
    queue->addOperationWithBlock([&] { log += "a"; });
    queue->addBarrierBlock([&] { log += "|"; });
    queue->addOperationWithBlock([&] { log += "b"; });
    turn();
    EXPECT_EQ(log, "a|b");
}
TEST(NSOperationQueue, AnswersItsOperationsInTheOrderInWhichTheyBegin)
{
    const auto queue = heldQueue();
    const auto first = operation([] {});
    const auto urgent = operation([] {});
    urgent->setQueuePriority(NSOperationQueuePriorityHigh);
    const auto afterwards = operation([] {});
    afterwards->setQueuePriority(NSOperationQueuePriorityVeryHigh);
    queue->addOperation(first.get());
    queue->addOperation(urgent.get());
    queue->addBarrierBlock([] {});
    queue->addOperation(afterwards.get());
    const Ref<NSArray> all = queue->operations();
    ASSERT_EQ(all->count(), 4u);
    EXPECT_EQ(all->objectAtIndex(0), urgent);
    EXPECT_EQ(all->objectAtIndex(1), first);
    EXPECT_EQ(all->objectAtIndex(3), afterwards);
    finish(queue);
}
TEST(NSOperationQueue, RunsManyThatWaitForOne)
{
    constexpr int kMany = 20000;
    const Ref<NSOperationQueue> queue = make<NSOperationQueue>();
    std::atomic<int> runs { 0 };
    const auto first = operation([] {});
    for (int i = 0; i < kMany; ++i) {
        const auto work = operation([&] { ++runs; });
        work->addDependency(first.get());
        queue->addOperation(work.get());
    }
    first->start();
    queue->waitUntilAllOperationsAreFinished();
    EXPECT_EQ(runs, kMany);
}
TEST(NSOperationQueue, RunsManyThatEachWaitForTheOneBefore)
{
    constexpr int kMany = 50000;
    const auto queue = heldQueue();
    int runs = 0; // one after another
    Ref<NSBlockOperation> last;
    for (int i = 0; i < kMany; ++i) {
        const auto work = operation([&] { ++runs; });
        if (last)
            work->addDependency(last.get());
        queue->addOperation(work.get());
        last = work;
    }
    finish(queue);
    EXPECT_EQ(runs, kMany);
}
TEST(NSOperationQueue, HoldsBackWhatIsToWaitAfterItWasAdded)
{
    const auto queue = heldQueue();
    std::string log;
    const auto first = operation([&] { log += "1"; });
    const auto second = operation([&] { log += "2"; });
    const auto third = operation([&] { log += "3"; });
    first->addDependency(second.get());
    for (NSOperation* each : { first.get(), second.get(), third.get() })
        queue->addOperation(each);
    second->addDependency(third.get());
    second->addDependency(first.get());
    second->removeDependency(first.get());
    finish(queue);
    EXPECT_EQ(log, "321");
}
TEST(NSBlockOperation, RunsEachBlockThatItTookWhileItBegan)
{
    for (int round = 0; round < 100; ++round) {
        std::atomic<int> taken { 1 };
        std::atomic<int> runs { 0 };
        const auto work = operation([&] { ++runs; });
        std::thread adder([&] {
            try {
                for (;; ++taken)
                    work->addExecutionBlock([&] { ++runs; });
            } catch (const Exception&) {
            }
        });
        while (taken < 3)
            std::this_thread::yield();
        work->start();
        adder.join();
        EXPECT_EQ(runs, taken);
    }
}

// ---- how urgent it is

TEST(NSOperation, KeepsItsQualityOfService)
{
    const auto work = operation([] {});
    EXPECT_EQ(work->qualityOfService(), NSQualityOfServiceDefault);
    work->setQualityOfService(NSQualityOfServiceUtility);
    EXPECT_EQ(work->qualityOfService(), NSQualityOfServiceUtility);
    work->setQualityOfService(static_cast<NSQualityOfService>(7));
    EXPECT_EQ(work->qualityOfService(), NSQualityOfServiceDefault);
}
TEST(NSOperationQueue, KeepsItsQualityOfServiceAndTheMainOneIsTheHighest)
{
    const Ref<NSOperationQueue> queue = make<NSOperationQueue>();
    EXPECT_EQ(queue->qualityOfService(), NSQualityOfServiceDefault);
    queue->setQualityOfService(NSQualityOfServiceBackground);
    EXPECT_EQ(queue->qualityOfService(), NSQualityOfServiceBackground);
    const Ref<NSOperationQueue> main = NSOperationQueue::cls().mainQueue();
    main->setQualityOfService(NSQualityOfServiceBackground);
    EXPECT_EQ(main->qualityOfService(), NSQualityOfServiceUserInteractive);
}
TEST(NSOperationQueue, RunsOperationsWithoutInit)
{
    const Ref<NSOperationQueue> queue = alloc<NSOperationQueue>();
    queue->waitUntilAllOperationsAreFinished();
    bool ran = false;
    queue->addOperationWithBlock([&] { ran = true; });
    queue->waitUntilAllOperationsAreFinished();
    EXPECT_TRUE(ran);
    EXPECT_EQ(queue->qualityOfService(), NSQualityOfServiceDefault);
}

TEST(NSOperationQueue, RunsOperationsOfEveryQuality)
{
    for (const NSQualityOfService quality :
        { NSQualityOfServiceUserInteractive, NSQualityOfServiceUserInitiated,
            NSQualityOfServiceDefault, NSQualityOfServiceUtility, NSQualityOfServiceBackground }) {
        const Ref<NSOperationQueue> queue = make<NSOperationQueue>();
        queue->setQualityOfService(quality);
        Ref<NSOperationQueue> seen;
        queue->addOperationWithBlock([&] { seen = NSOperationQueue::cls().currentQueue(); });
        queue->waitUntilAllOperationsAreFinished();
        EXPECT_EQ(seen.get(), queue.get());
    }
}

}
