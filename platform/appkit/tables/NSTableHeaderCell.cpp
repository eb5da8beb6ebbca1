// SPDX-License-Identifier: Apache-2.0
#include "NSTableViewPrivate.h"
#include "appkit/NSFont.h"
#include "appkit/controls/ControlDrawingPrivate.h"
#include "foundation/NSAttributedString.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSTableHeaderCell::Methods<struct Basics> {

    static constexpr CGFloat kInset = 4; // of the title from the column's edges
    static constexpr CGFloat kArrow = 7; // its width; it is half as high

    static Ref<NSCell> initTextCell(NSTableHeaderCell& self, NSString* text)
    {
        const Ref<NSCell> made = super<NSTableHeaderCell, "initTextCell:", Ref<NSCell>>(self, text);
        if (!made)
            return nullptr;
        self.setFont(NSFont::cls().systemFontOfSize(11).get());
        self.setTextColor(NSColor::cls().headerTextColor().get());
        self.setLineBreakMode(NSLineBreakByTruncatingTail);
        return made;
    }
    static NSSize cellSize(NSTableHeaderCell& self)
    {
        const NSSize text = controls::sizeOf(self.attributedStringValue().get());
        return { text.width + 2 * kInset + kArrow + kInset, text.height + kInset };
    }

    static void draw(NSTableHeaderCell& self, NSRect frame, NSView* view)
    {
        if (self.isHighlighted()) {
            const controls::Shade ink = controls::shadeOf(NSColor::cls().controlTextColor());
            controls::fillRounded(frame, 0, controls::faded(ink, 0.08));
        }
        self.drawInteriorWithFrame_inView(frame, view);
    }
    static void drawInterior(NSTableHeaderCell& self, NSRect frame, NSView*)
    {
        NSRect room = NSInsetRect(frame, kInset, 0);
        if (self.state() != NSOffState) // the column is sorted
            room.size.width -= kArrow + kInset;
        if (room.size.width > 0)
            controls::drawText(self.attributedStringValue().get(), room, self.alignment());
    }

    static NSRect arrowRect(NSTableHeaderCell&, NSRect frame)
    {
        return NSMakeRect(
            NSMaxX(frame) - kInset - kArrow, NSMidY(frame) - kArrow / 4, kArrow, kArrow / 2);
    }
    static void drawArrow(
        NSTableHeaderCell& self, NSRect frame, NSView* view, bool ascending, NSInteger priority)
    {
        if (priority != 0)
            return;
        const NSRect rect = self.sortIndicatorRectForBounds(frame);
        const bool pointsToMinY = ascending == (!view || view->isFlipped());
        const CGFloat tip = pointsToMinY ? NSMinY(rect) : NSMaxY(rect);
        const CGFloat foot = pointsToMinY ? NSMaxY(rect) : NSMinY(rect);
        const NSPoint points[]
            = { { NSMinX(rect), foot }, { NSMidX(rect), tip }, { NSMaxX(rect), foot } };
        controls::strokeLine(points, 3, 1.5, controls::shadeOf(self.textColor()));
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initTextCell:", imp<initTextCell> },
            { "cellSize", imp<cellSize> },
            { "drawWithFrame:inView:", imp<draw> },
            { "drawInteriorWithFrame:inView:", imp<drawInterior> },
            { "sortIndicatorRectForBounds:", imp<arrowRect> },
            { "drawSortIndicatorWithFrame:inView:ascending:priority:", imp<drawArrow> },
        });
    }
};
BRINDLE_RECORD(NSTableHeaderCell, Basics)

}
