// SPDX-License-Identifier: Apache-2.0
#include "NSColor+ColorOnBackground.h"

#include "runtime/Table.h"

#include <cmath>

namespace brindle {

namespace {

    struct ColorOnBackground {

        static Ref<NSColor> whiteOrBlack(NSColor& self)
        {
            const Ref<NSColor> ground = self.colorUsingColorSpaceName(NSCalibratedRGBColorSpace);
            // Single precision: what is nearer to a half than a float tells counts as a half.
            const float brightness = static_cast<float>(maybe(ground)->brightnessComponent());
            return NSColor::cls().colorWithCalibratedHue_saturation_brightness_alpha(
                0, 0, 1 - std::round(brightness), 1);
        }

        static void table(Builder& t)
        {
            t.methods({ { "whiteOrBlackOnBackgroundColor", imp<whiteOrBlack> } });
        }
    };

}
BRINDLE_EXTENSION(NSColor, ColorOnBackground)

}
