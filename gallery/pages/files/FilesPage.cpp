// SPDX-License-Identifier: Apache-2.0
#include "FilesPage.h"

#include "foundation/NSString.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct FilesPage::Methods<struct Cards> {

    static void addCards(FilesPage& self)
    {
        self.access_ = addCard<AccessCard>(self);
        self.panels_ = addCard<PanelsCard>(self);
        self.places_ = addCard<PlacesCard>(self);
    }
    static Ref<NSString> pageTitle(FilesPage&) { return "Files"_ns; }
    static Ref<NSString> pageCaption(FilesPage&)
    {
        return "What the user grants is remembered.  Letters press the chips"_ns;
    }
    static void layOutIn(FilesPage& self, NSRect room)
    {
        self.places_->setFrame(takeBottom(room, 188));
        layOutRow({ self.access_.get(), self.panels_.get() }, room);
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
BRINDLE_RECORD(FilesPage, Cards)

}
