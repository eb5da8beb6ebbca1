// SPDX-License-Identifier: Apache-2.0
#include "DefaultsPage.h"

#include "appkit/NSEvent.h"
#include "foundation/NSString.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct DefaultsPage::Methods<struct Cards> {

    static constexpr double kBottomHeight = 168;

    static Ref<NSView> initWithFrame(DefaultsPage& self, NSRect frame)
    {
        self.search_ = addCard<SearchCard>(self);
        self.settings_ = addCard<SettingsCard>(self);
        self.burst_ = addCard<BurstCard>(self);
        self.changes_ = addCard<ChangesCard>(self);
        return super<DefaultsPage, "initWithFrame:", Ref<NSView>>(self, frame);
    }

    static Ref<NSString> pageTitle(DefaultsPage&) { return "Defaults"_ns; }
    static Ref<NSString> pageCaption(DefaultsPage&)
    {
        return "Settings, layer over layer, safe on the disk.  Arrows: another cell"_ns;
    }

    static void layOutIn(DefaultsPage& self, NSRect room)
    {
        if (!self.changes_)
            return;
        const double top = room.size.height - kBottomHeight - kCardGap;
        self.search_->setFrame(NSMakeRect(room.origin.x, room.origin.y, room.size.width, top));
        layOutRow({ self.settings_.get(), self.burst_.get(), self.changes_.get() },
            NSMakeRect(
                room.origin.x, room.origin.y + top + kCardGap, room.size.width, kBottomHeight));
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
            { "initWithFrame:", imp<initWithFrame> },
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
