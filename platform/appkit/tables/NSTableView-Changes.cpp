// SPDX-License-Identifier: Apache-2.0
#include "NSTableViewPrivate.h"
#include "quartz/layers/AllServedPrivate.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSTableView::Methods<struct Changes> {

    static TableState& of(NSTableView& self) { return TableAccess::state(self); }

    /// Answers the row that a row becomes, or -1 for one that goes.
    using Renumbering = std::function<NSInteger(NSInteger)>;

    // ---- heights

    static std::vector<double> heights(const RowHeights& rows)
    {
        std::vector<double> all(rows.count());
        for (std::size_t i = 0; i < all.size(); ++i)
            all[i] = rows.height(i);
        return all;
    }
    static void setCount(NSTableView& self, std::size_t count)
    {
        of(self).rows.setUniform(count, of(self).rowHeight + of(self).spacing.height);
    }

    // ---- renumbering

    static void renumberShown(NSTableView& self, const Renumbering& fresh)
    {
        std::vector<ShownRow> kept;
        std::vector<ShownRow> gone;
        for (const ShownRow& shown : of(self).shown) {
            const NSInteger row = fresh(shown.row);
            if (row >= 0)
                kept.push_back({ row, shown.view, shown.place });
            else
                gone.push_back(shown);
        }
        std::sort(kept.begin(), kept.end(),
            [](const ShownRow& a, const ShownRow& b) { return a.row < b.row; });
        of(self).shown = std::move(kept);
        AllServed all;
        for (const ShownRow& shown : gone) // the list is right before anybody hears of it
            all.serve([&] { TableAccess::takeOut(self, shown); });
        all.end();
    }
    static void finish(
        NSTableView& self, const NSIndexSet& selection, const Renumbering& fresh, bool moves)
    {
        TableState& s = of(self);
        s.lead = s.lead < 0 ? -1 : fresh(s.lead);
        s.anchor = s.anchor < 0 ? -1 : fresh(s.anchor);
        const bool lost = selection.count() != s.selection->count();
        s.selection = cast<NSMutableIndexSet>(selection.mutableCopy());
        const std::size_t generation = ++s.generation;
        AllServed all;
        all.serve([&] { renumberShown(self, fresh); });
        if (s.generation == generation) { // or who was told has loaded or changed the rows anew
            self.tile();
            TableAccess::place(self, moves);
            TableAccess::showStates(self);
            self.setNeedsDisplay(true);
        }
        if (lost)
            TableAccess::postSelection(self);
        TableAccess::trimSelection(self);
        all.end();
    }

    // ---- rows come

    static void insertRows(NSTableView& self, NSIndexSet* lent, NSTableViewAnimationOptions options)
    {
        if (!lent || !lent->count() || of(self).asking)
            return;
        const Ref<NSTableView> alive(&self);
        const Ref<NSIndexSet> rows = cast<NSIndexSet>(lent->copy());
        const auto count = static_cast<NSUInteger>(TableAccess::count(self)) + rows->count();
        if (count > static_cast<NSUInteger>(TableAccess::kMostRows) || rows->lastIndex() >= count)
            raise("NSTableViewException",
                "Row " + std::to_string(rows->lastIndex()) + " out of row range");
        insertHeights(self, *rows, count);
        const Renumbering fresh = [&rows](NSInteger row) { return afterInserting(*rows, row); };
        const Ref<NSMutableIndexSet> selection
            = cast<NSMutableIndexSet>(of(self).selection->mutableCopy());
        rows->enumerateRangesUsingBlock([&](NSRange range, bool*) {
            selection->shiftIndexesStartingAtIndex_by(
                range.location, static_cast<NSInteger>(range.length));
        });
        finish(self, *selection, fresh, options != NSTableViewAnimationEffectNone);
    }
    static NSInteger afterInserting(const NSIndexSet& rows, NSInteger row)
    {
        auto place = static_cast<NSUInteger>(row);
        rows.enumerateRangesUsingBlock([&](NSRange range, bool* stop) {
            if (range.location > place)
                *stop = true;
            else
                place += range.length;
        });
        return static_cast<NSInteger>(place);
    }
    static void insertHeights(NSTableView& self, const NSIndexSet& rows, NSUInteger count)
    {
        if (!TableAccess::hasHeights(self))
            return setCount(self, count);
        const FlagScope scope(of(self).asking);
        const HeightQuestion heightOf(self);
        const std::vector<double> old = heights(of(self).rows);
        std::vector<double> all(count);
        std::size_t next = 0;
        for (std::size_t row = 0; row < count; ++row)
            all[row]
                = rows.containsIndex(row) ? heightOf(static_cast<NSInteger>(row)) : old[next++];
        of(self).rows.set(std::move(all));
    }

    // ---- rows go

    static void removeRows(NSTableView& self, NSIndexSet* lent, NSTableViewAnimationOptions options)
    {
        if (!lent || !lent->count() || of(self).asking)
            return;
        const Ref<NSTableView> alive(&self);
        const Ref<NSIndexSet> rows = cast<NSIndexSet>(lent->copy());
        TableAccess::requireRow(self, static_cast<NSInteger>(rows->lastIndex()));
        removeHeights(self, *rows);
        const Renumbering fresh = [&rows](NSInteger row) {
            const auto number = static_cast<NSUInteger>(row);
            return rows->containsIndex(number)
                ? -1
                : row - static_cast<NSInteger>(rows->countOfIndexesInRange({ 0, number }));
        };
        const Ref<NSMutableIndexSet> selection
            = cast<NSMutableIndexSet>(of(self).selection->mutableCopy());
        std::vector<NSRange> ranges;
        rows->enumerateRangesUsingBlock([&](NSRange range, bool*) { ranges.push_back(range); });
        for (auto range = ranges.rbegin(); range != ranges.rend(); ++range)
            selection->shiftIndexesStartingAtIndex_by(
                NSMaxRange(*range), -static_cast<NSInteger>(range->length));
        finish(self, *selection, fresh, options != NSTableViewAnimationEffectNone);
    }
    static void removeHeights(NSTableView& self, const NSIndexSet& rows)
    {
        const auto left = static_cast<std::size_t>(TableAccess::count(self)) - rows.count();
        if (!TableAccess::hasHeights(self))
            return setCount(self, left);
        std::vector<double> all;
        all.reserve(left);
        for (std::size_t row = 0; row < of(self).rows.count(); ++row) {
            if (!rows.containsIndex(row))
                all.push_back(of(self).rows.height(row));
        }
        of(self).rows.set(std::move(all));
    }

    // ---- rows move

    static void moveRow(NSTableView& self, NSInteger from, NSInteger to)
    {
        TableAccess::requireRow(self, from);
        TableAccess::requireRow(self, to);
        if (from == to || of(self).asking)
            return;
        const Ref<NSTableView> alive(&self);
        if (!of(self).rows.isUniform()) {
            std::vector<double> all = heights(of(self).rows);
            const double height = all[static_cast<std::size_t>(from)];
            all.erase(all.begin() + from);
            all.insert(all.begin() + to, height);
            of(self).rows.set(std::move(all));
        }
        const Renumbering fresh = [from, to](NSInteger row) {
            if (row == from)
                return to;
            if (from < to)
                return row > from && row <= to ? row - 1 : row;
            return row >= to && row < from ? row + 1 : row;
        };
        const Ref<NSMutableIndexSet> selection = make<NSMutableIndexSet>();
        of(self).selection->enumerateIndexesUsingBlock([&](NSUInteger row, bool*) {
            selection->addIndex(static_cast<NSUInteger>(fresh(static_cast<NSInteger>(row))));
        });
        finish(self, *selection, fresh, true);
    }

    // ---- several at once

    static void beginUpdates(NSTableView& self) { ++of(self).updates; }
    // A data source that now says another number than these changes lead to is believed.
    static void endUpdates(NSTableView& self)
    {
        if (!of(self).updates || --of(self).updates)
            return;
        const Ref<NSObject> source = TableAccess::sourceFor<"numberOfRowsInTableView:">(self);
        if (source
            && source->send<"numberOfRowsInTableView:", NSInteger>(&self)
                != TableAccess::count(self))
            self.reloadData();
    }

    static void table(Builder& t)
    {
        t.methods({
            { "insertRowsAtIndexes:withAnimation:", imp<insertRows> },
            { "removeRowsAtIndexes:withAnimation:", imp<removeRows> },
            { "moveRowAtIndex:toIndex:", imp<moveRow> },
            { "beginUpdates", imp<beginUpdates> },
            { "endUpdates", imp<endUpdates> },
        });
    }
};
BRINDLE_RECORD(NSTableView, Changes)

}
