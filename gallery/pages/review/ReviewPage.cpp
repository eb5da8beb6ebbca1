// SPDX-License-Identifier: Apache-2.0
#include "ReviewPage.h"

#include "foundation/NSString.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct ReviewPage::Methods<struct Cards> {

    static void addCards(ReviewPage& self)
    {
        self.uses_ = addCard<UsesCard>(self);
        self.answer_ = addCard<AnswerCard>(self);
    }
    static Ref<NSString> pageTitle(ReviewPage&) { return "Review request"_ns; }
    static Ref<NSString> pageCaption(ReviewPage&)
    {
        return "Asks who likes an application to rate it.  Return rates; “Rate Later” asks again"_ns;
    }
    static void layOutIn(ReviewPage& self, NSRect room)
    {
        layOutRow({ self.uses_.get(), self.answer_.get() }, room);
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
BRINDLE_RECORD(ReviewPage, Cards)

}
