// SPDX-License-Identifier: Apache-2.0
#include "Page.h"

#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct GalleryPage::Methods<struct Frame> {

    static constexpr double kMargin = 24;
    static constexpr double kHeaderHeight = 84;

    static bool isFlipped(GalleryPage&) { return true; }
    static bool isOpaque(GalleryPage&) { return true; }
    static bool acceptsFirstResponder(GalleryPage&) { return true; }
    static Ref<NSString> noText(GalleryPage&) { return ""_ns; }
    static void layOutIn(GalleryPage&, NSRect) { }

    static void setFrameSize(GalleryPage& self, NSSize size)
    {
        super<GalleryPage, "setFrameSize:">(self, size);
        self.layOutIn(NSMakeRect(kMargin, kHeaderHeight, size.width - 2 * kMargin,
            size.height - kHeaderHeight - kMargin));
    }

    static void drawRect(GalleryPage& self, NSRect)
    {
        const Palette& colors = palette();
        fill(self.bounds(), colors.window.get());
        drawText(self.pageTitle().get(), { kMargin, 20 }, Style::title, colors.text.get());
        drawText(self.pageCaption().get(), { kMargin, 54 }, Style::body, colors.quietText.get());
    }

    static void table(Builder& t)
    {
        t.methods({
            { "isFlipped", imp<isFlipped> },
            { "isOpaque", imp<isOpaque> },
            { "acceptsFirstResponder", imp<acceptsFirstResponder> },
            { "pageTitle", imp<noText> },
            { "pageCaption", imp<noText> },
            { "layOutIn:", imp<layOutIn> },
            { "setFrameSize:", imp<setFrameSize> },
            { "drawRect:", imp<drawRect> },
        });
    }
};
BRINDLE_RECORD(GalleryPage, Frame)

}
