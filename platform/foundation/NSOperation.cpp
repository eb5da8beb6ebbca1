// SPDX-License-Identifier: Apache-2.0
#include "NSOperation.h"

#include <algorithm>

#include "Dispatch.h"
#include "DispatchPrivate.h"
#include "Exceptions.h"
#include "NSMutableArray.h"
#include "OperationPrivate.h"
#include "runtime/Table.h"

namespace brindle {

OperationAccess::Lock OperationAccess::lock()
{
    static constinit std::mutex mutex;
    return Lock(mutex);
}

void OperationAccess::readinessChanged(NSOperation& operation)
{
    if (operation.state_ != State::waiting || !operation.queue_)
        return;
    auto& ready = operation.queue_->ready_;
    if (isReady(operation))
        ready.emplace(operation.place_, &operation);
    else
        ready.erase(operation.place_);
}

void OperationAccess::begin(NSOperation& operation)
{
    if (operation.state_ == State::waiting && operation.queue_)
        dequeue(operation);
    operation.state_ = State::executing;
}

NSQualityOfService OperationAccess::knownQuality(NSQualityOfService quality)
{
    switch (quality) {
    case NSQualityOfServiceUserInteractive:
    case NSQualityOfServiceUserInitiated:
    case NSQualityOfServiceUtility:
    case NSQualityOfServiceBackground:
        return quality;
    default:
        return NSQualityOfServiceDefault;
    }
}

template <> struct NSOperation::Methods<struct Work> {

    [[noreturn]] static void refuse(const char* what)
    {
        raise("NSInvalidArgumentException", "*** -[NSOperation " + std::string(what));
    }

    static void main(NSOperation&) { }
    static void start(NSOperation& self)
    {
        const Ref<NSOperation> alive(&self);
        {
            auto held = OperationAccess::lock();
            const State before = self.state_;
            if (before == State::finished)
                return;
            if (before == State::executing && self.queue_)
                return;
            const bool mayBegin = before == State::given
                || (before == State::waiting && OperationAccess::isReady(self));
            if (mayBegin)
                OperationAccess::begin(self);
            held.unlock();
            if (!mayBegin)
                refuse("start]: the operation is executing or waits for others");
        }
        try {
            if (!self.isCancelled())
                self.main();
        } catch (...) {
            OperationAccess::finish(self);
            throw;
        }
        OperationAccess::finish(self);
    }

    static bool isAsynchronous(NSOperation&) { return false; }
    static void willChange(NSOperation&, NSString*) { }
    static void didChange(NSOperation& self, NSString* key)
    {
        if (maybe(key)->isEqualToString("isFinished"_ns) && self.isFinished())
            OperationAccess::finish(self);
    }

    static void cancel(NSOperation& self)
    {
        Ref<NSOperationQueue> queue;
        {
            const auto held = OperationAccess::lock();
            self.cancelled_ = true;
            OperationAccess::readinessChanged(self);
            queue = self.queue_;
        }
        if (queue)
            OperationAccess::proceed(*queue);
    }
    static bool isCancelled(NSOperation& self) { return self.cancelled_; }
    static bool isExecuting(NSOperation& self)
    {
        const auto held = OperationAccess::lock();
        return self.state_ == State::executing;
    }
    static bool isFinished(NSOperation& self)
    {
        const auto held = OperationAccess::lock();
        return self.state_ == State::finished;
    }
    static bool isReady(NSOperation& self)
    {
        const auto held = OperationAccess::lock();
        return OperationAccess::isReady(self);
    }

    static void waitUntilFinished(NSOperation& self)
    {
        const Ref<NSOperation> alive(&self);
        const Ref<DispatchGroup> fresh = dispatch_group_create();
        Ref<DispatchGroup> end;
        {
            const auto held = OperationAccess::lock();
            if (self.state_ == State::finished)
                return;
            if (!self.end_) {
                dispatch_group_enter(fresh.get());
                self.end_ = fresh;
            }
            end = self.end_;
        }
        dispatch_group_wait(end.get(), DISPATCH_TIME_FOREVER);
    }

    // ---- what it waits for

    static void addDependency(NSOperation& self, NSOperation* other)
    {
        if (!other || other == &self)
            refuse("addDependency:]: an operation cannot wait for itself or for nil");
        const auto held = OperationAccess::lock();
        auto& all = self.dependencies_;
        if (self.state_ != State::waiting || std::find(all.begin(), all.end(), other) != all.end())
            return;
        all.emplace_back(other);
        if (other->state_ == State::finished)
            return;
        other->dependents_.emplace_back(&self);
        ++self.unfinished_;
        OperationAccess::readinessChanged(self);
    }
    static void removeDependency(NSOperation& self, NSOperation* other)
    {
        std::vector<Ref<NSOperation>> released; // when nothing is locked any more
        Ref<NSOperationQueue> queue;
        {
            const auto held = OperationAccess::lock();
            auto& all = self.dependencies_;
            const auto found = std::find(all.begin(), all.end(), other);
            if (found == all.end())
                return;
            released.push_back(std::move(*found));
            all.erase(found);
            std::erase_if(other->dependents_, [&](const WeakRef<NSOperation>& each) {
                released.push_back(each.get());
                return !released.back() || released.back() == &self;
            });
            if (other->state_ != State::finished)
                --self.unfinished_;
            OperationAccess::readinessChanged(self);
            queue = self.queue_;
        }
        if (queue)
            OperationAccess::proceed(*queue);
    }
    static Ref<NSArray> dependencies(NSOperation& self)
    {
        std::vector<Ref<NSOperation>> all;
        {
            const auto held = OperationAccess::lock();
            all = self.dependencies_;
        }
        const Ref<NSMutableArray> answer = make<NSMutableArray>();
        for (const Ref<NSOperation>& each : all)
            answer->addObject(each.get());
        return Ref<NSArray>(answer);
    }
    static void setQueuePriority(NSOperation& self, NSOperationQueuePriority priority)
    {
        const NSInteger steps = std::clamp<NSInteger>(priority, -8, 8) / 4; // towards normal
        const auto held = OperationAccess::lock();
        self.priority_ = static_cast<NSOperationQueuePriority>(steps * 4);
    }
    static void setQuality(NSOperation& self, NSQualityOfService quality)
    {
        const auto held = OperationAccess::lock();
        self.quality_ = OperationAccess::knownQuality(quality);
    }

    static void table(Builder& t)
    {
        t.properties({
            property<&NSOperation::priority_>("queuePriority", nonatomic),
            property<&NSOperation::quality_>("qualityOfService", nonatomic),
            property<&NSOperation::completion_>("completionBlock", copied),
            property<&NSOperation::name_>("name", copied),
        });
        t.methods({
            { "start", imp<start> },
            { "main", imp<main> },
            { "cancel", imp<cancel> },
            { "isCancelled", imp<isCancelled> },
            { "isExecuting", imp<isExecuting> },
            { "isFinished", imp<isFinished> },
            { "isReady", imp<isReady> },
            { "waitUntilFinished", imp<waitUntilFinished> },
            { "addDependency:", imp<addDependency> },
            { "removeDependency:", imp<removeDependency> },
            { "dependencies", imp<dependencies> },
            { "setQueuePriority:", imp<setQueuePriority> },
            { "setQualityOfService:", imp<setQuality> },
            { "isAsynchronous", imp<isAsynchronous> },
            { "isConcurrent", imp<isAsynchronous> },
            { "willChangeValueForKey:", imp<willChange> },
            { "didChangeValueForKey:", imp<didChange> },
        });
    }
};
BRINDLE_RECORD(NSOperation, Work)

template <> struct NSBlockOperation::Methods<struct Blocks> {

    static Ref<NSBlockOperation> withBlock(Class& self, Closure<void()>* block)
    {
        Ref<NSBlockOperation> made = cast<NSBlockOperation>(
            self.send<"alloc", Ref<NSObject>>()->send<"init", Ref<NSObject>>());
        made->addExecutionBlock(Block<void()>(block));
        return made;
    }
    static void addBlock(NSBlockOperation& self, Closure<void()>* block)
    {
        if (!block)
            fatal("a null closure was handed to an operation");
        Block<void()> added(block);
        auto held = OperationAccess::lock();
        if (!OperationAccess::hasBegun(self)) {
            self.blocks_.push_back(std::move(added));
            return;
        }
        held.unlock();
        raise("NSInvalidArgumentException",
            "*** -[NSBlockOperation addExecutionBlock:]: the operation has begun");
    }
    static void main(NSBlockOperation& self)
    {
        if (self.blocks_.size() == 1)
            return self.blocks_.front()();
        dispatch_apply(self.blocks_.size(),
            dispatch_get_global_queue(DISPATCH_QUEUE_PRIORITY_DEFAULT, 0),
            [&self](std::size_t index) { self.blocks_[index](); });
    }

    static void table(Builder& t)
    {
        t.classMethods({ { "blockOperationWithBlock:", imp<withBlock> } });
        t.methods({ { "addExecutionBlock:", imp<addBlock> }, { "main", imp<main> } });
    }
};
BRINDLE_RECORD(NSBlockOperation, Blocks)

}
