// SPDX-License-Identifier: Apache-2.0
#include "NSTableViewPrivate.h"
#include "appkit/NSClipView.h"
#include "appkit/NSScrollView.h"
#include "appkit/NSWindow.h"
#include "foundation/NSNotificationCenter.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSTableView::Methods<struct Geometry> {

    static TableState& of(NSTableView& self) { return TableAccess::state(self); }

    // ---- rows

    static NSRect rectOfRow(NSTableView& self, NSInteger row)
    {
        if (!TableAccess::isRow(self, row))
            return NSZeroRect;
        const RowHeights& rows = of(self).rows;
        const auto number = static_cast<std::size_t>(row);
        return NSMakeRect(0, rows.top(number), self.bounds().size.width, rows.height(number));
    }
    static NSInteger rowAtPoint(NSTableView& self, NSPoint point)
    {
        const CGFloat width = self.bounds().size.width;
        if (!(point.x >= 0 && point.x < width && point.y >= 0))
            return -1;
        const RowHeights& rows = of(self).rows;
        const std::size_t row = rows.rowAt(point.y);
        return row < rows.count() ? static_cast<NSInteger>(row) : -1;
    }
    static NSRange rowsInRect(NSTableView& self, NSRect rect)
    {
        const RowHeights& rows = of(self).rows;
        if (!(rect.size.width > 0 && rect.size.height > 0) || !(NSMaxY(rect) > 0))
            return {};
        const std::size_t first = rows.rowAt(NSMinY(rect));
        if (first >= rows.count())
            return {};
        std::size_t end = rows.rowAt(NSMaxY(rect));
        if (end < rows.count() && rows.top(end) < NSMaxY(rect))
            ++end;
        return { first, std::max(end, first + 1) - first };
    }

    // ---- columns

    static NSRect rectOfColumn(NSTableView& self, NSInteger column)
    {
        if (!TableAccess::isColumn(self, column))
            return NSZeroRect;
        CGFloat x = 0;
        const auto& columns = of(self).columns;
        for (NSInteger i = 0; i < column; ++i)
            x += TableAccess::columnWidth(self, *columns[static_cast<std::size_t>(i)]);
        const CGFloat width
            = TableAccess::columnWidth(self, *columns[static_cast<std::size_t>(column)]);
        if (width <= 0)
            return NSZeroRect;
        return NSMakeRect(x, 0, width, self.bounds().size.height);
    }
    static NSInteger columnAt(NSTableView& self, CGFloat x)
    {
        CGFloat end = 0;
        NSInteger index = 0;
        for (const Ref<NSTableColumn>& column : of(self).columns) {
            end += TableAccess::columnWidth(self, *column);
            if (x >= 0 && x < end)
                return index;
            ++index;
        }
        return -1;
    }
    static NSInteger columnAtPoint(NSTableView& self, NSPoint point)
    {
        return columnAt(self, point.x);
    }
    static Ref<NSIndexSet> columnsInRect(NSTableView& self, NSRect rect)
    {
        const Ref<NSMutableIndexSet> found = make<NSMutableIndexSet>();
        for (NSInteger i = 0; i < self.numberOfColumns(); ++i) {
            const NSRect column = self.rectOfColumn(i);
            if (NSMinX(column) < NSMaxX(rect) && NSMaxX(column) > NSMinX(rect))
                found->addIndex(static_cast<NSUInteger>(i));
        }
        return found;
    }
    static NSRect frameOfCell(NSTableView& self, NSInteger column, NSInteger row)
    {
        const NSRect across = self.rectOfColumn(column);
        const NSRect along = self.rectOfRow(row);
        if (NSIsEmptyRect(across) || NSIsEmptyRect(along))
            return NSZeroRect;
        const NSSize space = of(self).spacing;
        return NSMakeRect(NSMinX(across) + space.width / 2, NSMinY(along) + space.height / 2,
            std::max(0.0, across.size.width - space.width),
            std::max(0.0, along.size.height - space.height));
    }

    // ---- scrolling

    static void scrollRow(NSTableView& self, NSInteger row)
    {
        if (!TableAccess::isRow(self, row))
            return;
        NSRect rect = self.rectOfRow(row);
        const NSRect shown = self.visibleRect();
        rect.origin.x = NSMinX(shown);
        rect.size.width = std::max(1.0, shown.size.width);
        scrollRectToVisible(&self, rect);
    }
    static void scrollColumn(NSTableView& self, NSInteger column)
    {
        NSRect rect = self.rectOfColumn(column);
        if (NSIsEmptyRect(rect))
            return;
        const NSRect shown = self.visibleRect();
        rect.origin.y = NSMinY(shown);
        rect.size.height = std::max(1.0, shown.size.height);
        scrollRectToVisible(&self, rect);
    }

    // ---- size

    static void tile(NSTableView& self)
    {
        TableState& s = of(self);
        if (s.tiling)
            return;
        const Ref<NSTableView> alive(&self);
        {
            const FlagScope scope(s.tiling);
            const Ref<NSView> clip = s.clip.get();
            const NSSize present = self.frame().size;
            const NSSize room = clip ? clip->bounds().size : NSSize {};
            NSSize size { std::max(TableAccess::columnsWidth(self), room.width),
                std::max(s.rows.total(), room.height) };
            if (!clip) {
                size.width = std::max(size.width, present.width);
                size.height = s.rows.count() ? size.height : present.height;
            }
            self.setFrameSize(size);
        }
        tileHeader(self);
    }
    static void tileHeader(NSTableView& self)
    {
        const Ref<NSTableHeaderView> header = of(self).header;
        if (!header || header->frame().size.width == self.frame().size.width)
            return;
        header->setFrameSize({ self.frame().size.width, header->frame().size.height });
    }
    static void setFrameSize(NSTableView& self, NSSize size)
    {
        const NSSize before = self.frame().size;
        super<NSTableView, "setFrameSize:">(self, size);
        if (self.frame().size == before)
            return;
        self.tile(); // never smaller than what is in it
        if (self.frame().size.width != before.width) // rows are as wide as the table
            TableAccess::place(self, false);
        self.setNeedsDisplay(true);
    }

    // ---- what is around

    static Ref<NSNotificationCenter> center()
    {
        return NSNotificationCenter::cls().defaultCenter();
    }
    static void watch(NSTableView& self, NSView* clip)
    {
        if (const Ref<NSView> old = of(self).clip.get()) {
            center()->removeObserver_name_object(
                &self, NSViewBoundsDidChangeNotification, old.get());
            center()->removeObserver_name_object(
                &self, NSViewFrameDidChangeNotification, old.get());
        }
        of(self).clip = clip;
        if (!clip)
            return;
        clip->setPostsBoundsChangedNotifications(true);
        clip->setPostsFrameChangedNotifications(true);
        center()->addObserver_selector_name_object(
            &self, selector<"clipViewBoundsChanged:">, NSViewBoundsDidChangeNotification, clip);
        center()->addObserver_selector_name_object(
            &self, selector<"clipViewFrameChanged:">, NSViewFrameDidChangeNotification, clip);
    }
    static void didMoveToSuperview(NSTableView& self)
    {
        super<NSTableView, "viewDidMoveToSuperview">(self);
        const Ref<NSView> around = self.superview();
        const bool clipped = around && around->isKindOfClass(NSClipView::cls());
        watch(self, clipped ? around.get() : nullptr);
        self.tile();
        TableAccess::forget(self);
    }
    static void boundsChanged(NSTableView& self, NSNotification*) { TableAccess::settle(self); }
    static void frameChanged(NSTableView& self, NSNotification*)
    {
        const Ref<NSTableView> alive(&self);
        TableAccess::fitColumns(self, of(self).autoresizing);
        self.tile();
        TableAccess::settle(self);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "rectOfRow:", imp<rectOfRow> },
            { "rowAtPoint:", imp<rowAtPoint> },
            { "rowsInRect:", imp<rowsInRect> },
            { "rectOfColumn:", imp<rectOfColumn> },
            { "columnAtPoint:", imp<columnAtPoint> },
            { "columnIndexesInRect:", imp<columnsInRect> },
            { "frameOfCellAtColumn:row:", imp<frameOfCell> },
            { "scrollRowToVisible:", imp<scrollRow> },
            { "scrollColumnToVisible:", imp<scrollColumn> },
            { "tile", imp<tile> },
            { "setFrameSize:", imp<setFrameSize> },
            { "viewDidMoveToSuperview", imp<didMoveToSuperview> },
            { "clipViewBoundsChanged:", imp<boundsChanged> },
            { "clipViewFrameChanged:", imp<frameChanged> },
        });
    }
};
BRINDLE_RECORD(NSTableView, Geometry)

}
