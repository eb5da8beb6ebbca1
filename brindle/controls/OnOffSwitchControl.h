// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSButton.h"

namespace brindle {

/// A slide switch: the thumb is at the left for off, at the right for on, in the middle for mixed.
///
/// A click goes to the next state; a drag to the position where the thumb is let go; both send the action. The left and right
/// arrow keys move the thumb by one position without sending the action, and beep at the ends. States are those of buttons;
/// mixed needs `allowsMixedState`. Colours and labels are its cell's (`OnOffSwitchControlCell`).
class OnOffSwitchControl : public NSButton {
    BRINDLE_OBJECT(OnOffSwitchControl, NSButton)
};

}
