// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSTextFieldCell.h"

namespace brindle {

class NSSortDescriptor;
class NSTableView;

/// How the width of a column may change; bits that are added together.
using NSTableColumnResizingOptions = NSUInteger;
enum : NSUInteger {
    NSTableColumnNoResizing = 0,
    NSTableColumnAutoresizingMask = 1, ///< together with the table
    NSTableColumnUserResizingMask = 2, ///< with the pointer
};

/// Draws the title of a column: text, ground, the arrow of a sorted column.
class NSTableHeaderCell : public NSTextFieldCell {
    BRINDLE_OBJECT(NSTableHeaderCell, NSTextFieldCell)

public:
    /// Draws the arrow of a sorted column. - priority: 0 for the column that decides first; others draw nothing.
    void drawSortIndicatorWithFrame_inView_ascending_priority(
        NSRect frame, NSView* view, bool ascending, NSInteger priority)
    {
        send<"drawSortIndicatorWithFrame:inView:ascending:priority:">(
            frame, view, ascending, priority);
    }
    /// Answers where that arrow lies in the frame of the cell.
    NSRect sortIndicatorRectForBounds(NSRect frame) const
    {
        return send<"sortIndicatorRectForBounds:", NSRect>(frame);
    }
};

/// A column of a table: its name, width, title, and the order that a click on the title asks for.
///
/// Widths are points, 100 at first, and lie between `minWidth` (10) and `maxWidth`; what is no number is ignored.
/// Thread: main.
class NSTableColumn : public NSObject {
    BRINDLE_OBJECT(NSTableColumn, NSObject)

public:
    /// Makes a column; `init` gives it the empty identifier. - Raises: `NSInvalidArgumentException` for no string.
    Ref<NSTableColumn> initWithIdentifier(NSString* identifier)
    {
        return send<"initWithIdentifier:", Ref<NSTableColumn>>(identifier);
    }
    Ref<NSString> identifier() const { return send<"identifier", Ref<NSString>>(); }
    void setIdentifier(NSString* identifier) { send<"setIdentifier:">(identifier); }
    /// Answers the table that it belongs to, or nil.
    Ref<NSTableView> tableView() const { return send<"tableView", Ref<NSTableView>>(); }

    CGFloat width() const { return send<"width", CGFloat>(); }
    /// Posts `NSTableViewColumnDidResizeNotification` when it changes.
    void setWidth(CGFloat width) { send<"setWidth:">(width); }
    CGFloat minWidth() const { return send<"minWidth", CGFloat>(); }
    void setMinWidth(CGFloat width) { send<"setMinWidth:">(width); }
    CGFloat maxWidth() const { return send<"maxWidth", CGFloat>(); }
    void setMaxWidth(CGFloat width) { send<"setMaxWidth:">(width); }
    /// Makes it as wide as its title, as far as its limits allow.
    void sizeToFit() { send<"sizeToFit">(); }
    NSTableColumnResizingOptions resizingMask() const
    {
        return send<"resizingMask", NSTableColumnResizingOptions>();
    }
    void setResizingMask(NSTableColumnResizingOptions mask) { send<"setResizingMask:">(mask); }
    bool isHidden() const { return send<"isHidden", bool>(); }
    void setHidden(bool hidden) { send<"setHidden:">(hidden); }
    /// Whether texts that the table makes itself may be edited. YES at first.
    bool isEditable() const { return send<"isEditable", bool>(); }
    void setEditable(bool editable) { send<"setEditable:">(editable); }

    /// The header cell's text.
    Ref<NSString> title() const { return send<"title", Ref<NSString>>(); }
    void setTitle(NSString* title) { send<"setTitle:">(title); }
    Ref<NSTableHeaderCell> headerCell() const
    {
        return send<"headerCell", Ref<NSTableHeaderCell>>();
    }
    /// - Raises: `NSInvalidArgumentException` for an object that is no cell. - Nil: ignored.
    void setHeaderCell(NSCell* cell) { send<"setHeaderCell:">(cell); }
    /// Kept for the host.
    Ref<NSString> headerToolTip() const { return send<"headerToolTip", Ref<NSString>>(); }
    void setHeaderToolTip(NSString* text) { send<"setHeaderToolTip:">(text); }

    /// The order that a first click on the title asks for; a second one turns it round. - Nil: clicks do not sort.
    Ref<NSSortDescriptor> sortDescriptorPrototype() const
    {
        return send<"sortDescriptorPrototype", Ref<NSSortDescriptor>>();
    }
    void setSortDescriptorPrototype(NSSortDescriptor* descriptor)
    {
        send<"setSortDescriptorPrototype:">(descriptor);
    }

private:
    friend struct TableAccess;

    Ref<NSString> identifier_;
    Ref<NSCell> headerCell_;
    Ref<NSString> headerToolTip_;
    Ref<NSSortDescriptor> sortDescriptorPrototype_;
    NSTableView* tableView_ = nullptr; // bare: the table owns its columns
    CGFloat width_ = 100;
    CGFloat minWidth_ = 10;
    CGFloat maxWidth_ = 3.402823466e38;
    NSTableColumnResizingOptions resizingMask_
        = NSTableColumnAutoresizingMask | NSTableColumnUserResizingMask;
    bool hidden_ = false;
    bool editable_ = true;
};

}
