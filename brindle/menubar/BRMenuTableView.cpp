// SPDX-License-Identifier: Apache-2.0
#include "BRMenuTableView.h"

#include "BRMenuTableRowView.h"
#include "appkit/NSEvent.h"
#include "appkit/NSTrackingArea.h"
#include "foundation/NSArray.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSLog.h"
#include "foundation/NSNumber.h"
#include "runtime/Spare.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct BRMenuTableView::Methods<struct Menu> {
    using Self = BRMenuTableView;

    // ---- loading

    static void reloadData(Self& self)
    {
        const Ref<Self> alive(&self);
        super<Self, "reloadData">(self);
        self.setTarget(&self);
        self.setAction(selector<"tapAction:">);
        if (!self.tableDelegate())
            takeOver(self);
        self.updateTrackingAreas();
    }
    // A table that stood in for itself would pass requests on to itself for ever.
    static void takeOver(Self& self)
    {
        const Ref<NSObject> delegate = self.delegate();
        if (delegate.get() != &self)
            self.setTableDelegate(delegate.get());
        self.setDelegate(&self);
    }

    // ---- the rows' places

    static Ref<NSTrackingArea> areaOf(Self& self, NSInteger row)
    {
        const Ref<NSDictionary> facts = NSDictionary::cls().dictionaryWithObject_forKey(
            NSNumber::cls().numberWithInteger(row).get(), "row"_ns);
        return alloc<NSTrackingArea>()->initWithRect_options_owner_userInfo(self.rectOfRow(row),
            NSTrackingMouseEnteredAndExited | NSTrackingActiveAlways, &self, facts.get());
    }
    // Areas that are what would be added stay: what the pointer is on is then known over scrolling too.
    static bool areCurrent(Self& self, const NSArray& present)
    {
        const auto& areas = self.rowAreas_;
        if (present.count() != areas.size()
            || static_cast<NSInteger>(areas.size()) != self.numberOfRows())
            return false;
        NSInteger row = 0;
        for (NSObject* area : present) {
            const Ref<NSTrackingArea>& known = areas[static_cast<std::size_t>(row)];
            if (area != known.get() || known->rect() != self.rectOfRow(row))
                return false;
            ++row;
        }
        return true;
    }
    static void updateTrackingAreas(Self& self)
    {
        const Ref<NSArray> present = self.trackingAreas();
        if (areCurrent(self, *present))
            return;
        for (NSObject* area : *present)
            self.removeTrackingArea(static_cast<NSTrackingArea*>(area));
        self.rowAreas_.clear();
        for (NSInteger row = 0; row < self.numberOfRows(); ++row) {
            const Ref<NSTrackingArea> area = areaOf(self, row);
            self.addTrackingArea(area.get());
            self.rowAreas_.push_back(area);
        }
    }

    // ---- the pointer

    static Ref<NSNumber> rowOf(NSEvent* event)
    {
        auto* const facts = event
            ? static_cast<NSDictionary*>(static_cast<NSObject*>(event->userData()))
            : nullptr;
        const Ref<NSObject> row = facts ? facts->objectForKey("row"_ns) : nullptr;
        return row && row->isKindOfClass(NSNumber::cls()) ? cast<NSNumber>(row) : nullptr;
    }
    static void mouseEntered(Self& self, NSEvent* event)
    {
        const Ref<Self> alive(&self);
        if (self.menuHoverMode() != BRMenuHoverModeHover)
            showSelection(self); // in another colour
        self.setMenuHoverMode(BRMenuHoverModeHover);
        const Ref<NSNumber> row = rowOf(event);
        if (!row)
            return;
        const NSUInteger index = row->unsignedIntegerValue();
        NSLog("hover %lu"_ns, index);
        self.selectRowIndexes_byExtendingSelection(onlyRow(self, index).get(), false);
    }
    // Rows are entered as fast as the pointer goes: one set serves as long as nobody else keeps it.
    static Ref<NSIndexSet> onlyRow(Self& self, NSUInteger row)
    {
        if (isSpare(self.entered_))
            self.entered_->removeAllIndexes();
        else
            self.entered_ = make<NSMutableIndexSet>();
        self.entered_->addIndex(row);
        return self.entered_;
    }
    static void showSelection(Self& self)
    {
        maybe(self.rowViewAtRow_makeIfNecessary(self.selectedRow(), true))->setNeedsDisplay(true);
    }
    // The selection stays on the row that was entered last.
    static void mouseExited(Self&, NSEvent* event) { rowOf(event); }
    static void tapAction(Self& self, NSObject*)
    {
        const Ref<Self> alive(&self);
        self.setMenuHoverMode(BRMenuHoverModeTapped);
        showSelection(self);
        maybe(self.tapTarget())->performSelector_withObject(self.tapAction(), &self);
    }

    // ---- the table's own delegate

    template <Text S> static Ref<NSObject> passedTo(Self& self)
    {
        Ref<NSObject> delegate = self.tableDelegate();
        return delegate && delegate.get() != &self && delegate->respondsToSelector(selector<S>)
            ? delegate
            : nullptr;
    }
    static Ref<NSView> viewFor(Self& self, NSTableView* table, NSTableColumn* column, NSInteger row)
    {
        const Ref<NSObject> delegate = passedTo<"tableView:viewForTableColumn:row:">(self);
        return maybe(delegate)->send<"tableView:viewForTableColumn:row:", Ref<NSView>>(
            table, column, row);
    }
    static Ref<NSTableRowView> rowViewFor(Self& self, NSTableView*, NSInteger)
    {
        const Ref<NSView> stored = self.makeViewWithIdentifier_owner("MENUROW"_ns, &self);
        if (stored)
            return cast<NSTableRowView>(stored);
        const Ref<NSView> made = alloc<BRMenuTableRowView>()->initWithFrame(NSZeroRect);
        setIdentifier(made, "MENUROW"_ns);
        return cast<NSTableRowView>(made);
    }
    template <Text S>
    static void passOn(Self& self, NSTableView* table, NSTableRowView* view, NSInteger row)
    {
        maybe(passedTo<S>(self))->template send<S>(table, view, row);
    }

    static void drawRect(Self& self, NSRect rect) { super<Self, "drawRect:">(self, rect); }

    static void table(Builder& t)
    {
        t.methods({
            { "reloadData", imp<reloadData> },
            { "updateTrackingAreas", imp<updateTrackingAreas> },
            { "mouseEntered:", imp<mouseEntered> },
            { "mouseExited:", imp<mouseExited> },
            { "tapAction:", imp<tapAction> },
            { "tableView:viewForTableColumn:row:", imp<viewFor> },
            { "tableView:rowViewForRow:", imp<rowViewFor> },
            { "tableView:didAddRowView:forRow:", imp<passOn<"tableView:didAddRowView:forRow:">> },
            { "tableView:didRemoveRowView:forRow:",
                imp<passOn<"tableView:didRemoveRowView:forRow:">> },
            { "drawRect:", imp<drawRect> },
        });
        t.properties({
            property<&Self::ourAlternatingRows_>("ourAlternatingRows"),
            property<&Self::menuHoverMode_>("menuHoverMode"),
            property<&Self::tapTarget_>("tapTarget"),
            property<&Self::tapAction_>("tapAction"),
            property<&Self::tableDelegate_>("tableDelegate"),
        });
        t.conformsTo({ "NSTableViewDelegate" });
    }
};
BRINDLE_RECORD(BRMenuTableView, Menu)

}
