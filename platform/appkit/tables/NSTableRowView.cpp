// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSTableRowView.h"

#include "NSTableViewPrivate.h"
#include "appkit/NSColor.h"
#include "appkit/NSControl.h"
#include "appkit/NSGraphicsContext.h"
#include "foundation/ShortVector.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSTableRowView::Methods<struct Basics> {

    static bool isFlipped(NSTableRowView&) { return true; }
    static bool no(NSTableRowView&) { return false; }

    // ---- state

    static NSBackgroundStyle interiorStyle(NSTableRowView& self)
    {
        return self.isSelected() && self.isEmphasized()
                && self.selectionHighlightStyle() != NSTableViewSelectionHighlightStyleNone
            ? NSBackgroundStyleDark
            : NSBackgroundStyleLight;
    }
    static void tell(NSView& cell, NSBackgroundStyle style)
    {
        if (cell.respondsToSelector(selector<"setBackgroundStyle:">))
            cell.send<"setBackgroundStyle:">(style);
        else if (cell.isKindOfClass(NSControl::cls()))
            maybe(static_cast<NSControl&>(cell).cell())->setBackgroundStyle(style);
    }
    static void tellCells(NSTableRowView& self)
    {
        const NSBackgroundStyle style = self.interiorBackgroundStyle();
        const ShortVector<Ref<NSView>, 16> cells(self.cells_.begin(), self.cells_.end());
        for (const Ref<NSView>& cell : cells) {
            if (cell)
                tell(*cell, style);
        }
    }
    template <auto Field, class T> static void set(NSTableRowView& self, T value)
    {
        if (self.*Field == value)
            return;
        self.*Field = value;
        tellCells(self);
        self.setNeedsDisplay(true);
    }
    static void setBackgroundColor(NSTableRowView& self, NSColor* color)
    {
        self.backgroundColor_ = color;
        self.drawsGround_ = color != nullptr;
        self.setNeedsDisplay(true);
    }

    // ---- cells

    static NSInteger numberOfColumns(NSTableRowView& self)
    {
        return static_cast<NSInteger>(self.cells_.size());
    }
    static Ref<NSView> viewAtColumn(NSTableRowView& self, NSInteger column)
    {
        if (column < 0 || column >= numberOfColumns(self))
            raise("NSTableViewException",
                "Column " + std::to_string(column) + " out of column range");
        return self.cells_[static_cast<std::size_t>(column)];
    }
    static void willRemoveSubview(NSTableRowView& self, NSView* view)
    {
        super<NSTableRowView, "willRemoveSubview:">(self, view);
        for (Ref<NSView>& cell : self.cells_) {
            if (cell == view)
                cell = nullptr;
        }
    }

    // ---- drawing

    static void drawRect(NSTableRowView& self, NSRect rect)
    {
        self.drawBackgroundInRect(rect);
        if (self.isSelected()
            && self.selectionHighlightStyle() != NSTableViewSelectionHighlightStyleNone)
            self.drawSelectionInRect(rect);
        self.drawSeparatorInRect(rect);
    }
    static void fill(const Ref<NSColor>& color, NSRect rect)
    {
        maybe(color)->set();
        NSRectFillUsingOperation(rect, NSCompositeSourceOver);
    }
    static void drawBackground(NSTableRowView& self, NSRect rect)
    {
        if (self.drawsGround_)
            fill(self.backgroundColor(), NSIntersectionRect(rect, self.bounds()));
    }
    static void drawSelection(NSTableRowView& self, NSRect rect)
    {
        NSColor::Meta colors = NSColor::cls();
        fill(self.isEmphasized() ? colors.selectedContentBackgroundColor()
                                 : colors.unemphasizedSelectedContentBackgroundColor(),
            NSIntersectionRect(rect, self.bounds()));
    }
    static void drawSeparator(NSTableRowView&, NSRect) { }

    static void table(Builder& t)
    {
        using R = NSTableRowView;
        t.methods({
            { "isFlipped", imp<isFlipped> },
            { "mouseDownCanMoveWindow", imp<no> },
            { "setSelected:", imp<set<&R::selected_, bool>> },
            { "setEmphasized:", imp<set<&R::emphasized_, bool>> },
            { "setSelectionHighlightStyle:",
                imp<set<&R::selectionHighlightStyle_, NSTableViewSelectionHighlightStyle>> },
            { "setGroupRowStyle:", imp<set<&R::groupRowStyle_, bool>> },
            { "setBackgroundColor:", imp<setBackgroundColor> },
            { "interiorBackgroundStyle", imp<interiorStyle> },
            { "numberOfColumns", imp<numberOfColumns> },
            { "viewAtColumn:", imp<viewAtColumn> },
            { "willRemoveSubview:", imp<willRemoveSubview> },
            { "drawRect:", imp<drawRect> },
            { "drawBackgroundInRect:", imp<drawBackground> },
            { "drawSelectionInRect:", imp<drawSelection> },
            { "drawSeparatorInRect:", imp<drawSeparator> },
        });
        t.properties({
            property<&R::selected_>("selected", nonatomic, getter("isSelected")),
            property<&R::emphasized_>("emphasized", nonatomic, getter("isEmphasized")),
            property<&R::groupRowStyle_>("groupRowStyle", nonatomic, getter("isGroupRowStyle")),
            property<&R::selectionHighlightStyle_>("selectionHighlightStyle", nonatomic),
            property<&R::backgroundColor_>("backgroundColor", nonatomic),
        });
    }
};
BRINDLE_RECORD(NSTableRowView, Basics)

}
