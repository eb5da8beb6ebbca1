// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSView.h"

/// Tool tips: a line or more beside a pointer that rests on a view, or on something in it without a tip of its own. The tip of
/// a whole view is its `toolTip`; nil and "" are none.

namespace brindle {

/// Names a part of a view that has a tool tip of its own; never 0.
using NSToolTipTag = NSInteger;

/// Gives a part of the view a tip.
/// - owner: not kept. It is asked `view:stringForToolTip:point:userData:` when the tip is to be shown, or else for its
///   `description`.
inline NSToolTipTag addToolTipRect_owner_userData(
    To<NSView> view, NSRect rect, NSObject* owner, void* userData)
{
    return view.send<"addToolTipRect:owner:userData:", NSToolTipTag>(rect, owner, userData);
}
inline void removeToolTip(To<NSView> view, NSToolTipTag tag) { view.send<"removeToolTip:">(tag); }
/// Takes the tips of all parts away, and the view's own.
inline void removeAllToolTips(To<NSView> view) { view.send<"removeAllToolTips">(); }

}
