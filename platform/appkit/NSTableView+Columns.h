// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSTableView.h"

/// Whole columns that are chosen, and what a user has made of the columns from one start to the next.
///
/// Rows and columns are not chosen together: choosing some of one lets go of the other. Both post the same notifications, and
/// `selectionShouldChangeInTableView:` is asked for both; `tableView:shouldSelectTableColumn:` is asked for columns.

namespace brindle {

/// Whether a click on a title chooses its column; with Shift and Command as among rows. NO at first. Programs always may.
inline bool allowsColumnSelection(To<NSTableView> table)
{
    return table.send<"allowsColumnSelection", bool>();
}
inline void setAllowsColumnSelection(To<NSTableView> table, bool allows)
{
    table.send<"setAllowsColumnSelection:">(allows);
}
/// Chooses these columns and no others, or these in addition. Posts only when the selection changes.
/// - Raises: `NSTableViewException` for a column that is not there. - Nil: none.
/// Where one row at most may be chosen the last column is; where one must be, none at all is ignored.
inline void selectColumnIndexes_byExtendingSelection(
    To<NSTableView> table, NSIndexSet* columns, bool extend)
{
    table.send<"selectColumnIndexes:byExtendingSelection:">(columns, extend);
}
inline void deselectColumn(To<NSTableView> table, NSInteger column)
{
    table.send<"deselectColumn:">(column);
}
/// Answers the column that was chosen last, or -1.
inline NSInteger selectedColumn(To<NSTableView> table)
{
    return table.send<"selectedColumn", NSInteger>();
}
inline Ref<NSIndexSet> selectedColumnIndexes(To<NSTableView> table)
{
    return table.send<"selectedColumnIndexes", Ref<NSIndexSet>>();
}
inline NSInteger numberOfSelectedColumns(To<NSTableView> table)
{
    return table.send<"numberOfSelectedColumns", NSInteger>();
}
inline bool isColumnSelected(To<NSTableView> table, NSInteger column)
{
    return table.send<"isColumnSelected:", bool>(column);
}

/// Answers the name under which the columns are kept in the user's defaults, or nil.
inline Ref<NSString> autosaveName(To<NSTableView> table)
{
    return table.send<"autosaveName", Ref<NSString>>();
}
/// Names the columns' order, widths and hiding in the defaults; what was kept is taken over when `autosaveTableColumns` is
/// on, for columns that are added later too. - Nil: nothing is kept.
/// - Shape: "NSTableView Columns <name>" is an array of dictionaries: "Identifier", "Width" (points), "Hidden".
inline void setAutosaveName(To<NSTableView> table, NSString* name)
{
    table.send<"setAutosaveName:">(name);
}
/// NO at first.
inline bool autosaveTableColumns(To<NSTableView> table)
{
    return table.send<"autosaveTableColumns", bool>();
}
inline void setAutosaveTableColumns(To<NSTableView> table, bool saves)
{
    table.send<"setAutosaveTableColumns:">(saves);
}

}
