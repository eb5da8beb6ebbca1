// SPDX-License-Identifier: Apache-2.0
#include "Figure.h"

#include "Drawing.h"
#include "Palette.h"

namespace gallery {

using namespace brindle;

void drawFigure(NSString* figure, NSString* note, NSRect room)
{
    const Palette& colors = palette();
    const double width = room.size.width;
    drawFitted(figure, room.origin, width, Style::figure, colors.accent.get());
    drawFitted(
        note, { room.origin.x, room.origin.y + 28 }, width, Style::caption, colors.quietText.get());
}

}
