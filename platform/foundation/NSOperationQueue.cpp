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

void OperationAccess::add(NSOperationQueue& queue, NSOperation& operation)
{
    {
        Lock held = lock();
        if (operation.queue_ || operation.state_ != State::waiting) {
            held.unlock();
            raise("NSInvalidArgumentException",
                "*** -[NSOperationQueue addOperation:]: the operation is in a queue or has begun");
        }
        operation.queue_ = Ref<NSOperationQueue>(&queue);
        const auto behind = std::upper_bound(queue.waiting_.begin(), queue.waiting_.end(),
            operation.priority_, [](NSInteger priority, const Ref<NSOperation>& other) {
                return priority > other->priority_;
            });
        queue.waiting_.emplace(behind, &operation);
        dispatch_group_enter(queue.group_.get());
    }
    proceed(queue);
}

void OperationAccess::proceed(NSOperationQueue& queue)
{
    std::vector<Ref<NSOperation>> ready;
    {
        const Lock held = lock();
        const auto hasRoom = [&queue] {
            return queue.most_ < 0 || queue.begun_.size() < static_cast<std::size_t>(queue.most_);
        };
        auto& waiting = queue.waiting_;
        for (auto at = waiting.begin(); at != waiting.end() && hasRoom() && !queue.suspended_;) {
            if (!isReady(**at)) {
                ++at;
                continue;
            }
            (*at)->state_ = State::given;
            ready.push_back(*at);
            queue.begun_.push_back(std::move(*at));
            at = waiting.erase(at);
        }
    }
    for (Ref<NSOperation>& operation : ready)
        dispatch_async(queue.queue_.get(),
            [operation = std::move(operation), kept = Ref<NSOperationQueue>(&queue)] {
                const RunningQueue running(kept.get());
                operation->start();
            });
}

void OperationAccess::finish(NSOperation& operation)
{
    /// Lets the next ones begin and tells those who wait, also when the completion raises.
    struct Ending {
        Ref<NSOperationQueue> queue;
        Ref<DispatchGroup> end;
        std::vector<Ref<NSOperationQueue>> next;
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
        operation.state_ = State::finished;
        released.swap(operation.dependencies_);
        ending.end = std::move(operation.end_);
        ending.queue = std::move(operation.queue_);
        if (ending.queue) {
            auto& begun = ending.queue->begun_;
            const auto found = std::find(begun.begin(), begun.end(), &operation);
            released.push_back(std::move(*found));
            begun.erase(found);
            ending.next.push_back(ending.queue);
        }
        for (const WeakRef<NSOperation>& weak : operation.dependents_) {
            released.push_back(weak.get());
            if (const Ref<NSOperation>& waiting = released.back(); waiting && waiting->queue_)
                ending.next.push_back(waiting->queue_);
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
    static Ref<NSObject> init(NSOperationQueue& self)
    {
        if (!super<NSOperationQueue, "init", Ref<NSObject>>(self))
            return nullptr;
        self.queue_ = dispatch_queue_create("brindle.operations", DISPATCH_QUEUE_CONCURRENT);
        self.group_ = dispatch_group_create();
        return &self;
    }

    // ---- adding

    static void addOperation(NSOperationQueue& self, NSOperation* operation)
    {
        if (!operation)
            raise("NSInvalidArgumentException",
                "*** -[NSOperationQueue addOperation:]: the operation is nil");
        OperationAccess::add(self, *operation);
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
    static void addOperationWithBlock(NSOperationQueue& self, Closure<void()>* block)
    {
        if (!block)
            fatal("a null closure was handed to a queue");
        const auto operation
            = NSBlockOperation::cls().blockOperationWithBlock(Block<void()>(block));
        self.addOperation(operation.get());
    }

    // ---- all of them

    static std::vector<Ref<NSOperation>> present(NSOperationQueue& self)
    {
        const auto held = OperationAccess::lock();
        std::vector<Ref<NSOperation>> all(self.begun_.begin(), self.begun_.end());
        all.insert(all.end(), self.waiting_.begin(), self.waiting_.end());
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
    static Ref<DispatchQueue> underlyingQueue(NSOperationQueue& self) { return self.queue_; }

    static void table(Builder& t)
    {
        t.properties({ property<&NSOperationQueue::name_>("name", copied) });
        t.classMethods({
            { "mainQueue", imp<mainQueue> },
            { "currentQueue", imp<currentQueue> },
        });
        t.methods({
            { "init", imp<init> },
            { "addOperation:", imp<addOperation> },
            { "addOperations:waitUntilFinished:", imp<addOperations> },
            { "addOperationWithBlock:", imp<addOperationWithBlock> },
            { "operations", imp<operations> },
            { "operationCount", imp<operationCount> },
            { "cancelAllOperations", imp<cancelAll> },
            { "waitUntilAllOperationsAreFinished", imp<waitUntilAllOperationsAreFinished> },
            { "maxConcurrentOperationCount", imp<most> },
            { "setMaxConcurrentOperationCount:", imp<setMost> },
            { "isSuspended", imp<isSuspended> },
            { "setSuspended:", imp<setSuspended> },
            { "underlyingQueue", imp<underlyingQueue> },
        });
    }
};
BRINDLE_RECORD(NSOperationQueue, Operations)

}
