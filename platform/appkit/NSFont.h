// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSString.h"
#include "quartz/text/Font.h"

namespace brindle {

enum NSControlSize : NSUInteger {
    NSControlSizeRegular = 0,
    NSControlSizeSmall = 1,
    NSControlSizeMini = 2,
    NSControlSizeLarge = 3,
};

/// A typeface at a size. Never changes; equal by name and size.
///
/// Measures are points and ideal: not hinted, not rounded.
/// Thread: any.
class NSFont : public NSObject {
    BRINDLE_OBJECT(NSFont, NSObject)

public:
    struct Meta : NSObject::Meta {
        /// Answers the font of a PostScript, full or family name. Customary names that are not installed stand for a fixed
        /// relative of the same weight; nothing else is put in a font's place.
        /// - size: points; 0 means 12. - Nil: nil for an unknown name.
        Ref<NSFont> fontWithName_size(NSString* name, CGFloat size) const
        {
            return send<"fontWithName:size:", Ref<NSFont>>(name, size);
        }
        // The interface's fonts; size 0 means the size of the role.
        Ref<NSFont> systemFontOfSize(CGFloat size) const
        {
            return send<"systemFontOfSize:", Ref<NSFont>>(size);
        }
        Ref<NSFont> boldSystemFontOfSize(CGFloat size) const
        {
            return send<"boldSystemFontOfSize:", Ref<NSFont>>(size);
        }
        Ref<NSFont> menuFontOfSize(CGFloat size) const
        {
            return send<"menuFontOfSize:", Ref<NSFont>>(size);
        }
        Ref<NSFont> menuBarFontOfSize(CGFloat size) const
        {
            return send<"menuBarFontOfSize:", Ref<NSFont>>(size);
        }
        Ref<NSFont> labelFontOfSize(CGFloat size) const
        {
            return send<"labelFontOfSize:", Ref<NSFont>>(size);
        }
        Ref<NSFont> messageFontOfSize(CGFloat size) const
        {
            return send<"messageFontOfSize:", Ref<NSFont>>(size);
        }
        Ref<NSFont> titleBarFontOfSize(CGFloat size) const
        {
            return send<"titleBarFontOfSize:", Ref<NSFont>>(size);
        }
        Ref<NSFont> toolTipsFontOfSize(CGFloat size) const
        {
            return send<"toolTipsFontOfSize:", Ref<NSFont>>(size);
        }
        Ref<NSFont> controlContentFontOfSize(CGFloat size) const
        {
            return send<"controlContentFontOfSize:", Ref<NSFont>>(size);
        }
        Ref<NSFont> userFontOfSize(CGFloat size) const
        {
            return send<"userFontOfSize:", Ref<NSFont>>(size);
        }
        Ref<NSFont> userFixedPitchFontOfSize(CGFloat size) const
        {
            return send<"userFixedPitchFontOfSize:", Ref<NSFont>>(size);
        }
        CGFloat systemFontSize() const { return send<"systemFontSize", CGFloat>(); } // 13
        CGFloat smallSystemFontSize() const { return send<"smallSystemFontSize", CGFloat>(); } // 11
        CGFloat labelFontSize() const { return send<"labelFontSize", CGFloat>(); } // 10
        /// Answers 13, 11 or 9.
        CGFloat systemFontSizeForControlSize(NSControlSize size) const
        {
            return send<"systemFontSizeForControlSize:", CGFloat>(size);
        }
    };

    Ref<NSString> fontName() const { return send<"fontName", Ref<NSString>>(); }
    Ref<NSString> familyName() const { return send<"familyName", Ref<NSString>>(); }
    Ref<NSString> displayName() const { return send<"displayName", Ref<NSString>>(); }
    CGFloat pointSize() const { return send<"pointSize", CGFloat>(); }
    CGFloat ascender() const { return send<"ascender", CGFloat>(); }
    /// Negative: how far letters reach below the baseline.
    CGFloat descender() const { return send<"descender", CGFloat>(); }
    CGFloat leading() const { return send<"leading", CGFloat>(); }
    CGFloat capHeight() const { return send<"capHeight", CGFloat>(); }
    CGFloat xHeight() const { return send<"xHeight", CGFloat>(); }
    CGFloat underlinePosition() const { return send<"underlinePosition", CGFloat>(); }
    CGFloat underlineThickness() const { return send<"underlineThickness", CGFloat>(); }
    CGFloat italicAngle() const { return send<"italicAngle", CGFloat>(); }
    bool isFixedPitch() const { return send<"isFixedPitch", bool>(); }
    NSRect boundingRectForFont() const { return send<"boundingRectForFont", NSRect>(); }
    NSSize advancementForGlyph(std::uint32_t glyph) const
    {
        return send<"advancementForGlyph:", NSSize>(glyph);
    }

    /// Answers the face and size for shaping; without a face for nil.
    static text::Font textFont(const NSFont* font) { return font ? font->font_ : text::Font {}; }

private:
    text::Font font_;
};

namespace appkit {
    /// Answers the font of a face at a size.
    BRINDLE_EXPORT Ref<NSFont> fontFrom(const text::Font& font);
}

}
