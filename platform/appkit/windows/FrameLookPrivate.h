// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSColor.h"
#include "quartz/CGContext.h"

namespace brindle {

/// The look of window frames: the frame view draws by it, and the buttons in title bars.
namespace frames {

    inline constexpr CGFloat kButtonWidth = 14;
    inline constexpr CGFloat kButtonHeight = 16;

    struct Shade {
        double red;
        double green;
        double blue;
        double alpha = 1;
    };

    // The frame's own colours, light and dark; everything else comes from the system colours.
    struct Look {
        Shade barTop;
        Shade barBottom;
        Shade barIdle; // of a window that is not main
        Shade line; // below the bar
        Shade border;
        Shade highlight; // just inside the top edge
        Shade title;
        Shade titleIdle;
        Shade disc;
        Shade discIdle;
        Shade glyph;
    };
    inline constexpr Look kLight {
        { 0.955, 0.957, 0.965 },
        { 0.880, 0.885, 0.900 },
        { 0.955, 0.957, 0.962 },
        { 0.700, 0.710, 0.735 },
        { 0.00, 0.01, 0.04, 0.28 },
        { 1, 1, 1, 0.75 },
        { 0.16, 0.17, 0.20 },
        { 0.55, 0.57, 0.61 },
        { 0.765, 0.775, 0.800 },
        { 0.865, 0.872, 0.885 },
        { 0.30, 0.32, 0.37 },
    };
    inline constexpr Look kDark {
        { 0.275, 0.282, 0.302 },
        { 0.218, 0.224, 0.243 },
        { 0.185, 0.190, 0.205 },
        { 0.098, 0.102, 0.114 },
        { 0, 0, 0, 0.65 },
        { 1, 1, 1, 0.10 },
        { 0.90, 0.91, 0.93 },
        { 0.54, 0.56, 0.60 },
        { 0.400, 0.412, 0.440 },
        { 0.275, 0.282, 0.300 },
        { 0.86, 0.87, 0.90 },
    };
    // Under the pointer a button takes its own colour.
    inline constexpr Shade kHovered[3]
        = { { 0.835, 0.290, 0.235 }, { 0.306, 0.447, 0.694 }, { 0.224, 0.545, 0.435 } };
    inline constexpr Shade kOnColour { 1, 1, 1 };

    inline const Look& look()
    {
        return appkit::appearance() == appkit::Appearance::dark ? kDark : kLight;
    }
    inline void fill(CGContext* c, Shade s)
    {
        CGContextSetRGBFillColor(c, s.red, s.green, s.blue, s.alpha);
    }
    inline void stroke(CGContext* c, Shade s)
    {
        CGContextSetRGBStrokeColor(c, s.red, s.green, s.blue, s.alpha);
    }
    inline Shade darker(Shade s)
    {
        return { s.red * 0.78, s.green * 0.78, s.blue * 0.78, s.alpha };
    }
    inline Shade mixed(Shade a, Shade b, double t)
    {
        return { a.red + (b.red - a.red) * t, a.green + (b.green - a.green) * t,
            a.blue + (b.blue - a.blue) * t, 1 };
    }

}

}
