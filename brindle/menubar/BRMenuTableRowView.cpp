// SPDX-License-Identifier: Apache-2.0
#include "BRMenuTableRowView.h"

#include "BRMenuTableView.h"
#include "appkit/NSColor.h"
#include "appkit/NSGraphicsContext.h"
#include "graphics/NSColor+StandardUIColors.h"
#include "runtime/Table.h"
#include "viewkit/NSTableRowView+BRExtensions.h"

namespace brindle {

template <> struct BRMenuTableRowView::Methods<struct Drawing> {

    static BRMenuHoverMode modeOf(BRMenuTableRowView& self)
    {
        const Ref<NSTableView> table = superTableView(self);
        return table && table->respondsToSelector(selector<"menuHoverMode">)
            ? table->send<"menuHoverMode", BRMenuHoverMode>()
            : BRMenuHoverModeHover;
    }
    static void drawRect(BRMenuTableRowView& self, NSRect rect)
    {
        super<BRMenuTableRowView, "drawRect:">(self, rect);
    }
    // A mode of the host's own leaves the colour that is set.
    static void drawSelection(BRMenuTableRowView& self, NSRect)
    {
        switch (modeOf(self)) {
        case BRMenuHoverModeHover:
            NSColor::cls().alternateSelectedControlColor()->set();
            break;
        case BRMenuHoverModeTapped:
            graySourceListSelectColor(NSColor::cls())->set();
            break;
        }
        NSRectFillUsingOperation(self.bounds(), NSCompositeSourceOver);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "drawRect:", imp<drawRect> },
            { "drawSelectionInRect:", imp<drawSelection> },
        });
    }
};
BRINDLE_RECORD(BRMenuTableRowView, Drawing)

}
