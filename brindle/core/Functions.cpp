// SPDX-License-Identifier: Apache-2.0

// The functions of this folder that are not overloaded, by name.

#include "core/BRGeometry.h"
#include "core/BlockAfterDelay.h"
#include "core/MethodPatching.h"
#include "runtime/Function.h"

namespace brindle {

BRINDLE_FUNCTION(BRUIScreen)
BRINDLE_FUNCTION(BRUIScreenHeight)
BRINDLE_FUNCTION(BRUIGetEvenNumberRowsForScreenFromUIStandardHeight)
BRINDLE_FUNCTION(BRUIGetEvenNumberRowsForScreenFromUIStandardHeightWithView)
BRINDLE_FUNCTION(BRUIGetEvenRowHeightForUIStandardHeightWithView)
BRINDLE_FUNCTION(BRRowHeightRoundToIntegralForScreenHeight)
BRINDLE_FUNCTION(DKCenterRect)
BRINDLE_FUNCTION(CGRectGetIntersectionPercent)
BRINDLE_FUNCTION(BRGetMidXRectAndSize)
BRINDLE_FUNCTION(BRGetMidYRectAndSize)
BRINDLE_FUNCTION(BRGetMidFloats)
BRINDLE_FUNCTION(BRRoundToNearestInterval)

BRINDLE_FUNCTION(XUISwizzleMethod)
BRINDLE_FUNCTION(XUIAliasMethod)
BRINDLE_FUNCTION(JU_swizzleInstanceMethod)

BRINDLE_FUNCTION_AS(
    blockAfterDelay, static_cast<void (*)(double, Closure<void()>*)>(&blockAfterDelay))

}
