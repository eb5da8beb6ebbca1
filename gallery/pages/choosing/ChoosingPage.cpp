// SPDX-License-Identifier: Apache-2.0
#include "ChoosingPage.h"

#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct ChoosingPage::Methods<struct Cards> {

    static void addCards(ChoosingPage& self)
    {
        self.segments_ = addCard<SegmentsCard>(self);
        self.popUps_ = addCard<PopUpsCard>(self);
        self.tabs_ = addCard<TabSidesCard>(self);
    }
    static Ref<NSString> pageTitle(ChoosingPage&) { return "Segments and tabs"_ns; }
    static Ref<NSString> pageCaption(ChoosingPage&)
    {
        return "One of several, by bars, menus and tabs.  Tab: next, arrows: along"_ns;
    }
    static void layOutIn(ChoosingPage& self, NSRect room)
    {
        NSRect top = takeTop(room, 296);
        layOutRow({ self.segments_.get(), self.popUps_.get() }, top);
        self.tabs_->setFrame(room);
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
BRINDLE_RECORD(ChoosingPage, Cards)

}
