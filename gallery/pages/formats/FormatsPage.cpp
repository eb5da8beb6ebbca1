// SPDX-License-Identifier: Apache-2.0
#include "FormatsPage.h"

#include "foundation/NSString.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct FormatsPage::Methods<struct Cards> {

    struct Language {
        const char* name;
        const char* identifier;
    };
    static constexpr std::array<Language, kLanguages> kAll { { { "English", "en_US" },
        { "Deutsch", "de_DE" }, { "Français", "fr_FR" }, { "Русский", "ru_RU" },
        { "हिन्दी", "hi_IN" }, { "日本語", "ja_JP" } } };

    static void addCards(FormatsPage& self)
    {
        for (std::size_t i = 0; i < kAll.size(); ++i)
            self.chips_[i] = addChip(&self, stringFrom(kAll[i].name).get(), nullptr,
                [weak = WeakRef<FormatsPage>(&self), i] {
                    if (const Ref<FormatsPage> page = weak.get())
                        choose(*page, i);
                });
        self.numbers_ = addCard<NumbersCard>(self);
        self.dates_ = addCard<DatesCard>(self);
        self.patterns_ = addCard<PatternsCard>(self);
        choose(self, 0);
    }
    static void choose(FormatsPage& self, NSUInteger language)
    {
        self.chosen_ = language;
        for (std::size_t i = 0; i < kAll.size(); ++i)
            self.chips_[i]->setOn(i == language);
        const Ref<NSLocale> locale = alloc<NSLocale>()->initWithLocaleIdentifier(
            stringFrom(kAll[language].identifier).get());
        for (LocalizedCard* card : std::initializer_list<LocalizedCard*> {
                 self.numbers_.get(), self.dates_.get(), self.patterns_.get() })
            card->setLocale(locale.get());
    }
    static void chooseNext(FormatsPage& self, NSInteger places)
    {
        choose(self, placeInRing(self.chosen_, places, kAll.size()));
    }
    static Ref<NSString> pageTitle(FormatsPage&) { return "Numbers and dates"_ns; }
    static Ref<NSString> pageCaption(FormatsPage&)
    {
        return "Written and read as people of a language do.  Left, Right: another language"_ns;
    }
    static void layOutIn(FormatsPage& self, NSRect room)
    {
        const NSRect row = takeTop(room, kChipHeight);
        const auto& c = self.chips_;
        layOutChips(
            { c[0].get(), c[1].get(), c[2].get(), c[3].get(), c[4].get(), c[5].get() }, row.origin);
        NSRect left = takeLeft(room, (room.size.width - kCardGap) / 2);
        layOutColumn({ self.numbers_.get(), self.patterns_.get() }, left);
        self.dates_->setFrame(room);
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
BRINDLE_RECORD(FormatsPage, Cards)

}
