// SPDX-License-Identifier: Apache-2.0
#include "ControlsPage.h"

#include <cmath>

#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct ControlsPage::Methods<struct Cards> {

    static constexpr double kLeftShare = 0.56;

    static void addCards(ControlsPage& self)
    {
        self.bezels_ = addCard<BezelsCard>(self);
        self.choices_ = addCard<ChoicesCard>(self);
    }
    static Ref<NSString> pageTitle(ControlsPage&) { return "Controls"_ns; }
    static Ref<NSString> pageCaption(ControlsPage&)
    {
        return "Buttons in every style and state.  Tab: next, Space: press"_ns;
    }
    static void layOutIn(ControlsPage& self, NSRect room)
    {
        room.size.height = std::min(room.size.height, 340.0);
        self.bezels_->setFrame(takeLeft(room, std::round(room.size.width * kLeftShare)));
        self.choices_->setFrame(room);
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
BRINDLE_RECORD(ControlsPage, Cards)

}
