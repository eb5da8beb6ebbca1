// SPDX-License-Identifier: Apache-2.0
#include "NSTableViewPrivate.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/NSTableView+Columns.h"
#include "appkit/controls/ControlDrawingPrivate.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    using Chosen = std::vector<Ref<NSTableColumn>>;

    Ref<NSMutableIndexSet> indexesOf(const NSTableView& table, const Chosen& columns)
    {
        const Ref<NSMutableIndexSet> all = make<NSMutableIndexSet>();
        for (const Ref<NSTableColumn>& column : columns)
            all->addIndex(static_cast<NSUInteger>(TableAccess::indexOf(table, *column)));
        return all;
    }
    bool contains(const Chosen& columns, const Ref<NSTableColumn>& column)
    {
        return std::find(columns.begin(), columns.end(), column) != columns.end();
    }

    /// Makes these columns the chosen ones, and lets go of the rows where there are any.
    void choose(NSTableView& table, Chosen columns)
    {
        TableState& s = TableAccess::state(table);
        const Ref<NSMutableIndexSet> before = indexesOf(table, s.chosenColumns);
        const bool changes = !before->isEqualToIndexSet(indexesOf(table, columns).get());
        s.chosenColumns = std::move(columns);
        const bool frees = !s.chosenColumns.empty()
            && TableAccess::setSelection(table, *NSIndexSet::cls().indexSet().get(), -1);
        if (!changes && !frees)
            return;
        table.setNeedsDisplay(true);
        TableAccess::headerChanged(table);
        TableAccess::postSelection(table);
    }

    /// Answers what a click with these keys chooses.
    Chosen clicked(NSTableView& table, NSInteger index, NSEventModifierFlags held)
    {
        const TableState& s = TableAccess::state(table);
        const Ref<NSTableColumn> column = s.columns[static_cast<std::size_t>(index)];
        Chosen all = s.multiple ? s.chosenColumns : Chosen();
        if (held & NSCommandKeyMask) {
            if (!contains(s.chosenColumns, column))
                all.push_back(column);
            else
                std::erase(all, column);
            return all;
        }
        if (!(held & NSShiftKeyMask) || all.empty())
            return { column };
        const NSInteger from = TableAccess::indexOf(table, *all.back());
        Chosen range;
        for (NSInteger i = from; i != index; i += from < index ? 1 : -1)
            range.push_back(s.columns[static_cast<std::size_t>(i)]);
        range.push_back(column);
        return range;
    }

}

void TableAccess::forgetChosenColumns(NSTableView& table)
{
    if (state(table).chosenColumns.empty())
        return;
    state(table).chosenColumns.clear();
    table.setNeedsDisplay(true);
    headerChanged(table);
}

void TableAccess::userSelectsColumn(NSTableView& table, NSInteger index, NSEventModifierFlags held)
{
    if (!state(table).choosesColumns || !isColumn(table, index))
        return;
    const Ref<NSTableView> alive(&table);
    const Ref<NSTableColumn> column = state(table).columns[static_cast<std::size_t>(index)];
    if (!mayChangeSelection(table))
        return;
    const Ref<NSObject> delegate = delegateFor<"tableView:shouldSelectTableColumn:">(table);
    if (delegate
        && !delegate->send<"tableView:shouldSelectTableColumn:", bool>(&table, column.get()))
        return;
    const NSInteger place = indexOf(table, *column); // the delegate may have moved it
    if (place < 0)
        return;
    Chosen columns = clicked(table, place, held);
    if (!columns.empty() || state(table).empty)
        choose(table, std::move(columns));
}

void TableAccess::drawChosenColumns(NSTableView& table, NSRect rect)
{
    const Chosen& columns = state(table).chosenColumns;
    if (columns.empty())
        return;
    NSColor::cls().unemphasizedSelectedContentBackgroundColor()->set();
    for (const Ref<NSTableColumn>& column : columns) {
        NSRect place = table.rectOfColumn(indexOf(table, *column));
        place.origin.y = NSMinY(rect); // down to the end of what shows, past the last row
        place.size.height = rect.size.height;
        if (NSIntersectsRect(place, rect))
            NSRectFillUsingOperation(NSIntersectionRect(place, rect), NSCompositeSourceOver);
    }
}

template <> struct NSTableView::Methods<struct ColumnSelection> {

    static TableState& of(NSTableView& self) { return TableAccess::state(self); }

    static bool allows(NSTableView& self) { return of(self).choosesColumns; }
    static void setAllows(NSTableView& self, bool allows) { of(self).choosesColumns = allows; }

    static void select(NSTableView& self, NSIndexSet* indexes, bool extend)
    {
        if (indexes && !indexes->isKindOfClass(NSIndexSet::cls()))
            raise("NSInvalidArgumentException",
                "*** -[NSTableView selectColumnIndexes:byExtendingSelection:]: not an index set");
        const Ref<NSTableView> alive(&self);
        TableState& s = of(self);
        Chosen columns = extend ? s.chosenColumns : Chosen();
        if (maybe(indexes)->count()) {
            TableAccess::requireColumn(self, static_cast<NSInteger>(indexes->lastIndex()));
            indexes->enumerateIndexesUsingBlock([&](NSUInteger index, bool*) {
                std::erase(columns, s.columns[index]);
                columns.push_back(s.columns[index]);
            });
        }
        if (!s.multiple && columns.size() > 1)
            columns.erase(columns.begin(), columns.end() - 1);
        if (!columns.empty() || s.empty)
            choose(self, std::move(columns));
    }
    static void deselect(NSTableView& self, NSInteger index)
    {
        if (!isSelected(self, index) || (of(self).chosenColumns.size() == 1 && !of(self).empty))
            return;
        const Ref<NSTableView> alive(&self);
        Chosen rest = of(self).chosenColumns;
        std::erase(rest, of(self).columns[static_cast<std::size_t>(index)]);
        choose(self, std::move(rest));
    }

    static NSInteger selected(NSTableView& self)
    {
        const Chosen& columns = of(self).chosenColumns;
        return columns.empty() ? -1 : TableAccess::indexOf(self, *columns.back());
    }
    static Ref<NSIndexSet> selectedIndexes(NSTableView& self)
    {
        return cast<NSIndexSet>(indexesOf(self, of(self).chosenColumns)->copy());
    }
    static NSInteger count(NSTableView& self)
    {
        return static_cast<NSInteger>(of(self).chosenColumns.size());
    }
    static bool isSelected(NSTableView& self, NSInteger index)
    {
        return TableAccess::isColumn(self, index)
            && contains(of(self).chosenColumns, of(self).columns[static_cast<std::size_t>(index)]);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "allowsColumnSelection", imp<allows> },
            { "setAllowsColumnSelection:", imp<setAllows> },
            { "selectColumnIndexes:byExtendingSelection:", imp<select> },
            { "deselectColumn:", imp<deselect> },
            { "selectedColumn", imp<selected> },
            { "selectedColumnIndexes", imp<selectedIndexes> },
            { "numberOfSelectedColumns", imp<count> },
            { "isColumnSelected:", imp<isSelected> },
        });
    }
};
BRINDLE_RECORD(NSTableView, ColumnSelection)

}
