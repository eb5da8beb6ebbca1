// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "../CGGeometry.h"
#include "runtime/Export.h"

/// Resizing rectangles with what they lie in, shared by views and layers.

namespace brindle::quartz {

/// Answers a frame after what it lies in has changed its size. The difference goes in equal parts to all that the mask
/// names on an axis.
/// - mask: 1 min-x margin, 2 width, 4 max-x margin, 8 min-y margin, 16 height, 32 max-y margin.
BRINDLE_EXPORT CGRect resizedFrame(CGRect frame, CGSize from, CGSize to, NSUInteger mask);

/// Where a row of automatic resizes started. Each step is computed from there, so that no rounding adds up and a frame
/// that was squeezed to nothing comes back.
class BRINDLE_EXPORT ResizeSeries {
public:
    /// Answers the next frame. A frame that is not what the last step made was set by somebody else: it starts anew.
    CGRect next(CGRect frame, CGSize from, CGSize to, NSUInteger mask);
    /// Tells what became of the last answer.
    void settle(CGRect frame) { lastFrame_ = frame; }

private:
    CGRect startFrame_;
    CGSize startSize_;
    CGRect lastFrame_;
    CGSize lastSize_;
    bool started_ = false;
};

}
