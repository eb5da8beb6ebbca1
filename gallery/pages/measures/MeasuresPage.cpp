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

    static void addCards(MeasuresPage& self)
    {
        self.scripts_ = addCard<ScriptsCard>(self, "Measured boxes"_ns,
            "Each text wrapped in the same width; the frame is its measure"_ns);
        self.alignments_ = addCard<AlignmentsCard>(
            self, "Alignment"_ns, "Left, right, centred and justified"_ns);
        self.cuts_ = addCard<CutsCard>(
            self, "Too long"_ns, "What gives way when a line has no more room"_ns);
        self.attributes_ = addCard<AttributesCard>(
            self, "Attributes"_ns, "Fonts, colours, rules, kerning and tabs in one text"_ns);
    }

    static Ref<NSString> pageTitle(MeasuresPage&) { return "Text"_ns; }
    static Ref<NSString> pageCaption(MeasuresPage&)
    {
        return "Laid out, measured, aligned and cut.  D: light or dark"_ns;
    }

    static void layOutIn(MeasuresPage& self, NSRect room)
    {
        self.scripts_->setFrame(takeLeft(room, std::round(room.size.width * kLeftShare)));
        layOutColumn({ self.alignments_.get(), self.cuts_.get(), self.attributes_.get() }, room);
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
BRINDLE_RECORD(MeasuresPage, Cards)

void tourMeasures(Tour& tour)
{
    tour.picture("measures-light");
    tour.darkPicture("measures-dark");
    tour.leastPicture("measures-least");
}

}
