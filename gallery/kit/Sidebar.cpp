// SPDX-License-Identifier: Apache-2.0
#include "Sidebar.h"

#include <algorithm>
#include <cmath>

#include "Drawing.h"
#include "Palette.h"
#include "appkit/NSEvent.h"
#include "foundation/NSArray.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct GallerySidebar::Methods<struct List> {

    static constexpr double kTop = 64;
    static constexpr double kRowHeight = 30; // less where the pages would not have room
    static constexpr double kMargin = 12;
    static constexpr NSUInteger kKeys = 9; // digits that turn to a page

    static bool isFlipped(GallerySidebar&) { return true; }
    static bool isOpaque(GallerySidebar&) { return true; }

    static void setNames(GallerySidebar& self, NSArray* names, Closure<void(NSUInteger)>* chosen)
    {
        self.names_ = Ref<NSArray>(names);
        self.chosen_ = Block<void(NSUInteger)>(chosen);
        self.setNeedsDisplay(true);
    }
    static void setSelection(GallerySidebar& self, NSUInteger index)
    {
        self.selection_ = index;
        self.setNeedsDisplay(true);
    }

    static NSRect rowRect(GallerySidebar& self, NSUInteger index)
    {
        const NSSize size = self.bounds().size;
        const auto count = static_cast<double>(maybe(self.names_)->count());
        const double height = std::min(kRowHeight, std::floor((size.height - kTop - 4) / count));
        return NSMakeRect(kMargin, kTop + static_cast<double>(index) * height,
            size.width - 2 * kMargin, height - 2);
    }

    static void drawRect(GallerySidebar& self, NSRect)
    {
        const Palette& colors = palette();
        const NSRect b = self.bounds();
        fill(b, colors.sidebar.get());
        fill(NSMakeRect(b.size.width - 1, 0, 1, b.size.height), colors.border.get());
        drawText("Brindle"_ns, { kMargin + 10, 24 }, Style::figure, colors.text.get());
        for (NSUInteger i = 0; i < maybe(self.names_)->count(); ++i) {
            const NSRect row = rowRect(self, i);
            const bool chosen = i == self.selection_;
            if (chosen)
                fillRounded(row, 7, colors.selection.get());
            const auto name = cast<NSString>(self.names_->objectAtIndex(i));
            const NSSize size = sizeOf(name.get(), Style::body);
            drawText(name.get(),
                { row.origin.x + 10, row.origin.y + (row.size.height - size.height) / 2 },
                chosen ? Style::heading : Style::body, colors.text.get());
            if (i >= kKeys)
                continue;
            const auto key = NSString::cls().stringWithFormat("%lu"_ns, i + 1);
            drawCentered(key.get(), NSMakeRect(NSMaxX(row) - 24, row.origin.y, 16, row.size.height),
                Style::caption, colors.quietText.get());
        }
    }

    static void mouseDown(GallerySidebar& self, NSEvent* event)
    {
        const NSPoint place = self.convertPoint_fromView(event->locationInWindow(), nullptr);
        for (NSUInteger i = 0; i < maybe(self.names_)->count(); ++i) {
            if (self.mouse_inRect(place, rowRect(self, i)) && self.chosen_)
                self.chosen_(i);
        }
    }

    static void table(Builder& t)
    {
        t.properties({ property<&GallerySidebar::selection_>("selection", nonatomic) });
        t.methods({
            { "isFlipped", imp<isFlipped> },
            { "isOpaque", imp<isOpaque> },
            { "setNames:chosen:", imp<setNames> },
            { "setSelection:", imp<setSelection> },
            { "drawRect:", imp<drawRect> },
            { "mouseDown:", imp<mouseDown> },
        });
    }
};
BRINDLE_RECORD(GallerySidebar, List)

}
