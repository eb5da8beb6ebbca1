// SPDX-License-Identifier: Apache-2.0
#include "LayersPage.h"

#include "foundation/NSString.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct LayersPage::Methods<struct Cards> {

    static constexpr double kTextHeight = 150;

    static void addCards(LayersPage& self)
    {
        self.curves_ = addCard<CurvesCard>(self);
        self.looks_ = addCard<LooksCard>(self);
        self.texts_ = addCard<SmoothTextCard>(self);
    }
    static Ref<NSString> pageTitle(LayersPage&) { return "Layers"_ns; }
    static Ref<NSString> pageCaption(LayersPage&)
    {
        return "Rectangles with a look and a time of their own"_ns;
    }
    static void layOutIn(LayersPage& self, NSRect room)
    {
        self.texts_->setFrame(takeBottom(room, kTextHeight));
        layOutRow({ self.curves_.get(), self.looks_.get() }, room);
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
BRINDLE_RECORD(LayersPage, Cards)

}
