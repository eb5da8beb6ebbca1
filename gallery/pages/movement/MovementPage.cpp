// SPDX-License-Identifier: Apache-2.0
#include "MovementPage.h"

#include "foundation/NSString.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct MovementPage::Methods<struct Cards> {

    static constexpr double kLower = 210;

    static void addCards(MovementPage& self)
    {
        self.tiles_ = addCard<TilesCard>(self);
        self.round_ = addCard<RoundCard>(self);
        self.window_ = addCard<WindowMovementCard>(self);
    }
    static Ref<NSString> pageTitle(MovementPage&) { return "Movement"_ns; }
    static Ref<NSString> pageCaption(MovementPage&)
    {
        return "What is set through an animator changes by degrees, in the time of its group"_ns;
    }
    static void layOutIn(MovementPage& self, NSRect room)
    {
        layOutRow({ self.round_.get(), self.window_.get() }, takeBottom(room, kLower));
        self.tiles_->setFrame(room);
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
BRINDLE_RECORD(MovementPage, Cards)

}
