// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "CGContext.h"

/// Questions about a context's state, and the focus ring, which the layers above Quartz need.

namespace brindle::quartz {

BRINDLE_EXPORT CGBlendMode blendMode(CGContextRef context);
BRINDLE_EXPORT bool shouldAntialias(CGContextRef context);

/// Whether shapes get a ring around them: instead of their own paint, below it or above it.
enum class FocusRing { none, only, below, above };

/// Draws a ring around each shape filled from now on, until the state is restored.
BRINDLE_EXPORT void setFocusRing(CGContextRef context, FocusRing ring, CGColorRef color);

}
