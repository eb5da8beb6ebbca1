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

    static Ref<NSView> initWithFrame(TextPage& self, NSRect frame)
    {
        self.ages_ = addCard<AgesCard>(self);
        self.urls_ = addCard<URLCard>(self);
        self.scanner_ = addCard<ScannerCard>(self);
        return super<TextPage, "initWithFrame:", Ref<NSView>>(self, frame);
    }

    static Ref<NSString> pageTitle(TextPage&) { return "Intervals and URLs"_ns; }
    static Ref<NSString> pageCaption(TextPage&)
    {
        return "Dates in words, addresses in pieces.  Left, Right: another address"_ns;
    }

    static void layOutIn(TextPage& self, NSRect room)
    {
        if (!self.scanner_)
            return;
        const double left = std::round(room.size.width * kLeftShare);
        const double right = room.origin.x + left + kCardGap;
        const double width = room.size.width - left - kCardGap;
        const double top = room.size.height - kScannerHeight - kCardGap;
        self.ages_->setFrame(NSMakeRect(room.origin.x, room.origin.y, left, room.size.height));
        self.urls_->setFrame(NSMakeRect(right, room.origin.y, width, top));
        self.scanner_->setFrame(
            NSMakeRect(right, room.origin.y + top + kCardGap, width, kScannerHeight));
    }

    static void chooseNext(TextPage& self, NSInteger places) { self.urls_->chooseNext(places); }

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
BRINDLE_RECORD(TextPage, Cards)

}
