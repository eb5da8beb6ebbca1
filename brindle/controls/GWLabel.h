// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSTextField.h"

namespace brindle {

/// A text that wraps between words, cannot be edited, selected or clicked: presses go to what lies below it.
class GWLabel : public NSTextField {
    BRINDLE_OBJECT(GWLabel, NSTextField)

public:
    /// Makes it a label again, as `initWithFrame:` did.
    void awakeFromNib() { send<"awakeFromNib">(); }
};

}
