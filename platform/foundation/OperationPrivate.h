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
    static bool isReady(const NSOperation& operation);

    /// Gives an operation to a queue, which begins it in its turn.
    static void add(NSOperationQueue& queue, NSOperation& operation);
    /// Begins what may begin now.
    static void proceed(NSOperationQueue& queue);
    /// Ends an operation that has run or that is not to run, and begins what waited for it.
    static void finish(NSOperation& operation);
    static Ref<NSOperationQueue> queueOf(const NSOperation& operation);
};

}
