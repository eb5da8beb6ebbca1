// SPDX-License-Identifier: Apache-2.0
#include "ControlsPage.h"

#include <cmath>

#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct ControlsPage::Methods<struct Cards> {

    static constexpr double kLeftShare = 0.56;

    static Ref<NSView> initWithFrame(ControlsPage& self, NSRect frame)
    {
        self.bezels_ = addCard<BezelsCard>(self);
        self.choices_ = addCard<ChoicesCard>(self);
        return super<ControlsPage, "initWithFrame:", Ref<NSView>>(self, frame);
    }
    static Ref<NSString> pageTitle(ControlsPage&) { return "Controls"_ns; }
    static Ref<NSString> pageCaption(ControlsPage&)
    {
        return "Buttons in every style and state.  Tab: next, Space: press"_ns;
    }
    static void layOutIn(ControlsPage& self, NSRect room)
    {
        if (!self.choices_)
            return;
        const double left = std::round(room.size.width * kLeftShare);
        const double height = std::min(room.size.height, 340.0);
        self.bezels_->setFrame(NSMakeRect(room.origin.x, room.origin.y, left, height));
        self.choices_->setFrame(NSMakeRect(room.origin.x + left + kCardGap, room.origin.y,
            room.size.width - left - kCardGap, height));
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
BRINDLE_RECORD(ControlsPage, Cards)

}
