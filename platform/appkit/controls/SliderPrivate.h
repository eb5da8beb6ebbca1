// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSSlider.h"

namespace brindle {

/// What the files of sliders do with each other.
struct SliderAccess {
    static bool& focusedByPointer(NSSlider& slider) { return slider.focusedByPointer_; }
    /// Answers a value that tracking and keys may set: one of the marks where only they are allowed.
    static double allowed(NSSliderCell& cell, double value)
    {
        return cell.allowsTickMarkValuesOnly() ? cell.closestTickMarkValueToValue(value) : value;
    }
};

}
