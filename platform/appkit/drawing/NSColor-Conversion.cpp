// SPDX-License-Identifier: Apache-2.0
#include "NSColorPrivate.h"
#include "foundation/NSString.h"
#include "runtime/Table.h"

#include <array>
#include <optional>

namespace brindle {

template <> struct NSColor::Methods<struct Conversion> {

    using Parts = NSColor::Methods<struct Parts>;

    // In the order of the spaces.
    static std::array<NSString*, 6> spaceNames()
    {
        return { NSCalibratedRGBColorSpace, NSDeviceRGBColorSpace, NSCalibratedWhiteColorSpace,
            NSDeviceWhiteColorSpace, NSNamedColorSpace, NSPatternColorSpace };
    }
    static std::optional<Space> spaceNamed(const NSString* name)
    {
        const auto names = spaceNames();
        auto found = std::find(names.begin(), names.end(), name);
        if (found == names.end())
            found = std::find_if(names.begin(), names.end(),
                [name](const NSString* each) { return each->isEqualToString(name); });
        if (found == names.end())
            return std::nullopt;
        return static_cast<Space>(found - names.begin());
    }

    static Ref<NSString> colorSpaceName(NSColor& self)
    {
        return spaceNames()[static_cast<std::size_t>(self.space_)];
    }

    // The weights of ITU-R BT.601. Greys keep their number to the last bit, which the weights' rounding would change.
    static double whiteOf(const colors::RGB& c)
    {
        return c.spread() == 0 ? c.red : c.red * 0.299 + c.green * 0.587 + c.blue * 0.114;
    }

    static Ref<NSColor> usingSpaceName(NSColor& self, NSString* name)
    {
        const std::optional<Space> wanted = name ? spaceNamed(name) : Space::calibratedRGB;
        if (wanted == self.space_)
            return &self;
        const Ref<NSColor> color = Parts::resolved(self);
        if (!wanted || color->space_ == Space::pattern)
            return nullptr;
        if (wanted == color->space_)
            return color;
        const colors::RGB c = Parts::rgbOf(*color);
        const CGFloat alpha = Parts::alphaOf(*color);
        switch (*wanted) {
        case Space::calibratedRGB:
        case Space::deviceRGB:
            return Parts::rgb(*wanted, c, alpha);
        case Space::calibratedWhite:
        case Space::deviceWhite:
            return Parts::white(*wanted, whiteOf(c), alpha);
        default:
            return nullptr;
        }
    }

    static Ref<NSColor> withAlpha(NSColor& self, CGFloat alpha)
    {
        const Ref<NSColor> color = Parts::resolved(self);
        if (color->space_ == Space::pattern)
            return color;
        return Parts::isWhite(*color) ? Parts::white(color->space_, color->components_[0], alpha)
                                      : Parts::rgb(color->space_, Parts::rgbOf(*color), alpha);
    }

    static Ref<NSColor> blended(NSColor& self, CGFloat fraction, NSColor* other)
    {
        const Ref<NSColor> from = self.colorUsingColorSpaceName(NSCalibratedRGBColorSpace);
        const Ref<NSColor> to = maybe(other)->colorUsingColorSpaceName(NSCalibratedRGBColorSpace);
        if (!from || !to)
            return nullptr;
        const double part = colors::unit(fraction);
        const auto mix
            = [&](int i) { return from->components_[i] * (1 - part) + to->components_[i] * part; };
        return Parts::rgb(Space::calibratedRGB, { mix(0), mix(1), mix(2) }, mix(3));
    }
    static Ref<NSColor> highlight(NSColor& self, CGFloat level)
    {
        return self.blendedColorWithFraction_ofColor(level, NSColor::cls().highlightColor().get());
    }
    static Ref<NSColor> shadow(NSColor& self, CGFloat level)
    {
        return self.blendedColorWithFraction_ofColor(level, NSColor::cls().shadowColor().get());
    }

    static void table(Builder& t)
    {
        t.methods({
            { "colorSpaceName", imp<colorSpaceName> },
            { "colorUsingColorSpaceName:", imp<usingSpaceName> },
            { "colorWithAlphaComponent:", imp<withAlpha> },
            { "blendedColorWithFraction:ofColor:", imp<blended> },
            { "highlightWithLevel:", imp<highlight> },
            { "shadowWithLevel:", imp<shadow> },
        });
    }
};
BRINDLE_RECORD(NSColor, Conversion)

}
