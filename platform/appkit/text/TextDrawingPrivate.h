// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "TextLayoutPrivate.h"

namespace brindle::layouts {

/// Where a container stands in the current context.
struct Place {
    NSPoint origin {}; // of its top left corner
    bool flipped = true; // y grows downward in the context too

    NSPoint at(double x, double y) const
    {
        return { origin.x + x, flipped ? origin.y + y : origin.y - y };
    }
    NSRect of(NSRect rect) const
    {
        const double top = flipped ? origin.y + rect.origin.y : origin.y - NSMaxY(rect);
        return NSMakeRect(origin.x + rect.origin.x, top, rect.size.width, rect.size.height);
    }
};

/// Draw a container's text that lies in a range, in the current context; nothing without one.
void drawBackgrounds(Layout& layout, NSRange range, std::size_t container, const Place& place);
void drawText(Layout& layout, NSRange range, std::size_t container, const Place& place);

}
