// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSWindow.h"

/// The order in which Tab goes through the views of a window.
///
/// While no view of the window has a next one, that is the order of reading, as the views stand when Tab is pressed: line
/// by line, and what stands in one view before what stands in the next. Where nothing has the keyboard Tab goes to the
/// initial first responder, or to the first view that takes it.
/// A loop that was set by hand, `setNextKeyView:`, is left as it is; views that it leaves out are not reached.
/// `recalculateKeyViewLoop` sets the order of reading as such a loop, over what was set before.

namespace brindle {

/// Whether the loop is calculated again whenever it is gone along, over links that were set by hand too. NO at first.
inline bool autorecalculatesKeyViewLoop(To<NSWindow> window)
{
    return window.send<"autorecalculatesKeyViewLoop", bool>();
}
inline void setAutorecalculatesKeyViewLoop(To<NSWindow> window, bool recalculates)
{
    window.send<"setAutorecalculatesKeyViewLoop:">(recalculates);
}

}
