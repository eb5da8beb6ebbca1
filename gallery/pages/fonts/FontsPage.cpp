// SPDX-License-Identifier: Apache-2.0
#include "FontsPage.h"

#include <cmath>

#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct FontsPage::Methods<struct Cards> {

    static constexpr double kFamilies = 216;
    static constexpr double kSample = 214;
    static constexpr double kFirstSize = 32;
    static constexpr NSInteger kRegular = 5;

    static void addCards(FontsPage& self)
    {
        self.families_ = addCard<FamiliesCard>(self);
        self.sample_ = addCard<FontSampleCard>(self);
        self.faces_ = addCard<FacesCard>(self);
        self.fallback_ = addCard<FallbackCard>(self);
        self.sample_->setFont(NSFont::cls().systemFontOfSize(kFirstSize).get());
    }
    /// Sent by the list of families.
    static void takeFamily(FontsPage& self, NSString* family)
    {
        const Ref<NSFont> font
            = NSFontManager::cls().sharedFontManager()->fontWithFamily_traits_weight_size(
                family, NSFontTraitMask {}, kRegular, self.sample_->font()->pointSize());
        if (font)
            self.sample_->setFont(font.get());
    }
    /// Sent by the list of faces.
    static void takeFace(FontsPage& self, NSString* name)
    {
        const Ref<NSFont> font
            = NSFont::cls().fontWithName_size(name, self.sample_->font()->pointSize());
        if (font)
            self.sample_->setFont(font.get());
    }
    /// Sent by the sample.
    static void fontChanged(FontsPage& self, NSObject*)
    {
        const Ref<NSFont> font = self.sample_->font();
        self.families_->show(font->familyName().get());
        self.faces_->show(font.get());
        self.fallback_->show(font.get());
    }
    static Ref<NSString> pageTitle(FontsPage&) { return "Fonts"_ns; }
    static Ref<NSString> pageCaption(FontsPage&)
    {
        return "Families and their faces, what a font becomes, and what stands in for it"_ns;
    }
    static void layOutIn(FontsPage& self, NSRect room)
    {
        self.families_->setFrame(takeLeft(room, kFamilies));
        self.sample_->setFrame(takeTop(room, kSample));
        self.faces_->setFrame(takeLeft(room, std::round(room.size.width * 0.53)));
        self.fallback_->setFrame(room);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "addCards", imp<addCards> },
            { "takeFamily:", imp<takeFamily> },
            { "takeFace:", imp<takeFace> },
            { "fontChanged:", imp<fontChanged> },
            { "pageTitle", imp<pageTitle> },
            { "pageCaption", imp<pageCaption> },
            { "layOutIn:", imp<layOutIn> },
        });
    }
};
BRINDLE_RECORD(FontsPage, Cards)

}
