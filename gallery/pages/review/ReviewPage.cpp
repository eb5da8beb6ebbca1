// SPDX-License-Identifier: Apache-2.0
#include "ReviewPage.h"

#include "foundation/NSString.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct ReviewPage::Methods<struct Cards> {

    static constexpr double kUpper = 240;

    static void addCards(ReviewPage& self)
    {
        self.uses_ = addCard<UsesCard>(self);
        self.answer_ = addCard<AnswerCard>(self);
        self.timeline_ = addCard<TimelineCard>(
            self, "When it asks"_ns, "The first 24 uses by the answer that was given"_ns);
    }
    static Ref<NSString> pageTitle(ReviewPage&) { return "Review request"_ns; }
    static Ref<NSString> pageCaption(ReviewPage&)
    {
        return "Asks who likes an application to rate it.  Return rates; “Rate Later” asks again"_ns;
    }
    static void layOutIn(ReviewPage& self, NSRect room)
    {
        layOutRow({ self.uses_.get(), self.answer_.get() }, takeTop(room, kUpper));
        self.timeline_->setFrame(room);
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
