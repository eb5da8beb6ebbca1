// SPDX-License-Identifier: Apache-2.0

// The functions of this folder that are not overloaded, by name.

#include "appkit/NSGraphics.h"
#include "runtime/Function.h"

namespace brindle {

BRINDLE_FUNCTION(NSRectFill)
BRINDLE_FUNCTION(NSRectFillUsingOperation)
BRINDLE_FUNCTION(NSRectFillList)
BRINDLE_FUNCTION(NSRectFillListUsingOperation)
BRINDLE_FUNCTION(NSFrameRect)
BRINDLE_FUNCTION(NSFrameRectWithWidth)
BRINDLE_FUNCTION(NSFrameRectWithWidthUsingOperation)
BRINDLE_FUNCTION(NSRectClip)
BRINDLE_FUNCTION(NSRectClipList)
BRINDLE_FUNCTION(NSEraseRect)
BRINDLE_FUNCTION(NSSetFocusRingStyle)
BRINDLE_FUNCTION(NSRectFillListWithColors)
BRINDLE_FUNCTION(NSRectFillListWithColorsUsingOperation)
BRINDLE_FUNCTION(NSRectFillListWithGrays)
BRINDLE_FUNCTION(NSDottedFrameRect)
BRINDLE_FUNCTION(NSDrawTiledRects)
BRINDLE_FUNCTION(NSDrawThreePartImage)
BRINDLE_FUNCTION(NSDrawNinePartImage)

}
