// SPDX-License-Identifier: Apache-2.0
#include "ExpressionsPage.h"

#include <cmath>

#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct ExpressionsPage::Methods<struct Cards> {

    static constexpr double kPattern = 172;

    static void addCards(ExpressionsPage& self)
    {
        self.pattern_ = addCard<ExpressionCard>(self);
        self.subject_ = addCard<SubjectCard>(self);
        self.matches_ = addCard<MatchesCard>(self);
        self.replacement_ = addCard<ReplacementCard>(self);
        searchAnew(self, nullptr);
    }
    /// Sent by the cards when something of theirs has changed.
    static void searchAnew(ExpressionsPage& self, NSObject*)
    {
        Search search;
        search.pattern = self.pattern_->field()->stringValue();
        search.options = self.pattern_->options();
        search.text = Ref<NSString>(cast<NSString>(self.subject_->text()->string()->copy()));
        search.replacement = self.replacement_->field()->stringValue();
        search.run();
        self.pattern_->show(search);
        self.subject_->show(search);
        self.matches_->show(search);
        self.replacement_->show(search);
    }
    static Ref<NSString> pageTitle(ExpressionsPage&) { return "Regular expressions"_ns; }
    static Ref<NSString> pageCaption(ExpressionsPage&)
    {
        return "A pattern that is typed, what it finds, and what stands in the place of that"_ns;
    }
    static void layOutIn(ExpressionsPage& self, NSRect room)
    {
        NSRect left = takeLeft(room, std::round(room.size.width * 0.58));
        self.pattern_->setFrame(takeTop(left, kPattern));
        self.subject_->setFrame(left);
        self.matches_->setFrame(takeTop(room, std::round((room.size.height - kCardGap) * 0.6)));
        self.replacement_->setFrame(room);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "addCards", imp<addCards> },
            { "searchAnew:", imp<searchAnew> },
            { "pageTitle", imp<pageTitle> },
            { "pageCaption", imp<pageCaption> },
            { "layOutIn:", imp<layOutIn> },
        });
    }
};
BRINDLE_RECORD(ExpressionsPage, Cards)

}
