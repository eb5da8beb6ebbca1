// SPDX-License-Identifier: Apache-2.0
#include "support/ScrolledDocument.h"

#include <cmath>

#include "appkit/NSColor.h"
#include "appkit/NSGraphicsContext.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct ScrolledDocument::Methods<struct Drawing> {
    static bool isFlipped(ScrolledDocument& self) { return !self.upright_; }
    static bool yes(ScrolledDocument&) { return true; }
    static void drawRect(ScrolledDocument& self, NSRect rect)
    {
        ++self.drawings_;
        self.drawn_ = rect;
        for (CGFloat y = std::floor(NSMinY(rect)); y < NSMaxY(rect); ++y) {
            const double shade = std::fmod(y * 94, 256) / 255; // a whole number of steps
            NSColor::cls().colorWithCalibratedRed_green_blue_alpha(shade, 1 - shade, 0.5, 1)->set();
            NSRectFill(NSMakeRect(NSMinX(rect), y, rect.size.width, 1));
        }
    }
    static Ref<NSView> headerView(ScrolledDocument& self) { return self.header_; }
    static NSRect adjustScroll(ScrolledDocument& self, NSRect proposed)
    {
        if (self.grid_ > 0)
            proposed.origin.y = std::round(proposed.origin.y / self.grid_) * self.grid_;
        return proposed;
    }
    static void table(Builder& t)
    {
        t.methods({
            { "isFlipped", imp<isFlipped> },
            { "isOpaque", imp<yes> },
            { "drawRect:", imp<drawRect> },
            { "headerView", imp<headerView> },
            { "adjustScroll:", imp<adjustScroll> },
        });
    }
};
BRINDLE_RECORD(ScrolledDocument, Drawing)

Ref<ScrolledDocument> test::scrolledDocument(NSSize size)
{
    return cast<ScrolledDocument>(alloc<ScrolledDocument>()->initWithFrame({ NSZeroPoint, size }));
}

}
