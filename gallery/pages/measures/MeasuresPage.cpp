// SPDX-License-Identifier: Apache-2.0
#include "MeasuresPage.h"

#include <cmath>

#include "Tour.h"
#include "foundation/NSString.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct MeasuresPage::Methods<struct Cards> {

    static constexpr double kLeftShare = 0.5;

    static Ref<NSView> initWithFrame(MeasuresPage& self, NSRect frame)
    {
        self.scripts_ = addCard<ScriptsCard>(self);
        self.alignments_ = addCard<AlignmentsCard>(self);
        self.cuts_ = addCard<CutsCard>(self);
        self.attributes_ = addCard<AttributesCard>(self);
        return super<MeasuresPage, "initWithFrame:", Ref<NSView>>(self, frame);
    }

    static Ref<NSString> pageTitle(MeasuresPage&) { return "Text"_ns; }
    static Ref<NSString> pageCaption(MeasuresPage&)
    {
        return "Laid out, measured, aligned and cut.  D: light or dark"_ns;
    }

    static void layOutIn(MeasuresPage& self, NSRect room)
    {
        if (!self.attributes_)
            return;
        const double left = std::round(room.size.width * kLeftShare);
        const double right = room.origin.x + left + kCardGap;
        const double width = room.size.width - left - kCardGap;
        const double third = std::round((room.size.height - 2 * kCardGap) / 3);
        self.scripts_->setFrame(NSMakeRect(room.origin.x, room.origin.y, left, room.size.height));
        double y = room.origin.y;
        for (NSView* card :
            { static_cast<NSView*>(self.alignments_.get()), static_cast<NSView*>(self.cuts_.get()),
                static_cast<NSView*>(self.attributes_.get()) }) {
            card->setFrame(NSMakeRect(right, y, width, third));
            y += third + kCardGap;
        }
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "pageTitle", imp<pageTitle> },
            { "pageCaption", imp<pageCaption> },
            { "layOutIn:", imp<layOutIn> },
        });
    }
};
BRINDLE_RECORD(MeasuresPage, Cards)

void tourMeasures(Tour& tour)
{
    tour.picture("measures-light");
    tour.darkPicture("measures-dark");
    tour.leastPicture("measures-least");
}

}
