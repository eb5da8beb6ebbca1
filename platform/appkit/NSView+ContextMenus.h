// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSView.h"

/// Context menus by the keyboard: the Menu key, and Shift with F10, open the menu that the right button would open, at the
/// selection of the view that has the keyboard, or of the nearest one around it that has a menu.

namespace brindle {

enum : unichar {
    NSMenuFunctionKey = 0xF735, // in the characters of key events
};

/// Answers where a menu for what is selected opens, in the view's coordinates: below this rectangle.
/// - Returns: an empty rectangle in the middle of what is to be seen of the view; text views answer their caret or the
///   line in which the selection ends, tables their last selected row.
inline NSRect selectionAnchorRect(To<NSView> view)
{
    return view.send<"selectionAnchorRect", NSRect>();
}
/// Opens the view's menu as if the right button had been pressed on what is selected, and follows it until it is closed.
/// Views without a menu hand the message on to the next responder.
inline void showContextMenuForSelection(To<NSView> view, NSObject* sender)
{
    view.send<"showContextMenuForSelection:">(sender);
}

}
