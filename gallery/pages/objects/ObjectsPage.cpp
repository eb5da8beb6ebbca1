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

    static Ref<NSView> initWithFrame(ObjectsPage& self, NSRect frame)
    {
        self.properties_ = addCard<PropertiesCard>(self);
        self.bike_ = addCard<BikeCard>(self);
        self.archive_ = addCard<ArchiveCard>(self);
        self.bike_->setOnArchived([weak = WeakRef<ArchiveCard>(self.archive_.get())](
                                      NSData* data) { maybe(weak.get())->setArchive(data); });
        return super<ObjectsPage, "initWithFrame:", Ref<NSView>>(self, frame);
    }

    static Ref<NSString> pageTitle(ObjectsPage&) { return "Objects"_ns; }
    static Ref<NSString> pageCaption(ObjectsPage&)
    {
        return "Objects know their properties, and are archived by them.  Left, Right: another class"_ns;
    }

    static void layOutIn(ObjectsPage& self, NSRect room)
    {
        if (!self.archive_)
            return;
        const double left = std::round(room.size.width * kLeftShare);
        const double top = room.size.height - kBikeHeight - kCardGap;
        self.properties_->setFrame(NSMakeRect(room.origin.x, room.origin.y, left, top));
        self.bike_->setFrame(
            NSMakeRect(room.origin.x, room.origin.y + top + kCardGap, left, kBikeHeight));
        self.archive_->setFrame(NSMakeRect(room.origin.x + left + kCardGap, room.origin.y,
            room.size.width - left - kCardGap, room.size.height));
    }

    static void chooseNext(ObjectsPage& self, NSInteger places)
    {
        self.properties_->chooseNext(places);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "pageTitle", imp<pageTitle> },
            { "pageCaption", imp<pageCaption> },
            { "layOutIn:", imp<layOutIn> },
            { "chooseNext:", imp<chooseNext> },
        });
    }
};
BRINDLE_RECORD(ObjectsPage, Cards)

}
