// SPDX-License-Identifier: Apache-2.0
#include "GWFlippedView.h"

#include "runtime/Table.h"

namespace brindle {

template <> struct GWFlippedView::Methods<struct Flipping> {

    static Ref<NSView> initWithFrame(GWFlippedView& self, NSRect frame)
    {
        if (!super<GWFlippedView, "initWithFrame:", Ref<NSView>>(self, frame))
            return nullptr;
        self.setOpaqueBackground(true);
        self.setDrawsBackground(true);
        return &self;
    }
    // A method of its own: what a host exchanges here reaches no other view.
    static void drawRect(GWFlippedView& self, NSRect dirty)
    {
        super<GWFlippedView, "drawRect:">(self, dirty);
    }
    static bool yes(GWFlippedView&) { return true; }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "drawRect:", imp<drawRect> },
            { "isOpaque", imp<yes> },
            { "isFlipped", imp<yes> },
            { "mouseDownCanMoveWindow", imp<yes> },
        });
    }
};
BRINDLE_RECORD(GWFlippedView, Flipping)

}
