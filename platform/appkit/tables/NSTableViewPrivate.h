// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "RowHeightsPrivate.h"
#include "appkit/NSColor.h"
#include "appkit/NSTableHeaderView.h"
#include "appkit/NSTableView.h"
#include "appkit/views/FlagScopePrivate.h"
#include "appkit/windows/HeardWindowPrivate.h"
#include "foundation/Exceptions.h"
#include "foundation/NSArray.h"
#include "foundation/NSDate.h"

namespace brindle {

/// Views that no longer show, by identifier. Of many identifiers it keeps those that were used last.
class ViewStore {
public:
    void put(Ref<NSView> view);
    Ref<NSView> take(const NSString& identifier);

private:
    static constexpr std::size_t kMost
        = 256; // of one kind; no table shows more at once, unless rows are tiny
    static constexpr std::size_t kMostShelves = 64;
    struct Shelf {
        Ref<NSString> identifier;
        std::vector<Ref<NSView>> views;
    };
    Shelf* shelf(const NSString& identifier);
    std::vector<Shelf> shelves_; // the one used last is the last
};

/// A row that has a view.
struct ShownRow {
    NSInteger row;
    Ref<NSTableRowView> view;
    NSRect place; // where the view is, or where it moves to
};

/// Everything a table is and has.
struct TableState {
    TableState() = default;
    ~TableState(); // columns that live on forget the table
    TableState(const TableState&) = delete;
    TableState& operator=(const TableState&) = delete;

    WeakRef<NSObject> dataSource;
    WeakRef<NSObject> delegate;
    std::vector<Ref<NSTableColumn>> columns;
    RowHeights rows;
    std::vector<ShownRow> shown; // in the order of rows
    ViewStore store;
    Ref<NSTableHeaderView> header;
    WeakRef<NSView> clip; // the clip view around
    HeardWindow heard;
    Ref<NSArray> sortDescriptors;
    Ref<NSColor> background; // nil: the ordinary one
    Ref<NSColor> grid; // nil: the ordinary one

    Ref<NSMutableIndexSet> selection;
    NSInteger lead = -1; // the row that was selected last
    NSInteger anchor = -1; // the end of an extended selection that stays
    std::vector<Ref<NSTableColumn>> chosenColumns; // the last one was chosen last; no rows are then
    Ref<NSMutableString> typed; // of choosing rows by letters
    double typedAt = 0;

    double rowHeight = 17;
    NSSize spacing { 3, 2 };
    NSInteger clickedRow = -1;
    NSInteger clickedColumn = -1;
    SEL doubleAction {};
    NSTableViewColumnAutoresizingStyle autoresizing = NSTableViewLastColumnOnlyAutoresizingStyle;
    NSTableViewGridLineStyle gridStyle = NSTableViewGridNone;
    NSTableViewSelectionHighlightStyle highlight = NSTableViewSelectionHighlightStyleRegular;

    Ref<NSString> autosaveName; // nil: columns are not kept

    double movingUntil = 0; // when the last row comes to rest
    std::size_t generation = 0; // counts what makes row views or their numbers useless
    unsigned updates = 0; // `beginUpdates` in progress
    bool asking = false; // the data source, for its rows
    bool settling = false;
    bool tiling = false;
    bool tracking = false; // the pointer, with the button down
    bool multiple = false;
    bool empty = true;
    bool reorders = true;
    bool resizes = true;
    bool typeSelects = true;
    bool alternates = false;
    bool choosesColumns = false;
    bool autosaves = false;
    bool restoring = false; // columns, out of the defaults
};

/// What the files of a table do with each other beside sending messages.
struct TableAccess {
    static constexpr NSInteger kMostRows = 16'777'216;
    static constexpr double kLeastHeight = 1;
    static constexpr double kMostHeight = 100'000;

    static TableState& state(const NSTableView& table) { return *table.state_; }
    static std::vector<Ref<NSView>>& cells(NSTableRowView& row) { return row.cells_; }
    /// Names the ground that the table draws behind a row, unless the host gave the row one of its own.
    static void setGround(NSTableRowView& row, const Ref<NSColor>& ground)
    {
        if (!row.drawsGround_)
            row.backgroundColor_ = ground;
    }
    static NSTableView*& tableOf(NSTableColumn& column) { return column.tableView_; }
    static void setWidth(NSTableColumn& column, CGFloat width) { column.width_ = width; }

    // ---- rows

    static NSInteger count(const NSTableView& table)
    {
        return static_cast<NSInteger>(state(table).rows.count());
    }
    static bool isRow(const NSTableView& table, NSInteger row)
    {
        return row >= 0 && row < count(table);
    }
    static bool isColumn(const NSTableView& table, NSInteger column)
    {
        return column >= 0 && column < static_cast<NSInteger>(state(table).columns.size());
    }
    static void requireRow(const NSTableView& table, NSInteger row);
    static void requireColumn(const NSTableView& table, NSInteger column);
    /// Answers the place of a row among those that have a view, or of the next one.
    static std::vector<ShownRow>::iterator find(TableState& state, NSInteger row);
    static ShownRow* shownRow(const NSTableView& table, NSInteger row);

    /// Asks the data source and the delegate. - Returns: NO while they are being asked already.
    static bool load(NSTableView& table);
    /// Loads the rows and makes their views anew, without a message that a table below might have its own answer to.
    static void reload(NSTableView& table);
    static bool hasHeights(const NSTableView& table);
    /// Makes the views of what shows and puts the others away.
    static void settle(NSTableView& table);
    /// Puts all row views away; what shows is made before it is drawn.
    static void forget(NSTableView& table);
    /// Puts the views where their rows are. - moves: by degrees, for as long as the animation context says.
    static void place(NSTableView& table, bool moves);
    static void placeCells(NSTableView& table, NSTableRowView& row, NSRect place);
    /// Makes the rows look as they are: selected, emphasized.
    static void showStates(NSTableView& table);
    /// Makes a row's view, without putting it in.
    static Ref<NSTableRowView> makeRow(NSTableView& table, NSInteger row);
    static void fillCell(NSTableView& table, NSTableRowView& view, NSInteger column, NSInteger row);
    static void putAway(NSTableView& table, const Ref<NSTableRowView>& view);
    /// Puts away a row that is no longer on the list, and tells the delegate.
    static void takeOut(NSTableView& table, const ShownRow& gone);

    // ---- columns

    static CGFloat columnsWidth(const NSTableView& table);
    static CGFloat columnWidth(const NSTableView& table, const NSTableColumn& column);
    static void columnsChanged(NSTableView& table);
    static void columnResized(NSTableColumn& column, CGFloat before);
    static NSInteger indexOf(const NSTableView& table, const NSTableColumn& column);
    /// The titles, and where their edges lie, are others now.
    static void headerChanged(NSTableView& table);
    static void saveColumns(NSTableView& table);
    static void restoreColumns(NSTableView& table);
    static void fitColumns(NSTableView& table, NSTableViewColumnAutoresizingStyle style);

    // ---- selection

    /// Answers the rows from one to another, whichever comes first.
    static Ref<NSIndexSet> span(NSInteger a, NSInteger b);
    /// What of the selection is no row any more goes.
    static void trimSelection(NSTableView& table);
    /// - Returns: whether it changed; it is not posted.
    static bool setSelection(NSTableView& table, const NSIndexSet& rows, NSInteger lead);
    static void postSelection(NSTableView& table);
    /// Asks the delegate whether the user may choose something else.
    static bool mayChangeSelection(NSTableView& table);
    /// Follows a click on a column's title.
    static void userSelectsColumn(NSTableView& table, NSInteger index, NSEventModifierFlags held);
    static void forgetChosenColumns(NSTableView& table);
    static void drawChosenColumns(NSTableView& table, NSRect rect);
    /// Selects as the user asks: the delegate may refuse or change it.
    static bool userSelects(NSTableView& table, const NSIndexSet& rows, NSInteger lead);

    // ---- the delegate

    /// Answers the delegate if it has an operation.
    template <Text S> static Ref<NSObject> delegateFor(const NSTableView& table)
    {
        return answering<S>(state(table).delegate.get());
    }
    template <Text S> static Ref<NSObject> sourceFor(const NSTableView& table)
    {
        return answering<S>(state(table).dataSource.get());
    }
    /// Tells the delegate and whoever observes.
    static void post(NSTableView& table, NSString* name, SEL told, NSDictionary* facts = nullptr);

private:
    template <Text S> static Ref<NSObject> answering(Ref<NSObject> object)
    {
        return object && object->respondsToSelector(selector<S>) ? object : nullptr;
    }
};

/// Asks the delegate, who is there while this is, how high rows are, with the spacing.
class HeightQuestion {
public:
    explicit HeightQuestion(NSTableView& table);
    double operator()(NSInteger row) const;

private:
    NSTableView& table_;
    Ref<NSObject> delegate_;
};

}
