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

    static void addCards(UniquePage& self)
    {
        self.graph_ = addCard<GraphCard>(self);
        self.store_ = addCard<StoreCard>(self);
        self.identity_
            = addCard<IdentityCard>(self, "The registry"_ns, "An identity finds its object"_ns);
        self.store_->setGraph(self.graph_.get());
        const auto show = [weak = WeakRef<IdentityCard>(self.identity_.get()),
                              graph = WeakRef<GraphCard>(self.graph_.get())] {
            maybe(weak.get())->setList(maybe(graph.get())->selected().get());
        };
        self.graph_->setOnChange(show);
        show();
    }

    static Ref<NSString> pageTitle(UniquePage&) { return "Unique objects"_ns; }
    static Ref<NSString> pageCaption(UniquePage&)
    {
        return "Found by their UUID, archived as references.  Left, Right: another list"_ns;
    }

    static void layOutIn(UniquePage& self, NSRect room)
    {
        NSRect bottom = takeBottom(room, kBottomHeight);
        self.store_->setFrame(takeLeft(bottom, std::round(room.size.width * kStoreShare)));
        self.identity_->setFrame(bottom);
        self.graph_->setFrame(room);
    }

    static void chooseNext(UniquePage& self, NSInteger places) { self.graph_->selectNext(places); }

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
BRINDLE_RECORD(UniquePage, Cards)

}
