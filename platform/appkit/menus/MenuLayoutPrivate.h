// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "NSMenuPrivate.h"
#include "display/Types.h"

namespace brindle {

/// The measures of menus, in points.
namespace menus {
    inline constexpr CGFloat kRadius = 8; ///< of a menu's corners
    inline constexpr CGFloat kRowRadius = 5; ///< of the highlight's
    inline constexpr CGFloat kRim = 5; ///< around all rows, and beside the highlight
    inline constexpr CGFloat kRowRoom = 6; ///< more than a line of text
    inline constexpr CGFloat kSeparatorHeight = 11;
    inline constexpr CGFloat kSide = 12; ///< from a menu's edge to what a row shows
    inline constexpr CGFloat kStateWidth = 17; ///< of the column for marks
    inline constexpr CGFloat kStateSide = 13; ///< of a mark
    inline constexpr CGFloat kIndent = 12;
    inline constexpr CGFloat kImageGap = 6;
    inline constexpr CGFloat kKeyGap = 28; ///< between the titles and the column of keys
    inline constexpr CGFloat kArrowWidth = 10; ///< of the mark for a submenu
    inline constexpr CGFloat kWidest = 600;
    inline constexpr CGFloat kScrollStrip = 20; ///< height of an arrow for scrolling

    /// Draws the shadow that a menu casts, in a view whose y goes down. MenuShadow.cpp.
    void drawShadow(NSRect body);
}

/// One line of an open menu.
struct MenuRow {
    Ref<NSMenuItem> item;
    CGFloat top = 0; ///< points from the menu's top
    CGFloat height = 0;

    CGFloat bottom() const { return top + height; }
};

/// Where everything in a menu lies: a list of rows from the top down and the columns they share.
struct MenuLayout {
    std::vector<MenuRow> rows;
    NSSize size;
    Ref<NSFont> font;
    CGFloat titleLeft = 0; ///< of titles without indentation and image
    CGFloat rowHeight = 0; ///< of an ordinary row

    /// Answers the row at a distance from the top, or -1.
    NSInteger rowAt(CGFloat y) const;
    NSInteger rowOf(const NSMenuItem* item) const;
};

/// Lays a menu out for the modifiers that are down, which choose among alternate items.
MenuLayout layOut(NSMenu& menu, NSFont* font, NSEventModifierFlags modifiers);

/// Answers what stands in the column of keys for an item; empty for none.
/// - command: the key that Command is, so that the sign is the one on the keyboard.
std::u16string keySigns(const NSMenuItem& item, display::CommandKey command);

/// Answers the text of an item's title on one line: line ends are spaces.
Ref<NSString> titleOnOneLine(const NSMenuItem& item);

// Where menus open. Rectangles are on the screen, y up; everything answers a place within `screen` as far as that goes.

/// Puts a menu with its top left corner at a point; one that would reach below the screen opens upward from it, or slides.
NSRect placeAtPoint(NSSize size, NSPoint corner, NSRect screen);
/// Puts a menu below a rectangle, or above where there is more room and it does not fit; it never covers the rectangle.
/// - left: where its left side lies unless it must slide.
NSRect placeBelow(NSSize size, NSRect anchor, CGFloat left, NSRect screen);
/// Puts a submenu beside its row, to the right of the parent, or to the left where there is more room.
NSRect placeBeside(NSSize size, NSRect row, NSRect parent, NSRect screen);
/// Answers whether a pointer that went from one point to another is on its way into a rectangle beside it.
bool headsFor(NSPoint from, NSPoint to, NSRect target);

}
