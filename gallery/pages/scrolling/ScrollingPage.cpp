// SPDX-License-Identifier: Apache-2.0
#include "ScrollingPage.h"

#include "foundation/NSString.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct ScrollingPage::Methods<struct Cards> {

    static void addCards(ScrollingPage& self)
    {
        self.position_ = addCard<PositionCard>(self);
        self.heights_ = addCard<HeightsCard>(self);
    }

    static Ref<NSString> pageTitle(ScrollingPage&) { return "Scrolling"_ns; }
    static Ref<NSString> pageCaption(ScrollingPage&)
    {
        return "Where the content stands, told at each step and at rest, and rows that grow"_ns;
    }

    static void layOutIn(ScrollingPage& self, NSRect room)
    {
        layOutRow({ self.position_.get(), self.heights_.get() }, room);
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
BRINDLE_RECORD(ScrollingPage, Cards)

}
