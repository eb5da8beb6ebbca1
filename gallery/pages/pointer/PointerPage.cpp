// SPDX-License-Identifier: Apache-2.0
#include "PointerPage.h"

#include <cmath>

#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct PointerPage::Methods<struct Cards> {

    static void addCards(PointerPage& self)
    {
        self.cursors_ = addCard<CursorsCard>(self);
        self.tips_ = addCard<TipsCard>(self);
        self.menus_ = addCard<ContextMenuCard>(self);
        self.popovers_ = addCard<PopoverCard>(self);
    }
    static Ref<NSString> pageTitle(PointerPage&) { return "Pointer"_ns; }
    static Ref<NSString> pageCaption(PointerPage&)
    {
        return "What happens where the pointer is: its shape, tips, menus and bubbles"_ns;
    }
    static void layOutIn(PointerPage& self, NSRect room)
    {
        NSRect top = takeTop(room, std::round((room.size.height - kCardGap) * 0.5));
        self.cursors_->setFrame(takeLeft(top, std::round(top.size.width * 0.58)));
        self.tips_->setFrame(top);
        layOutRow({ self.menus_.get(), self.popovers_.get() }, room);
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
BRINDLE_RECORD(PointerPage, Cards)

}
