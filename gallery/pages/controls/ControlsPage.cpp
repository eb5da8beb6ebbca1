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
        self.ranges_ = addCard<RangesCard>(self);
        self.holders_ = addCard<HoldersCard>(self);
    }
    static Ref<NSString> pageTitle(ControlsPage&) { return "Controls"_ns; }
    static Ref<NSString> pageCaption(ControlsPage&)
    {
        return "Buttons in every style and state, sliders, and what holds views.  Tab: next, Space: press"_ns;
    }
    static void layOutIn(ControlsPage& self, NSRect room)
    {
        const double left = std::round(room.size.width * kLeftShare);
        NSRect buttons = takeTop(room, std::min(room.size.height * 0.6, 340.0));
        self.bezels_->setFrame(takeLeft(buttons, left));
        self.choices_->setFrame(buttons);
        room.size.height = std::min(room.size.height, 240.0);
        self.ranges_->setFrame(takeLeft(room, left));
        self.holders_->setFrame(room);
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
