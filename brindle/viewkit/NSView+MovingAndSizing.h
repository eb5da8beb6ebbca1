// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSView.h"

/// One component of a view's frame at a time, in points of the superview's coordinates. The other three stay as they are;
/// a change goes through `setFrameOrigin:` or `setFrameSize:`.

namespace brindle {

inline double frameOriginX(To<NSView> view) { return view.send<"frameOriginX", double>(); }
inline void setFrameOriginX(To<NSView> view, double x) { view.send<"setFrameOriginX:">(x); }
inline double frameOriginY(To<NSView> view) { return view.send<"frameOriginY", double>(); }
inline void setFrameOriginY(To<NSView> view, double y) { view.send<"setFrameOriginY:">(y); }
inline double frameSizeWidth(To<NSView> view) { return view.send<"frameSizeWidth", double>(); }
inline void setFrameSizeWidth(To<NSView> view, double width)
{
    view.send<"setFrameSizeWidth:">(width);
}
inline double frameSizeHeight(To<NSView> view) { return view.send<"frameSizeHeight", double>(); }
inline void setFrameSizeHeight(To<NSView> view, double height)
{
    view.send<"setFrameSizeHeight:">(height);
}

}
