// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSColor.h"

namespace brindle {

/// Answers the colour to draw with on a ground of this colour, opaque RGB: black on a brightness of 0.5 or more, else white.
/// Brightness is the greatest component, unlike the luminosity that `contrastingColor` asks: on pure blue this is black.
/// - Nil: a colour that cannot be converted to calibrated RGB counts as dark.
inline Ref<NSColor> whiteOrBlackOnBackgroundColor(To<NSColor> background)
{
    return background.send<"whiteOrBlackOnBackgroundColor", Ref<NSColor>>();
}

}
