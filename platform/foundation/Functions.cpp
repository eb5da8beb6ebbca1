// SPDX-License-Identifier: Apache-2.0

// The functions of this folder that are not overloaded, by name.

#include "foundation/Dispatch.h"
#include "foundation/NSBeep.h"
#include "foundation/NSGeometry.h"
#include "foundation/NSLog.h"
#include "foundation/NSObjCRuntime.h"
#include "foundation/NSString.h"
#include "foundation/Pages.h"
#include "runtime/Function.h"

namespace brindle {

BRINDLE_FUNCTION(dispatch_time)
BRINDLE_FUNCTION(dispatch_get_main_queue)
BRINDLE_FUNCTION(dispatch_get_global_queue)
BRINDLE_FUNCTION(dispatch_queue_create)
BRINDLE_FUNCTION(dispatch_queue_get_label)
BRINDLE_FUNCTION(dispatch_sync)
BRINDLE_FUNCTION(dispatch_after)
BRINDLE_FUNCTION(dispatch_barrier_async)
BRINDLE_FUNCTION(dispatch_barrier_sync)
BRINDLE_FUNCTION(dispatch_group_create)
BRINDLE_FUNCTION(dispatch_group_async)
BRINDLE_FUNCTION(dispatch_group_enter)
BRINDLE_FUNCTION(dispatch_group_leave)
BRINDLE_FUNCTION(dispatch_group_notify)
BRINDLE_FUNCTION(dispatch_group_wait)
BRINDLE_FUNCTION(dispatch_semaphore_create)
BRINDLE_FUNCTION(dispatch_semaphore_wait)
BRINDLE_FUNCTION(dispatch_semaphore_signal)

BRINDLE_FUNCTION(NSBeep)

BRINDLE_FUNCTION(NSMakePoint)
BRINDLE_FUNCTION(NSMakeSize)
BRINDLE_FUNCTION(NSMakeRect)
BRINDLE_FUNCTION(NSMakeRange)
BRINDLE_FUNCTION(NSMinX)
BRINDLE_FUNCTION(NSMinY)
BRINDLE_FUNCTION(NSMaxX)
BRINDLE_FUNCTION(NSMaxY)
BRINDLE_FUNCTION(NSMidX)
BRINDLE_FUNCTION(NSMidY)
BRINDLE_FUNCTION(NSWidth)
BRINDLE_FUNCTION(NSHeight)
BRINDLE_FUNCTION(NSEqualPoints)
BRINDLE_FUNCTION(NSEqualSizes)
BRINDLE_FUNCTION(NSEqualRects)
BRINDLE_FUNCTION(NSEqualRanges)
BRINDLE_FUNCTION(NSMaxRange)
BRINDLE_FUNCTION(NSLocationInRange)
BRINDLE_FUNCTION(NSIsEmptyRect)
BRINDLE_FUNCTION(NSInsetRect)
BRINDLE_FUNCTION(NSOffsetRect)
BRINDLE_FUNCTION(NSPointInRect)
BRINDLE_FUNCTION(NSMouseInRect)
BRINDLE_FUNCTION(NSIntersectsRect)
BRINDLE_FUNCTION(NSContainsRect)
BRINDLE_FUNCTION(NSIntersectionRect)
BRINDLE_FUNCTION(NSUnionRect)
BRINDLE_FUNCTION(NSIntegralRect)
BRINDLE_FUNCTION(NSDivideRect)
BRINDLE_FUNCTION(NSIntersectionRange)
BRINDLE_FUNCTION(NSUnionRange)
BRINDLE_FUNCTION(NSStringFromPoint)
BRINDLE_FUNCTION(NSStringFromSize)
BRINDLE_FUNCTION(NSStringFromRect)
BRINDLE_FUNCTION(NSStringFromRange)
BRINDLE_FUNCTION(NSPointFromString)
BRINDLE_FUNCTION(NSSizeFromString)
BRINDLE_FUNCTION(NSRectFromString)
BRINDLE_FUNCTION(NSRangeFromString)

BRINDLE_FUNCTION(NSStringFromClass)
BRINDLE_FUNCTION(NSClassFromString)
BRINDLE_FUNCTION(NSStringFromSelector)
BRINDLE_FUNCTION(NSSelectorFromString)
BRINDLE_FUNCTION(NSStringFromProtocol)
BRINDLE_FUNCTION(NSProtocolFromString)

BRINDLE_FUNCTION(NSPageSize)
BRINDLE_FUNCTION(NSRoundUpToMultipleOfPageSize)
BRINDLE_FUNCTION(NSRoundDownToMultipleOfPageSize)
BRINDLE_FUNCTION(NSAllocateMemoryPages)
BRINDLE_FUNCTION(NSDeallocateMemoryPages)
BRINDLE_FUNCTION(NSCopyMemoryPages)

BRINDLE_FUNCTION_AS(
    dispatch_async, static_cast<void (*)(dispatch_queue_t, const Block<void()>&)>(&dispatch_async))
BRINDLE_FUNCTION_AS(dispatch_apply,
    static_cast<void (*)(std::size_t, dispatch_queue_t, const Block<void(std::size_t)>&)>(
        &dispatch_apply))

namespace {

    void logText(NSString* text) { NSLog("%@"_ns, text); }

}
BRINDLE_FUNCTION_AS(NSLog, &logText)

}
