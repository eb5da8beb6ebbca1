// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <utility>

#include "foundation/NSNotification.h"
#include "foundation/NSNotificationCenter.h"
#include "runtime/NSException.h"

namespace brindle::test {

/// Raises the first time that something is posted.
class RaisingOnce {
public:
    explicit RaisingOnce(NSString* name)
        : token_(center()->addObserverForName_object_queue_usingBlock(
            name, nullptr, nullptr, [this](NSNotification*) {
                if (!std::exchange(raised_, true))
                    raise("Fault", "on purpose");
            }))
    {
    }
    ~RaisingOnce() { center()->removeObserver(token_.get()); }
    RaisingOnce(const RaisingOnce&) = delete;
    RaisingOnce& operator=(const RaisingOnce&) = delete;

private:
    static Ref<NSNotificationCenter> center()
    {
        return NSNotificationCenter::cls().defaultCenter();
    }
    bool raised_ = false;
    Ref<NSObject> token_;
};

}
