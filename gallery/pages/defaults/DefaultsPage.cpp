// SPDX-License-Identifier: Apache-2.0
#include "DefaultsPage.h"

#include "appkit/NSEvent.h"
#include "foundation/NSString.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct DefaultsPage::Methods<struct Cards> {

    static constexpr double kBottomHeight = 168;

    static void addCards(DefaultsPage& self)
    {
        self.search_ = addCard<SearchCard>(self);
        self.settings_ = addCard<SettingsCard>(self);
        self.burst_ = addCard<BurstCard>(self);
        self.changes_ = addCard<ChangesCard>(self);
    }

    static Ref<NSString> pageTitle(DefaultsPage&) { return "Defaults"_ns; }
    static Ref<NSString> pageCaption(DefaultsPage&)
    {
        return "Settings, layer over layer, safe on the disk.  Arrows: another cell"_ns;
    }

    static void layOutIn(DefaultsPage& self, NSRect room)
    {
        layOutRow({ self.settings_.get(), self.burst_.get(), self.changes_.get() },
            takeBottom(room, kBottomHeight));
        self.search_->setFrame(room);
    }

    static void chooseNext(DefaultsPage& self, NSInteger places)
    {
        self.search_->moveBy_down(places, 0);
    }

    static void keyDown(DefaultsPage& self, NSEvent* event)
    {
        switch (keyOf(event)) {
        case NSUpArrowFunctionKey:
            return self.search_->moveBy_down(0, -1);
        case NSDownArrowFunctionKey:
            return self.search_->moveBy_down(0, 1);
        default:
            super<DefaultsPage, "keyDown:">(self, event);
        }
    }

    static void changeCell(DefaultsPage& self) { self.search_->toggle(); }
    static void showValues(DefaultsPage& self) { self.setNeedsDisplay(true); }

    static void table(Builder& t)
    {
        t.methods({
            { "addCards", imp<addCards> },
            { "pageTitle", imp<pageTitle> },
            { "pageCaption", imp<pageCaption> },
            { "layOutIn:", imp<layOutIn> },
            { "chooseNext:", imp<chooseNext> },
            { "keyDown:", imp<keyDown> },
            { "changeCell", imp<changeCell> },
            { "showValues", imp<showValues> },
        });
    }
};
BRINDLE_RECORD(DefaultsPage, Cards)

}
