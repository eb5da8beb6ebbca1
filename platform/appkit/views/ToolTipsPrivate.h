// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSView+ToolTips.h"

namespace brindle {

/// The tips of all views: one is shown at a time, beside a pointer that rests.
struct ToolTips {
    /// Waits for the pointer to rest, or takes the tip away that belongs somewhere else.
    static void pointerMoved(NSWindow& window, NSPoint point);
    static void dismiss();
};

}
