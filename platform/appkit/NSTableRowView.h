// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSCell.h"
#include "NSView.h"

namespace brindle {

class NSColor;

/// How a table shows what is selected.
enum NSTableViewSelectionHighlightStyle : NSInteger {
    NSTableViewSelectionHighlightStyleNone = -1,
    NSTableViewSelectionHighlightStyleRegular = 0,
    NSTableViewSelectionHighlightStyleSourceList = 1,
};

/// A row of a table: the ground, the selection and the separator behind the row's cell views, which are its subviews.
///
/// The table sets the frame, the state and the ground; `drawRect:` calls the three drawing hooks in order. Flipped.
/// Thread: main.
class NSTableRowView : public NSView {
    BRINDLE_OBJECT(NSTableRowView, NSView)

public:
    bool isSelected() const { return send<"isSelected", bool>(); }
    /// Marks the row for drawing when it changes, and tells its cell views the ground they lie on.
    void setSelected(bool selected) { send<"setSelected:">(selected); }
    /// Whether the table has the keyboard in a key window: the selection is then drawn in the accent colour, else in grey.
    bool isEmphasized() const { return send<"isEmphasized", bool>(); }
    void setEmphasized(bool emphasized) { send<"setEmphasized:">(emphasized); }
    NSTableViewSelectionHighlightStyle selectionHighlightStyle() const
    {
        return send<"selectionHighlightStyle", NSTableViewSelectionHighlightStyle>();
    }
    void setSelectionHighlightStyle(NSTableViewSelectionHighlightStyle style)
    {
        send<"setSelectionHighlightStyle:">(style);
    }
    /// Kept for hosts that draw groups.
    bool isGroupRowStyle() const { return send<"isGroupRowStyle", bool>(); }
    void setGroupRowStyle(bool group) { send<"setGroupRowStyle:">(group); }
    /// The ground: at first the one that the table draws behind the row. One that is set is drawn by the row.
    /// - Nil: what lies behind.
    Ref<NSColor> backgroundColor() const { return send<"backgroundColor", Ref<NSColor>>(); }
    void setBackgroundColor(NSColor* color) { send<"setBackgroundColor:">(color); }
    /// Answers the ground that the cell views lie on: dark where the row is selected and emphasized.
    NSBackgroundStyle interiorBackgroundStyle() const
    {
        return send<"interiorBackgroundStyle", NSBackgroundStyle>();
    }

    /// Answers the cell view of a column, or nil.
    /// - Raises: `NSTableViewException` for a column that is not there.
    Ref<NSView> viewAtColumn(NSInteger column) const
    {
        return send<"viewAtColumn:", Ref<NSView>>(column);
    }
    NSInteger numberOfColumns() const { return send<"numberOfColumns", NSInteger>(); }

    // Hooks. Each may draw outside of the rectangle it is given, which is the part to be drawn.

    void drawBackgroundInRect(NSRect dirty) { send<"drawBackgroundInRect:">(dirty); }
    /// Called only while the row is selected and the style is not `None`.
    void drawSelectionInRect(NSRect dirty) { send<"drawSelectionInRect:">(dirty); }
    void drawSeparatorInRect(NSRect dirty) { send<"drawSeparatorInRect:">(dirty); }

private:
    friend struct TableAccess;

    std::vector<Ref<NSView>> cells_; // by column; nil where the column has no view
    Ref<NSColor> backgroundColor_;
    NSTableViewSelectionHighlightStyle selectionHighlightStyle_
        = NSTableViewSelectionHighlightStyleRegular;
    bool selected_ = false;
    bool emphasized_ = false;
    bool groupRowStyle_ = false;
    bool drawsGround_ = false; // it is not the table's
};

}
