// SPDX-License-Identifier: Apache-2.0
#include "Palette.h"

namespace gallery {

using namespace brindle;

namespace {

    Ref<NSColor> rgb(unsigned value, double alpha = 1)
    {
        const auto part = [value](unsigned shift) { return ((value >> shift) & 0xFF) / 255.0; };
        return NSColor::cls().colorWithCalibratedRed_green_blue_alpha(
            part(16), part(8), part(0), alpha);
    }

    Palette makeLight()
    {
        return { .window = rgb(0xF4F2EE),
            .sidebar = rgb(0xE9E6DF),
            .card = rgb(0xFFFFFF),
            .border = rgb(0x000000, 0.11),
            .text = rgb(0x24211C),
            .quietText = rgb(0x6B655B),
            .accent = rgb(0xB4531F),
            .accentText = rgb(0xFFFFFF),
            .soft = rgb(0xB4531F, 0.12),
            .grid = rgb(0x000000, 0.10),
            .selection = rgb(0x000000, 0.07),
            .codeText = rgb(0x1F7A3D),
            .codeClass = rgb(0x2456A6) };
    }

    Palette makeDark()
    {
        return { .window = rgb(0x1F1D1A),
            .sidebar = rgb(0x272420),
            .card = rgb(0x2C2925),
            .border = rgb(0xFFFFFF, 0.10),
            .text = rgb(0xF1EDE6),
            .quietText = rgb(0xA8A196),
            .accent = rgb(0xE98A4F),
            .accentText = rgb(0x221206),
            .soft = rgb(0xE98A4F, 0.18),
            .grid = rgb(0xFFFFFF, 0.10),
            .selection = rgb(0xFFFFFF, 0.08),
            .codeText = rgb(0x8CC98F),
            .codeClass = rgb(0x8FB8F0) };
    }

}

const Palette& palette()
{
    static const Palette light = makeLight();
    static const Palette dark = makeDark();
    return isDark() ? dark : light;
}

bool isDark() { return appkit::appearance() == appkit::Appearance::dark; }

void setDark(bool dark)
{
    appkit::setAppearance(dark ? appkit::Appearance::dark : appkit::Appearance::light);
}

}
