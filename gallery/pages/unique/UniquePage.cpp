// SPDX-License-Identifier: Apache-2.0
#include "UniquePage.h"

#include <cmath>

#include "foundation/NSString.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct UniquePage::Methods<struct Cards> {

    static constexpr double kBottomHeight = 154;
    static constexpr double kStoreShare = 0.45;

    static Ref<NSView> initWithFrame(UniquePage& self, NSRect frame)
    {
        self.graph_ = addCard<GraphCard>(self);
        self.store_ = addCard<StoreCard>(self);
        self.identity_ = addCard<IdentityCard>(self);
        self.store_->setGraph(self.graph_.get());
        const auto show = [weak = WeakRef<IdentityCard>(self.identity_.get()),
                              graph = WeakRef<GraphCard>(self.graph_.get())] {
            maybe(weak.get())->setList(maybe(graph.get())->selected().get());
        };
        self.graph_->setOnChange(show);
        show();
        return super<UniquePage, "initWithFrame:", Ref<NSView>>(self, frame);
    }

    static Ref<NSString> pageTitle(UniquePage&) { return "Unique objects"_ns; }
    static Ref<NSString> pageCaption(UniquePage&)
    {
        return "Found by their UUID, archived as references.  Left, Right: another list"_ns;
    }

    static void layOutIn(UniquePage& self, NSRect room)
    {
        if (!self.identity_)
            return;
        const double top = room.size.height - kBottomHeight - kCardGap;
        const double store = std::round(room.size.width * kStoreShare);
        const double bottom = room.origin.y + top + kCardGap;
        self.graph_->setFrame(NSMakeRect(room.origin.x, room.origin.y, room.size.width, top));
        self.store_->setFrame(NSMakeRect(room.origin.x, bottom, store, kBottomHeight));
        self.identity_->setFrame(NSMakeRect(room.origin.x + store + kCardGap, bottom,
            room.size.width - store - kCardGap, kBottomHeight));
    }

    static void chooseNext(UniquePage& self, NSInteger places) { self.graph_->selectNext(places); }

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
BRINDLE_RECORD(UniquePage, Cards)

}
