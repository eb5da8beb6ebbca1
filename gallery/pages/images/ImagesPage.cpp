// SPDX-License-Identifier: Apache-2.0
#include "ImagesPage.h"

#include <cmath>

#include "Tour.h"
#include "foundation/NSString.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct ImagesPage::Methods<struct Cards> {

    static constexpr double kBottomShare = 0.42;
    static constexpr double kTintsShare = 0.62;

    static void addCards(ImagesPage& self)
    {
        self.modes_ = addCard<ContentModesCard>(self);
        self.tints_ = addCard<TintedImagesCard>(
            self, "Made over"_ns, "Each a new picture; only the last one changes its source"_ns);
        self.averages_ = addCard<AverageColorsCard>(
            self, "Average colour"_ns, "A whole picture in one colour"_ns);
    }
    static Ref<NSString> pageTitle(ImagesPage&) { return "Images"_ns; }
    static Ref<NSString> pageCaption(ImagesPage&)
    {
        return "Placed, clipped, tinted, inverted, averaged.  D: light or dark"_ns;
    }
    static void layOutIn(ImagesPage& self, NSRect room)
    {
        NSRect bottom = takeBottom(room, std::round(room.size.height * kBottomShare));
        self.tints_->setFrame(takeLeft(bottom, std::round(bottom.size.width * kTintsShare)));
        self.averages_->setFrame(bottom);
        self.modes_->setFrame(room);
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
BRINDLE_RECORD(ImagesPage, Cards)

void tourImages(Tour& tour)
{
    tour.picture("images-light");
    tour.press("Smaller");
    tour.picture("images-smaller");
    tour.type(u"rl");
    tour.picture("images-round");
    tour.darkPicture("images-dark");
    tour.leastPicture("images-least");
}

}
