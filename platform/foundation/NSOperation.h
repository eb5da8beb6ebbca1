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

/// How urgent work is for the user.
enum NSQualityOfService : NSInteger {
    NSQualityOfServiceUserInteractive = 0x21, ///< like the next, before all other work
    NSQualityOfServiceUserInitiated = 0x19,
    NSQualityOfServiceDefault = -1, ///< an operation's: that of its queue
    NSQualityOfServiceUtility = 0x11, ///< taken when nothing above waits
    NSQualityOfServiceBackground = 0x09, ///< taken when nothing else waits
};

/// Where an operation stands in its queue: eras in their order, in each higher priorities first, those alike as they came.
struct OperationPlace {
    std::uint64_t era = 0;
    NSInteger behind = 0; ///< the lower the priority, the farther
    std::uint64_t number = 0;

    friend auto operator<=>(const OperationPlace&, const OperationPlace&) = default;
};

/// A piece of work that may wait for others, be cancelled, and tell when it has ended. Subclasses override `main`.
///
/// An operation runs once: in a queue, or where `start` is sent. It has ended when `main` returns or raises. One that was
/// cancelled before its turn ends without `main`; one that is running looks at `isCancelled` and returns early.
/// Operations that wait for each other in a ring never begin.
///
/// Work that goes on after it was started (an answer that is waited for without a thread) is a subclass that overrides `start`
/// without super's, `isAsynchronous`, `isExecuting` and `isFinished`. It sends itself `didChangeValueForKey:` with
/// "isFinished" when that has become YES, on any thread: then what waited for it begins. Its `start` looks at `isCancelled`
/// first, and finishes at once where it says so. A queue that finds it executing or finished does not start it again. One whose
/// `start` raises in a queue has ended.
/// Thread: any.
class NSOperation : public NSObject {
    BRINDLE_OBJECT(NSOperation, NSObject)

public:
    /// Runs it now, on this thread, also when a queue has it: who comes first runs it, the other does nothing. One that has
    /// ended does nothing.
    /// - Raises: `NSInvalidArgumentException` when it is not ready and was not cancelled, and while one in no queue runs.
    void start() { send<"start">(); }
    /// The work; does nothing here.
    void main() { send<"main">(); }
    /// Lets it end without its work, or tells its work to return. The ones that wait for it begin all the same.
    void cancel() { send<"cancel">(); }

    bool isCancelled() const { return send<"isCancelled", bool>(); }
    bool isExecuting() const { return send<"isExecuting", bool>(); }
    bool isFinished() const { return send<"isFinished", bool>(); }
    /// Whether it goes on when `start` has returned; NO unless a subclass answers something else.
    bool isAsynchronous() const { return send<"isAsynchronous", bool>(); }
    /// Does nothing; sent before a value changes, for subclasses that are written so.
    void willChangeValueForKey(NSString* key) { send<"willChangeValueForKey:">(key); }
    /// Looks whether an operation that says itself when it has finished now does.
    /// - key: "isFinished"; others do nothing.
    void didChangeValueForKey(NSString* key) { send<"didChangeValueForKey:">(key); }
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
    NSQualityOfService qualityOfService() const
    {
        return send<"qualityOfService", NSQualityOfService>();
    }
    /// To be set before it is added to a queue; values that are none of the five count as the default. The main queue runs
    /// all alike.
    void setQualityOfService(NSQualityOfService quality) { send<"setQualityOfService:">(quality); }
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
    std::size_t unfinished_ = 0; // of those
    std::vector<WeakRef<NSOperation>> dependents_;
    Ref<NSOperationQueue> queue_; // until it has ended
    Ref<DispatchGroup> end_; // made when somebody waits
    Block<void()> completion_;
    Ref<NSString> name_;
    NSOperationQueuePriority priority_ = NSOperationQueuePriorityNormal;
    NSQualityOfService quality_ = NSQualityOfServiceDefault;
    OperationPlace place_;
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
