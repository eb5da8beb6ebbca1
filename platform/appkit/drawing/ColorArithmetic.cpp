// SPDX-License-Identifier: Apache-2.0
#include "NSColorPrivate.h"

namespace brindle::colors {

double RGB::hue() const
{
    const double high = brightness();
    const double range = spread();
    if (range <= 0)
        return 0;
    double sector = 0;
    if (high == red)
        sector = (green - blue) / range;
    else if (high == green)
        sector = 2 + (blue - red) / range;
    else
        sector = 4 + (red - green) / range;
    return (sector < 0 ? sector + 6 : sector) / 6;
}

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

}
