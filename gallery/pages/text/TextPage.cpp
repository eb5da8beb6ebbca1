// SPDX-License-Identifier: Apache-2.0
#include "TextPage.h"

#include <cmath>

#include "foundation/NSString.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct TextPage::Methods<struct Cards> {

    static constexpr double kLeftShare = 0.47;
    static constexpr double kScannerHeight = 168;

    static void addCards(TextPage& self)
    {
        self.ages_ = addCard<AgesCard>(self);
        self.urls_
            = addCard<URLCard>(self, "URLs"_ns, "What a user typed, and what is made of it"_ns);
        self.scanner_ = addCard<ScannerCard>(self);
    }

    static Ref<NSString> pageTitle(TextPage&) { return "Intervals and URLs"_ns; }
    static Ref<NSString> pageCaption(TextPage&)
    {
        return "Dates in words, addresses in pieces.  Left, Right: another address"_ns;
    }

    static void layOutIn(TextPage& self, NSRect room)
    {
        self.ages_->setFrame(takeLeft(room, std::round(room.size.width * kLeftShare)));
        self.scanner_->setFrame(takeBottom(room, kScannerHeight));
        self.urls_->setFrame(room);
    }

    static void chooseNext(TextPage& self, NSInteger places) { self.urls_->chooseNext(places); }

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
BRINDLE_RECORD(TextPage, Cards)

}
