// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSPopover.h"

/// The counterpart of `NSWindow+canBecomeKeyWindow.h`. It adds nothing: a popover's window may become key as it is.
