// SPDX-License-Identifier: Apache-2.0
#include "StyledPage.h"

#include <cmath>

#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct StyledPage::Methods<struct Cards> {

    static constexpr double kTabs = 236;

    static void addCards(StyledPage& self)
    {
        self.attachments_ = addCard<AttachmentsCard>(self);
        self.shadows_ = addCard<ShadowsCard>(self);
        self.tabs_ = addCard<TabsCard>(self);
    }
    static Ref<NSString> pageTitle(StyledPage&) { return "Styled text"_ns; }
    static Ref<NSString> pageCaption(StyledPage&)
    {
        return "Pictures among the letters, columns by tabs, and shadows"_ns;
    }
    static void layOutIn(StyledPage& self, NSRect room)
    {
        self.tabs_->setFrame(takeBottom(room, kTabs));
        self.attachments_->setFrame(takeLeft(room, std::round(room.size.width * 0.55)));
        self.shadows_->setFrame(room);
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
BRINDLE_RECORD(StyledPage, Cards)

}
