// SPDX-License-Identifier: Apache-2.0
#include "graphics/NSColor+DKAdditions.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#include "foundation/NSString.h"
#include "support/Measure.h"
#include "support/Topics.h"

namespace brindle::bench {

namespace {

    // The floors: the same arithmetic on four doubles, in functions that the compiler does not see into.
    using Parts = std::array<double, 4>;

    Parts bounded(Parts parts)
    {
        for (double& part : parts)
            part = part > 0 ? std::min(part, 1.0) : 0;
        return parts;
    }
    [[gnu::noinline]] Parts parse(std::string_view text)
    {
        const auto low = [](char c) { return c <= '9' ? c - '0' : (c | 0x20) - 87; };
        Parts parts { 0, 0, 0, 1 };
        for (std::size_t i = 0; i < 3; ++i)
            parts[i] = (16 * low(text[1 + 2 * i]) + low(text[2 + 2 * i])) / 255.0;
        return bounded(parts);
    }
    [[gnu::noinline]] Parts blend(const Parts& a, const Parts& b, const Parts& amounts)
    {
        Parts mixed {};
        for (std::size_t i = 0; i < 4; ++i)
            mixed[i] = a[i] * (1 - amounts[i]) + b[i] * amounts[i];
        return bounded(mixed);
    }
    [[gnu::noinline]] Parts greyed(const Parts& white)
    {
        return bounded({ white[0], white[0], white[0], white[1] });
    }
    [[gnu::noinline]] double lightness(const Parts& c)
    {
        return 0.212671 * c[0] + 0.71516 * c[1] + 0.072169 * c[2];
    }

    // What the floors read, so that the compiler cannot work the answers out beforehand.
    Parts first { 0.9, 0.25, 0.1, 1 };
    Parts second { 0.2, 0.5, 0.8, 0.5 };
    Parts amounts { 0.5, 0.25, 0.75, 1 };

    template <class F> Sample onHiddenParts(F operation)
    {
        return repeated([operation](std::size_t) {
            for (const Parts* parts : { &first, &second, &amounts })
                keep(parts);
            operation();
        });
    }

    Ref<NSColor> colorOf(const Parts& c)
    {
        return NSColor::cls().colorWithCalibratedRed_green_blue_alpha(c[0], c[1], c[2], c[3]);
    }

    Pair parsing()
    {
        const std::string_view text = "#AABBCC";
        const Ref<NSString> string = stringFrom(text);
        return { repeated([string](std::size_t) {
                    keep(colorWithHexString(NSColor::cls(), string.get()).get());
                }),
            repeated([text](std::size_t) {
                std::string_view hidden = text;
                keep(hidden.data());
                keep(parse(hidden)[0]);
            }) };
    }
    Pair formatting()
    {
        const Ref<NSColor> color = colorOf(first);
        return { repeated([color](std::size_t) { keep(hexString(color).get()); }),
            onHiddenParts([] {
                char text[8];
                std::snprintf(text, sizeof text, "#%02X%02X%02X", int(first[0] * 255),
                    int(first[1] * 255), int(first[2] * 255));
                keep(text[1]);
            }) };
    }
    Pair blending()
    {
        const Ref<NSColor> own = colorOf(first);
        const Ref<NSColor> other = colorOf(second);
        return {
            repeated([own, other](std::size_t) {
                keep(colorWithRGBBlendFrom_blendingAmounts(own, other.get(), amounts.data()).get());
            }),
            onHiddenParts([] { keep(blend(first, second, amounts)[0]); })
        };
    }
    Pair converting()
    {
        const Ref<NSColor> grey = NSColor::cls().grayColor();
        return { repeated([grey](std::size_t) {
                    keep(grey->colorUsingColorSpaceName(NSCalibratedRGBColorSpace).get());
                }),
            onHiddenParts([] { keep(greyed(second)[0]); }) };
    }
    Pair weighing()
    {
        const Ref<NSColor> color = colorOf(first);
        return { repeated([color](std::size_t) { keep(luminosity(color)); }),
            onHiddenParts([] { keep(lightness(first)); }) };
    }
    Pair making()
    {
        return { repeated([](std::size_t) { keep(colorOf(first).get()); }),
            onHiddenParts([] { keep(bounded(first)[0]); }) };
    }

}

void addColours(Plan& plan)
{
    plan.time("colour: make one of four doubles", kNoBudget, making);
    plan.time("colour: read \"#AABBCC\"", kNoBudget, parsing);
    plan.time("colour: write as hexadecimal text", kNoBudget, formatting);
    plan.time("colour: blend two by component", kNoBudget, blending);
    plan.time("colour: convert white to RGB", kNoBudget, converting);
    plan.time("colour: luminosity", kNoBudget, weighing);
}

}
