// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSCell.h"
#include "NSCursor.h"
#include "NSWindow.h"

/// Cursor rectangles: parts of views over which the pointer has a shape. They last until a view or something around it moves;
/// then the window asks all views anew.

namespace brindle {

/// Hook: a view adds its rectangles with `addCursorRect:cursor:`. Nothing in plain views; controls let their cells do it.
inline void resetCursorRects(To<NSView> view) { view.send<"resetCursorRects">(); }
/// Gives the pointer a shape over a part of the view, as far as no view in front covers it. Among rectangles that overlap
/// the last one counts. - Nil: ignored; so is a view in no window.
inline void addCursorRect_cursor(To<NSView> view, NSRect rect, NSCursor* cursor)
{
    view.send<"addCursorRect:cursor:">(rect, cursor);
}
inline void removeCursorRect_cursor(To<NSView> view, NSRect rect, NSCursor* cursor)
{
    view.send<"removeCursorRect:cursor:">(rect, cursor);
}
inline void discardCursorRects(To<NSView> view) { view.send<"discardCursorRects">(); }
/// Hook: adds the rectangles of a cell's place in a view: the I-beam over text that can be selected.
inline void resetCursorRect_inView(To<NSCell> cell, NSRect frame, NSView* view)
{
    cell.send<"resetCursorRect:inView:">(frame, view);
}

/// Asks a view for its rectangles anew before the pointer next moves in the window.
inline void invalidateCursorRectsForView(To<NSWindow> window, NSView* view)
{
    window.send<"invalidateCursorRectsForView:">(view);
}
/// Answers NO after `disableCursorRects`, which leaves the pointer's shape in the window to the host.
inline bool areCursorRectsEnabled(To<NSWindow> window)
{
    return window.send<"areCursorRectsEnabled", bool>();
}
inline void enableCursorRects(To<NSWindow> window) { window.send<"enableCursorRects">(); }
inline void disableCursorRects(To<NSWindow> window) { window.send<"disableCursorRects">(); }

}
