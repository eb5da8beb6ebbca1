// SPDX-License-Identifier: Apache-2.0
#include "MenubarPage.h"

#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct MenubarPage::Methods<struct Cards> {

    static constexpr double kUpper = 200;
    static constexpr double kItems = 120;

    static void addCards(MenubarPage& self)
    {
        self.options_ = addCard<MenubarOptionsCard>(self);
        self.report_ = addCard<MenubarReportCard>(
            self, "Its place"_ns, "Where it was put, and where it is shown"_ns);
        self.buttons_ = addCard<MenubarButtonsCard>(self);
        self.items_ = addCard<MenuItemsCard>(self);
    }
    static Ref<NSString> pageTitle(MenubarPage&) { return "Menubar"_ns; }
    static Ref<NSString> pageCaption(MenubarPage&)
    {
        return "At the top of the screen, with menus that do what they say"_ns;
    }
    static void layOutIn(MenubarPage& self, NSRect room)
    {
        layOutRow({ self.options_.get(), self.report_.get() }, takeTop(room, kUpper));
        self.items_->setFrame(takeBottom(room, kItems));
        self.buttons_->setFrame(room);
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
BRINDLE_RECORD(MenubarPage, Cards)

}
