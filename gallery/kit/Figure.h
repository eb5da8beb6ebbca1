// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSGeometry.h"
#include "foundation/NSString.h"

namespace gallery {

/// The height of what `drawFigure` draws.
constexpr double kFigureHeight = 44;

/// Draws what a card has come to at the top of a room, in large letters, and a line about it below.
void drawFigure(brindle::NSString* figure, brindle::NSString* note, brindle::NSRect room);

}
