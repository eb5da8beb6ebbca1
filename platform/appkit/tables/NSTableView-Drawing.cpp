// SPDX-License-Identifier: Apache-2.0
#include "NSTableViewPrivate.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/controls/ControlDrawingPrivate.h"
#include "runtime/Table.h"

#include <cmath>

namespace brindle {

template <> struct NSTableView::Methods<struct Drawing> {

    static TableState& of(NSTableView& self) { return TableAccess::state(self); }

    static void fill(NSRect rect)
    {
        if (!NSIsEmptyRect(rect))
            NSRectFillUsingOperation(rect, NSCompositeSourceOver);
    }
    static void drawRect(NSTableView& self, NSRect rect)
    {
        const Ref<NSTableView> alive(&self);
        TableAccess::settle(self); // whoever draws the table alone has not announced it
        self.drawBackgroundInClipRect(rect);
        TableAccess::drawChosenColumns(self, rect);
        if (of(self).gridStyle != NSTableViewGridNone)
            self.drawGridInClipRect(rect);
    }

    // ---- the ground. Below the rows their pattern goes on

    static void drawBackground(NSTableView& self, NSRect rect)
    {
        maybe(self.backgroundColor())->set();
        fill(rect);
        if (of(self).alternates)
            drawStripes(self, rect);
    }
    static void drawStripes(NSTableView& self, NSRect rect)
    {
        NSColor::cls().alternatingContentBackgroundColor()->set();
        const NSRange rows = self.rowsInRect(rect);
        for (NSUInteger row = rows.location | 1; row < NSMaxRange(rows); row += 2)
            fill(NSIntersectionRect(rect, self.rectOfRow(static_cast<NSInteger>(row))));
        const TableState& s = of(self);
        const CGFloat step = s.rowHeight + s.spacing.height;
        const CGFloat end = s.rows.total();
        const CGFloat from = std::max(NSMinY(rect), end);
        if (!(from < NSMaxY(rect)))
            return;
        auto line = static_cast<NSInteger>(std::floor((from - end) / step));
        for (;; ++line) {
            const CGFloat y = end + static_cast<CGFloat>(line) * step;
            if (!(y < NSMaxY(rect)))
                return;
            if ((TableAccess::count(self) + line) % 2 != 0)
                fill(NSIntersectionRect(rect, NSMakeRect(NSMinX(rect), y, rect.size.width, step)));
        }
    }

    // ---- the grid

    static void drawGrid(NSTableView& self, NSRect rect)
    {
        maybe(self.gridColor())->set();
        const CGFloat hair = controls::pixel();
        if (of(self).gridStyle & NSTableViewSolidVerticalGridLineMask) {
            for (NSInteger i = 0; i < self.numberOfColumns(); ++i) {
                const NSRect column = self.rectOfColumn(i);
                if (!NSIsEmptyRect(column))
                    fill(NSIntersectionRect(rect,
                        NSMakeRect(NSMaxX(column) - hair, NSMinY(rect), hair, rect.size.height)));
            }
        }
        if (of(self).gridStyle & NSTableViewSolidHorizontalGridLineMask) {
            const NSRange rows = self.rowsInRect(rect);
            for (NSUInteger row = rows.location; row < NSMaxRange(rows); ++row) {
                const NSRect place = self.rectOfRow(static_cast<NSInteger>(row));
                fill(NSIntersectionRect(
                    rect, NSMakeRect(NSMinX(rect), NSMaxY(place) - hair, rect.size.width, hair)));
            }
        }
    }

    static void table(Builder& t)
    {
        t.methods({
            { "drawRect:", imp<drawRect> },
            { "drawBackgroundInClipRect:", imp<drawBackground> },
            { "drawGridInClipRect:", imp<drawGrid> },
        });
    }
};
BRINDLE_RECORD(NSTableView, Drawing)

}
