// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <vector>

#include "NSString.h"
#include "runtime/Block.h"

namespace brindle {

class DispatchGroup;
class NSArray;
class NSOperationQueue;

/// What is taken first of the operations that may begin.
enum NSOperationQueuePriority : NSInteger {
    NSOperationQueuePriorityVeryLow = -8,
    NSOperationQueuePriorityLow = -4,
    NSOperationQueuePriorityNormal = 0,
    NSOperationQueuePriorityHigh = 4,
    NSOperationQueuePriorityVeryHigh = 8,
};

/// A piece of work that may wait for others, be cancelled, and tell when it has ended. Subclasses override `main`.
///
/// An operation runs once: in a queue, or where `start` is sent. It has ended when `main` returns or raises. One that was
/// cancelled before its turn ends without `main`; one that is running looks at `isCancelled` and returns early.
/// Operations that wait for each other in a ring never begin.
/// Thread: any.
class NSOperation : public NSObject {
    BRINDLE_OBJECT(NSOperation, NSObject)

public:
    /// Runs it now, on this thread; for operations in no queue. One that has ended does nothing.
    /// - Raises: `NSInvalidArgumentException` while it runs, and when it is not ready and was not cancelled.
    void start() { send<"start">(); }
    /// The work; does nothing here.
    void main() { send<"main">(); }
    /// Lets it end without its work, or tells its work to return. The ones that wait for it begin all the same.
    void cancel() { send<"cancel">(); }

    bool isCancelled() const { return send<"isCancelled", bool>(); }
    bool isExecuting() const { return send<"isExecuting", bool>(); }
    bool isFinished() const { return send<"isFinished", bool>(); }
    /// Whether everything it waits for has ended, or it was cancelled.
    bool isReady() const { return send<"isReady", bool>(); }

    /// Lets it wait for the end of another one, in any queue. One that has begun waits no more.
    /// - Raises: `NSInvalidArgumentException` for nil and for itself.
    void addDependency(NSOperation* operation) { send<"addDependency:">(operation); }
    void removeDependency(NSOperation* operation) { send<"removeDependency:">(operation); }
    /// Answers what it waits for; empty once it has ended.
    Ref<NSArray> dependencies() const { return send<"dependencies", Ref<NSArray>>(); }

    NSOperationQueuePriority queuePriority() const
    {
        return send<"queuePriority", NSOperationQueuePriority>();
    }
    /// To be set before it is added to a queue; values between the five count as the next one nearer to normal.
    void setQueuePriority(NSOperationQueuePriority priority)
    {
        send<"setQueuePriority:">(priority);
    }
    /// Called once it has ended, on the thread that it ran on and before what waited for it begins; then forgotten.
    Block<void()> completionBlock() const { return send<"completionBlock", Block<void()>>(); }
    void setCompletionBlock(const Block<void()>& block)
    {
        send<"setCompletionBlock:">(block.get());
    }
    Ref<NSString> name() const { return send<"name", Ref<NSString>>(); }
    void setName(NSString* name) { send<"setName:">(name); }
    /// Waits for its end. Not on the thread that it needs.
    void waitUntilFinished() { send<"waitUntilFinished">(); }

private:
    friend struct OperationAccess;

    enum class State : std::uint8_t { waiting, given, executing, finished };

    std::vector<Ref<NSOperation>> dependencies_;
    std::vector<WeakRef<NSOperation>> dependents_;
    Ref<NSOperationQueue> queue_; // until it has ended
    Ref<DispatchGroup> end_; // made when somebody waits
    Block<void()> completion_;
    Ref<NSString> name_;
    NSOperationQueuePriority priority_ = NSOperationQueuePriorityNormal;
    State state_ = State::waiting;
    std::atomic<bool> cancelled_ { false };
};

/// An operation that runs closures, side by side where there are several.
class NSBlockOperation : public NSOperation {
    BRINDLE_OBJECT(NSBlockOperation, NSOperation)

public:
    struct Meta : NSOperation::Meta {
        Ref<NSBlockOperation> blockOperationWithBlock(const Block<void()>& block) const
        {
            return send<"blockOperationWithBlock:", Ref<NSBlockOperation>>(block.get());
        }
    };

    /// - Raises: `NSInvalidArgumentException` once it has begun.
    void addExecutionBlock(const Block<void()>& block) { send<"addExecutionBlock:">(block.get()); }

private:
    std::vector<Block<void()>> blocks_;
};

}
