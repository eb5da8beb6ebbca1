// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSColor.h"

namespace gallery {

/// The colours of one appearance. All text on its ground has a contrast of at least 4.5 to 1.
struct Palette {
    brindle::Ref<brindle::NSColor> window, sidebar, card, border, text, quietText, accent,
        accentText, soft, grid, selection, codeText, codeClass;
};

/// Answers the colours of the appearance in force.
const Palette& palette();
bool isDark();
/// Chooses light or dark for the whole program; windows must be drawn again.
void setDark(bool dark);

}
