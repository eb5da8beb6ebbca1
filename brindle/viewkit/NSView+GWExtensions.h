// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSView.h"

namespace brindle {

/// The opposite of `isHidden`.
inline bool visible(To<NSView> view) { return view.send<"visible", bool>(); }
inline void setVisible(To<NSView> view, bool visible) { view.send<"setVisible:">(visible); }

/// Answers the nearest ancestor of a class, subclasses included; never the view itself. Nil when there is none.
inline Ref<NSView> superviewOfClass(To<NSView> view, Class* cls)
{
    return view.send<"superviewOfClass:", Ref<NSView>>(cls);
}

}
