// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSWindow.h"

/// What the user's resizing of a window keeps. Setting one of the proportions or steps takes the others away, and none of
/// them changes the size that the window has; the window's least and greatest size count more. What is negative or no number
/// counts as nothing.

namespace brindle {

/// The proportion that is kept; (0, 0) for none.
inline NSSize aspectRatio(To<NSWindow> window) { return window.send<"aspectRatio", NSSize>(); }
inline void setAspectRatio(To<NSWindow> window, NSSize ratio)
{
    window.send<"setAspectRatio:">(ratio);
}
/// The same for the content alone, without the title bar.
inline NSSize contentAspectRatio(To<NSWindow> window)
{
    return window.send<"contentAspectRatio", NSSize>();
}
inline void setContentAspectRatio(To<NSWindow> window, NSSize ratio)
{
    window.send<"setContentAspectRatio:">(ratio);
}
/// The steps in which the size changes, in points; (1, 1) at first.
inline NSSize resizeIncrements(To<NSWindow> window)
{
    return window.send<"resizeIncrements", NSSize>();
}
inline void setResizeIncrements(To<NSWindow> window, NSSize steps)
{
    window.send<"setResizeIncrements:">(steps);
}
inline NSSize contentResizeIncrements(To<NSWindow> window)
{
    return window.send<"contentResizeIncrements", NSSize>();
}
inline void setContentResizeIncrements(To<NSWindow> window, NSSize steps)
{
    window.send<"setContentResizeIncrements:">(steps);
}

/// Answers how long `setFrame:display:animate:` takes for the way to a frame, in seconds: a fifth of one for 150 points, and
/// never more than one. That operation returns at once, and the window goes by degrees where it is to be seen.
inline double animationResizeTime(To<NSWindow> window, NSRect frame)
{
    return window.send<"animationResizeTime:", double>(frame);
}

}
