// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSWindow.h"

/// Windows that keep a strip along the top of their screen free of the windows of all programs, as the bars of desktops do.
///
/// The window has a level from `NSMainMenuWindowLevel` up to the menus'. Its `frame` stays what was set. Where something else has the
/// top of the screen already, the display shows the window, its children and the menus that open from it below that, and
/// events tell places as if it were not so. What is reserved follows the window, and the screens. While the application is
/// inactive a window that hides then is neither seen nor hit, but keeps its strip, or all other windows would change their
/// size with every change of the application; ordering it out gives the strip back.
///
/// Windows of this kind of all programs share one strip.

namespace brindle {

/// Why a window stands where it does.
enum NSScreenEdgeStanding : NSInteger {
    NSScreenEdgeNotReserved
    = 0, ///< nothing was asked for, it is not shown, or it does not lie at the top
    NSScreenEdgeReserved = 1, ///< at the top of its screen
    NSScreenEdgeBelowPanel = 2, ///< below what had the top of the screen before
    NSScreenEdgeScreenBeyond = 3, ///< another screen lies above: the window only stays in front
    NSScreenEdgeNoManager = 4, ///< nobody on this desktop keeps windows from the strip
};

/// Answers how many points are to be reserved; 0 for none.
inline CGFloat reservedScreenEdge(To<NSWindow> window)
{
    return window.send<"reservedScreenEdge", CGFloat>();
}
/// - height: points from the window's upper edge; 0 or less, and NaN, for none.
inline void setReservedScreenEdge(To<NSWindow> window, CGFloat height)
{
    window.send<"setReservedScreenEdge:">(height);
}
/// Answers why the window stands where it is shown.
inline NSScreenEdgeStanding screenEdgeStanding(To<NSWindow> window)
{
    return window.send<"screenEdgeStanding", NSScreenEdgeStanding>();
}
/// Answers how many points lower than its frame the window is shown.
inline CGFloat screenEdgeOffset(To<NSWindow> window)
{
    return window.send<"screenEdgeOffset", CGFloat>();
}

}
