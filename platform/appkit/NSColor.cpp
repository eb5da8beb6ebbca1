// SPDX-License-Identifier: Apache-2.0
#include "NSColor.h"

#include "NSGraphicsContext.h"
#include "SystemColorsPrivate.h"
#include "runtime/NSException.h"
#include "runtime/Table.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace brindle {

namespace {

    constinit std::atomic<appkit::Appearance> currentAppearance { appkit::Appearance::light };

    double unit(double value) { return value > 0 ? std::min(value, 1.0) : 0; }

    struct RGB {
        double red = 0;
        double green = 0;
        double blue = 0;
    };

    RGB rgbFrom(double hue, double saturation, double brightness)
    {
        const double sector = (hue >= 1 ? 0 : hue) * 6;
        const int index = static_cast<int>(sector);
        const double part = sector - index;
        const double low = brightness * (1 - saturation);
        const double falling = brightness * (1 - saturation * part);
        const double rising = brightness * (1 - saturation * (1 - part));
        switch (index) {
        case 0:
            return { brightness, rising, low };
        case 1:
            return { falling, brightness, low };
        case 2:
            return { low, brightness, rising };
        case 3:
            return { low, falling, brightness };
        case 4:
            return { rising, low, brightness };
        default:
            return { brightness, low, falling };
        }
    }

    double hueOf(const RGB& c)
    {
        const double high = std::max({ c.red, c.green, c.blue });
        const double spread = high - std::min({ c.red, c.green, c.blue });
        if (spread <= 0)
            return 0;
        double sector = 0;
        if (high == c.red)
            sector = (c.green - c.blue) / spread;
        else if (high == c.green)
            sector = 2 + (c.blue - c.red) / spread;
        else
            sector = 4 + (c.red - c.green) / spread;
        return (sector < 0 ? sector + 6 : sector) / 6;
    }

    double saturationOf(const RGB& c)
    {
        const double high = std::max({ c.red, c.green, c.blue });
        return high > 0 ? (high - std::min({ c.red, c.green, c.blue })) / high : 0;
    }

    void put(CGFloat* to, CGFloat value)
    {
        if (to)
            *to = value;
    }

}

appkit::Appearance appkit::appearance() { return currentAppearance.load(); }
void appkit::setAppearance(Appearance appearance) { currentAppearance.store(appearance); }

// ---- making

template <> struct NSColor::Methods<struct Making> {

    static Ref<NSColor> plain(Space space)
    {
        Ref<NSColor> color = make<NSColor>();
        color->space_ = space;
        return color;
    }

    static Ref<NSColor> rgb(Space space, double red, double green, double blue, double alpha)
    {
        Ref<NSColor> color = plain(space);
        const double parts[] { unit(red), unit(green), unit(blue), unit(alpha) };
        std::copy(std::begin(parts), std::end(parts), color->components_);
        return color;
    }

    static Ref<NSColor> white(Space space, double white, double alpha)
    {
        Ref<NSColor> color = plain(space);
        color->components_[0] = unit(white);
        color->components_[1] = unit(alpha);
        return color;
    }

    template <Space S>
    static Ref<NSColor> withRGB(Class&, CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha)
    {
        return rgb(S, red, green, blue, alpha);
    }

    template <Space S>
    static Ref<NSColor> withHSB(
        Class&, CGFloat hue, CGFloat saturation, CGFloat brightness, CGFloat alpha)
    {
        const RGB c = rgbFrom(unit(hue), unit(saturation), unit(brightness));
        return rgb(S, c.red, c.green, c.blue, alpha);
    }

    template <Space S> static Ref<NSColor> withWhite(Class&, CGFloat shade, CGFloat alpha)
    {
        return white(S, shade, alpha);
    }

    static Ref<NSColor> withCGColor(Class&, class CGColor* color)
    {
        if (!color)
            return nullptr;
        const CGFloat* c = color->components();
        const auto kind = color->space()->kind();
        if (color->componentCount() == 2)
            return white(kind == CGColorSpace::Kind::deviceGray ? Space::deviceWhite
                                                                : Space::calibratedWhite,
                c[0], c[1]);
        return rgb(kind == CGColorSpace::Kind::deviceRGB ? Space::deviceRGB : Space::calibratedRGB,
            c[0], c[1], c[2], c[3]);
    }

    static Ref<NSColor> withPatternImage(Class&, NSImage* image)
    {
        if (!image)
            return nullptr;
        Ref<NSColor> color = plain(Space::pattern);
        color->pattern_ = reinterpret_cast<NSObject*>(image);
        return color;
    }

    // Thousandths of white and alpha.
    template <int White, int Parts, int Alpha> static Ref<NSColor> shade(Class&)
    {
        return white(Space::calibratedWhite, static_cast<double>(White) / Parts, Alpha);
    }

    // Tenths of red, green and blue.
    template <int Red, int Green, int Blue> static Ref<NSColor> primary(Class&)
    {
        return rgb(Space::calibratedRGB, Red / 10.0, Green / 10.0, Blue / 10.0, 1);
    }

    template <std::size_t I> static Ref<NSColor> system(Class&)
    {
        static NSColor* const color = [] {
            Ref<NSColor> named = plain(Space::named);
            named->systemIndex_ = I;
            return named.leak(); // lives as long as the process
        }();
        return color;
    }

    template <std::size_t... I> static void systemRows(Builder& t, std::index_sequence<I...>)
    {
        t.classMethods({ Row { appkit::kSystemColors[I].name, imp<system<I>> }... });
    }

    static void table(Builder& t)
    {
        using enum Space;
        t.classMethods({
            { "colorWithCalibratedRed:green:blue:alpha:", imp<withRGB<calibratedRGB>> },
            { "colorWithCalibratedHue:saturation:brightness:alpha:", imp<withHSB<calibratedRGB>> },
            { "colorWithCalibratedWhite:alpha:", imp<withWhite<calibratedWhite>> },
            { "colorWithDeviceRed:green:blue:alpha:", imp<withRGB<deviceRGB>> },
            { "colorWithDeviceHue:saturation:brightness:alpha:", imp<withHSB<deviceRGB>> },
            { "colorWithDeviceWhite:alpha:", imp<withWhite<deviceWhite>> },
            { "colorWithRed:green:blue:alpha:", imp<withRGB<calibratedRGB>> },
            { "colorWithSRGBRed:green:blue:alpha:", imp<withRGB<calibratedRGB>> },
            { "colorWithHue:saturation:brightness:alpha:", imp<withHSB<calibratedRGB>> },
            { "colorWithWhite:alpha:", imp<withWhite<calibratedWhite>> },
            { "colorWithCGColor:", imp<withCGColor> },
            { "colorWithPatternImage:", imp<withPatternImage> },
            { "blackColor", imp<shade<0, 1, 1>> },
            { "darkGrayColor", imp<shade<1, 3, 1>> },
            { "grayColor", imp<shade<1, 2, 1>> },
            { "lightGrayColor", imp<shade<2, 3, 1>> },
            { "whiteColor", imp<shade<1, 1, 1>> },
            { "clearColor", imp<shade<0, 1, 0>> },
            { "redColor", imp<primary<10, 0, 0>> },
            { "greenColor", imp<primary<0, 10, 0>> },
            { "blueColor", imp<primary<0, 0, 10>> },
            { "cyanColor", imp<primary<0, 10, 10>> },
            { "yellowColor", imp<primary<10, 10, 0>> },
            { "magentaColor", imp<primary<10, 0, 10>> },
            { "orangeColor", imp<primary<10, 5, 0>> },
            { "purpleColor", imp<primary<5, 0, 5>> },
            { "brownColor", imp<primary<6, 4, 2>> },
        });
        systemRows(t, std::make_index_sequence<appkit::kSystemColors.size()>());
    }
};
BRINDLE_RECORD(NSColor, Making)

// ---- reading

template <> struct NSColor::Methods<struct Values> {

    using Makers = NSColor::Methods<struct Making>;

    static bool isRGB(const NSColor& self)
    {
        return self.space_ == Space::calibratedRGB || self.space_ == Space::deviceRGB;
    }
    static bool isWhite(const NSColor& self)
    {
        return self.space_ == Space::calibratedWhite || self.space_ == Space::deviceWhite;
    }

    /// Answers a named colour's look of now; any other colour is its own.
    static Ref<NSColor> resolved(NSColor& self)
    {
        if (self.space_ != Space::named)
            return &self;
        const appkit::SystemColor& entry = appkit::kSystemColors[self.systemIndex_];
        const std::uint32_t value
            = appkit::appearance() == appkit::Appearance::dark ? entry.dark : entry.light;
        const auto part = [value](int shift) { return (value >> shift & 0xFF) / 255.0; };
        return Makers::rgb(Space::calibratedRGB, part(24), part(16), part(8), part(0));
    }

    static Ref<NSString> colorSpaceName(NSColor& self)
    {
        switch (self.space_) {
        case Space::calibratedRGB:
            return NSCalibratedRGBColorSpace.get();
        case Space::deviceRGB:
            return NSDeviceRGBColorSpace.get();
        case Space::calibratedWhite:
            return NSCalibratedWhiteColorSpace.get();
        case Space::deviceWhite:
            return NSDeviceWhiteColorSpace.get();
        case Space::named:
            return NSNamedColorSpace.get();
        default:
            return NSPatternColorSpace.get();
        }
    }

    static Ref<NSString> description(NSColor& self)
    {
        std::string text = utf8Of(colorSpaceName(self));
        if (self.space_ == Space::named)
            text += std::string(" System ") + appkit::kSystemColors[self.systemIndex_].name;
        const int count = isRGB(self) ? 4 : isWhite(self) ? 2 : 0;
        for (int i = 0; i < count; ++i) {
            char number[32];
            std::snprintf(number, sizeof number, " %g", self.components_[i]);
            text += number;
        }
        return stringFrom(text);
    }

    [[noreturn]] static void refuse(NSColor& self, const char* selector)
    {
        raise("NSInvalidArgumentException",
            std::string("*** -") + selector + " not valid for the NSColor "
                + utf8Of(self.description()) + "; need to first convert colorspace.");
    }

    static RGB rgbOf(NSColor& self, const char* selector)
    {
        if (!isRGB(self))
            refuse(self, selector);
        return { self.components_[0], self.components_[1], self.components_[2] };
    }

    static CGFloat red(NSColor& self) { return rgbOf(self, "redComponent").red; }
    static CGFloat green(NSColor& self) { return rgbOf(self, "greenComponent").green; }
    static CGFloat blue(NSColor& self) { return rgbOf(self, "blueComponent").blue; }
    static CGFloat hue(NSColor& self) { return hueOf(rgbOf(self, "hueComponent")); }
    static CGFloat saturation(NSColor& self)
    {
        return saturationOf(rgbOf(self, "saturationComponent"));
    }
    static CGFloat brightness(NSColor& self)
    {
        const RGB c = rgbOf(self, "brightnessComponent");
        return std::max({ c.red, c.green, c.blue });
    }

    static void getRGB(NSColor& self, CGFloat* red, CGFloat* green, CGFloat* blue, CGFloat* alpha)
    {
        const RGB c = rgbOf(self, "getRed:green:blue:alpha:");
        put(red, c.red);
        put(green, c.green);
        put(blue, c.blue);
        put(alpha, self.components_[3]);
    }

    static void getHSB(
        NSColor& self, CGFloat* hue, CGFloat* saturation, CGFloat* brightness, CGFloat* alpha)
    {
        const RGB c = rgbOf(self, "getHue:saturation:brightness:alpha:");
        put(hue, hueOf(c));
        put(saturation, saturationOf(c));
        put(brightness, std::max({ c.red, c.green, c.blue }));
        put(alpha, self.components_[3]);
    }

    static CGFloat white(NSColor& self)
    {
        if (!isWhite(self))
            refuse(self, "whiteComponent");
        return self.components_[0];
    }

    static void getWhite(NSColor& self, CGFloat* white, CGFloat* alpha)
    {
        if (!isWhite(self))
            refuse(self, "getWhite:alpha:");
        put(white, self.components_[0]);
        put(alpha, self.components_[1]);
    }

    static CGFloat alpha(NSColor& self)
    {
        const Ref<NSColor> color = resolved(self);
        if (color->space_ == Space::pattern)
            return 1;
        return color->components_[isRGB(*color) ? 3 : 1];
    }

    static NSInteger numberOfComponents(NSColor& self)
    {
        if (!isRGB(self) && !isWhite(self))
            refuse(self, "numberOfComponents");
        return isRGB(self) ? 4 : 2;
    }

    static void getComponents(NSColor& self, CGFloat* components)
    {
        std::copy_n(self.components_, numberOfComponents(self), components);
    }

    static Ref<NSImage> patternImage(NSColor& self)
    {
        if (self.space_ != Space::pattern)
            refuse(self, "patternImage");
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
            { "colorSpaceName", imp<colorSpaceName> },
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
BRINDLE_RECORD(NSColor, Values)

// ---- deriving and drawing

template <> struct NSColor::Methods<struct Using> {

    using Makers = NSColor::Methods<struct Making>;
    using Read = NSColor::Methods<struct Values>;

    /// Answers the receiver's red, green and blue in any space that has them.
    static RGB rgbOf(const NSColor& color)
    {
        const CGFloat* c = color.components_;
        return Read::isWhite(color) ? RGB { c[0], c[0], c[0] } : RGB { c[0], c[1], c[2] };
    }

    static double whiteOf(const NSColor& color)
    {
        const RGB c = rgbOf(color);
        return Read::isWhite(color) ? c.red : c.red * 0.299 + c.green * 0.587 + c.blue * 0.114;
    }

    static Ref<NSColor> usingSpaceName(NSColor& self, NSString* name)
    {
        const Ref<NSString> own = self.colorSpaceName();
        NSString* const wanted = name ? name : NSCalibratedRGBColorSpace.get();
        if (own->isEqual(wanted))
            return &self;
        const Ref<NSColor> color = Read::resolved(self);
        if (color->space_ == Space::pattern)
            return nullptr;
        const RGB c = rgbOf(*color);
        const double alpha = color->alphaComponent();
        if (NSCalibratedRGBColorSpace->isEqual(wanted))
            return Makers::rgb(Space::calibratedRGB, c.red, c.green, c.blue, alpha);
        if (NSDeviceRGBColorSpace->isEqual(wanted))
            return Makers::rgb(Space::deviceRGB, c.red, c.green, c.blue, alpha);
        if (NSCalibratedWhiteColorSpace->isEqual(wanted))
            return Makers::white(Space::calibratedWhite, whiteOf(*color), alpha);
        if (NSDeviceWhiteColorSpace->isEqual(wanted))
            return Makers::white(Space::deviceWhite, whiteOf(*color), alpha);
        return nullptr;
    }

    static Ref<NSColor> withAlpha(NSColor& self, CGFloat alpha)
    {
        const Ref<NSColor> color = Read::resolved(self);
        if (color->space_ == Space::pattern)
            return color;
        const CGFloat* c = color->components_;
        return Read::isWhite(*color) ? Makers::white(color->space_, c[0], alpha)
                                     : Makers::rgb(color->space_, c[0], c[1], c[2], alpha);
    }

    static Ref<NSColor> blended(NSColor& self, CGFloat fraction, NSColor* other)
    {
        const Ref<NSColor> from = self.colorUsingColorSpaceName(NSCalibratedRGBColorSpace);
        const Ref<NSColor> to = maybe(other)->colorUsingColorSpaceName(NSCalibratedRGBColorSpace);
        if (!from || !to)
            return nullptr;
        const double part = unit(fraction);
        const auto mix
            = [&](int i) { return from->components_[i] * (1 - part) + to->components_[i] * part; };
        return Makers::rgb(Space::calibratedRGB, mix(0), mix(1), mix(2), mix(3));
    }

    static Ref<NSColor> highlight(NSColor& self, CGFloat level)
    {
        return self.blendedColorWithFraction_ofColor(level, NSColor::cls().whiteColor().get());
    }

    static Ref<NSColor> shadow(NSColor& self, CGFloat level)
    {
        return self.blendedColorWithFraction_ofColor(level, NSColor::cls().blackColor().get());
    }

    static Ref<class CGColor> quartzColor(NSColor& self)
    {
        const Ref<NSColor> color = Read::resolved(self);
        if (color->space_ == Space::pattern)
            return nullptr;
        const CGFloat* c = color->components_;
        if (color->space_ == Space::calibratedWhite)
            return Ref<class CGColor>::adopt(CGColorCreateGenericGray(c[0], c[1]));
        if (color->space_ == Space::calibratedRGB)
            return Ref<class CGColor>::adopt(CGColorCreateGenericRGB(c[0], c[1], c[2], c[3]));
        const auto space = Ref<CGColorSpace>::adopt(color->space_ == Space::deviceWhite
                ? CGColorSpaceCreateDeviceGray()
                : CGColorSpaceCreateDeviceRGB());
        return Ref<class CGColor>::adopt(CGColorCreate(space.get(), c));
    }

    static void setFill(NSColor& self)
    {
        CGContextSetFillColorWithColor(currentCGContext().get(), self.CGColor().get());
    }

    static void setStroke(NSColor& self)
    {
        CGContextSetStrokeColorWithColor(currentCGContext().get(), self.CGColor().get());
    }

    static void set(NSColor& self)
    {
        self.setFill();
        self.setStroke();
    }

    static void drawSwatch(NSColor& self, NSRect rect)
    {
        const GraphicsStateGuard saved;
        self.setFill();
        NSRectFillUsingOperation(rect, NSCompositeSourceOver);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "colorUsingColorSpaceName:", imp<usingSpaceName> },
            { "colorWithAlphaComponent:", imp<withAlpha> },
            { "blendedColorWithFraction:ofColor:", imp<blended> },
            { "highlightWithLevel:", imp<highlight> },
            { "shadowWithLevel:", imp<shadow> },
            { "CGColor", imp<quartzColor> },
            { "setFill", imp<setFill> },
            { "setStroke", imp<setStroke> },
            { "set", imp<set> },
            { "drawSwatchInRect:", imp<drawSwatch> },
        });
    }
};
BRINDLE_RECORD(NSColor, Using)

}
