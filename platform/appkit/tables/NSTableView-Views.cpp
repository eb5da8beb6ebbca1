// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <optional>

#include "NSTableViewPrivate.h"
#include "appkit/views/NSViewPrivate.h"
#include "quartz/layers/AllServedPrivate.h"
#include "runtime/Table.h"

namespace brindle {

void TableAccess::reload(NSTableView& table)
{
    const Ref<NSTableView> alive(&table);
    if (!load(table))
        return;
    AllServed all;
    all.serve([&] { forget(table); });
    table.tile();
    trimSelection(table);
    all.end();
}

template <> struct NSTableView::Methods<struct Views> {

    static TableState& of(NSTableView& self) { return TableAccess::state(self); }

    // ---- loading

    static NSInteger numberOfRows(NSTableView& self) { return TableAccess::count(self); }
    static void reloadData(NSTableView& self) { TableAccess::reload(self); }
    static void countChanged(NSTableView& self)
    {
        const Ref<NSTableView> alive(&self);
        if (!TableAccess::load(self))
            return;
        AllServed all;
        if (!of(self).shown.empty() && of(self).shown.back().row >= TableAccess::count(self))
            all.serve([&] { TableAccess::forget(self); });
        self.tile();
        TableAccess::place(self, false);
        TableAccess::trimSelection(self);
        self.setNeedsDisplay(true);
        all.end();
    }
    static void reloadSome(NSTableView& self, NSIndexSet* rows, NSIndexSet* columns)
    {
        if (!rows || !columns)
            return;
        const Ref<NSTableView> alive(&self);
        const Ref<NSIndexSet> rowsAlive(rows);
        const Ref<NSIndexSet> columnsAlive(columns);
        const std::vector<ShownRow> shown = of(self).shown;
        for (const ShownRow& row : shown) {
            if (rows->containsIndex(static_cast<NSUInteger>(row.row))
                && !reloadRow(self, *row.view, *columns))
                return TableAccess::forget(self);
        }
    }
    /// Answers the row that a row view shows now; nothing when it has been put away.
    static std::optional<ShownRow> rowOf(NSTableView& self, const NSTableRowView& view)
    {
        const std::vector<ShownRow>& shown = of(self).shown;
        const auto found = std::ranges::find_if(
            shown, [&view](const ShownRow& row) { return row.view.get() == &view; });
        return found == shown.end() ? std::nullopt : std::optional(*found);
    }
    /// - Returns: NO when rows were loaded or changed by who was asked for a cell.
    static bool reloadRow(NSTableView& self, NSTableRowView& view, const NSIndexSet& columns)
    {
        const std::vector<Ref<NSView>>& cells = TableAccess::cells(view);
        for (std::size_t i = 0; i < cells.size(); ++i) {
            if (!columns.containsIndex(i))
                continue;
            const Ref<NSView> old = cells[i];
            if (old)
                old->removeFromSuperview(); // ends editing in it
            const std::optional<ShownRow> shown = rowOf(self, view);
            if (!shown)
                return true; // who was told has put it away, and its cells
            if (i >= cells.size() || (cells[i] && cells[i] != old))
                continue; // or has filled it
            if (old)
                of(self).store.put(old);
            const std::size_t generation = of(self).generation;
            TableAccess::fillCell(self, view, static_cast<NSInteger>(i), shown->row);
            if (of(self).generation != generation)
                return false;
        }
        if (const std::optional<ShownRow> shown = rowOf(self, view))
            TableAccess::placeCells(self, view, shown->place);
        view.setNeedsDisplay(true);
        TableAccess::showStates(self);
        return true;
    }
    static void heightsChanged(NSTableView& self, NSIndexSet* changed)
    {
        TableState& s = of(self);
        if (!changed || s.asking)
            return;
        const Ref<NSTableView> alive(&self);
        if (TableAccess::hasHeights(self)) {
            const FlagScope scope(s.asking);
            const NSInteger count = TableAccess::count(self);
            const HeightQuestion heightOf(self);
            RowHeights fresh = s.rows;
            changed->enumerateIndexesUsingBlock([&](NSUInteger row, bool* stop) {
                *stop = row >= static_cast<NSUInteger>(count);
                if (!*stop)
                    fresh.setHeight(row, heightOf(static_cast<NSInteger>(row)));
            });
            s.rows = std::move(fresh);
        } else {
            s.rows.setUniform(s.rows.count(), s.rowHeight + s.spacing.height);
        }
        self.tile();
        TableAccess::place(self, true);
        self.setNeedsDisplay(true);
    }

    // ---- views

    static Ref<NSView> makeView(NSTableView& self, NSString* identifier, NSObject*)
    {
        if (!identifier || !identifier->isKindOfClass(NSString::cls()))
            return nullptr;
        Ref<NSView> view = of(self).store.take(*identifier);
        if (view && view->respondsToSelector(selector<"prepareForReuse">))
            view->send<"prepareForReuse">();
        return view;
    }
    static Ref<NSTableRowView> rowViewAt(NSTableView& self, NSInteger row, bool make)
    {
        if (row == -1)
            return nullptr;
        TableAccess::requireRow(self, row);
        const Ref<NSTableView> alive(&self);
        if (make)
            TableAccess::settle(self);
        if (const ShownRow* const shown = TableAccess::shownRow(self, row))
            return shown->view;
        return make && TableAccess::isRow(self, row) ? TableAccess::makeRow(self, row) : nullptr;
    }
    static Ref<NSView> viewAt(NSTableView& self, NSInteger column, NSInteger row, bool make)
    {
        if (row == -1 || column == -1)
            return nullptr;
        TableAccess::requireColumn(self, column);
        const Ref<NSTableRowView> view = self.rowViewAtRow_makeIfNecessary(row, make);
        if (!view || column >= view->numberOfColumns())
            return nullptr;
        return view->viewAtColumn(column);
    }
    static const ShownRow* rowAround(NSTableView& self, const NSView* view)
    {
        while (view && ViewAccess::superview(*view) != &self)
            view = ViewAccess::superview(*view);
        for (const ShownRow& shown : of(self).shown) {
            if (view && shown.view == static_cast<const NSTableRowView*>(view))
                return &shown;
        }
        return nullptr;
    }
    static NSInteger rowForView(NSTableView& self, NSView* view)
    {
        const ShownRow* const shown = rowAround(self, view);
        return shown ? shown->row : -1;
    }
    static NSInteger columnForView(NSTableView& self, NSView* view)
    {
        const ShownRow* const shown = rowAround(self, view);
        if (!shown)
            return -1;
        const auto& cells = TableAccess::cells(*shown->view);
        for (std::size_t i = 0; i < cells.size(); ++i) {
            if (cells[i] && view->isDescendantOf(cells[i].get()))
                return static_cast<NSInteger>(i);
        }
        return -1;
    }
    static void enumerate(NSTableView& self, Closure<void(NSTableRowView*, NSInteger)>* lent)
    {
        const RowVisitor visitor(lent);
        if (!visitor)
            return;
        TableAccess::settle(self);
        const std::vector<ShownRow> rows = of(self).shown;
        for (const ShownRow& shown : rows)
            visitor(shown.view.get(), shown.row);
    }
    // A row that a host takes away is made anew when it is to show.
    static void willRemoveSubview(NSTableView& self, NSView* view)
    {
        super<NSTableView, "willRemoveSubview:">(self, view);
        std::erase_if(of(self).shown, [view](const ShownRow& shown) {
            return static_cast<NSView*>(shown.view.get()) == view;
        });
    }

    // ---- when views are made

    static void willDraw(NSTableView& self)
    {
        const Ref<NSTableView> alive(&self);
        super<NSTableView, "viewWillDraw">(self);
        TableAccess::settle(self);
        TableAccess::showStates(self);
    }
    static void didMoveToWindow(NSTableView& self)
    {
        super<NSTableView, "viewDidMoveToWindow">(self);
        of(self).heard.follow(self, selector<"windowKeyStateChanged:">);
        if (!self.window())
            return TableAccess::forget(self);
        self.setNeedsDisplay(true);
    }
    static void keyStateChanged(NSTableView& self, NSNotification*) { self.setNeedsDisplay(true); }
    static void didUnhide(NSTableView& self)
    {
        super<NSTableView, "viewDidUnhide">(self);
        self.setNeedsDisplay(true);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "numberOfRows", imp<numberOfRows> },
            { "reloadData", imp<reloadData> },
            { "noteNumberOfRowsChanged", imp<countChanged> },
            { "reloadDataForRowIndexes:columnIndexes:", imp<reloadSome> },
            { "noteHeightOfRowsWithIndexesChanged:", imp<heightsChanged> },
            { "makeViewWithIdentifier:owner:", imp<makeView> },
            { "rowViewAtRow:makeIfNecessary:", imp<rowViewAt> },
            { "viewAtColumn:row:makeIfNecessary:", imp<viewAt> },
            { "rowForView:", imp<rowForView> },
            { "columnForView:", imp<columnForView> },
            { "enumerateAvailableRowViewsUsingBlock:", imp<enumerate> },
            { "willRemoveSubview:", imp<willRemoveSubview> },
            { "viewWillDraw", imp<willDraw> },
            { "viewDidMoveToWindow", imp<didMoveToWindow> },
            { "windowKeyStateChanged:", imp<keyStateChanged> },
            { "viewDidUnhide", imp<didUnhide> },
        });
    }
};
BRINDLE_RECORD(NSTableView, Views)

}
