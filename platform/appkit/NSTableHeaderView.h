// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSTableView.h"

namespace brindle {

/// The titles of a table's columns: a click sorts, a drag moves a column, a drag of the line between two makes one wider.
///
/// A scroll view puts it above the table. Flipped. Thread: main.
class NSTableHeaderView : public NSView {
    BRINDLE_OBJECT(NSTableHeaderView, NSView)

public:
    /// Answers the table, or nil; not kept.
    Ref<NSTableView> tableView() const { return send<"tableView", Ref<NSTableView>>(); }
    void setTableView(NSTableView* table) { send<"setTableView:">(table); }
    /// Answers the rectangle of a column's title; empty for a column that is not there.
    NSRect headerRectOfColumn(NSInteger column) const
    {
        return send<"headerRectOfColumn:", NSRect>(column);
    }
    /// Answers -1 where there is none.
    NSInteger columnAtPoint(NSPoint point) const
    {
        return send<"columnAtPoint:", NSInteger>(point);
    }
    /// Answers the column whose title is dragged, or whose edge is, else -1.
    NSInteger draggedColumn() const { return send<"draggedColumn", NSInteger>(); }
    NSInteger resizedColumn() const { return send<"resizedColumn", NSInteger>(); }

private:
    WeakRef<NSTableView> tableView_;
    NSInteger pressedColumn_ = -1;
    NSInteger draggedColumn_ = -1;
    NSInteger resizedColumn_ = -1;
    CGFloat draggedBy_ = 0; // points to the right
};

}
