// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSColor.h"

#include "NSColorPrivate.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSColor::Methods<struct Making> {

    using Parts = NSColor::Methods<struct Parts>;

    template <Space S>
    static Ref<NSColor> withRGB(Class&, CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha)
    {
        return Parts::rgb(S, { red, green, blue }, alpha);
    }

    template <Space S>
    static Ref<NSColor> withHSB(
        Class&, CGFloat hue, CGFloat saturation, CGFloat brightness, CGFloat alpha)
    {
        using colors::unit;
        return Parts::rgb(S, colors::rgbFrom(unit(hue), unit(saturation), unit(brightness)), alpha);
    }

    template <Space S> static Ref<NSColor> withWhite(Class&, CGFloat shade, CGFloat alpha)
    {
        return Parts::white(S, shade, alpha);
    }

    static Ref<NSColor> withCGColor(Class&, class CGColor* color)
    {
        if (!color || color->pattern())
            return nullptr;
        const CGFloat* c = color->components();
        const auto kind = color->space()->kind();
        if (color->componentCount() == 2)
            return Parts::white(kind == CGColorSpace::Kind::deviceGray ? Space::deviceWhite
                                                                       : Space::calibratedWhite,
                c[0], c[1]);
        return Parts::rgb(
            kind == CGColorSpace::Kind::deviceRGB ? Space::deviceRGB : Space::calibratedRGB,
            { c[0], c[1], c[2] }, c[3]);
    }

    static Ref<NSColor> withPatternImage(Class&, NSImage* image)
    {
        if (!image)
            return nullptr;
        Ref<NSColor> color = Parts::plain(Space::pattern);
        color->pattern_ = reinterpret_cast<NSObject*>(image);
        return color;
    }

    // Constants are made once and live as long as the process.

    template <int White, int Whole, int Alpha> static Ref<NSColor> shade(Class&)
    {
        static NSColor* const color
            = Parts::white(Space::calibratedWhite, static_cast<double>(White) / Whole, Alpha)
                  .leak();
        return color;
    }

    // Tenths of red, green and blue.
    template <int Red, int Green, int Blue> static Ref<NSColor> primary(Class&)
    {
        static NSColor* const color
            = Parts::rgb(Space::calibratedRGB, { Red / 10.0, Green / 10.0, Blue / 10.0 }, 1).leak();
        return color;
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
    }
};
BRINDLE_RECORD(NSColor, Making)

}
