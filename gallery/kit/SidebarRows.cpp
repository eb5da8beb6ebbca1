// SPDX-License-Identifier: Apache-2.0
#include "SidebarRows.h"

#include "Drawing.h"
#include "Palette.h"
#include "appkit/NSEvent.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct SidebarList::Methods<struct Keys> {
    static void keyDown(SidebarList& self, NSEvent* event)
    {
        const Ref<NSString> typed = maybe(event)->charactersIgnoringModifiers();
        const unichar key = maybe(typed)->length() ? typed->characterAtIndex(0) : unichar {};
        const Ref<NSObject> sidebar = self.delegate();
        if (key == '\r' || key == NSRightArrowFunctionKey)
            maybe(sidebar)->send<"enter">();
        else if (key == 0x1B)
            maybe(sidebar)->send<"endSearch">();
        else
            super<SidebarList, "keyDown:">(self, event);
    }
    static void table(Builder& t) { t.methods({ { "keyDown:", imp<keyDown> } }); }
};
BRINDLE_RECORD(SidebarList, Keys)

template <> struct SidebarRowView::Methods<struct Look> {
    static void drawSelection(SidebarRowView& self, NSRect)
    {
        const Palette& colors = palette();
        const NSRect b = self.bounds();
        fillRounded(NSMakeRect(b.origin.x + 12, b.origin.y, b.size.width - 24, b.size.height - 1),
            7, (self.isEmphasized() ? colors.accent : colors.selection).get());
    }
    static void table(Builder& t) { t.methods({ { "drawSelectionInRect:", imp<drawSelection> } }); }
};
BRINDLE_RECORD(SidebarRowView, Look)

template <> struct SidebarCell::Methods<struct Drawing> {
    static constexpr double kLeft = 22;

    static bool isFlipped(SidebarCell&) { return true; }
    static void drawRect(SidebarCell& self, NSRect)
    {
        const Palette& colors = palette();
        const SidebarRow& row = self.row_;
        const Ref<NSString> name = stringFrom(row.name);
        const double width = self.bounds().size.width - 2 * kLeft;
        const double height = self.bounds().size.height;
        if (row.page < 0)
            return drawText(
                name.get(), { kLeft, height - 19 }, Style::group, colors.quietText.get());
        const Ref<NSView> above = self.superview();
        const bool isChosen = static_cast<NSTableRowView&>(*above).isSelected();
        const bool hasKeys = isChosen && static_cast<NSTableRowView&>(*above).isEmphasized();
        const Style style = isChosen ? Style::heading : Style::body;
        const double noteHeight = row.note.empty() ? 0 : 15;
        const double top = (height - 1 - noteHeight - sizeOf(name.get(), style).height) / 2;
        drawFitted(name.get(), { kLeft, top }, width, style,
            (hasKeys ? colors.accentText : colors.text).get());
        if (noteHeight > 0)
            drawFitted(stringFrom(row.note).get(), { kLeft, top + 17 }, width, Style::caption,
                (hasKeys ? colors.accentText : colors.quietText).get());
    }
    // What it is drawn on has changed.
    static void setBackgroundStyle(SidebarCell& self, NSBackgroundStyle style)
    {
        super<SidebarCell, "setBackgroundStyle:">(self, style);
        self.setNeedsDisplay(true);
    }
    static void table(Builder& t)
    {
        t.methods({
            { "isFlipped", imp<isFlipped> },
            { "drawRect:", imp<drawRect> },
            { "setBackgroundStyle:", imp<setBackgroundStyle> },
        });
    }
};
BRINDLE_RECORD(SidebarCell, Drawing)

}
