// SPDX-License-Identifier: Apache-2.0
#include "NSTableViewPrivate.h"
#include "appkit/NSClipView.h"
#include "appkit/NSView+CursorRects.h"
#include "foundation/NSMutableDictionary.h"
#include "foundation/NSNotificationCenter.h"
#include "foundation/NSNumber.h"
#include "foundation/NSSortDescriptor.h"
#include "runtime/Table.h"

#include <cmath>

namespace brindle {

void TableAccess::requireColumn(const NSTableView& table, NSInteger column)
{
    if (!isColumn(table, column))
        raise("NSTableViewException", "Column " + std::to_string(column) + " out of column range");
}

NSInteger TableAccess::indexOf(const NSTableView& table, const NSTableColumn& column)
{
    const auto& columns = state(table).columns;
    const auto found = std::find(columns.begin(), columns.end(), &column);
    return found == columns.end() ? -1 : found - columns.begin();
}

CGFloat TableAccess::columnWidth(const NSTableView& table, const NSTableColumn& column)
{
    return column.isHidden() ? 0 : column.width() + state(table).spacing.width;
}

CGFloat TableAccess::columnsWidth(const NSTableView& table)
{
    CGFloat width = 0;
    for (const Ref<NSTableColumn>& column : state(table).columns)
        width += columnWidth(table, *column);
    return width;
}

void TableAccess::headerChanged(NSTableView& table)
{
    const Ref<NSTableHeaderView> header = state(table).header;
    maybe(header)->setNeedsDisplay(true);
    invalidateCursorRectsForView(maybe(header)->window(), header.get());
}

void TableAccess::columnsChanged(NSTableView& table)
{
    forget(table);
    table.tile();
    headerChanged(table);
}

void TableAccess::columnResized(NSTableColumn& column, CGFloat before)
{
    const Ref<NSTableView> table(tableOf(column));
    if (!table)
        return;
    table->tile();
    place(*table, false);
    table->setNeedsDisplay(true);
    headerChanged(*table);
    saveColumns(*table);
    const Ref<NSMutableDictionary> facts = make<NSMutableDictionary>();
    facts->setObject_forKey(&column, "NSTableColumn"_ns);
    facts->setObject_forKey(NSNumber::cls().numberWithDouble(before).get(), "NSOldWidth"_ns);
    post(*table, NSTableViewColumnDidResizeNotification, selector<"tableViewColumnDidResize:">,
        facts.get());
}

template <> struct NSTableView::Methods<struct Columns> {

    static TableState& of(NSTableView& self) { return TableAccess::state(self); }

    // ---- the list

    static Ref<NSArray> tableColumns(NSTableView& self)
    {
        const auto& columns = of(self).columns;
        return makeArray(std::vector<Ref<NSObject>>(columns.begin(), columns.end()));
    }
    static NSInteger numberOfColumns(NSTableView& self)
    {
        return static_cast<NSInteger>(of(self).columns.size());
    }
    static void addColumn(NSTableView& self, NSTableColumn* column)
    {
        if (column && !column->isKindOfClass(NSTableColumn::cls()))
            raise("NSInvalidArgumentException",
                "*** -[NSTableView addTableColumn:]: not a table column");
        if (!column || TableAccess::tableOf(*column))
            return;
        of(self).columns.emplace_back(column);
        TableAccess::tableOf(*column) = &self;
        TableAccess::columnsChanged(self);
        TableAccess::restoreColumns(self);
    }
    static void removeColumn(NSTableView& self, NSTableColumn* column)
    {
        const NSInteger index = column ? TableAccess::indexOf(self, *column) : -1;
        if (index < 0)
            return;
        const Ref<NSTableColumn> alive(column);
        TableAccess::tableOf(*column) = nullptr;
        TableAccess::forget(self);
        of(self).columns.erase(of(self).columns.begin() + index);
        std::erase(of(self).chosenColumns, alive);
        TableAccess::columnsChanged(self);
    }
    static void moveColumn(NSTableView& self, NSInteger from, NSInteger to)
    {
        TableAccess::requireColumn(self, from);
        TableAccess::requireColumn(self, to);
        if (from == to)
            return;
        auto& columns = of(self).columns;
        const Ref<NSTableColumn> column = columns[static_cast<std::size_t>(from)];
        columns.erase(columns.begin() + from);
        columns.insert(columns.begin() + to, column);
        TableAccess::columnsChanged(self);
        TableAccess::saveColumns(self);
        const Ref<NSMutableDictionary> facts = make<NSMutableDictionary>();
        facts->setObject_forKey(NSNumber::cls().numberWithInteger(from).get(), "NSOldColumn"_ns);
        facts->setObject_forKey(NSNumber::cls().numberWithInteger(to).get(), "NSNewColumn"_ns);
        TableAccess::post(self, NSTableViewColumnDidMoveNotification,
            selector<"tableViewColumnDidMove:">, facts.get());
    }
    static Ref<NSTableColumn> columnNamed(NSTableView& self, NSString* identifier)
    {
        for (const Ref<NSTableColumn>& column : of(self).columns) {
            if (identifier && identifier->isEqual(column->identifier().get()))
                return column;
        }
        return nullptr;
    }
    static NSInteger indexNamed(NSTableView& self, NSString* identifier)
    {
        const Ref<NSTableColumn> column = columnNamed(self, identifier);
        return column ? TableAccess::indexOf(self, *column) : -1;
    }

    // ---- widths

    static void sizeLastToFit(NSTableView& self)
    {
        TableAccess::fitColumns(self, NSTableViewLastColumnOnlyAutoresizingStyle);
    }
    static void sizeToFit(NSTableView& self)
    {
        TableAccess::fitColumns(self, of(self).autoresizing);
    }

    // ---- order

    static Ref<NSArray> sortDescriptors(NSTableView& self)
    {
        const Ref<NSArray>& all = of(self).sortDescriptors;
        return all ? all : NSArray::cls().array();
    }
    static void setSortDescriptors(NSTableView& self, NSArray* descriptors)
    {
        if (descriptors && !descriptors->isKindOfClass(NSArray::cls()))
            raise("NSInvalidArgumentException",
                "*** -[NSTableView setSortDescriptors:]: not an array");
        const Ref<NSTableView> alive(&self);
        const Ref<NSArray> old = self.sortDescriptors();
        const Ref<NSArray> fresh
            = descriptors ? cast<NSArray>(descriptors->copy()) : NSArray::cls().array();
        if (old->isEqual(fresh.get()))
            return;
        of(self).sortDescriptors = fresh;
        maybe(of(self).header)->setNeedsDisplay(true);
        if (const Ref<NSObject> source
            = TableAccess::sourceFor<"tableView:sortDescriptorsDidChange:">(self))
            source->send<"tableView:sortDescriptorsDidChange:">(&self, old.get());
    }

    static void table(Builder& t)
    {
        t.methods({
            { "tableColumns", imp<tableColumns> },
            { "numberOfColumns", imp<numberOfColumns> },
            { "addTableColumn:", imp<addColumn> },
            { "removeTableColumn:", imp<removeColumn> },
            { "moveColumn:toColumn:", imp<moveColumn> },
            { "tableColumnWithIdentifier:", imp<columnNamed> },
            { "columnWithIdentifier:", imp<indexNamed> },
            { "sizeLastColumnToFit", imp<sizeLastToFit> },
            { "sizeToFit", imp<sizeToFit> },
            { "sortDescriptors", imp<sortDescriptors> },
            { "setSortDescriptors:", imp<setSortDescriptors> },
        });
    }
};
BRINDLE_RECORD(NSTableView, Columns)

namespace {

    bool follows(const NSTableColumn& column)
    {
        return !column.isHidden() && (column.resizingMask() & NSTableColumnAutoresizingMask);
    }

    /// Gives a column what is missing, as far as its limits go, and answers what is still missing.
    CGFloat give(NSTableColumn& column, CGFloat missing)
    {
        const CGFloat before = column.width();
        column.setWidth(before + missing);
        return missing - (column.width() - before);
    }

    // What a column at its limit cannot take goes to the others.
    void giveEvenly(std::vector<Ref<NSTableColumn>> columns, CGFloat missing)
    {
        while (!columns.empty() && std::abs(missing) > 0.01) {
            std::vector<Ref<NSTableColumn>> others;
            const CGFloat share = missing / static_cast<CGFloat>(columns.size());
            missing = 0;
            for (const Ref<NSTableColumn>& column : columns) {
                const CGFloat rest = give(*column, share);
                missing += rest;
                if (rest == 0)
                    others.push_back(column);
            }
            columns = std::move(others);
        }
    }

}

void TableAccess::fitColumns(NSTableView& table, NSTableViewColumnAutoresizingStyle style)
{
    const Ref<NSTableView> alive(&table);
    const Ref<NSView> clip = state(table).clip.get();
    CGFloat missing
        = (clip ? clip->bounds().size.width : table.bounds().size.width) - columnsWidth(table);
    std::vector<Ref<NSTableColumn>> columns;
    for (const Ref<NSTableColumn>& column : state(table).columns) {
        if (follows(*column))
            columns.push_back(column);
    }
    if (columns.empty() || missing == 0)
        return;
    switch (style) {
    case NSTableViewUniformColumnAutoresizingStyle:
        return giveEvenly(columns, missing);
    case NSTableViewReverseSequentialColumnAutoresizingStyle:
        std::reverse(columns.begin(), columns.end());
        [[fallthrough]];
    case NSTableViewSequentialColumnAutoresizingStyle:
        for (const Ref<NSTableColumn>& column : columns)
            missing = give(*column, missing);
        return;
    case NSTableViewFirstColumnOnlyAutoresizingStyle:
        give(*columns.front(), missing);
        return;
    case NSTableViewLastColumnOnlyAutoresizingStyle:
        give(*columns.back(), missing);
        return;
    default:
        return;
    }
}

}
