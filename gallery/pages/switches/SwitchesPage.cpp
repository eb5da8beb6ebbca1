// SPDX-License-Identifier: Apache-2.0
#include "SwitchesPage.h"

#include <algorithm>
#include <cmath>

#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct SwitchesPage::Methods<struct Cards> {

    static Ref<NSView> initWithFrame(SwitchesPage& self, NSRect frame)
    {
        self.switches_ = addCard<SwitchesCard>(self);
        self.tints_ = addCard<TintsCard>(self);
        return super<SwitchesPage, "initWithFrame:", Ref<NSView>>(self, frame);
    }
    static Ref<NSString> pageTitle(SwitchesPage&) { return "Switches"_ns; }
    static Ref<NSString> pageCaption(SwitchesPage&)
    {
        return "Two or three positions, by click, drag and arrow keys.  Tab: next"_ns;
    }
    static void layOutIn(SwitchesPage& self, NSRect room)
    {
        if (self.tints_)
            layOutRow({ self.switches_.get(), self.tints_.get() },
                NSMakeRect(room.origin.x, room.origin.y, room.size.width,
                    std::min(room.size.height, 320.0)));
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "pageTitle", imp<pageTitle> },
            { "pageCaption", imp<pageCaption> },
            { "layOutIn:", imp<layOutIn> },
        });
    }
};
BRINDLE_RECORD(SwitchesPage, Cards)

}
