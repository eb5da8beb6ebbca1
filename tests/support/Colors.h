// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdio>
#include <string>

#include "appkit/NSColor.h"

// Colours in tests: made shortly, compared as text that tells every double apart.

namespace brindle {

/// Calibrated RGB.
inline Ref<NSColor> rgb(double red, double green, double blue, double alpha = 1)
{
    return NSColor::cls().colorWithCalibratedRed_green_blue_alpha(red, green, blue, alpha);
}
/// Calibrated RGB, made from hue, saturation and brightness.
inline Ref<NSColor> hsb(double hue, double saturation, double brightness, double alpha = 1)
{
    return NSColor::cls().colorWithCalibratedHue_saturation_brightness_alpha(
        hue, saturation, brightness, alpha);
}

/// Answers red, green, blue and alpha of a colour in an RGB space, each as short as it stays exact: "0.5 1 0 1"; "(nil)" for
/// nil. Numbers that differ in the last bit read differently.
inline std::string rgbaText(const Ref<NSColor>& color)
{
    if (!color)
        return "(nil)";
    std::array<CGFloat, 4> parts {};
    color->getRed_green_blue_alpha(&parts[0], &parts[1], &parts[2], &parts[3]);
    std::string text;
    for (const CGFloat part : parts) {
        char number[32];
        for (int digits = 1; digits <= 17; ++digits) {
            std::snprintf(number, sizeof number, "%.*g", digits, part);
            if (std::stod(number) == part)
                break;
        }
        text += (text.empty() ? "" : " ") + std::string(number);
    }
    return text;
}

}
