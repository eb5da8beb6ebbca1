// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Dispatch.h"

namespace brindle {

/// A queue of closures as an object: the main one, or one of one's own that runs them side by side.
class NSOperationQueue : public NSObject {
    BRINDLE_OBJECT(NSOperationQueue, NSObject)

public:
    struct Meta : NSObject::Meta {
        Ref<NSOperationQueue> mainQueue() const
        {
            return send<"mainQueue", Ref<NSOperationQueue>>();
        }
    };

    void addOperationWithBlock(const Block<void()>& block)
    {
        send<"addOperationWithBlock:">(block.get());
    }
    /// Waits until everything added so far has run. Not for the main queue on the main thread.
    void waitUntilAllOperationsAreFinished() { send<"waitUntilAllOperationsAreFinished">(); }
    Ref<DispatchQueue> underlyingQueue() const
    {
        return send<"underlyingQueue", Ref<DispatchQueue>>();
    }

private:
    Ref<DispatchQueue> queue_;
    Ref<DispatchGroup> group_;
};

}
