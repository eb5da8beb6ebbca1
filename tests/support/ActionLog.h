// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string>

#include "runtime/NSObject.h"

namespace brindle {

/// A target for actions that counts them and can do something when they come.
class ActionLog : public NSObject {
    BRINDLE_OBJECT(ActionLog, NSObject)

public:
    void setReaction(std::function<void(NSObject*)> reaction);

    int count_ = 0;
    Ref<NSObject> sender_; // of the last action
    std::function<void(NSObject*)> reaction_;
};

}
