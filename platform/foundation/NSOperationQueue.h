// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <deque>
#include <map>

#include "Dispatch.h"
#include "NSOperation.h"
#include "NSString.h"

namespace brindle {

class NSArray;

/// As many as the machine runs well; operations of a queue are not held back then.
inline constexpr NSInteger NSOperationQueueDefaultMaxConcurrentOperationCount = -1;

/// Runs operations and closures: the main queue on the main thread one after another, a queue of one's own side by side.
///
/// Operations begin in the order in which they were added, those of a higher priority first, each when what it waits for has
/// ended. The main queue hands each to the main thread when it is ready, whatever its priority, and goes on beside one that
/// says itself when it has finished. A queue stays until its operations have ended.
class NSOperationQueue : public NSObject {
    BRINDLE_OBJECT(NSOperationQueue, NSObject)

public:
    struct Meta : NSObject::Meta {
        Ref<NSOperationQueue> mainQueue() const
        {
            return send<"mainQueue", Ref<NSOperationQueue>>();
        }
        /// Answers the queue whose operation runs on this thread; the main one on the main thread. - Nil: elsewhere.
        Ref<NSOperationQueue> currentQueue() const
        {
            return send<"currentQueue", Ref<NSOperationQueue>>();
        }
    };

    /// - Raises: `NSInvalidArgumentException` for nil and for an operation that is in a queue, has begun or has ended.
    void addOperation(NSOperation* operation) { send<"addOperation:">(operation); }
    /// Adds all of an array and, when told to, waits for them.
    void addOperations_waitUntilFinished(NSArray* operations, bool wait)
    {
        send<"addOperations:waitUntilFinished:">(operations, wait);
    }
    void addOperationWithBlock(const Block<void()>& block)
    {
        send<"addOperationWithBlock:">(block.get());
    }
    /// Adds a closure that runs alone: when all that is in the queue has ended, and before what is added later begins.
    /// Nothing that is in the queue may wait for something that is added later.
    void addBarrierBlock(const Block<void()>& block) { send<"addBarrierBlock:">(block.get()); }
    /// Answers what has not ended yet, in the order in which it begins.
    Ref<NSArray> operations() const { return send<"operations", Ref<NSArray>>(); }
    NSUInteger operationCount() const { return send<"operationCount", NSUInteger>(); }
    void cancelAllOperations() { send<"cancelAllOperations">(); }
    /// Waits until the queue is empty; what is added meanwhile counts too. Not for the main queue on the main thread.
    void waitUntilAllOperationsAreFinished() { send<"waitUntilAllOperationsAreFinished">(); }

    /// How many operations run at the same time; 1 for the main queue, which cannot be told another number.
    NSInteger maxConcurrentOperationCount() const
    {
        return send<"maxConcurrentOperationCount", NSInteger>();
    }
    /// - count: negative for the default. None begin with 0. What is running goes on.
    void setMaxConcurrentOperationCount(NSInteger count)
    {
        send<"setMaxConcurrentOperationCount:">(count);
    }
    /// While it is suspended no operation begins; the main queue never is.
    bool isSuspended() const { return send<"isSuspended", bool>(); }
    void setSuspended(bool suspended) { send<"setSuspended:">(suspended); }
    Ref<NSString> name() const { return send<"name", Ref<NSString>>(); }
    void setName(NSString* name) { send<"setName:">(name); }

    /// How urgent operations are that say nothing themselves; always the highest for the main queue.
    NSQualityOfService qualityOfService() const
    {
        return send<"qualityOfService", NSQualityOfService>();
    }
    /// Counts for operations that have not begun. Values that are none of the five count as the default.
    void setQualityOfService(NSQualityOfService quality) { send<"setQualityOfService:">(quality); }

    Ref<DispatchQueue> underlyingQueue() const
    {
        return send<"underlyingQueue", Ref<DispatchQueue>>();
    }

private:
    friend struct OperationAccess;

    Ref<DispatchQueue> queue_
        = dispatch_queue_create("brindle.operations", DISPATCH_QUEUE_CONCURRENT);
    Ref<DispatchGroup> group_ = dispatch_group_create();
    std::map<OperationPlace, Ref<NSOperation>> waiting_;
    std::map<OperationPlace, NSOperation*> ready_; // of those, the ones that wait for nothing
    std::uint64_t added_ = 0;
    std::deque<Ref<NSOperation>> begun_;
    Ref<NSString> name_;
    NSInteger most_ = NSOperationQueueDefaultMaxConcurrentOperationCount;
    // What is between two barriers, and a barrier, is an era: how many operations of each have not ended, the present one first.
    std::deque<std::size_t> eras_ { 0 };
    std::uint64_t present_ = 0;
    NSQualityOfService quality_ = NSQualityOfServiceDefault;
    bool suspended_ = false;
};

}
