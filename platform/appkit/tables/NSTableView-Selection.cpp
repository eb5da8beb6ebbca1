// SPDX-License-Identifier: Apache-2.0
#include "NSTableViewPrivate.h"
#include "appkit/NSTableView+Columns.h"
#include "runtime/Spare.h"
#include "runtime/Table.h"

namespace brindle {

Ref<NSIndexSet> TableAccess::span(NSInteger a, NSInteger b)
{
    const auto first = static_cast<NSUInteger>(std::min(a, b));
    const auto last = static_cast<NSUInteger>(std::max(a, b));
    return NSIndexSet::cls().indexSetWithIndexesInRange({ first, last - first + 1 });
}

bool TableAccess::setSelection(NSTableView& table, const NSIndexSet& rows, NSInteger lead)
{
    TableState& s = state(table);
    const bool changes = !s.selection->isEqualToIndexSet(&rows);
    s.lead = lead;
    if (rows.count())
        forgetChosenColumns(table);
    if (!changes)
        return false;
    if (isSpare(s.selection)) { // nobody keeps the old answer
        s.selection->removeAllIndexes();
        s.selection->addIndexes(&rows);
    } else {
        s.selection = cast<NSMutableIndexSet>(rows.mutableCopy());
    }
    showStates(table);
    return true;
}

void TableAccess::postSelection(NSTableView& table)
{
    if (state(table).tracking)
        post(table, NSTableViewSelectionIsChangingNotification,
            selector<"tableViewSelectionIsChanging:">);
    else
        post(table, NSTableViewSelectionDidChangeNotification,
            selector<"tableViewSelectionDidChange:">);
}

void TableAccess::trimSelection(NSTableView& table)
{
    TableState& s = state(table);
    const Ref<NSMutableIndexSet> kept = cast<NSMutableIndexSet>(s.selection->mutableCopy());
    const auto rows = static_cast<NSUInteger>(count(table));
    kept->removeIndexesInRange({ rows, NSNotFound - rows });
    if (!s.empty && rows && !kept->count() && s.chosenColumns.empty())
        kept->addIndex(0);
    s.anchor = std::min(s.anchor, static_cast<NSInteger>(rows) - 1);
    if (setSelection(table, *kept, isRow(table, s.lead) ? s.lead : -1))
        postSelection(table);
}

bool TableAccess::mayChangeSelection(NSTableView& table)
{
    const Ref<NSObject> delegate = delegateFor<"selectionShouldChangeInTableView:">(table);
    return !delegate || delegate->send<"selectionShouldChangeInTableView:", bool>(&table);
}

namespace {

    /// Answers what the delegate makes of the rows that the user asks for.
    Ref<NSIndexSet> agreed(NSTableView& table, const NSIndexSet& rows)
    {
        if (const Ref<NSObject> delegate
            = TableAccess::delegateFor<"tableView:selectionIndexesForProposedSelection:">(table)) {
            const Ref<NSIndexSet> other
                = delegate
                      ->send<"tableView:selectionIndexesForProposedSelection:", Ref<NSIndexSet>>(
                          &table, &rows);
            return other ? other : NSIndexSet::cls().indexSet();
        }
        const Ref<NSMutableIndexSet> taken = cast<NSMutableIndexSet>(rows.mutableCopy());
        const Ref<NSObject> delegate
            = TableAccess::delegateFor<"tableView:shouldSelectRow:">(table);
        if (!delegate)
            return taken;
        const Ref<NSMutableIndexSet> present = TableAccess::state(table).selection;
        rows.enumerateIndexesUsingBlock([&](NSUInteger row, bool*) {
            if (!present->containsIndex(row)
                && !delegate->send<"tableView:shouldSelectRow:", bool>(
                    &table, static_cast<NSInteger>(row)))
                taken->removeIndex(row);
        });
        return taken;
    }

}

bool TableAccess::userSelects(NSTableView& table, const NSIndexSet& rows, NSInteger lead)
{
    const Ref<NSTableView> alive(&table);
    if (state(table).selection->isEqualToIndexSet(&rows)) {
        state(table).lead = lead;
        return true;
    }
    if (!mayChangeSelection(table))
        return false;
    const Ref<NSMutableIndexSet> taken
        = cast<NSMutableIndexSet>(agreed(table, rows)->mutableCopy());
    const auto count = static_cast<NSUInteger>(TableAccess::count(table));
    taken->removeIndexesInRange({ count, NSNotFound - count });
    if (!taken->count() && (rows.count() || !state(table).empty))
        return false;
    if (setSelection(table, *taken, lead))
        postSelection(table);
    return true;
}

template <> struct NSTableView::Methods<struct Selection> {

    static TableState& of(NSTableView& self) { return TableAccess::state(self); }

    static void requireRows(NSTableView& self, const NSIndexSet& rows)
    {
        if (rows.count())
            TableAccess::requireRow(self, static_cast<NSInteger>(rows.lastIndex()));
    }
    // Where one row may be selected, the last one of all is meant.
    static Ref<NSIndexSet> allowed(NSTableView& self, NSIndexSet& rows, bool extend)
    {
        if (!extend && (of(self).multiple || rows.count() <= 1))
            return &rows;
        if (of(self).multiple) {
            const Ref<NSMutableIndexSet> all = make<NSMutableIndexSet>();
            if (extend)
                all->addIndexes(of(self).selection.get());
            all->addIndexes(&rows);
            return all;
        }
        const Ref<NSMutableIndexSet> one = make<NSMutableIndexSet>();
        if (rows.count())
            one->addIndex(rows.lastIndex());
        else if (extend)
            one->addIndexes(of(self).selection.get());
        return one;
    }
    static void select(NSTableView& self, NSIndexSet* lent, bool extend)
    {
        if (lent && !lent->isKindOfClass(NSIndexSet::cls()))
            raise("NSInvalidArgumentException",
                "*** -[NSTableView selectRowIndexes:byExtendingSelection:]: not an index set");
        const Ref<NSTableView> alive(&self);
        const Ref<NSIndexSet> rows = lent ? Ref<NSIndexSet>(lent) : NSIndexSet::cls().indexSet();
        requireRows(self, *rows);
        const Ref<NSIndexSet> all = allowed(self, *rows, extend);
        if (!all->count() && !of(self).empty)
            return;
        const NSInteger lead
            = rows->count() ? static_cast<NSInteger>(rows->lastIndex()) : of(self).lead;
        of(self).anchor = lead;
        if (TableAccess::setSelection(self, *all, lead))
            TableAccess::postSelection(self);
    }
    static void deselectRow(NSTableView& self, NSInteger row)
    {
        if (!self.isRowSelected(row) || (of(self).selection->count() == 1 && !of(self).empty))
            return;
        const Ref<NSTableView> alive(&self);
        const Ref<NSMutableIndexSet> rest
            = cast<NSMutableIndexSet>(of(self).selection->mutableCopy());
        rest->removeIndex(static_cast<NSUInteger>(row));
        if (TableAccess::setSelection(self, *rest, -1))
            TableAccess::postSelection(self);
    }
    // Both are actions of the user.
    static void selectAll(NSTableView& self, NSObject*)
    {
        if (!of(self).multiple || !TableAccess::count(self))
            return;
        const Ref<NSIndexSet> all = NSIndexSet::cls().indexSetWithIndexesInRange(
            { 0, static_cast<NSUInteger>(TableAccess::count(self)) });
        TableAccess::userSelects(self, *all, of(self).lead);
    }
    static void deselectAll(NSTableView& self, NSObject*)
    {
        if (!of(self).empty)
            return;
        if (!of(self).chosenColumns.empty() && TableAccess::mayChangeSelection(self))
            return selectColumnIndexes_byExtendingSelection(self, nullptr, false);
        TableAccess::userSelects(self, *NSIndexSet::cls().indexSet().get(), -1);
    }

    static NSInteger selectedRow(NSTableView& self)
    {
        const TableState& s = of(self);
        if (!s.selection->count())
            return -1;
        if (s.lead >= 0 && s.selection->containsIndex(static_cast<NSUInteger>(s.lead)))
            return s.lead;
        return static_cast<NSInteger>(s.selection->lastIndex());
    }
    static Ref<NSIndexSet> selectedRows(NSTableView& self)
    {
        return cast<NSIndexSet>(of(self).selection->copy());
    }
    static NSInteger numberOfSelected(NSTableView& self)
    {
        return static_cast<NSInteger>(of(self).selection->count());
    }
    static bool isSelected(NSTableView& self, NSInteger row)
    {
        return row >= 0 && of(self).selection->containsIndex(static_cast<NSUInteger>(row));
    }

    static void table(Builder& t)
    {
        t.methods({
            { "selectRowIndexes:byExtendingSelection:", imp<select> },
            { "deselectRow:", imp<deselectRow> },
            { "selectAll:", imp<selectAll> },
            { "deselectAll:", imp<deselectAll> },
            { "selectedRow", imp<selectedRow> },
            { "selectedRowIndexes", imp<selectedRows> },
            { "numberOfSelectedRows", imp<numberOfSelected> },
            { "isRowSelected:", imp<isSelected> },
        });
    }
};
BRINDLE_RECORD(NSTableView, Selection)

}
