// SPDX-License-Identifier: Apache-2.0
#include "StripPage.h"

#include "foundation/NSString.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct StripPage::Methods<struct Cards> {

    static void addCards(StripPage& self)
    {
        self.plain_
            = addCard<StripCard>(self, "Widgets"_ns, "Under the pointer the widgets fade out"_ns);
        self.banded_
            = addCard<StripCard>(self, "Overlay"_ns, "A dark band with a close button fades in"_ns);
        self.banded_->setOverlay(true);
    }

    static Ref<NSString> pageTitle(StripPage&) { return "Title strip"_ns; }
    static Ref<NSString> pageCaption(StripPage&)
    {
        return "Title areas of the framework's own.  Move the pointer over a window, or drag its strip"_ns;
    }

    static void layOutIn(StripPage& self, NSRect room)
    {
        layOutRow({ self.plain_.get(), self.banded_.get() }, room);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "addCards", imp<addCards> },
            { "pageTitle", imp<pageTitle> },
            { "pageCaption", imp<pageCaption> },
            { "layOutIn:", imp<layOutIn> },
        });
    }
};
BRINDLE_RECORD(StripPage, Cards)

}
