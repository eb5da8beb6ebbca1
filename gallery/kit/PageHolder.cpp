// SPDX-License-Identifier: Apache-2.0
#include "PageHolder.h"

#include <algorithm>

#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct PageHolder::Methods<struct Fitting> {

    static Ref<NSView> initWithFrame(PageHolder& self, NSRect frame)
    {
        Ref<NSView> made = super<PageHolder, "initWithFrame:", Ref<NSView>>(self, frame);
        self.setHasVerticalScroller(true);
        self.setHasHorizontalScroller(true);
        self.setScrollerStyle(NSScrollerStyleOverlay);
        self.setBorderType(NSNoBorder);
        self.setDrawsBackground(false);
        return made;
    }
    static void fit(PageHolder& self)
    {
        const NSSize room = self.contentSize();
        maybe(self.documentView())
            ->setFrameSize({ std::max(room.width, kLeastPage.width),
                std::max(room.height, kLeastPage.height) });
    }
    static void setFrameSize(PageHolder& self, NSSize size)
    {
        super<PageHolder, "setFrameSize:">(self, size);
        fit(self);
    }
    static void setDocumentView(PageHolder& self, NSView* page)
    {
        super<PageHolder, "setDocumentView:">(self, page);
        fit(self);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "setDocumentView:", imp<setDocumentView> },
        });
    }
};
BRINDLE_RECORD(PageHolder, Fitting)

}
