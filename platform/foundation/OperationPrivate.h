// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <mutex>

#include "NSOperation.h"
#include "NSOperationQueue.h"

namespace brindle {

/// What operations and their queues do with each other.
///
/// One lock guards who waits for whom, in all queues. Nothing is released, called or sent while it is held.
struct OperationAccess {
    using State = NSOperation::State;
    using Lock = std::unique_lock<std::mutex>;

    static Lock lock();
    static bool isReady(const NSOperation& operation)
    {
        return operation.cancelled_ || operation.unfinished_ == 0;
    }
    /// Enters an operation that waits in a queue among the ready ones there, or takes it out. The lock is held.
    static void readinessChanged(NSOperation& operation);

    enum class Company { others, none };

    /// Gives an operation to a queue, which begins it in its turn, with others beside it or alone.
    static void add(NSOperationQueue& queue, NSOperation& operation, Company company);
    /// Puts an operation behind those of its era and priority. The lock is held.
    static void enqueue(NSOperationQueue& queue, NSOperation& operation, Company company);
    /// Counts one that waits in a queue as begun there. The lock is held.
    static void dequeue(NSOperation& operation);
    /// Marks an operation as running; its queue no longer begins it. The lock is held.
    static void begin(NSOperation& operation);
    /// Begins what may begin now.
    static void proceed(NSOperationQueue& queue);
    /// Runs an operation of a queue on this thread, unless it was started by hand meanwhile.
    static void run(NSOperation& operation);
    /// Whether no more work can be added to it. The lock is held.
    static bool hasBegun(const NSOperation& operation)
    {
        return operation.state_ == State::executing || operation.state_ == State::finished;
    }
    /// Ends an operation that has run or that is not to run, and begins what waited for it; once.
    static void finish(NSOperation& operation);
    /// Answers a quality that is one of the five.
    static NSQualityOfService knownQuality(NSQualityOfService quality);
    /// Answers where an operation of a queue runs: as urgently as it says, or as its queue does.
    static dispatch_queue_t queueFor(const NSOperationQueue& queue, const NSOperation& operation);
    /// Counts an operation that has ended; the next era begins with the last one. The lock is held.
    static void leaveEra(NSOperationQueue& queue, const NSOperation& operation);
};

}
