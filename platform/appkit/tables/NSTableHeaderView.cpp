// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSTableHeaderView.h"

#include "NSTableViewPrivate.h"
#include "appkit/NSApplication.h"
#include "appkit/NSEvent.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/NSTableView+Columns.h"
#include "appkit/NSView+CursorRects.h"
#include "appkit/controls/ControlDrawingPrivate.h"
#include "foundation/NSMutableArray.h"
#include "foundation/NSRunLoop.h"
#include "foundation/NSSortDescriptor.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSTableHeaderView::Methods<struct Basics> {

    static constexpr CGFloat kEdge = 4; // how near to a column's end a press takes the edge
    static constexpr CGFloat kDragStart = 4; // how far a title is pulled before it moves

    static bool isFlipped(NSTableHeaderView&) { return true; }
    static bool isOpaque(NSTableHeaderView&) { return true; }
    static bool no(NSTableHeaderView&) { return false; }

    static Ref<NSTableView> tableView(NSTableHeaderView& self) { return self.tableView_.get(); }
    static void setTableView(NSTableHeaderView& self, NSTableView* table)
    {
        if (table && !table->isKindOfClass(NSTableView::cls()))
            raise("NSInvalidArgumentException",
                "*** -[NSTableHeaderView setTableView:]: not a table view");
        self.tableView_ = table;
        self.setNeedsDisplay(true);
    }

    // ---- places

    static NSRect rectOf(NSTableHeaderView& self, NSInteger column)
    {
        const Ref<NSTableView> table = self.tableView();
        NSRect rect = maybe(table)->rectOfColumn(column);
        if (NSIsEmptyRect(rect) && rect.size.width <= 0)
            return NSZeroRect;
        rect.origin.y = 0;
        rect.size.height = self.bounds().size.height;
        return rect;
    }
    static NSInteger columnAt(NSTableHeaderView& self, NSPoint point)
    {
        const NSInteger columns = maybe(self.tableView())->numberOfColumns();
        for (NSInteger i = 0; i < columns; ++i) {
            const NSRect rect = self.headerRectOfColumn(i);
            if (point.x >= NSMinX(rect) && point.x < NSMaxX(rect))
                return i;
        }
        return -1;
    }
    /// Answers the column whose end is at a place, or -1. The last of several wins: narrow ones can be widened.
    static NSInteger edgeAt(NSTableHeaderView& self, CGFloat x)
    {
        const NSInteger columns = maybe(self.tableView())->numberOfColumns();
        for (NSInteger i = columns; i-- > 0;) {
            const NSRect rect = self.headerRectOfColumn(i);
            if (rect.size.width > 0 && x >= NSMaxX(rect) - kEdge && x <= NSMaxX(rect) + kEdge)
                return i;
        }
        return -1;
    }
    static Ref<NSTableColumn> column(NSTableHeaderView& self, NSInteger index)
    {
        const Ref<NSTableView> table = self.tableView();
        return table && TableAccess::isColumn(*table, index)
            ? TableAccess::state(*table).columns[static_cast<std::size_t>(index)]
            : nullptr;
    }

    // ---- the shape of the pointer

    static bool isUserResizable(NSTableView& table, NSTableColumn& column)
    {
        return table.allowsColumnResizing()
            && (column.resizingMask() & NSTableColumnUserResizingMask);
    }
    /// Answers an arrow to where the edge can go.
    static Ref<NSCursor> cursorOf(NSTableColumn& column)
    {
        const NSCursor::Meta cursors = NSCursor::cls();
        if (column.width() <= column.minWidth())
            return cursors.resizeRightCursor();
        return column.width() >= column.maxWidth() ? cursors.resizeLeftCursor()
                                                   : cursors.resizeLeftRightCursor();
    }
    static void resetCursors(NSTableHeaderView& self)
    {
        const Ref<NSTableView> table = self.tableView();
        const NSInteger columns = maybe(table)->numberOfColumns();
        for (NSInteger i = 0; i < columns; ++i) {
            const NSRect place = self.headerRectOfColumn(i);
            const Ref<NSTableColumn> edged = column(self, i);
            if (place.size.width > 0 && isUserResizable(*table, *edged))
                addCursorRect_cursor(self,
                    NSIntersectionRect(self.visibleRect(),
                        NSMakeRect(
                            NSMaxX(place) - kEdge, NSMinY(place), 2 * kEdge, place.size.height)),
                    cursorOf(*edged).get());
        }
    }

    // ---- drawing

    static Ref<NSSortDescriptor> order(NSTableView& table)
    {
        const Ref<NSArray> all = table.sortDescriptors();
        const Ref<NSObject> first = all->count() ? all->objectAtIndex(0) : nullptr;
        return first && first->isKindOfClass(NSSortDescriptor::cls())
            ? cast<NSSortDescriptor>(first)
            : nullptr;
    }
    static bool sameKey(NSSortDescriptor* a, NSSortDescriptor* b)
    {
        if (!a || !b)
            return false;
        const Ref<NSString> key = a->key();
        const Ref<NSString> other = b->key();
        return key ? key->isEqual(other.get()) : !other;
    }
    static void drawColumn(NSTableHeaderView& self, NSInteger index, NSRect rect)
    {
        const Ref<NSTableView> table = self.tableView();
        const Ref<NSTableColumn> drawn = column(self, index);
        const Ref<NSTableHeaderCell> cell = maybe(drawn)->headerCell();
        if (!cell)
            return;
        const Ref<NSSortDescriptor> sorted = order(*table);
        const bool decides = sameKey(sorted.get(), drawn->sortDescriptorPrototype().get());
        cell->setHighlighted(self.pressedColumn_ == index || isColumnSelected(table, index));
        cell->setState(decides ? NSOnState : NSOffState);
        cell->drawWithFrame_inView(rect, &self);
        if (decides && cell->isKindOfClass(NSTableHeaderCell::cls()))
            cell->drawSortIndicatorWithFrame_inView_ascending_priority(
                rect, &self, sorted->ascending(), 0);
    }
    static void line(NSRect rect)
    {
        maybe(NSColor::cls().gridColor())->set();
        NSRectFill(rect);
    }
    static void drawRect(NSTableHeaderView& self, NSRect rect)
    {
        maybe(NSColor::cls().headerColor())->set();
        NSRectFill(rect);
        const CGFloat hair = controls::pixel();
        const NSRect bounds = self.bounds();
        const NSInteger columns = maybe(self.tableView())->numberOfColumns();
        for (NSInteger i = 0; i < columns; ++i) {
            const NSRect place = self.headerRectOfColumn(i);
            if (!NSIntersectsRect(place, rect))
                continue;
            line(NSMakeRect(NSMaxX(place) - hair, 5, hair, bounds.size.height - 10));
            if (i != self.draggedColumn_)
                drawColumn(self, i, place);
        }
        line(NSMakeRect(NSMinX(bounds), NSMaxY(bounds) - hair, bounds.size.width, hair));
        drawDragged(self);
    }
    static void drawDragged(NSTableHeaderView& self)
    {
        if (self.draggedColumn_ < 0)
            return;
        NSRect place = self.headerRectOfColumn(self.draggedColumn_);
        place.origin.x += self.draggedBy_;
        maybe(NSColor::cls().secondarySelectedControlColor())->set();
        NSRectFill(place);
        drawColumn(self, self.draggedColumn_, place);
    }

    // ---- pressing

    static CGFloat placeOf(NSTableHeaderView& self, NSEvent& event)
    {
        return self.convertPoint_fromView(event.locationInWindow(), nullptr).x;
    }
    static Ref<NSEvent> nextEvent()
    {
        return NSApplication::cls()
            .sharedApplication()
            ->nextEventMatchingMask_untilDate_inMode_dequeue(
                NSLeftMouseDraggedMask | NSLeftMouseUpMask, NSDate::cls().distantFuture().get(),
                NSEventTrackingRunLoopMode, true);
    }
    /// A column that is pressed, pulled or widened for as long as this lives.
    class Held {
    public:
        Held(NSTableHeaderView& header, NSInteger NSTableHeaderView::*field, NSInteger column)
            : header_(&header)
            , field_(field)
        {
            header.*field = column;
            header.setNeedsDisplay(true);
        }
        ~Held()
        {
            (*header_).*field_ = -1;
            header_->draggedBy_ = 0;
            header_->setNeedsDisplay(true);
        }
        Held(const Held&) = delete;
        Held& operator=(const Held&) = delete;

    private:
        Ref<NSTableHeaderView> header_;
        NSInteger NSTableHeaderView::*field_;
    };

    static void widen(NSTableHeaderView& self, NSInteger index, CGFloat start)
    {
        const Ref<NSTableColumn> wide = column(self, index);
        const Held held(self, &NSTableHeaderView::resizedColumn_, index);
        const CGFloat before = wide->width();
        while (const Ref<NSEvent> event = nextEvent()) {
            wide->setWidth(before + placeOf(self, *event) - start);
            if (event->type() == NSLeftMouseUp)
                return;
        }
    }
    static NSInteger targetOf(NSTableHeaderView& self, NSInteger index)
    {
        const NSRect place = self.headerRectOfColumn(index);
        const CGFloat middle = NSMidX(place) + self.draggedBy_;
        const NSInteger columns = maybe(self.tableView())->numberOfColumns();
        const NSInteger found = self.columnAtPoint({ middle, 0 });
        return found >= 0 ? found : middle < 0 ? 0 : columns - 1;
    }
    static void drop(NSTableHeaderView& self, const Ref<NSTableColumn>& moved)
    {
        const Ref<NSTableView> table = self.tableView();
        const NSInteger from = table ? TableAccess::indexOf(*table, *moved) : -1;
        if (from < 0)
            return;
        const NSInteger to = targetOf(self, from);
        self.draggedColumn_ = -1;
        const Ref<NSObject> delegate
            = TableAccess::delegateFor<"tableView:shouldReorderColumn:toColumn:">(*table);
        if (delegate
            && !delegate->send<"tableView:shouldReorderColumn:toColumn:", bool>(
                table.get(), from, to))
            return;
        table->moveColumn_toColumn(from, to);
        if (const Ref<NSObject> told
            = TableAccess::delegateFor<"tableView:didDragTableColumn:">(*table))
            told->send<"tableView:didDragTableColumn:">(table.get(), moved.get());
    }
    /// - Returns: whether the column was pulled.
    static bool pull(NSTableHeaderView& self, NSInteger index, CGFloat start)
    {
        const Ref<NSTableColumn> pulled = column(self, index);
        const Held held(self, &NSTableHeaderView::pressedColumn_, index);
        const Held end(self, &NSTableHeaderView::draggedColumn_, -1);
        while (const Ref<NSEvent> event = nextEvent()) {
            const CGFloat way = placeOf(self, *event) - start;
            const Ref<NSTableView> table = self.tableView();
            if (self.draggedColumn_ < 0 && table && table->allowsColumnReordering()
                && std::abs(way) >= kDragStart && event->type() != NSLeftMouseUp)
                self.draggedColumn_ = index;
            self.draggedBy_ = self.draggedColumn_ < 0 ? 0 : way;
            self.setNeedsDisplay(true);
            if (event->type() != NSLeftMouseUp)
                continue;
            if (self.draggedColumn_ < 0)
                return false;
            drop(self, pulled);
            return true;
        }
        return true;
    }

    /// The order of this column comes first, the other way round where it does already.
    static void sort(NSTableView& table, NSTableColumn& clicked)
    {
        const Ref<NSSortDescriptor> wanted = clicked.sortDescriptorPrototype();
        if (!wanted)
            return;
        const Ref<NSSortDescriptor> present = order(table);
        const Ref<NSMutableArray> fresh = make<NSMutableArray>();
        fresh->addObject(sameKey(present.get(), wanted.get())
                ? present->reversedSortDescriptor().get()
                : wanted.get());
        const Ref<NSArray> old = table.sortDescriptors();
        for (NSObject* other : *old) {
            if (!sameKey(static_cast<NSSortDescriptor*>(other), wanted.get()))
                fresh->addObject(other);
        }
        table.setSortDescriptors(fresh.get());
    }
    template <Text S>
    static void tell(const Ref<NSTableView>& table, const Ref<NSTableColumn>& column)
    {
        if (const Ref<NSObject> delegate = TableAccess::delegateFor<S>(*table))
            delegate->send<S>(table.get(), column.get());
    }
    static void mouseDown(NSTableHeaderView& self, NSEvent* event)
    {
        const Ref<NSTableView> table = self.tableView();
        if (!event || !table)
            return;
        const Ref<NSTableHeaderView> alive(&self);
        const CGFloat x = placeOf(self, *event);
        const Ref<NSTableColumn> edge = column(self, edgeAt(self, x));
        if (edge && isUserResizable(*table, *edge))
            return widen(self, TableAccess::indexOf(*table, *edge), x);
        const NSInteger index = self.columnAtPoint({ x, 0 });
        const Ref<NSTableColumn> pressed = column(self, index);
        if (!pressed)
            return;
        tell<"tableView:mouseDownInHeaderOfTableColumn:">(table, pressed);
        if (pull(self, index, x))
            return;
        sort(*table, *pressed);
        TableAccess::userSelectsColumn(
            *table, TableAccess::indexOf(*table, *pressed), event->modifierFlags());
        tell<"tableView:didClickTableColumn:">(table, pressed);
    }

    static NSInteger draggedColumn(NSTableHeaderView& self) { return self.draggedColumn_; }
    static NSInteger resizedColumn(NSTableHeaderView& self) { return self.resizedColumn_; }

    static void table(Builder& t)
    {
        t.methods({
            { "isFlipped", imp<isFlipped> },
            { "isOpaque", imp<isOpaque> },
            { "mouseDownCanMoveWindow", imp<no> },
            { "tableView", imp<tableView> },
            { "setTableView:", imp<setTableView> },
            { "headerRectOfColumn:", imp<rectOf> },
            { "columnAtPoint:", imp<columnAt> },
            { "resetCursorRects", imp<resetCursors> },
            { "drawRect:", imp<drawRect> },
            { "mouseDown:", imp<mouseDown> },
            { "draggedColumn", imp<draggedColumn> },
            { "resizedColumn", imp<resizedColumn> },
        });
    }
};
BRINDLE_RECORD(NSTableHeaderView, Basics)

}
