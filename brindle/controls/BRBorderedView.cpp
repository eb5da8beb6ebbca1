// SPDX-License-Identifier: Apache-2.0
#include "BRBorderedView.h"

#include "appkit/NSColor.h"
#include "appkit/NSGraphicsContext.h"
#include "foundation/NSLog.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct BRBorderedView::Methods<struct Borders> {

    static void setup(BRBorderedView& self)
    {
        super<BRBorderedView, "setup">(self);
        self.setAutosizeView(false);
    }

    static void drawEdges(std::int32_t edges, NSRect bounds)
    {
        const NSSize size = bounds.size;
        if (edges & BRBorderEdgeLeft)
            NSRectFill(NSMakeRect(0, 0, 1, size.height));
        if (edges & BRBorderEdgeRight)
            NSRectFill(NSMakeRect(NSMaxX(bounds) - 1, 0, 1, size.height));
        if (edges & BRBorderEdgeTop)
            NSRectFill(NSMakeRect(0, NSMaxY(bounds) - 1, size.width, 1));
        if (edges & BRBorderEdgeBottom)
            NSRectFill(NSMakeRect(0, 0, size.width, 1));
    }
    static void drawRect(BRBorderedView& self, NSRect dirty)
    {
        super<BRBorderedView, "drawRect:">(self, dirty);
        const NSRect bounds = self.bounds();
        if (!self.borderColor())
            self.setBorderColor(NSColor::cls().colorWithWhite_alpha(0.62, 1).get());
        maybe(self.borderColor())->set();
        drawEdges(self.borderEdges(), bounds);
    }

    // Left and bottom take two points off the size, right and top one: children are laid out for that.
    static NSRect within(NSRect bounds, std::int32_t edges)
    {
        if (edges & BRBorderEdgeLeft) {
            bounds.origin.x += 1;
            bounds.size.width -= 2;
        }
        if (edges & BRBorderEdgeRight)
            bounds.size.width -= 1;
        if (edges & BRBorderEdgeTop)
            bounds.size.height -= 1;
        if (edges & BRBorderEdgeBottom) {
            bounds.origin.y += 1;
            bounds.size.height -= 2;
        }
        return bounds;
    }
    static void frameDidChange(BRBorderedView& self)
    {
        const Ref<NSView> kept = self.viewKeptWithinBorderBounds();
        if (!kept)
            return;
        if (self.autosizeView())
            kept->setFrame(within(self.bounds(), self.borderEdges()));
        NSLog("_viewKeptWithinBorderBounds.frame %@"_ns, kept);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "setup", imp<setup> },
            { "drawRect:", imp<drawRect> },
            { "frameDidChange", imp<frameDidChange> },
        });
        t.properties({
            property<&BRBorderedView::borderEdges_>("borderEdges"),
            property<&BRBorderedView::borderColor_>("borderColor"),
            property<&BRBorderedView::viewKeptWithinBorderBounds_>("viewKeptWithinBorderBounds"),
            property<&BRBorderedView::autosizeView_>("autosizeView"),
        });
    }
};
BRINDLE_RECORD(BRBorderedView, Borders)

}
