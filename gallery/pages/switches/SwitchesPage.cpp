// SPDX-License-Identifier: Apache-2.0
#include "SwitchesPage.h"

#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct SwitchesPage::Methods<struct Cards> {

    static void addCards(SwitchesPage& self)
    {
        self.switches_ = addCard<SwitchesCard>(self);
        self.tints_ = addCard<TintsCard>(self);
        self.lamp_ = addCard<LampCard>(self);
    }
    static Ref<NSString> pageTitle(SwitchesPage&) { return "Switches"_ns; }
    static Ref<NSString> pageCaption(SwitchesPage&)
    {
        return "Two or three positions, by click, drag and arrow keys.  Tab: next"_ns;
    }
    static void layOutIn(SwitchesPage& self, NSRect room)
    {
        layOutRow({ self.switches_.get(), self.tints_.get() }, takeTop(room, 308));
        self.lamp_->setFrame(room);
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
BRINDLE_RECORD(SwitchesPage, Cards)

}
