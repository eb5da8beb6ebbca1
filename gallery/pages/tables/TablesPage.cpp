// SPDX-License-Identifier: Apache-2.0
#include "TablesPage.h"

#include <cmath>

#include "foundation/NSString.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct TablesPage::Methods<struct Cards> {

    static void addCards(TablesPage& self)
    {
        self.table_ = addCard<TableCard>(self);
        self.menu_ = addCard<MenuTableCard>(self);
    }

    static Ref<NSString> pageTitle(TablesPage&) { return "Tables"_ns; }
    static Ref<NSString> pageCaption(TablesPage&)
    {
        return "A hundred thousand rows of which only those that show have views, and a menu of rows"_ns;
    }

    static void layOutIn(TablesPage& self, NSRect room)
    {
        self.table_->setFrame(takeLeft(room, std::round((room.size.width - kCardGap) * 0.64)));
        self.menu_->setFrame(room);
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
BRINDLE_RECORD(TablesPage, Cards)

}
