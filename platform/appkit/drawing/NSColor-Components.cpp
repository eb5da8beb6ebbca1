// SPDX-License-Identifier: Apache-2.0
#include "NSColorPrivate.h"
#include "foundation/Exceptions.h"
#include "runtime/Table.h"

#include <charconv>

namespace brindle {

namespace {

    void put(CGFloat* to, CGFloat value)
    {
        if (to)
            *to = value;
    }

}

void NSColor::Methods<struct Parts>::require(NSColor& self, bool hasThem, const char* selector)
{
    if (!hasThem)
        raise("NSInvalidArgumentException",
            std::string("*** -") + selector + " not valid for the NSColor "
                + utf8Of(self.description()) + "; need to first convert colorspace.");
}

template <> struct NSColor::Methods<struct Components> {

    using Parts = NSColor::Methods<struct Parts>;

    static std::size_t countOf(const NSColor& self)
    {
        return Parts::isRGB(self) ? 4 : Parts::isWhite(self) ? 2 : 0;
    }

    static Ref<NSString> description(NSColor& self)
    {
        std::string text = utf8Of(self.colorSpaceName());
        if (self.space_ == Space::named)
            text += std::string(" System ") + Parts::systemName(self);
        if (self.space_ == Space::pattern)
            text += " " + utf8Of(self.pattern_->description());
        for (std::size_t i = 0; i < countOf(self); ++i) {
            char number[32];
            const auto end = std::to_chars(
                number, std::end(number), self.components_[i], std::chars_format::general, 6)
                                 .ptr;
            text += ' ' + std::string(number, end);
        }
        return stringFrom(text);
    }

    static colors::RGB rgbOf(NSColor& self, const char* selector)
    {
        Parts::require(self, Parts::isRGB(self), selector);
        return Parts::rgbOf(self);
    }
    static CGFloat whiteOf(NSColor& self, const char* selector)
    {
        Parts::require(self, Parts::isWhite(self), selector);
        return self.components_[0];
    }

    static CGFloat red(NSColor& self) { return rgbOf(self, "redComponent").red; }
    static CGFloat green(NSColor& self) { return rgbOf(self, "greenComponent").green; }
    static CGFloat blue(NSColor& self) { return rgbOf(self, "blueComponent").blue; }
    static CGFloat hue(NSColor& self) { return rgbOf(self, "hueComponent").hue(); }
    static CGFloat saturation(NSColor& self)
    {
        return rgbOf(self, "saturationComponent").saturation();
    }
    static CGFloat brightness(NSColor& self)
    {
        return rgbOf(self, "brightnessComponent").brightness();
    }
    static CGFloat white(NSColor& self) { return whiteOf(self, "whiteComponent"); }

    static void getRGB(NSColor& self, CGFloat* red, CGFloat* green, CGFloat* blue, CGFloat* alpha)
    {
        const colors::RGB c = rgbOf(self, "getRed:green:blue:alpha:");
        put(red, c.red);
        put(green, c.green);
        put(blue, c.blue);
        put(alpha, Parts::alphaOf(self));
    }
    static void getHSB(
        NSColor& self, CGFloat* hue, CGFloat* saturation, CGFloat* brightness, CGFloat* alpha)
    {
        const colors::RGB c = rgbOf(self, "getHue:saturation:brightness:alpha:");
        put(hue, c.hue());
        put(saturation, c.saturation());
        put(brightness, c.brightness());
        put(alpha, Parts::alphaOf(self));
    }
    static void getWhite(NSColor& self, CGFloat* white, CGFloat* alpha)
    {
        put(white, whiteOf(self, "getWhite:alpha:"));
        put(alpha, Parts::alphaOf(self));
    }

    static CGFloat alpha(NSColor& self)
    {
        const Ref<NSColor> color = Parts::resolved(self);
        return color->space_ == Space::pattern ? 1 : Parts::alphaOf(*color);
    }

    static NSInteger numberOfComponents(NSColor& self)
    {
        Parts::require(self, countOf(self), "numberOfComponents");
        return static_cast<NSInteger>(countOf(self));
    }
    static void getComponents(NSColor& self, CGFloat* components)
    {
        Parts::require(self, countOf(self), "getComponents:");
        if (components)
            std::copy_n(self.components_, countOf(self), components);
    }

    static Ref<NSImage> patternImage(NSColor& self)
    {
        Parts::require(self, self.space_ == Space::pattern, "patternImage");
        Ref<NSObject> image = self.pattern_;
        return Ref<NSImage>::adopt(reinterpret_cast<NSImage*>(image.leak()));
    }

    static bool isEqual(NSColor& self, NSObject* other)
    {
        if (other == &self)
            return true;
        if (!other || !other->isKindOfClass(NSColor::cls()))
            return false;
        const auto& color = *static_cast<NSColor*>(other);
        return color.space_ == self.space_ && color.systemIndex_ == self.systemIndex_
            && color.pattern_ == self.pattern_
            && std::equal(
                std::begin(self.components_), std::end(self.components_), color.components_);
    }

    static std::uint64_t hash(NSColor& self)
    {
        std::uint64_t sum = static_cast<std::uint64_t>(self.space_) * 64 + self.systemIndex_;
        for (const CGFloat part : self.components_)
            sum = sum * 31 + static_cast<std::uint64_t>(part * 65535);
        return sum;
    }

    static Ref<NSObject> copyWithZone(NSColor& self, void*) { return &self; }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        t.methods({
            { "description", imp<description> },
            { "redComponent", imp<red> },
            { "greenComponent", imp<green> },
            { "blueComponent", imp<blue> },
            { "hueComponent", imp<hue> },
            { "saturationComponent", imp<saturation> },
            { "brightnessComponent", imp<brightness> },
            { "getRed:green:blue:alpha:", imp<getRGB> },
            { "getHue:saturation:brightness:alpha:", imp<getHSB> },
            { "whiteComponent", imp<white> },
            { "getWhite:alpha:", imp<getWhite> },
            { "alphaComponent", imp<alpha> },
            { "numberOfComponents", imp<numberOfComponents> },
            { "getComponents:", imp<getComponents> },
            { "patternImage", imp<patternImage> },
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "copyWithZone:", imp<copyWithZone> },
        });
    }
};
BRINDLE_RECORD(NSColor, Components)

}
