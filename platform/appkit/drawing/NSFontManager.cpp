// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSFontManager.h"

#include <algorithm>
#include <array>

#include "foundation/NSMutableArray.h"
#include "foundation/NSNumber.h"
#include "quartz/text/FontFamilies.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    using text::FontFace;
    using text::Slant;

    using text::isBold;
    using text::kBoldWeight;
    using text::kRegularWeight;

    /// The kit's weights of the nine weights that faces have.
    constexpr std::array<NSInteger, 9> kWeights { 2, 3, 4, 5, 6, 8, 9, 10, 11 };

    NSInteger kitWeight(int weight)
    {
        return kWeights[static_cast<std::size_t>(std::clamp((weight + 50) / 100, 1, 9) - 1)];
    }
    int faceWeight(NSInteger weight)
    {
        const auto found = std::ranges::lower_bound(kWeights, weight);
        const auto place = std::min<std::ptrdiff_t>(found - kWeights.begin(), 8);
        return static_cast<int>(place + 1) * 100;
    }

    constexpr NSUInteger traitIf(bool has, NSFontTraitMask trait)
    {
        return has ? NSUInteger { trait } : 0u;
    }

    NSFontTraitMask traitsOf(int weight, Slant slant, bool isMonospaced)
    {
        return static_cast<NSFontTraitMask>(traitIf(slant == Slant::italic, NSItalicFontMask)
            | traitIf(isBold(weight), NSBoldFontMask)
            | traitIf(isMonospaced, NSFixedPitchFontMask));
    }
    NSFontTraitMask traitsOf(const FontFace& face)
    {
        return traitsOf(face.weight(), face.slant(), face.isMonospaced());
    }

    const FontFace* faceOf(const NSFont* font) { return NSFont::textFont(font).face; }

    Ref<NSFont> fontOf(const FontFace* face, NSFont* like)
    {
        return face ? appkit::fontFrom({ face, NSFont::textFont(like).size }) : Ref<NSFont>(like);
    }

    Ref<NSArray> arrayOf(const std::vector<std::string>& names)
    {
        const Ref<NSMutableArray> array = NSMutableArray::cls().array();
        for (const std::string& name : names)
            array->addObject(stringFrom(name).get());
        return array;
    }

}

template <> struct NSFontManager::Methods<struct Finding> {

    static Ref<NSFontManager> shared(Class&)
    {
        static NSFontManager& manager = *make<NSFontManager>().leak();
        return &manager;
    }
    static Ref<NSArray> fonts(NSFontManager&) { return arrayOf(FontFace::installedNames()); }
    static Ref<NSArray> families(NSFontManager&) { return arrayOf(text::installedFamilies()); }

    static Ref<NSArray> members(NSFontManager&, NSString* family)
    {
        const Ref<NSMutableArray> array = NSMutableArray::cls().array();
        for (const text::FamilyMember& member : text::membersOfFamily(utf8Of(family))) {
            const Ref<NSMutableArray> row = NSMutableArray::cls().array();
            row->addObject(stringFrom(member.postScriptName).get());
            row->addObject(stringFrom(member.style).get());
            row->addObject(NSNumber::cls().numberWithInteger(kitWeight(member.weight)).get());
            row->addObject(NSNumber::cls()
                               .numberWithUnsignedInteger(
                                   traitsOf(member.weight, member.slant, member.isMonospaced))
                               .get());
            array->addObject(row.get());
        }
        return array->count() ? array : nullptr;
    }
    static Ref<NSFont> ofFamily(
        NSFontManager&, NSString* family, NSFontTraitMask traits, NSInteger weight, CGFloat size)
    {
        const bool bold = traits & NSBoldFontMask;
        const bool isItalic = traits & NSItalicFontMask;
        const FontFace* face = FontFace::inFamily(utf8Of(family),
            bold ? std::max(kBoldWeight, faceWeight(weight)) : faceWeight(weight),
            isItalic ? Slant::italic : Slant::upright);
        const bool wrong = face && isItalic && face->slant() != Slant::italic;
        return face && !wrong ? appkit::fontFrom({ face, size }) : nullptr;
    }
    static Ref<NSArray> namesWithTraits(NSFontManager&, NSFontTraitMask traits)
    {
        std::vector<std::string> names;
        for (const std::string& family : text::installedFamilies()) {
            for (const text::FamilyMember& member : text::membersOfFamily(family)) {
                const NSUInteger has = traitsOf(member.weight, member.slant, member.isMonospaced);
                if (suits(has, traits))
                    names.push_back(member.postScriptName);
            }
        }
        std::ranges::sort(names);
        names.erase(std::unique(names.begin(), names.end()), names.end());
        return arrayOf(names);
    }
    static bool suits(NSUInteger has, NSUInteger wanted)
    {
        constexpr NSUInteger kPositive = NSItalicFontMask | NSBoldFontMask | NSFixedPitchFontMask;
        const bool lacks = (has & wanted & kPositive) != (wanted & kPositive);
        const bool isWrong = ((wanted & NSUnboldFontMask) && (has & NSBoldFontMask))
            || ((wanted & NSUnitalicFontMask) && (has & NSItalicFontMask));
        return !lacks && !isWrong;
    }

    static void table(Builder& t)
    {
        t.classMethods({ { "sharedFontManager", imp<shared> } });
        t.methods({
            { "availableFonts", imp<fonts> },
            { "availableFontFamilies", imp<families> },
            { "availableMembersOfFontFamily:", imp<members> },
            { "fontWithFamily:traits:weight:size:", imp<ofFamily> },
            { "availableFontNamesWithTraits:", imp<namesWithTraits> },
        });
    }
};
BRINDLE_RECORD(NSFontManager, Finding)

template <> struct NSFontManager::Methods<struct Converting> {

    static NSFontTraitMask traits(NSFontManager&, NSFont* font)
    {
        const FontFace* face = faceOf(font);
        return face ? traitsOf(*face) : NSFontTraitMask {};
    }
    static NSInteger weight(NSFontManager&, NSFont* font)
    {
        const FontFace* face = faceOf(font);
        return face ? kitWeight(face->weight()) : 0;
    }

    /// Answers the face of a font's family with another weight and slant; null when there is none like that.
    static const FontFace* relative(const FontFace& face, int weight, Slant slant)
    {
        const FontFace* found = FontFace::inFamily(face.familyName(), weight, slant);
        const bool wrong
            = !found || found->slant() != slant || isBold(found->weight()) != isBold(weight);
        return wrong ? nullptr : found;
    }
    static Ref<NSFont> toHave(NSFontManager& self, NSFont* font, NSFontTraitMask trait)
    {
        const FontFace* face = faceOf(font);
        if (!face)
            return font;
        if (trait & NSFixedPitchFontMask && !face->isMonospaced())
            return toFamily(
                self, font, NSFont::cls().userFixedPitchFontOfSize(0)->familyName().get());
        int weight = face->weight();
        weight = trait & NSBoldFontMask && !isBold(weight) ? kBoldWeight : weight;
        weight = trait & NSUnboldFontMask && isBold(weight) ? kRegularWeight : weight;
        Slant slant = face->slant();
        slant = trait & NSItalicFontMask ? Slant::italic : slant;
        slant = trait & NSUnitalicFontMask ? Slant::upright : slant;
        return fontOf(relative(*face, weight, slant), font);
    }
    static Ref<NSFont> toNotHave(NSFontManager& self, NSFont* font, NSFontTraitMask trait)
    {
        const NSUInteger opposite = traitIf(trait & NSBoldFontMask, NSUnboldFontMask)
            | traitIf(trait & NSItalicFontMask, NSUnitalicFontMask)
            | traitIf(trait & NSUnboldFontMask, NSBoldFontMask)
            | traitIf(trait & NSUnitalicFontMask, NSItalicFontMask);
        return toHave(self, font, static_cast<NSFontTraitMask>(opposite));
    }
    static Ref<NSFont> toSize(NSFontManager&, NSFont* font, CGFloat size)
    {
        const FontFace* face = faceOf(font);
        return face ? appkit::fontFrom({ face, size }) : Ref<NSFont>(font);
    }
    static Ref<NSFont> toFamily(NSFontManager&, NSFont* font, NSString* family)
    {
        const FontFace* face = faceOf(font);
        return face
            ? fontOf(FontFace::inFamily(utf8Of(family), face->weight(), face->slant()), font)
            : Ref<NSFont>(font);
    }
    static Ref<NSFont> toFace(NSFontManager&, NSFont* font, NSString* name)
    {
        return faceOf(font) ? fontOf(FontFace::named(utf8Of(name)), font) : Ref<NSFont>(font);
    }
    static Ref<NSFont> toWeight(NSFontManager&, bool heavier, NSFont* font)
    {
        const FontFace* face = faceOf(font);
        if (!face)
            return font;
        const FontFace* next = nullptr;
        for (const text::FamilyMember& member : text::membersOfFamily(face->familyName())) {
            const bool isFarther
                = heavier ? member.weight > face->weight() : member.weight < face->weight();
            const bool isNearer = !next
                || (heavier ? member.weight < next->weight() : member.weight > next->weight());
            if (member.slant == face->slant() && isFarther && isNearer)
                next = FontFace::named(member.postScriptName);
        }
        return fontOf(next, font);
    }

    static Ref<NSFont> selected(NSFontManager& self) { return self.selected_; }
    static bool isMultiple(NSFontManager& self) { return self.isMultiple_; }
    static void select(NSFontManager& self, NSFont* font, bool multiple)
    {
        self.selected_ = font;
        self.isMultiple_ = multiple;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "traitsOfFont:", imp<traits> },
            { "weightOfFont:", imp<weight> },
            { "convertFont:toHaveTrait:", imp<toHave> },
            { "convertFont:toNotHaveTrait:", imp<toNotHave> },
            { "convertFont:toSize:", imp<toSize> },
            { "convertFont:toFamily:", imp<toFamily> },
            { "convertFont:toFace:", imp<toFace> },
            { "convertWeight:ofFont:", imp<toWeight> },
            { "selectedFont", imp<selected> },
            { "isMultiple", imp<isMultiple> },
            { "setSelectedFont:isMultiple:", imp<select> },
        });
    }
};
BRINDLE_RECORD(NSFontManager, Converting)

}
