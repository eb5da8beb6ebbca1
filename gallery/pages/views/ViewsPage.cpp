// SPDX-License-Identifier: Apache-2.0
#include "ViewsPage.h"

#include "foundation/NSString.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct ViewsPage::Methods<struct Cards> {

    static void addCards(ViewsPage& self)
    {
        self.borders_ = addCard<BorderCard>(self);
        self.grounds_ = addCard<GroundCard>(self);
        self.covers_ = addCard<CoverCard>(self);
        self.controls_ = addCard<ControlsCard>(self);
    }

    static Ref<NSString> pageTitle(ViewsPage&) { return "Views and borders"_ns; }
    static Ref<NSString> pageCaption(ViewsPage&)
    {
        return "What screens are built from, and whole trees of controls at once"_ns;
    }

    static void layOutIn(ViewsPage& self, NSRect room)
    {
        layOutRow({ self.borders_.get(), self.grounds_.get() },
            takeTop(room, (room.size.height - kCardGap) / 2));
        layOutRow({ self.covers_.get(), self.controls_.get() }, room);
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
BRINDLE_RECORD(ViewsPage, Cards)

}
