// SPDX-License-Identifier: Apache-2.0
#include "NSOperationQueue.h"

#include <algorithm>

#include "DispatchPrivate.h"
#include "Each.h"
#include "Exceptions.h"
#include "NSMutableArray.h"
#include "NSThread.h"
#include "OperationPrivate.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    thread_local NSOperationQueue* runningQueue = nullptr;

    /// Names the queue whose operation runs on this thread.
    class RunningQueue {
    public:
        explicit RunningQueue(NSOperationQueue* queue)
            : before_(std::exchange(runningQueue, queue))
        {
        }
        ~RunningQueue() { runningQueue = before_; }
        RunningQueue(const RunningQueue&) = delete;
        RunningQueue& operator=(const RunningQueue&) = delete;

    private:
        NSOperationQueue* before_;
    };

}

// ---- operations and queues

void OperationAccess::add(NSOperationQueue& queue, NSOperation& operation, Company company)
{
    // One that is started by hand and says itself what it does has no other sign of it.
    bool isTaken = operation.isExecuting() || operation.isFinished();
    bool mayBegin = false;
    {
        const Lock held = lock();
        isTaken |= operation.queue_ || operation.state_ != State::waiting;
        if (!isTaken) {
            enqueue(queue, operation, company);
            mayBegin = operation.place_.era == queue.present_ && isReady(operation);
        }
    }
    if (isTaken)
        raise("NSInvalidArgumentException",
            "*** -[NSOperationQueue addOperation:]: the operation is in a queue or has begun");
    if (mayBegin)
        proceed(queue);
}

void OperationAccess::enqueue(NSOperationQueue& queue, NSOperation& operation, Company company)
{
    operation.queue_ = Ref<NSOperationQueue>(&queue);
    auto& eras = queue.eras_;
    if (company == Company::none && eras.back() > 0)
        eras.push_back(0);
    operation.place_
        = { queue.present_ + eras.size() - 1, -NSInteger { operation.priority_ }, ++queue.added_ };
    ++eras.back();
    if (company == Company::none)
        eras.push_back(0);
    queue.waiting_.emplace(operation.place_, &operation);
    readinessChanged(operation);
    dispatch_group_enter(queue.group_.get());
}

void OperationAccess::dequeue(NSOperation& operation)
{
    NSOperationQueue& queue = *operation.queue_;
    const auto found = queue.waiting_.find(operation.place_);
    queue.begun_.push_back(std::move(found->second));
    queue.waiting_.erase(found);
    queue.ready_.erase(operation.place_);
}

dispatch_queue_t OperationAccess::queueFor(
    const NSOperationQueue& queue, const NSOperation& operation)
{
    const bool isMain = queue.queue_ == dispatch_get_main_queue();
    const NSQualityOfService own = operation.quality_;
    switch (isMain ? NSQualityOfServiceDefault
                   : (own == NSQualityOfServiceDefault ? queue.quality_ : own)) {
    case NSQualityOfServiceUserInteractive:
    case NSQualityOfServiceUserInitiated:
        return dispatch_get_global_queue(DISPATCH_QUEUE_PRIORITY_HIGH, 0);
    case NSQualityOfServiceUtility:
        return dispatch_get_global_queue(DISPATCH_QUEUE_PRIORITY_LOW, 0);
    case NSQualityOfServiceBackground:
        return dispatch_get_global_queue(DISPATCH_QUEUE_PRIORITY_BACKGROUND, 0);
    default:
        return queue.queue_.get();
    }
}

void OperationAccess::proceed(NSOperationQueue& queue)
{
    struct Ready {
        Ref<NSOperation> operation;
        dispatch_queue_t where;
    };
    std::vector<Ready> ready;
    {
        const Lock held = lock();
        const auto hasRoom = [&queue] {
            return queue.most_ < 0 || queue.begun_.size() < static_cast<std::size_t>(queue.most_);
        };
        const auto& all = queue.ready_;
        while (!all.empty() && all.begin()->first.era == queue.present_ && hasRoom()
            && !queue.suspended_) {
            NSOperation& operation = *all.begin()->second;
            dequeue(operation);
            operation.state_ = State::given;
            ready.push_back({ Ref<NSOperation>(&operation), queueFor(queue, operation) });
        }
    }
    for (Ready& each : ready)
        dispatch_async(each.where,
            [operation = std::move(each.operation), kept = Ref<NSOperationQueue>(&queue)] {
                const RunningQueue running(kept.get());
                run(*operation);
            });
}

void OperationAccess::run(NSOperation& operation)
{
    try {
        if (!operation.isFinished() && !operation.isExecuting())
            operation.start();
    } catch (...) {
        finish(operation);
        throw;
    }
    // One that says itself when it has finished may have done so before it was asked.
    if (operation.isFinished())
        finish(operation);
}

void OperationAccess::leaveEra(NSOperationQueue& queue, const NSOperation& operation)
{
    auto& eras = queue.eras_;
    --eras[operation.place_.era - queue.present_];
    while (eras.size() > 1 && eras.front() == 0) {
        eras.pop_front();
        ++queue.present_;
    }
}

void OperationAccess::finish(NSOperation& operation)
{
    /// Lets the next ones begin and tells those who wait, also when the completion raises.
    struct Ending {
        Ref<NSOperationQueue> queue;
        Ref<DispatchGroup> end;
        std::vector<Ref<NSOperationQueue>> next;

        void add(const Ref<NSOperationQueue>& each)
        {
            if (each && std::find(next.begin(), next.end(), each) == next.end())
                next.push_back(each);
        }
        ~Ending()
        {
            for (const Ref<NSOperationQueue>& each : next)
                proceed(*each);
            if (end)
                dispatch_group_leave(end.get());
            if (queue)
                dispatch_group_leave(queue->group_.get());
        }
    } ending;
    std::vector<Ref<NSOperation>> released; // when nothing is locked any more
    {
        const Lock held = lock();
        if (operation.state_ == State::finished)
            return;
        if (operation.state_ == State::waiting)
            begin(operation);
        operation.state_ = State::finished;
        released.swap(operation.dependencies_);
        ending.end = std::move(operation.end_);
        ending.queue = std::move(operation.queue_);
        if (ending.queue) {
            auto& begun = ending.queue->begun_;
            const auto found = std::find(begun.begin(), begun.end(), &operation);
            released.push_back(std::move(*found));
            begun.erase(found);
            leaveEra(*ending.queue, operation);
            ending.add(ending.queue);
        }
        for (const WeakRef<NSOperation>& weak : operation.dependents_) {
            released.push_back(weak.get());
            if (const Ref<NSOperation>& waiting = released.back()) {
                --waiting->unfinished_;
                readinessChanged(*waiting);
                ending.add(waiting->queue_);
            }
        }
        operation.dependents_.clear();
    }
    if (const Block<void()> completion = operation.completionBlock()) {
        operation.setCompletionBlock(nullptr);
        completion();
    }
}

template <> struct NSOperationQueue::Methods<struct Operations> {

    static Ref<NSOperationQueue> mainQueue(Class&)
    {
        static NSOperationQueue* const queue = [] {
            auto made = make<NSOperationQueue>();
            made->queue_ = Ref<DispatchQueue>(dispatch_get_main_queue());
            made->quality_ = NSQualityOfServiceUserInteractive;
            return made.leak();
        }();
        return queue;
    }
    static bool isMain(const NSOperationQueue& self)
    {
        return self.queue_ == dispatch_get_main_queue();
    }
    static Ref<NSOperationQueue> currentQueue(Class& self)
    {
        if (runningQueue || !NSThread::cls().isMainThread())
            return Ref<NSOperationQueue>(runningQueue);
        return mainQueue(self);
    }

    // ---- adding

    static void addOperation(NSOperationQueue& self, NSOperation* operation)
    {
        if (!operation)
            raise("NSInvalidArgumentException",
                "*** -[NSOperationQueue addOperation:]: the operation is nil");
        OperationAccess::add(self, *operation, OperationAccess::Company::others);
    }
    static void addOperations(NSOperationQueue& self, NSArray* operations, bool wait)
    {
        const Ref<NSOperationQueue> alive(&self);
        const Ref<NSArray> all(operations);
        for (NSOperation* operation : each<NSOperation>(all))
            self.addOperation(operation);
        for (NSOperation* operation : each<NSOperation>(all)) {
            if (wait)
                operation->waitUntilFinished();
        }
    }
    static Ref<NSBlockOperation> operationWithBlock(Closure<void()>* block)
    {
        if (!block)
            fatal("a null closure was handed to a queue");
        return NSBlockOperation::cls().blockOperationWithBlock(Block<void()>(block));
    }
    static void addOperationWithBlock(NSOperationQueue& self, Closure<void()>* block)
    {
        self.addOperation(operationWithBlock(block).get());
    }
    static void addBarrierBlock(NSOperationQueue& self, Closure<void()>* block)
    {
        const Ref<NSBlockOperation> operation = operationWithBlock(block);
        OperationAccess::add(self, *operation, OperationAccess::Company::none);
    }

    // ---- all of them

    static std::vector<Ref<NSOperation>> present(NSOperationQueue& self)
    {
        const auto held = OperationAccess::lock();
        std::vector<Ref<NSOperation>> all(self.begun_.begin(), self.begun_.end());
        for (const auto& [place, operation] : self.waiting_)
            all.push_back(operation);
        return all;
    }
    static Ref<NSArray> operations(NSOperationQueue& self)
    {
        const Ref<NSMutableArray> answer = make<NSMutableArray>();
        for (const Ref<NSOperation>& each : present(self))
            answer->addObject(each.get());
        return Ref<NSArray>(answer);
    }
    static NSUInteger operationCount(NSOperationQueue& self)
    {
        const auto held = OperationAccess::lock();
        return self.begun_.size() + self.waiting_.size();
    }
    static void cancelAll(NSOperationQueue& self)
    {
        for (const Ref<NSOperation>& each : present(self))
            each->cancel();
    }
    static void waitUntilAllOperationsAreFinished(NSOperationQueue& self)
    {
        const Ref<NSOperationQueue> alive(&self);
        dispatch_group_wait(self.group_.get(), DISPATCH_TIME_FOREVER);
    }

    // ---- manner

    static NSInteger most(NSOperationQueue& self)
    {
        const auto held = OperationAccess::lock();
        return isMain(self) ? 1 : self.most_;
    }
    static void setMost(NSOperationQueue& self, NSInteger count)
    {
        if (isMain(self))
            return;
        {
            const auto held = OperationAccess::lock();
            self.most_ = std::max(count, NSOperationQueueDefaultMaxConcurrentOperationCount);
        }
        OperationAccess::proceed(self);
    }
    static bool isSuspended(NSOperationQueue& self)
    {
        const auto held = OperationAccess::lock();
        return self.suspended_;
    }
    static void setSuspended(NSOperationQueue& self, bool suspended)
    {
        if (isMain(self))
            return;
        {
            const auto held = OperationAccess::lock();
            self.suspended_ = suspended;
        }
        OperationAccess::proceed(self);
    }
    static NSQualityOfService quality(NSOperationQueue& self)
    {
        const auto held = OperationAccess::lock();
        return self.quality_;
    }
    static void setQuality(NSOperationQueue& self, NSQualityOfService quality)
    {
        const auto held = OperationAccess::lock();
        if (!isMain(self))
            self.quality_ = OperationAccess::knownQuality(quality);
    }
    static Ref<DispatchQueue> underlyingQueue(NSOperationQueue& self) { return self.queue_; }

    static void table(Builder& t)
    {
        t.properties({ property<&NSOperationQueue::name_>("name", copied) });
        t.classMethods({
            { "mainQueue", imp<mainQueue> },
            { "currentQueue", imp<currentQueue> },
        });
        t.methods({
            { "addOperation:", imp<addOperation> },
            { "addOperations:waitUntilFinished:", imp<addOperations> },
            { "addOperationWithBlock:", imp<addOperationWithBlock> },
            { "addBarrierBlock:", imp<addBarrierBlock> },
            { "operations", imp<operations> },
            { "operationCount", imp<operationCount> },
            { "cancelAllOperations", imp<cancelAll> },
            { "waitUntilAllOperationsAreFinished", imp<waitUntilAllOperationsAreFinished> },
            { "maxConcurrentOperationCount", imp<most> },
            { "setMaxConcurrentOperationCount:", imp<setMost> },
            { "isSuspended", imp<isSuspended> },
            { "setSuspended:", imp<setSuspended> },
            { "qualityOfService", imp<quality> },
            { "setQualityOfService:", imp<setQuality> },
            { "underlyingQueue", imp<underlyingQueue> },
        });
    }
};
BRINDLE_RECORD(NSOperationQueue, Operations)

}
