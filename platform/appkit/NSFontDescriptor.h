// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSFont.h"
#include "foundation/NSDictionary.h"
#include "foundation/StringConstant.h"

namespace brindle {

// Keys of a descriptor.
inline constexpr StringConstant<"NSFontNameAttribute"> NSFontNameAttribute; ///< PostScript name
inline constexpr StringConstant<"NSFontFamilyAttribute"> NSFontFamilyAttribute;
inline constexpr StringConstant<"NSFontFaceAttribute"> NSFontFaceAttribute; ///< "Bold Italic"
inline constexpr StringConstant<"NSFontSizeAttribute"> NSFontSizeAttribute; ///< a number
inline constexpr StringConstant<"NSCTFontTraitsAttribute"> NSFontTraitsAttribute; ///< a dictionary
inline constexpr StringConstant<"NSCTFontSymbolicTrait"> NSFontSymbolicTrait; ///< in it, a number

enum NSFontDescriptorSymbolicTraits : std::uint32_t {
    NSFontDescriptorTraitItalic = 1u << 0,
    NSFontDescriptorTraitBold = 1u << 1,
    NSFontDescriptorTraitMonoSpace = 1u << 10,
};

/// What is known or wanted of a font, without the font: by name, or by family with a face or traits.
///
/// Never changes. A descriptor that names no installed font stays as it is and gives no font.
/// Thread: any.
class NSFontDescriptor : public NSObject {
    BRINDLE_OBJECT(NSFontDescriptor, NSObject)

public:
    struct Meta : NSObject::Meta {
        Ref<NSFontDescriptor> fontDescriptorWithFontAttributes(NSDictionary* attributes) const
        {
            return send<"fontDescriptorWithFontAttributes:", Ref<NSFontDescriptor>>(attributes);
        }
        /// - size: points; 0 leaves the size out.
        Ref<NSFontDescriptor> fontDescriptorWithName_size(NSString* name, CGFloat size) const
        {
            return send<"fontDescriptorWithName:size:", Ref<NSFontDescriptor>>(name, size);
        }
    };

    Ref<NSFontDescriptor> initWithFontAttributes(NSDictionary* attributes)
    {
        return send<"initWithFontAttributes:", Ref<NSFontDescriptor>>(attributes);
    }
    Ref<NSDictionary> fontAttributes() const { return send<"fontAttributes", Ref<NSDictionary>>(); }
    /// Answers what the descriptor says under a key, or else what the font says that it stands for.
    Ref<NSObject> objectForKey(NSString* key) const
    {
        return send<"objectForKey:", Ref<NSObject>>(key);
    }
    /// - Nil: when it stands for no installed font.
    Ref<NSString> postscriptName() const { return send<"postscriptName", Ref<NSString>>(); }
    /// Answers 0 when the size is left open.
    CGFloat pointSize() const { return send<"pointSize", CGFloat>(); }
    NSFontDescriptorSymbolicTraits symbolicTraits() const
    {
        return send<"symbolicTraits", NSFontDescriptorSymbolicTraits>();
    }

    Ref<NSFontDescriptor> fontDescriptorByAddingAttributes(NSDictionary* attributes) const
    {
        return send<"fontDescriptorByAddingAttributes:", Ref<NSFontDescriptor>>(attributes);
    }
    Ref<NSFontDescriptor> fontDescriptorWithSize(CGFloat size) const
    {
        return send<"fontDescriptorWithSize:", Ref<NSFontDescriptor>>(size);
    }
    /// The name goes; traits stay.
    Ref<NSFontDescriptor> fontDescriptorWithFamily(NSString* family) const
    {
        return send<"fontDescriptorWithFamily:", Ref<NSFontDescriptor>>(family);
    }
    Ref<NSFontDescriptor> fontDescriptorWithFace(NSString* face) const
    {
        return send<"fontDescriptorWithFace:", Ref<NSFontDescriptor>>(face);
    }
    /// The name goes; the family stays.
    Ref<NSFontDescriptor> fontDescriptorWithSymbolicTraits(
        NSFontDescriptorSymbolicTraits traits) const
    {
        return send<"fontDescriptorWithSymbolicTraits:", Ref<NSFontDescriptor>>(traits);
    }

private:
    Ref<NSDictionary> attributes_;
};

/// Answers the descriptor of a font: its name and size. - Nil: for nil and a font without a face.
inline Ref<NSFontDescriptor> fontDescriptor(To<NSFont> font)
{
    return font.send<"fontDescriptor", Ref<NSFontDescriptor>>();
}
/// Answers the font that a descriptor stands for.
/// - size: points; 0 takes the descriptor's, and 12 when it has none. - Nil: when no such font is installed.
inline Ref<NSFont> fontWithDescriptor_size(NSFontDescriptor* descriptor, CGFloat size)
{
    return NSFont::cls().send<"fontWithDescriptor:size:", Ref<NSFont>>(descriptor, size);
}

}
