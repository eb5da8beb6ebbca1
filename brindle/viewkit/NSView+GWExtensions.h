// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSView.h"
#include "quartz/CGImage.h"

namespace brindle {

class NSImage;

/// The opposite of `isHidden`.
inline bool visible(To<NSView> view) { return view.send<"visible", bool>(); }
inline void setVisible(To<NSView> view, bool visible) { view.send<"setVisible:">(visible); }

/// Answers a picture of the view's layer as it is on the screen now, one pixel a point.
/// - Nil: when the view has no layer, or one narrower or lower than a point; logs "Failed to create context.".
inline Ref<CGImage> makeImageRef(To<NSView> view)
{
    return view.send<"makeImageRef", Ref<CGImage>>();
}
/// Answers the same as an image of as many points.
inline Ref<NSImage> image(To<NSView> view) { return view.send<"image", Ref<NSImage>>(); }

/// Answers the nearest ancestor of a class, subclasses included; never the view itself. Nil when there is none.
inline Ref<NSView> superviewOfClass(To<NSView> view, Class* cls)
{
    return view.send<"superviewOfClass:", Ref<NSView>>(cls);
}

}
