// SPDX-License-Identifier: Apache-2.0
#include "Autoresizing.h"

namespace brindle::quartz {

namespace {

    // One axis: `low` and `high` are the margins' bits, `extent` that of the size.
    void stretch(CGFloat& origin, CGFloat& size, CGFloat difference, NSUInteger mask,
        NSUInteger low, NSUInteger extent, NSUInteger high)
    {
        const int parts = ((mask & low) != 0) + ((mask & extent) != 0) + ((mask & high) != 0);
        if (parts == 0)
            return;
        const CGFloat share = difference / parts;
        if (mask & low)
            origin += share;
        if (mask & extent)
            size += share;
    }

}

CGRect resizedFrame(CGRect frame, CGSize from, CGSize to, NSUInteger mask)
{
    stretch(frame.origin.x, frame.size.width, to.width - from.width, mask, 1, 2, 4);
    stretch(frame.origin.y, frame.size.height, to.height - from.height, mask, 8, 16, 32);
    return frame;
}

CGRect ResizeSeries::next(CGRect frame, CGSize from, CGSize to, NSUInteger mask)
{
    if (!started_ || lastFrame_ != frame || lastSize_ != from) {
        startFrame_ = frame;
        startSize_ = from;
        started_ = true;
    }
    lastSize_ = to;
    return resizedFrame(startFrame_, startSize_, to, mask);
}

}
