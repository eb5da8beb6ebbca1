// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSWindow.h"

// A window whose content is all that a test cares for.

namespace brindle {

inline constexpr NSWindowStyleMask kOrdinary = NSTitledWindowMask | NSClosableWindowMask
    | NSMiniaturizableWindowMask | NSResizableWindowMask;

inline Ref<NSWindow> windowOf(NSRect content, NSWindowStyleMask style = NSBorderlessWindowMask)
{
    return alloc<NSWindow>()->initWithContentRect_styleMask_backing_defer(
        content, style, NSBackingStoreBuffered, true);
}

}
