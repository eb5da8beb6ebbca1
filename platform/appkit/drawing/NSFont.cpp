// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSFont.h"

#include "foundation/CodingTable.h"
#include "runtime/Table.h"

#include <array>
#include <cmath>
#include <mutex>

namespace brindle {

namespace {

    constexpr double kDefaultSize = 12;
    constexpr int kRegular = 400;
    constexpr int kBold = 700;
    constexpr double kLargestSize = 100000;

}

template <> struct NSFont::Methods<struct Making> {

    /// The last few fonts that were asked for: controls ask for theirs each time that they are drawn. Thread: any.
    class Recent {
    public:
        static Recent& shared()
        {
            static auto* const fonts = new Recent; // controls are drawn while the process ends
            return *fonts;
        }
        Ref<NSFont> find(const text::Font& wanted)
        {
            const std::lock_guard lock(mutex_);
            for (const Ref<NSFont>& font : fonts_) {
                if (font && font->font_ == wanted)
                    return font;
            }
            return nullptr;
        }
        void add(Ref<NSFont> font)
        {
            const std::lock_guard lock(mutex_);
            fonts_[next_].swap(font); // the older one ends outside the lock
            next_ = (next_ + 1) % fonts_.size();
        }

    private:
        std::mutex mutex_;
        std::array<Ref<NSFont>, 8> fonts_;
        std::size_t next_ = 0;
    };

    static Ref<NSFont> with(const text::FontFace* face, double size, double otherwise)
    {
        if (!face)
            return nullptr;
        const bool usable = size > 0 && size < kLargestSize;
        const text::Font wanted { face, usable ? size : otherwise };
        if (Ref<NSFont> known = Recent::shared().find(wanted))
            return known;
        Ref<NSFont> font = make<NSFont>();
        font->font_ = wanted;
        Recent::shared().add(font);
        return font;
    }

    static Ref<NSFont> named(Class&, NSString* name, CGFloat size)
    {
        return name ? with(text::FontFace::named(utf8Of(name)), size, kDefaultSize) : nullptr;
    }

    // One face serves all roles; what differs is weight and size.
    template <int Weight, int Size> static Ref<NSFont> role(Class&, CGFloat size)
    {
        return with(text::FontFace::system(Weight, text::Slant::upright), size, Size);
    }

    static Ref<NSFont> user(Class&, CGFloat size)
    {
        return with(text::FontFace::named("Helvetica"), size, kDefaultSize);
    }

    static Ref<NSFont> fixedPitch(Class&, CGFloat size)
    {
        return with(text::FontFace::named("Courier"), size, kDefaultSize);
    }

    static CGFloat systemFontSize(Class&) { return 13; }
    static CGFloat smallSystemFontSize(Class&) { return 11; }
    static CGFloat labelFontSize(Class&) { return 10; }
    static CGFloat sizeForControlSize(Class&, NSControlSize size)
    {
        return size == NSControlSizeSmall ? 11 : size == NSControlSizeMini ? 9 : 13;
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "fontWithName:size:", imp<named> },
            { "systemFontOfSize:", imp<role<kRegular, 13>> },
            { "boldSystemFontOfSize:", imp<role<kBold, 13>> },
            { "menuFontOfSize:", imp<role<kRegular, 13>> },
            { "menuBarFontOfSize:", imp<role<kRegular, 14>> },
            { "labelFontOfSize:", imp<role<kRegular, 10>> },
            { "messageFontOfSize:", imp<role<kRegular, 13>> },
            { "titleBarFontOfSize:", imp<role<kBold, 13>> },
            { "toolTipsFontOfSize:", imp<role<kRegular, 11>> },
            { "controlContentFontOfSize:", imp<role<kRegular, 13>> },
            { "userFontOfSize:", imp<user> },
            { "userFixedPitchFontOfSize:", imp<fixedPitch> },
            { "systemFontSize", imp<systemFontSize> },
            { "smallSystemFontSize", imp<smallSystemFontSize> },
            { "labelFontSize", imp<labelFontSize> },
            { "systemFontSizeForControlSize:", imp<sizeForControlSize> },
        });
    }
};
BRINDLE_RECORD(NSFont, Making)

template <> struct NSFont::Methods<struct Measures> {

    // A font of a bare init has no face: no name, and zero for all measures.
    static Ref<NSString> fontName(NSFont& self)
    {
        const text::FontFace* const face = self.font_.face;
        return face ? stringFrom(face->postScriptName()) : nullptr;
    }
    static Ref<NSString> familyName(NSFont& self)
    {
        const text::FontFace* const face = self.font_.face;
        return face ? stringFrom(face->familyName()) : nullptr;
    }
    static CGFloat pointSize(NSFont& self) { return self.font_.size; }
    static CGFloat ascender(NSFont& self) { return self.font_.ascender(); }
    static CGFloat descender(NSFont& self) { return self.font_.descender(); }
    static CGFloat leading(NSFont& self) { return self.font_.leading(); }
    static CGFloat capHeight(NSFont& self) { return self.font_.capHeight(); }
    static CGFloat xHeight(NSFont& self) { return self.font_.xHeight(); }
    static CGFloat underlinePosition(NSFont& self)
    {
        const text::FontFace* const face = self.font_.face;
        return face ? face->metrics().underlinePosition * self.font_.size : 0;
    }
    static CGFloat underlineThickness(NSFont& self)
    {
        const text::FontFace* const face = self.font_.face;
        return face ? face->metrics().underlineThickness * self.font_.size : 0;
    }
    static CGFloat italicAngle(NSFont& self)
    {
        const text::FontFace* const face = self.font_.face;
        return face && face->slant() == text::Slant::italic ? -12 : 0;
    }
    static bool isFixedPitch(NSFont& self)
    {
        return self.font_.face && self.font_.face->isMonospaced();
    }
    static NSRect boundingRect(NSFont& self) { return self.font_.boundingBox(); }
    static NSSize advancement(NSFont& self, std::uint32_t glyph)
    {
        return { self.font_.advance(glyph), 0 };
    }

    static bool isEqual(NSFont& self, NSObject* other)
    {
        return other && other->isKindOfClass(NSFont::cls())
            && static_cast<NSFont*>(other)->font_ == self.font_;
    }

    static std::uint64_t hash(NSFont& self)
    {
        return reinterpret_cast<std::uintptr_t>(self.font_.face) / 16
            + static_cast<std::uint64_t>(self.font_.size * 64);
    }

    static Ref<NSObject> copyWithZone(NSFont& self, void*) { return &self; }

    // - Shape: "NSName", the PostScript name; "NSSize".
    static void encode(NSFont& self, NSCoder* coder)
    {
        coder->encodeObject_forKey(self.fontName().get(), "NSName"_ns);
        coder->encodeDouble_forKey(self.font_.size, "NSSize"_ns);
    }
    /// A font that this machine lacks comes back as the interface's font of its size.
    static Ref<NSObject> initWithCoder(NSFont&, NSCoder* coder)
    {
        const Ref<NSString> name = decode<NSString>(coder, "NSName"_ns);
        const double size = coder->decodeDoubleForKey("NSSize"_ns);
        Ref<NSFont> font = NSFont::cls().fontWithName_size(name.get(), size);
        return font ? font : NSFont::cls().systemFontOfSize(size);
    }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        declareCoding<encode, initWithCoder>(t);
        t.methods({
            { "fontName", imp<fontName> },
            { "familyName", imp<familyName> },
            { "displayName", imp<fontName> },
            { "pointSize", imp<pointSize> },
            { "ascender", imp<ascender> },
            { "descender", imp<descender> },
            { "leading", imp<leading> },
            { "capHeight", imp<capHeight> },
            { "xHeight", imp<xHeight> },
            { "underlinePosition", imp<underlinePosition> },
            { "underlineThickness", imp<underlineThickness> },
            { "italicAngle", imp<italicAngle> },
            { "isFixedPitch", imp<isFixedPitch> },
            { "boundingRectForFont", imp<boundingRect> },
            { "advancementForGlyph:", imp<advancement> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "copyWithZone:", imp<copyWithZone> },
        });
    }
};
BRINDLE_RECORD(NSFont, Measures)

Ref<NSFont> appkit::fontFrom(const text::Font& font)
{
    return NSFont::Methods<struct Making>::with(font.face, font.size, kDefaultSize);
}

}
