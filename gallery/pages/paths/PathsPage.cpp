// SPDX-License-Identifier: Apache-2.0
#include "PathsPage.h"

#include <cmath>

#include "Tour.h"
#include "foundation/NSString.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct PathsPage::Methods<struct Cards> {

    static constexpr double kTopShare = 0.5;

    static void addCards(PathsPage& self)
    {
        self.corners_ = addCard<CornersCard>(
            self, "Corners"_ns, "Sixteen choices; Left, Right: the radii"_ns);
        self.bends_ = addCard<BendsCard>(
            self, "Curves and arcs"_ns, "Angles in degrees, from the x axis to the y axis"_ns);
        self.triangles_ = addCard<TrianglesCard>(
            self, "Triangles and turns"_ns, "With the base at either edge"_ns);
        self.insides_ = addCard<InsidesCard>(
            self, "Inside and closed"_ns, "By two rules; by the way to Quartz"_ns);
        self.blends_
            = addCard<BlendsCard>(self, "Blended"_ns, "Fill and line in a mode of their own"_ns);
    }
    static Ref<NSString> pageTitle(PathsPage&) { return "Paths"_ns; }
    static Ref<NSString> pageCaption(PathsPage&)
    {
        return "Rounded, bent, turned, closed and blended.  Left, Right: the corners' radii"_ns;
    }
    static void layOutIn(PathsPage& self, NSRect room)
    {
        layOutRow({ self.corners_.get(), self.bends_.get() },
            takeTop(room, std::round(room.size.height * kTopShare - kCardGap)));
        layOutRow({ self.triangles_.get(), self.insides_.get(), self.blends_.get() }, room);
    }
    static void chooseNext(PathsPage& self, NSInteger places)
    {
        self.corners_->changeRadius(places);
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
BRINDLE_RECORD(PathsPage, Cards)

void tourPaths(Tour& tour)
{
    tour.picture("paths-light");
    tour.type(u"\uF703"); // the Right arrow: rounder
    tour.darkPicture("paths-dark");
    tour.leastPicture("paths-least");
}

}
