// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSControl.h"
#include "NSTableColumn.h"
#include "NSTableRowView.h"
#include "NSUserInterfaceItemIdentification.h"
#include "foundation/NSIndexSet.h"

namespace brindle {

class NSTableHeaderView;
struct TableState;
BRINDLE_EXPORT std::shared_ptr<TableState> makeTableState();

/// Which columns take what a change of the table's width gives or wants.
enum NSTableViewColumnAutoresizingStyle : NSUInteger {
    NSTableViewNoColumnAutoresizing = 0,
    NSTableViewUniformColumnAutoresizingStyle = 1,
    NSTableViewSequentialColumnAutoresizingStyle = 2, ///< the first that can
    NSTableViewReverseSequentialColumnAutoresizingStyle = 3, ///< the last that can
    NSTableViewLastColumnOnlyAutoresizingStyle = 4,
    NSTableViewFirstColumnOnlyAutoresizingStyle = 5,
};

/// The lines between rows and columns; bits that are added together.
using NSTableViewGridLineStyle = NSUInteger;
enum : NSUInteger {
    NSTableViewGridNone = 0,
    NSTableViewSolidVerticalGridLineMask = 1,
    NSTableViewSolidHorizontalGridLineMask = 2,
};

/// How rows that are inserted or removed come and go. Rows below them move by degrees unless it is `None`.
using NSTableViewAnimationOptions = NSUInteger;
enum : NSUInteger { NSTableViewAnimationEffectNone = 0, NSTableViewAnimationEffectFade = 1 };

/// The object is the table.
inline constexpr StringConstant<"NSTableViewSelectionDidChangeNotification">
    NSTableViewSelectionDidChangeNotification;
/// While the button of the mouse is down.
inline constexpr StringConstant<"NSTableViewSelectionIsChangingNotification">
    NSTableViewSelectionIsChangingNotification;
/// User info: "NSOldColumn", "NSNewColumn".
inline constexpr StringConstant<"NSTableViewColumnDidMoveNotification">
    NSTableViewColumnDidMoveNotification;
/// User info: "NSTableColumn", "NSOldWidth".
inline constexpr StringConstant<"NSTableViewColumnDidResizeNotification">
    NSTableViewColumnDidResizeNotification;
/// The identifier of the row views that a table makes itself.
inline constexpr StringConstant<"NSTableViewRowViewKey"> NSTableViewRowViewKey;

/// Rows and columns of views, of which only those that show exist.
///
/// The data source answers `numberOfRowsInTableView:` and, if it has them, values: `tableView:objectValueForTableColumn:row:`,
/// `tableView:setObjectValue:forTableColumn:row:`, `tableView:sortDescriptorsDidChange:`. The delegate answers what is shown:
/// `tableView:viewForTableColumn:row:`, `tableView:rowViewForRow:`, `tableView:heightOfRow:`; it is told
/// `tableView:didAddRowView:forRow:`, `tableView:didRemoveRowView:forRow:`, and asked and told about the selection, columns
/// and keys (below). Every one of them may be missing, and both objects are not kept. Without cell views of the delegate, values
/// are shown as texts. A nil cell view leaves its place empty; what is no view counts as nil.
///
/// Views are made when they are about to show, and kept in a store by identifier when they no longer do. Rows that the keyboard
/// is in stay. A table in no window has no views but those it is asked for. Heights that are no positive numbers count as
/// `rowHeight`; a row is at least 1 and at most 100,000 points high, and rows past 16,777,216 do not exist.
///
/// In a scroll view the table is as large as its rows and columns, and at least as what shows; elsewhere it is as high as its
/// rows and as wide as it was made, or as its columns are. Flipped.
///
/// The delegate's further operations: `selectionShouldChangeInTableView:`, `tableView:shouldSelectRow:`,
/// `tableView:selectionIndexesForProposedSelection:` (what the user does, not what programs do),
/// `tableViewSelectionIsChanging:`, `tableViewSelectionDidChange:`, `tableViewColumnDidMove:`, `tableViewColumnDidResize:`,
/// `tableView:shouldReorderColumn:toColumn:`, `tableView:didDragTableColumn:`, `tableView:didClickTableColumn:`,
/// `tableView:mouseDownInHeaderOfTableColumn:`, `tableView:shouldEditTableColumn:row:`,
/// `tableView:typeSelectStringForTableColumn:row:`.
///
/// Keys: arrows, Page Up, Page Down, Home and End move the selection, with Shift they extend it; Return edits; letters go to
/// the next row that begins with them.
/// Thread: main. Cost: rows of one height take no memory and no time, a place among others the logarithm of their number;
/// scrolling costs what comes into view.
class NSTableView : public NSControl {
    BRINDLE_OBJECT(NSTableView, NSControl)

public:
    // ---- where rows come from

    Ref<NSObject> dataSource() const { return send<"dataSource", Ref<NSObject>>(); }
    /// Not kept. The rows are loaded anew.
    void setDataSource(NSObject* source) { send<"setDataSource:">(source); }
    Ref<NSObject> delegate() const { return send<"delegate", Ref<NSObject>>(); }
    /// Not kept; the table may be its own. All views are made anew.
    void setDelegate(NSObject* delegate) { send<"setDelegate:">(delegate); }
    /// Asks for the number of rows and for everything that shows anew. What is selected and still there stays so.
    /// Called while the data source is asked for its rows, it does nothing.
    void reloadData() { send<"reloadData">(); }
    /// Makes the cell views of these rows and columns anew. - Nil: nothing.
    void reloadDataForRowIndexes_columnIndexes(NSIndexSet* rows, NSIndexSet* columns)
    {
        send<"reloadDataForRowIndexes:columnIndexes:">(rows, columns);
    }
    /// Asks for the number of rows; the views of rows that are still there stay.
    void noteNumberOfRowsChanged() { send<"noteNumberOfRowsChanged">(); }
    /// Asks for the heights of these rows; they and what is below move by degrees, for as long as the current animation
    /// context says. - Nil: nothing.
    void noteHeightOfRowsWithIndexesChanged(NSIndexSet* rows)
    {
        send<"noteHeightOfRowsWithIndexesChanged:">(rows);
    }
    /// Answers the number that was last heard of; 0 without a data source.
    NSInteger numberOfRows() const { return send<"numberOfRows", NSInteger>(); }
    NSInteger numberOfColumns() const { return send<"numberOfColumns", NSInteger>(); }

    // ---- rows that come and go: the data source has changed already

    /// - Raises: `NSTableViewException` for an index that is not among the new rows.
    void insertRowsAtIndexes_withAnimation(NSIndexSet* rows, NSTableViewAnimationOptions options)
    {
        send<"insertRowsAtIndexes:withAnimation:">(rows, options);
    }
    /// - Raises: `NSTableViewException` for an index that is not among the rows.
    void removeRowsAtIndexes_withAnimation(NSIndexSet* rows, NSTableViewAnimationOptions options)
    {
        send<"removeRowsAtIndexes:withAnimation:">(rows, options);
    }
    void moveRowAtIndex_toIndex(NSInteger from, NSInteger to)
    {
        send<"moveRowAtIndex:toIndex:">(from, to);
    }
    /// Changes between the two show at once. They nest.
    void beginUpdates() { send<"beginUpdates">(); }
    void endUpdates() { send<"endUpdates">(); }

    // ---- columns

    Ref<NSArray> tableColumns() const { return send<"tableColumns", Ref<NSArray>>(); }
    /// - Nil: ignored, as is a column of another table. - Raises: `NSInvalidArgumentException` for no column.
    void addTableColumn(NSTableColumn* column) { send<"addTableColumn:">(column); }
    void removeTableColumn(NSTableColumn* column) { send<"removeTableColumn:">(column); }
    /// - Raises: `NSTableViewException` for a column that is not there.
    void moveColumn_toColumn(NSInteger from, NSInteger to)
    {
        send<"moveColumn:toColumn:">(from, to);
    }
    /// Answers -1 where none has the identifier.
    NSInteger columnWithIdentifier(NSString* identifier) const
    {
        return send<"columnWithIdentifier:", NSInteger>(identifier);
    }
    Ref<NSTableColumn> tableColumnWithIdentifier(NSString* identifier) const
    {
        return send<"tableColumnWithIdentifier:", Ref<NSTableColumn>>(identifier);
    }
    NSTableViewColumnAutoresizingStyle columnAutoresizingStyle() const
    {
        return send<"columnAutoresizingStyle", NSTableViewColumnAutoresizingStyle>();
    }
    void setColumnAutoresizingStyle(NSTableViewColumnAutoresizingStyle style)
    {
        send<"setColumnAutoresizingStyle:">(style);
    }
    /// Gives the last column what the others leave of the width that shows.
    void sizeLastColumnToFit() { send<"sizeLastColumnToFit">(); }
    /// Makes the columns together as wide as what shows, as their limits and the style allow.
    void sizeToFit() { send<"sizeToFit">(); }
    bool allowsColumnReordering() const { return send<"allowsColumnReordering", bool>(); }
    void setAllowsColumnReordering(bool allows) { send<"setAllowsColumnReordering:">(allows); }
    bool allowsColumnResizing() const { return send<"allowsColumnResizing", bool>(); }
    void setAllowsColumnResizing(bool allows) { send<"setAllowsColumnResizing:">(allows); }
    /// The titles above; a new table has one. - Nil: none.
    Ref<NSTableHeaderView> headerView() const
    {
        return send<"headerView", Ref<NSTableHeaderView>>();
    }
    void setHeaderView(NSTableHeaderView* view) { send<"setHeaderView:">(view); }

    // ---- geometry, in the table's coordinates. A row's rectangle has the spacing in it

    /// 17 points at first.
    CGFloat rowHeight() const { return send<"rowHeight", CGFloat>(); }
    /// - Raises: `NSInvalidArgumentException` unless it is a positive number.
    void setRowHeight(CGFloat height) { send<"setRowHeight:">(height); }
    /// 3 and 2 points at first.
    NSSize intercellSpacing() const { return send<"intercellSpacing", NSSize>(); }
    /// Parts that are negative or no numbers count as 0.
    void setIntercellSpacing(NSSize size) { send<"setIntercellSpacing:">(size); }
    /// Answers the empty rectangle for a row or column that is not there.
    NSRect rectOfRow(NSInteger row) const { return send<"rectOfRow:", NSRect>(row); }
    NSRect rectOfColumn(NSInteger column) const { return send<"rectOfColumn:", NSRect>(column); }
    NSRect frameOfCellAtColumn_row(NSInteger column, NSInteger row) const
    {
        return send<"frameOfCellAtColumn:row:", NSRect>(column, row);
    }
    /// Answers -1 where there is none.
    NSInteger rowAtPoint(NSPoint point) const { return send<"rowAtPoint:", NSInteger>(point); }
    NSInteger columnAtPoint(NSPoint point) const
    {
        return send<"columnAtPoint:", NSInteger>(point);
    }
    /// Answers the rows that a rectangle touches; nothing at 0 when there are none.
    NSRange rowsInRect(NSRect rect) const { return send<"rowsInRect:", NSRange>(rect); }
    Ref<NSIndexSet> columnIndexesInRect(NSRect rect) const
    {
        return send<"columnIndexesInRect:", Ref<NSIndexSet>>(rect);
    }
    void scrollRowToVisible(NSInteger row) { send<"scrollRowToVisible:">(row); }
    void scrollColumnToVisible(NSInteger column) { send<"scrollColumnToVisible:">(column); }
    /// Gives the table the size of its rows and columns.
    void tile() { send<"tile">(); }

    // ---- views

    /// Answers a view of this identifier out of the store, or nil. - owner: kept for hosts, not used.
    Ref<NSView> makeViewWithIdentifier_owner(NSString* identifier, NSObject* owner)
    {
        return send<"makeViewWithIdentifier:owner:", Ref<NSView>>(identifier, owner);
    }
    /// Answers the row's view. - make: a row that does not show gets one that is not kept; nil otherwise.
    /// - Nil: row -1. - Raises: `NSTableViewException`, "Row 7 out of row range", for other rows that are not there.
    Ref<NSTableRowView> rowViewAtRow_makeIfNecessary(NSInteger row, bool make)
    {
        return send<"rowViewAtRow:makeIfNecessary:", Ref<NSTableRowView>>(row, make);
    }
    Ref<NSView> viewAtColumn_row_makeIfNecessary(NSInteger column, NSInteger row, bool make)
    {
        return send<"viewAtColumn:row:makeIfNecessary:", Ref<NSView>>(column, row, make);
    }
    /// Answers the row that a view lies in, or -1.
    NSInteger rowForView(NSView* view) const { return send<"rowForView:", NSInteger>(view); }
    NSInteger columnForView(NSView* view) const { return send<"columnForView:", NSInteger>(view); }
    using RowVisitor = Block<void(NSTableRowView* view, NSInteger row)>;
    /// Visits the row views that there are.
    void enumerateAvailableRowViewsUsingBlock(const RowVisitor& visitor)
    {
        send<"enumerateAvailableRowViewsUsingBlock:">(visitor.get());
    }

    // ---- selection

    /// Selects these rows and no others, or these in addition. Posts only when the selection changes.
    /// - Raises: `NSTableViewException` for a row that is not there. - Nil: none.
    /// Where one row at most may be selected the last one is; where one must be, none at all is ignored.
    void selectRowIndexes_byExtendingSelection(NSIndexSet* rows, bool extend)
    {
        send<"selectRowIndexes:byExtendingSelection:">(rows, extend);
    }
    void deselectRow(NSInteger row) { send<"deselectRow:">(row); }
    void selectAll(NSObject* sender) { send<"selectAll:">(sender); }
    void deselectAll(NSObject* sender) { send<"deselectAll:">(sender); }
    /// Answers the row that was selected last, or -1.
    NSInteger selectedRow() const { return send<"selectedRow", NSInteger>(); }
    Ref<NSIndexSet> selectedRowIndexes() const
    {
        return send<"selectedRowIndexes", Ref<NSIndexSet>>();
    }
    NSInteger numberOfSelectedRows() const { return send<"numberOfSelectedRows", NSInteger>(); }
    bool isRowSelected(NSInteger row) const { return send<"isRowSelected:", bool>(row); }
    /// NO at first.
    bool allowsMultipleSelection() const { return send<"allowsMultipleSelection", bool>(); }
    void setAllowsMultipleSelection(bool allows) { send<"setAllowsMultipleSelection:">(allows); }
    /// YES at first.
    bool allowsEmptySelection() const { return send<"allowsEmptySelection", bool>(); }
    void setAllowsEmptySelection(bool allows) { send<"setAllowsEmptySelection:">(allows); }
    /// Whether letters choose rows. YES at first.
    bool allowsTypeSelect() const { return send<"allowsTypeSelect", bool>(); }
    void setAllowsTypeSelect(bool allows) { send<"setAllowsTypeSelect:">(allows); }

    // ---- what the user does

    /// Sent for the second click within the time of a double click, in place of the action.
    SEL doubleAction() const { return send<"doubleAction", SEL>(); }
    void setDoubleAction(SEL action) { send<"setDoubleAction:">(action); }
    /// Answers where the last press was, or -1 for empty space.
    NSInteger clickedRow() const { return send<"clickedRow", NSInteger>(); }
    NSInteger clickedColumn() const { return send<"clickedColumn", NSInteger>(); }
    /// Lets the user type in the text of a cell, which is scrolled to. Nothing happens where none may be edited.
    /// - event: the press that asks for it, or nil. - select: whether the whole text is selected.
    void editColumn_row_withEvent_select(
        NSInteger column, NSInteger row, NSEvent* event, bool select)
    {
        send<"editColumn:row:withEvent:select:">(column, row, event, select);
    }
    NSInteger editedRow() const { return send<"editedRow", NSInteger>(); }
    NSInteger editedColumn() const { return send<"editedColumn", NSInteger>(); }

    // ---- order

    Ref<NSArray> sortDescriptors() const { return send<"sortDescriptors", Ref<NSArray>>(); }
    /// Tells the data source, which sorts and reloads, when they change. - Nil: none.
    void setSortDescriptors(NSArray* descriptors) { send<"setSortDescriptors:">(descriptors); }

    // ---- look

    Ref<NSColor> backgroundColor() const { return send<"backgroundColor", Ref<NSColor>>(); }
    /// - Nil: the ordinary ground of controls.
    void setBackgroundColor(NSColor* color) { send<"setBackgroundColor:">(color); }
    bool usesAlternatingRowBackgroundColors() const
    {
        return send<"usesAlternatingRowBackgroundColors", bool>();
    }
    void setUsesAlternatingRowBackgroundColors(bool uses)
    {
        send<"setUsesAlternatingRowBackgroundColors:">(uses);
    }
    NSTableViewGridLineStyle gridStyleMask() const
    {
        return send<"gridStyleMask", NSTableViewGridLineStyle>();
    }
    void setGridStyleMask(NSTableViewGridLineStyle mask) { send<"setGridStyleMask:">(mask); }
    Ref<NSColor> gridColor() const { return send<"gridColor", Ref<NSColor>>(); }
    void setGridColor(NSColor* color) { send<"setGridColor:">(color); }
    NSTableViewSelectionHighlightStyle selectionHighlightStyle() const
    {
        return send<"selectionHighlightStyle", NSTableViewSelectionHighlightStyle>();
    }
    void setSelectionHighlightStyle(NSTableViewSelectionHighlightStyle style)
    {
        send<"setSelectionHighlightStyle:">(style);
    }
    /// Hooks: the ground, and the lines on it. The rows draw above both.
    void drawBackgroundInClipRect(NSRect rect) { send<"drawBackgroundInClipRect:">(rect); }
    void drawGridInClipRect(NSRect rect) { send<"drawGridInClipRect:">(rect); }

private:
    friend struct TableAccess;

    std::shared_ptr<TableState> state_ = makeTableState();
};

}
