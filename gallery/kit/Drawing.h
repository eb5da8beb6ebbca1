// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSColor.h"
#include "appkit/NSFont.h"
#include "foundation/NSString.h"

namespace gallery {

enum class Style { title, heading, body, caption, group, figure, code };

/// Answers the font of a style.
brindle::Ref<brindle::NSFont> fontOf(Style style);

/// Draws one line with its top left corner at a place of a flipped view.
void drawText(
    brindle::NSString* text, brindle::NSPoint place, Style style, brindle::NSColor* color);
/// Draws one line, cut off with an ellipsis where it is wider than this.
void drawFitted(brindle::NSString* text, brindle::NSPoint place, double width, Style style,
    brindle::NSColor* color);
/// Answers the size of one line.
brindle::NSSize sizeOf(brindle::NSString* text, Style style);
/// Draws one line in the middle of a rectangle.
void drawCentered(
    brindle::NSString* text, brindle::NSRect rect, Style style, brindle::NSColor* color);

/// Writes a caption at the bottom of a rectangle and answers the room above it.
brindle::NSRect labelled(brindle::NSString* label, brindle::NSRect cell);

void fillRounded(brindle::NSRect rect, double radius, brindle::NSColor* color);
/// Strokes a hairline just inside the rectangle's edge.
void strokeRounded(brindle::NSRect rect, double radius, brindle::NSColor* color);
void fill(brindle::NSRect rect, brindle::NSColor* color);
/// Draws an arrow of one straight line with its head at the end.
void drawArrow(brindle::NSPoint from, brindle::NSPoint to, brindle::NSColor* color);

/// Answers a rectangle without margins of this width on all sides.
inline brindle::NSRect inset(brindle::NSRect r, double margin)
{
    return brindle::NSMakeRect(r.origin.x + margin, r.origin.y + margin, r.size.width - 2 * margin,
        r.size.height - 2 * margin);
}

}
