// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSFont.h"

namespace brindle {

/// Answers the height of a line of the font, as a layout manager gives it, and 1 point more.
inline double fontHeight(To<NSFont> font) { return font.send<"fontHeight", double>(); }

}
