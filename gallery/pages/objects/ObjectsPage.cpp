// SPDX-License-Identifier: Apache-2.0
#include "ObjectsPage.h"

#include <cmath>

#include "foundation/NSString.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct ObjectsPage::Methods<struct Cards> {

    static constexpr double kLeftShare = 0.58;
    static constexpr double kBikeHeight = 204;

    static void addCards(ObjectsPage& self)
    {
        self.properties_ = addCard<PropertiesCard>(self);
        self.bike_ = addCard<BikeCard>(self);
        self.archive_ = addCard<ArchiveCard>(self, "The archive"_ns, "Nothing archived yet"_ns);
        self.bike_->setOnArchived([weak = WeakRef<ArchiveCard>(self.archive_.get())](
                                      NSData* data) { maybe(weak.get())->setArchive(data); });
    }

    static Ref<NSString> pageTitle(ObjectsPage&) { return "Objects"_ns; }
    static Ref<NSString> pageCaption(ObjectsPage&)
    {
        return "Objects know their properties, and are archived by them.  Left, Right: another class"_ns;
    }

    static void layOutIn(ObjectsPage& self, NSRect room)
    {
        NSRect left = takeLeft(room, std::round(room.size.width * kLeftShare));
        self.bike_->setFrame(takeBottom(left, kBikeHeight));
        self.properties_->setFrame(left);
        self.archive_->setFrame(room);
    }

    static void chooseNext(ObjectsPage& self, NSInteger places)
    {
        self.properties_->chooseNext(places);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "addCards", imp<addCards> },
            { "pageTitle", imp<pageTitle> },
            { "pageCaption", imp<pageCaption> },
            { "layOutIn:", imp<layOutIn> },
            { "chooseNext:", imp<chooseNext> },
        });
    }
};
BRINDLE_RECORD(ObjectsPage, Cards)

}
