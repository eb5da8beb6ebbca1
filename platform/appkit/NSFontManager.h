// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSFont.h"
#include "foundation/NSArray.h"

namespace brindle {

/// What a font is like; also what it is to become. The "un" traits are only for conversion and search.
enum NSFontTraitMask : NSUInteger {
    NSItalicFontMask = 0x1,
    NSBoldFontMask = 0x2,
    NSUnboldFontMask = 0x4,
    NSFixedPitchFontMask = 0x400,
    NSUnitalicFontMask = 0x01000000,
};

/// Finds the relatives of fonts: bold, italic, heavier, of another family or size.
///
/// A conversion that no installed face answers gives the font back as it was.
/// Weights go from 0 to 15: 5 is regular, 9 bold.
/// - Nil: a nil font converts to nil; it has no traits.
/// Thread: any, but for the selected font, which belongs to the main thread.
class NSFontManager : public NSObject {
    BRINDLE_OBJECT(NSFontManager, NSObject)

public:
    struct Meta : NSObject::Meta {
        Ref<NSFontManager> sharedFontManager() const
        {
            return send<"sharedFontManager", Ref<NSFontManager>>();
        }
    };

    // ---- what there is

    /// Answers the PostScript names of all fonts, sorted.
    Ref<NSArray> availableFonts() const { return send<"availableFonts", Ref<NSArray>>(); }
    Ref<NSArray> availableFontFamilies() const
    {
        return send<"availableFontFamilies", Ref<NSArray>>();
    }
    /// Answers an array for each face: PostScript name, style, weight, traits.
    /// - Nil: for an unknown family.
    Ref<NSArray> availableMembersOfFontFamily(NSString* family) const
    {
        return send<"availableMembersOfFontFamily:", Ref<NSArray>>(family);
    }
    /// Answers the family's face nearest to traits and weight.
    /// - Nil: for an unknown family, and when it has no italic face and one is asked for.
    Ref<NSFont> fontWithFamily_traits_weight_size(
        NSString* family, NSFontTraitMask traits, NSInteger weight, CGFloat size) const
    {
        return send<"fontWithFamily:traits:weight:size:", Ref<NSFont>>(
            family, traits, weight, size);
    }
    Ref<NSArray> availableFontNamesWithTraits(NSFontTraitMask traits) const
    {
        return send<"availableFontNamesWithTraits:", Ref<NSArray>>(traits);
    }

    // ---- what a font is

    NSFontTraitMask traitsOfFont(NSFont* font) const
    {
        return send<"traitsOfFont:", NSFontTraitMask>(font);
    }
    NSInteger weightOfFont(NSFont* font) const { return send<"weightOfFont:", NSInteger>(font); }

    // ---- what it becomes

    Ref<NSFont> convertFont_toHaveTrait(NSFont* font, NSFontTraitMask trait) const
    {
        return send<"convertFont:toHaveTrait:", Ref<NSFont>>(font, trait);
    }
    Ref<NSFont> convertFont_toNotHaveTrait(NSFont* font, NSFontTraitMask trait) const
    {
        return send<"convertFont:toNotHaveTrait:", Ref<NSFont>>(font, trait);
    }
    Ref<NSFont> convertFont_toSize(NSFont* font, CGFloat size) const
    {
        return send<"convertFont:toSize:", Ref<NSFont>>(font, size);
    }
    /// Keeps weight and slant as far as the family has them.
    Ref<NSFont> convertFont_toFamily(NSFont* font, NSString* family) const
    {
        return send<"convertFont:toFamily:", Ref<NSFont>>(font, family);
    }
    Ref<NSFont> convertFont_toFace(NSFont* font, NSString* postScriptName) const
    {
        return send<"convertFont:toFace:", Ref<NSFont>>(font, postScriptName);
    }
    /// Answers the next heavier or lighter face of the family.
    Ref<NSFont> convertWeight_ofFont(bool heavier, NSFont* font) const
    {
        return send<"convertWeight:ofFont:", Ref<NSFont>>(heavier, font);
    }

    // ---- the selection

    /// Answers the font of the selection, as it was told last.
    Ref<NSFont> selectedFont() const { return send<"selectedFont", Ref<NSFont>>(); }
    bool isMultiple() const { return send<"isMultiple", bool>(); }
    void setSelectedFont_isMultiple(NSFont* font, bool multiple)
    {
        send<"setSelectedFont:isMultiple:">(font, multiple);
    }

private:
    Ref<NSFont> selected_;
    bool isMultiple_ = false;
};

}
