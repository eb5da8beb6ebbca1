// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSTextField.h"

namespace brindle {

/// A text field that selects all of its text when it gets the keyboard, however it gets it: in the next turn of the run
/// loop, after the caret has been placed.
class GWEditTextField : public NSTextField {
    BRINDLE_OBJECT(GWEditTextField, NSTextField)
};

}
