// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSCell.h"

namespace brindle {

/// A cell that sends an action to a target. What changes in it marks the control it stands in for drawing.
class NSActionCell : public NSCell {
    BRINDLE_OBJECT(NSActionCell, NSCell)

private:
    WeakRef<NSObject> target_; // nil once the target has gone
    SEL action_ {};
    NSInteger tag_ = 0;
};

}
