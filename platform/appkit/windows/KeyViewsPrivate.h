// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSView.h"

namespace brindle::keyviews {

/// Which way Tab goes.
enum class Step { on, back };

/// Answers whether some view of a window has a next one; calculates the loop again where the window does that.
bool hasLoop(NSWindow& window);
/// Answers the view that takes the keyboard before or after another in the order of reading, around again to itself.
/// - from: nil asks for the first of all, or the last. - Nil: none takes it.
Ref<NSView> inReading(NSWindow& window, NSView* from, Step step);

}
