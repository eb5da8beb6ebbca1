// SPDX-License-Identifier: Apache-2.0
#include "NSColor+DKAdditions.h"

#include "foundation/NSString.h"
#include "runtime/Table.h"

#include <cmath>
#include <cstdio>

namespace brindle {

namespace {

    struct Components {
        CGFloat values[4] {};
    };

    Ref<NSColor> calibrated(const NSColor* color)
    {
        return maybe(color)->colorUsingColorSpaceName(NSCalibratedRGBColorSpace);
    }

    // A colour that cannot be converted is nil, and reading nil leaves the zeroes.
    Components rgbaOf(const Ref<NSColor>& color)
    {
        Components c;
        auto& [red, green, blue, alpha] = c.values;
        maybe(color)->getRed_green_blue_alpha(&red, &green, &blue, &alpha);
        return c;
    }

    Components hsbaOf(const Ref<NSColor>& color)
    {
        Components c;
        auto& [hue, saturation, brightness, alpha] = c.values;
        maybe(color)->getHue_saturation_brightness_alpha(&hue, &saturation, &brightness, &alpha);
        return c;
    }

    Ref<NSColor> rgba(const Components& c)
    {
        const auto& [red, green, blue, alpha] = c.values;
        return NSColor::cls().colorWithCalibratedRed_green_blue_alpha(red, green, blue, alpha);
    }

    Ref<NSColor> hsba(CGFloat hue, CGFloat saturation, CGFloat brightness, CGFloat alpha)
    {
        return NSColor::cls().colorWithCalibratedHue_saturation_brightness_alpha(
            hue, saturation, brightness, alpha);
    }

    Components blend(const Components& own, const Components& other, const double* amounts)
    {
        if (!amounts)
            return own;
        Components mixed;
        for (int i = 0; i < 4; ++i)
            mixed.values[i] = own.values[i] * (1 - amounts[i]) + other.values[i] * amounts[i];
        return mixed;
    }

    constexpr double kHalves[] { 0.5, 0.5, 0.5, 0.5 };

    // A character counts its code up to "9" and ten from "a" on. Codes are signed: what is not ASCII is below "9".
    int low(signed char code) { return code <= '9' ? code : code - ('a' - 10); }
    int high(signed char code) { return 16 * low(code); }

    struct DKAdditions {

        // ---- greys

        static Ref<NSColor> white(Class& self) { return rgbGrey(self, 1); }
        static Ref<NSColor> black(Class& self) { return rgbGrey(self, 0); }
        static Ref<NSColor> veryLight(Class& self) { return rgbGrey(self, 0.9); }
        static Ref<NSColor> grey(Class& self, double grey)
        {
            return rgbGrey_withAlpha(self, grey, 1);
        }
        static Ref<NSColor> greyWithAlpha(Class&, double grey, double alpha)
        {
            return rgba({ { grey, grey, grey, alpha } });
        }
        static Ref<NSColor> greyLike(Class& self, NSColor* color, double alpha)
        {
            return rgbGrey_withAlpha(self, luminosity(color), alpha);
        }

        // ---- hexadecimal text

        static Ref<NSColor> fromHex(Class&, NSString* string)
        {
            if (maybe(string)->length() < 7)
                return nullptr;
            const std::string text = utf8Of(string->lowercaseString());
            const std::string_view upToEnd = text.c_str();
            const auto at = [upToEnd](std::size_t i) -> signed char {
                return i < upToEnd.size() ? static_cast<signed char>(upToEnd[i]) : '\0';
            };
            if (at(0) != '#')
                return nullptr;
            Components c { { 0, 0, 0, 1 } };
            for (std::size_t i = 0; i < 3 && at(1 + 2 * i); ++i)
                c.values[i] = (high(at(1 + 2 * i)) + low(at(2 + 2 * i))) / 255.0;
            return rgba(c);
        }

        static Ref<NSString> hex(NSColor& self)
        {
            const auto [red, green, blue, alpha] = rgbaOf(calibrated(&self)).values;
            const auto byte
                = [](CGFloat part) { return static_cast<std::uint8_t>(std::floor(part * 255)); };
            char text[8];
            std::snprintf(text, sizeof text, "#%02X%02X%02X", byte(red), byte(green), byte(blue));
            return stringFrom(std::string_view(text));
        }

        // ---- lightness

        static double light(NSColor& self)
        {
            const auto [red, green, blue, alpha] = rgbaOf(calibrated(&self)).values;
            return 0.212671 * red + 0.71516 * green + 0.072169 * blue;
        }
        static Ref<NSColor> likeGrey(NSColor& self)
        {
            return rgbGrey(NSColor::cls(), luminosity(self));
        }
        static Ref<NSColor> contrastingTo(Class&, NSColor* color)
        {
            return luminosity(color) >= 0.5 ? NSColor::cls().blackColor()
                                            : NSColor::cls().whiteColor();
        }
        static Ref<NSColor> contrasting(NSColor& self)
        {
            return contrastingColor(NSColor::cls(), &self);
        }
        static Ref<NSColor> inverted(NSColor& self)
        {
            const auto [red, green, blue, alpha] = rgbaOf(calibrated(&self)).values;
            return rgba({ { 1 - red, 1 - green, 1 - blue, alpha } });
        }
        static Ref<NSColor> towards(NSColor& self, const Ref<NSColor>& end, double level)
        {
            const double amounts[] { level, level, level, 0 };
            return colorWithRGBBlendFrom_blendingAmounts(self, end.get(), amounts);
        }
        static Ref<NSColor> lighter(NSColor& self, double level)
        {
            return towards(self, rgbWhite(NSColor::cls()), level);
        }
        static Ref<NSColor> darker(NSColor& self, double level)
        {
            return towards(self, rgbBlack(NSColor::cls()), level);
        }

        // ---- mixtures

        static Ref<NSColor> between(Class&, NSColor* from, NSColor* to, double value)
        {
            const Ref<NSColor> first = calibrated(from);
            const Ref<NSColor> second = calibrated(to);
            if (value <= 0)
                return first;
            if (value >= 1)
                return second;
            const double amounts[] { value, value, value, value };
            return rgba(blend(rgbaOf(first), rgbaOf(second), amounts));
        }
        static Ref<NSColor> onTheWay(NSColor& self, NSColor* to, double value)
        {
            return colorByInterpolatingFrom_to_atValue(NSColor::cls(), &self, to, value);
        }
        static Ref<NSColor> blendRGB(NSColor& self, NSColor* other, const double* amounts)
        {
            return rgba(blend(rgbaOf(calibrated(&self)), rgbaOf(calibrated(other)), amounts));
        }
        static Ref<NSColor> blendHSB(NSColor& self, NSColor* other, const double* amounts)
        {
            const Components mixed
                = blend(hsbaOf(calibrated(&self)), hsbaOf(calibrated(other)), amounts);
            const auto& [hue, saturation, brightness, alpha] = mixed.values;
            return hsba(hue, saturation, brightness, alpha);
        }
        static Ref<NSColor> averageRGB(NSColor& self, NSColor* other)
        {
            return colorWithRGBBlendFrom_blendingAmounts(self, other, kHalves);
        }
        static Ref<NSColor> averageHSB(NSColor& self, NSColor* other)
        {
            return colorWithHSBBlendFrom_blendingAmounts(self, other, kHalves);
        }
        static Ref<NSColor> inHueOf(NSColor& self, NSColor* other)
        {
            return hsba(maybe(other)->hueComponent(), self.saturationComponent(),
                self.brightnessComponent(), self.alphaComponent());
        }
        static Ref<NSColor> inHueAndSaturationOf(NSColor& self, NSColor* other)
        {
            return hsba(maybe(other)->hueComponent(), maybe(other)->saturationComponent(),
                self.brightnessComponent(), self.alphaComponent());
        }

        // ---- elsewhere

        static Ref<NSColor> ofWavelength(Class&, double) { return nullptr; }
        static Ref<CGColor> quartz(NSColor& self)
        {
            const Ref<NSColor> color = self.colorUsingColorSpaceName(NSDeviceRGBColorSpace);
            const CGColorSpaceRef space = CGColorSpaceCreateDeviceRGB();
            const CGColorRef made = CGColorCreate(space, rgbaOf(color).values);
            CGColorSpaceRelease(space);
            return Ref<CGColor>::adopt(made);
        }

        static void table(Builder& t)
        {
            t.classMethods({
                { "rgbWhite", imp<white> },
                { "rgbBlack", imp<black> },
                { "rgbGrey:", imp<grey> },
                { "rgbGrey:withAlpha:", imp<greyWithAlpha> },
                { "rgbGreyWithLuminosityFrom:withAlpha:", imp<greyLike> },
                { "veryLightGrey", imp<veryLight> },
                { "contrastingColor:", imp<contrastingTo> },
                { "colorWithWavelength:", imp<ofWavelength> },
                { "colorWithHexString:", imp<fromHex> },
                { "colorByInterpolatingFrom:to:atValue:", imp<between> },
            });
            t.methods({
                { "colorWithHueFrom:", imp<inHueOf> },
                { "colorWithHueAndSaturationFrom:", imp<inHueAndSaturationOf> },
                { "colorWithRGBAverageFrom:", imp<averageRGB> },
                { "colorWithHSBAverageFrom:", imp<averageHSB> },
                { "colorWithRGBBlendFrom:blendingAmounts:", imp<blendRGB> },
                { "colorWithHSBBlendFrom:blendingAmounts:", imp<blendHSB> },
                { "luminosity", imp<light> },
                { "colorWithLuminosity", imp<likeGrey> },
                { "contrastingColor", imp<contrasting> },
                { "invertedColor", imp<inverted> },
                { "lighterColorWithLevel:", imp<lighter> },
                { "darkerColorWithLevel:", imp<darker> },
                { "interpolatedColorToColor:atValue:", imp<onTheWay> },
                { "hexString", imp<hex> },
                { "newQuartzColor", imp<quartz> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSColor, DKAdditions)

}
