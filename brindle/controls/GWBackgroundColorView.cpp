// SPDX-License-Identifier: Apache-2.0
#include "GWBackgroundColorView.h"

#include "appkit/NSColor.h"
#include "appkit/NSGraphicsContext.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct GWBackgroundColorView::Methods<struct Background> {

    static Ref<NSView> initWithFrame(GWBackgroundColorView& self, NSRect frame)
    {
        if (!super<GWBackgroundColorView, "initWithFrame:", Ref<NSView>>(self, frame))
            return nullptr;
        self.setBackgroundColor(NSColor::cls().whiteColor().get());
        self.setDrawsBackground(true);
        self.setOpaqueBackground(false);
        return &self;
    }
    static void drawRect(GWBackgroundColorView& self, NSRect dirty)
    {
        const Ref<NSColor> color = self.backgroundColor();
        if (!self.drawsBackground() || !color)
            return;
        color->set();
        if (self.opaqueBackground())
            NSRectFill(dirty);
        else
            NSRectFillUsingOperation(dirty, NSCompositeSourceOver);
    }
    static bool isOpaque(GWBackgroundColorView& self)
    {
        return self.opaqueBackground() && self.drawsBackground();
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "drawRect:", imp<drawRect> },
            { "isOpaque", imp<isOpaque> },
        });
        t.properties({
            property<&GWBackgroundColorView::backgroundColor_>("backgroundColor"),
            property<&GWBackgroundColorView::drawsBackground_>("drawsBackground"),
            property<&GWBackgroundColorView::opaqueBackground_>("opaqueBackground"),
        });
    }
};
BRINDLE_RECORD(GWBackgroundColorView, Background)

}
