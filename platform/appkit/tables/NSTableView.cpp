// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSTableView.h"

#include "NSTableViewPrivate.h"
#include "appkit/NSWindow.h"
#include "foundation/NSMutableString.h"
#include "foundation/NSNotificationCenter.h"
#include "foundation/NotificationMemoryPrivate.h"
#include "runtime/Table.h"

#include <cmath>

namespace brindle {

std::shared_ptr<TableState> makeTableState()
{
    auto state = std::make_shared<TableState>();
    state->selection = make<NSMutableIndexSet>();
    return state;
}

TableState::~TableState()
{
    for (const Ref<NSTableColumn>& column : columns)
        TableAccess::tableOf(*column) = nullptr;
}

void TableAccess::post(NSTableView& table, NSString* name, SEL told, NSDictionary* facts)
{
    const Ref<NSTableView> alive(&table);
    Ref<NSNotification> news = makeNotification(name, &table, facts);
    const Ref<NSObject> delegate = state(table).delegate.get();
    if (delegate && delegate->respondsToSelector(told))
        delegate->performSelector_withObject(told, news.get());
    NSNotificationCenter::cls().defaultCenter()->postNotification(news.get());
    retireNotification(std::move(news));
}

template <> struct NSTableView::Methods<struct Basics> {

    static constexpr CGFloat kHeaderHeight = 24;

    static TableState& of(NSTableView& self) { return *self.state_; }

    static Ref<NSView> initWithFrame(NSTableView& self, NSRect frame)
    {
        const Ref<NSView> made = super<NSTableView, "initWithFrame:", Ref<NSView>>(self, frame);
        if (!made)
            return nullptr;
        const Ref<NSView> header = alloc<NSTableHeaderView>()->initWithFrame(
            NSMakeRect(0, 0, frame.size.width, kHeaderHeight));
        self.setHeaderView(cast<NSTableHeaderView>(header).get());
        return made;
    }
    static bool yes(NSTableView&) { return true; }
    static bool no(NSTableView&) { return false; }
    static bool isOpaque(NSTableView& self)
    {
        return maybe(self.backgroundColor())->alphaComponent() >= 1;
    }

    // ---- data source and delegate

    static Ref<NSObject> dataSource(NSTableView& self) { return of(self).dataSource.get(); }
    static void setDataSource(NSTableView& self, NSObject* source)
    {
        of(self).dataSource = source;
        TableAccess::reload(self);
    }
    static Ref<NSObject> delegate(NSTableView& self) { return of(self).delegate.get(); }
    // The number of rows stays what it was: a delegate may be set while the data source is asked.
    static void setDelegate(NSTableView& self, NSObject* delegate)
    {
        if (of(self).delegate.get() == delegate)
            return;
        const bool hadHeights = TableAccess::hasHeights(self);
        of(self).delegate = delegate;
        TableAccess::forget(self);
        if (hadHeights || TableAccess::hasHeights(self))
            self.noteHeightOfRowsWithIndexesChanged(everyRow(self).get());
    }
    static Ref<NSIndexSet> everyRow(NSTableView& self)
    {
        return NSIndexSet::cls().indexSetWithIndexesInRange({ 0, of(self).rows.count() });
    }

    // ---- header

    static Ref<NSTableHeaderView> headerView(NSTableView& self) { return of(self).header; }
    static void setHeaderView(NSTableView& self, NSTableHeaderView* view)
    {
        if (view && !view->isKindOfClass(NSTableHeaderView::cls()))
            raise("NSInvalidArgumentException",
                "*** -[NSTableView setHeaderView:]: not a table header view");
        const Ref<NSTableHeaderView> old = std::exchange(of(self).header, view);
        if (old && old.get() != view)
            old->setTableView(nullptr);
        maybe(of(self).header)->setTableView(&self);
        maybe(self.enclosingScrollView())->send<"tile">();
    }

    // ---- measures

    static CGFloat rowHeight(NSTableView& self) { return of(self).rowHeight; }
    static void setRowHeight(NSTableView& self, CGFloat height)
    {
        if (!(height > 0) || !std::isfinite(height))
            raise("NSInvalidArgumentException",
                "*** -[NSTableView setRowHeight:]: the height is no positive number");
        of(self).rowHeight
            = std::clamp(height, TableAccess::kLeastHeight, TableAccess::kMostHeight);
        measureAnew(self);
    }
    static NSSize spacing(NSTableView& self) { return of(self).spacing; }
    static CGFloat sane(CGFloat length)
    {
        return length > 0 ? std::min(length, TableAccess::kMostHeight) : 0;
    }
    static void setSpacing(NSTableView& self, NSSize size)
    {
        of(self).spacing = { sane(size.width), sane(size.height) };
        measureAnew(self);
    }
    static void measureAnew(NSTableView& self)
    {
        self.noteHeightOfRowsWithIndexesChanged(everyRow(self).get());
    }

    // ---- look

    static Ref<NSColor> backgroundColor(NSTableView& self)
    {
        const Ref<NSColor>& color = of(self).background;
        return color ? color : NSColor::cls().controlBackgroundColor();
    }
    static Ref<NSColor> gridColor(NSTableView& self)
    {
        const Ref<NSColor>& color = of(self).grid;
        return color ? color : NSColor::cls().gridColor();
    }
    static void looksOtherwise(NSTableView& self)
    {
        TableAccess::showStates(self);
        self.setNeedsDisplay(true);
    }
    template <auto Field, class T> static T get(NSTableView& self) { return of(self).*Field; }
    template <auto Field, class T> static void set(NSTableView& self, T value)
    {
        of(self).*Field = value;
    }
    template <auto Field, class T> static void setLook(NSTableView& self, T value)
    {
        of(self).*Field = value;
        looksOtherwise(self);
    }
    static void setMultiple(NSTableView& self, bool allows)
    {
        of(self).multiple = allows;
        if (!allows && of(self).selection->count() > 1)
            self.selectRowIndexes_byExtendingSelection(
                NSIndexSet::cls()
                    .indexSetWithIndex(static_cast<NSUInteger>(self.selectedRow()))
                    .get(),
                false);
    }
    static void setEmpty(NSTableView& self, bool allows)
    {
        of(self).empty = allows;
        TableAccess::trimSelection(self);
    }

    static void table(Builder& t)
    {
        using S = TableState;
        using Autoresizing = NSTableViewColumnAutoresizingStyle;
        using Highlight = NSTableViewSelectionHighlightStyle;
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "isFlipped", imp<yes> },
            { "mouseDownCanMoveWindow", imp<no> },
            { "isOpaque", imp<isOpaque> },
            { "dataSource", imp<dataSource> },
            { "setDataSource:", imp<setDataSource> },
            { "delegate", imp<delegate> },
            { "setDelegate:", imp<setDelegate> },
            { "headerView", imp<headerView> },
            { "setHeaderView:", imp<setHeaderView> },
            { "rowHeight", imp<rowHeight> },
            { "setRowHeight:", imp<setRowHeight> },
            { "intercellSpacing", imp<spacing> },
            { "setIntercellSpacing:", imp<setSpacing> },
            { "backgroundColor", imp<backgroundColor> },
            { "setBackgroundColor:", imp<setLook<&S::background, NSColor*>> },
            { "gridColor", imp<gridColor> },
            { "setGridColor:", imp<setLook<&S::grid, NSColor*>> },
            { "gridStyleMask", imp<get<&S::gridStyle, NSTableViewGridLineStyle>> },
            { "setGridStyleMask:", imp<setLook<&S::gridStyle, NSTableViewGridLineStyle>> },
            { "usesAlternatingRowBackgroundColors", imp<get<&S::alternates, bool>> },
            { "setUsesAlternatingRowBackgroundColors:", imp<setLook<&S::alternates, bool>> },
            { "selectionHighlightStyle", imp<get<&S::highlight, Highlight>> },
            { "setSelectionHighlightStyle:", imp<setLook<&S::highlight, Highlight>> },
            { "columnAutoresizingStyle", imp<get<&S::autoresizing, Autoresizing>> },
            { "setColumnAutoresizingStyle:", imp<set<&S::autoresizing, Autoresizing>> },
            { "allowsColumnReordering", imp<get<&S::reorders, bool>> },
            { "setAllowsColumnReordering:", imp<set<&S::reorders, bool>> },
            { "allowsColumnResizing", imp<get<&S::resizes, bool>> },
            { "setAllowsColumnResizing:", imp<set<&S::resizes, bool>> },
            { "allowsTypeSelect", imp<get<&S::typeSelects, bool>> },
            { "setAllowsTypeSelect:", imp<set<&S::typeSelects, bool>> },
            { "allowsMultipleSelection", imp<get<&S::multiple, bool>> },
            { "setAllowsMultipleSelection:", imp<setMultiple> },
            { "allowsEmptySelection", imp<get<&S::empty, bool>> },
            { "setAllowsEmptySelection:", imp<setEmpty> },
            { "doubleAction", imp<get<&S::doubleAction, SEL>> },
            { "setDoubleAction:", imp<set<&S::doubleAction, SEL>> },
            { "clickedRow", imp<get<&S::clickedRow, NSInteger>> },
            { "clickedColumn", imp<get<&S::clickedColumn, NSInteger>> },
        });
        t.properties({
            computed<WeakRef<NSObject>>("dataSource", nonatomic),
            computed<WeakRef<NSObject>>("delegate", nonatomic),
            computed<Ref<NSTableHeaderView>>("headerView", nonatomic),
            computed<CGFloat>("rowHeight", nonatomic),
            computed<NSSize>("intercellSpacing", nonatomic),
            computed<Ref<NSColor>>("backgroundColor", nonatomic),
            computed<Ref<NSColor>>("gridColor", nonatomic),
            computed<NSTableViewGridLineStyle>("gridStyleMask", nonatomic),
            computed<bool>("usesAlternatingRowBackgroundColors", nonatomic),
            computed<Highlight>("selectionHighlightStyle", nonatomic),
            computed<Autoresizing>("columnAutoresizingStyle", nonatomic),
            computed<bool>("allowsColumnReordering", nonatomic),
            computed<bool>("allowsColumnResizing", nonatomic),
            computed<bool>("allowsTypeSelect", nonatomic),
            computed<bool>("allowsMultipleSelection", nonatomic),
            computed<bool>("allowsEmptySelection", nonatomic),
            computed<SEL>("doubleAction", nonatomic),
            computed<Ref<NSArray>>("sortDescriptors", nonatomic, copied),
        });
    }
};
BRINDLE_RECORD(NSTableView, Basics)

}
