// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "quartz/layers/CALayer.h"

namespace brindle {

// One part of a layer's frame at a time, in points. Every setter reads `frame` and sends `setFrame:`, so that anchor
// point and transform count as they do there. An absent layer answers zeros.

inline CGPoint frameOrigin(To<CALayer> layer) { return layer.send<"frameOrigin", CGPoint>(); }
/// Moves the frame; its size stays.
inline void setFrameOrigin(To<CALayer> layer, CGPoint origin)
{
    layer.send<"setFrameOrigin:">(origin);
}
inline CGSize frameSize(To<CALayer> layer) { return layer.send<"frameSize", CGSize>(); }
/// Sizes the frame; its origin stays.
inline void setFrameSize(To<CALayer> layer, CGSize size) { layer.send<"setFrameSize:">(size); }
inline double frameOriginX(To<CALayer> layer) { return layer.send<"frameOriginX", double>(); }
inline void setFrameOriginX(To<CALayer> layer, double x) { layer.send<"setFrameOriginX:">(x); }
inline double frameOriginY(To<CALayer> layer) { return layer.send<"frameOriginY", double>(); }
inline void setFrameOriginY(To<CALayer> layer, double y) { layer.send<"setFrameOriginY:">(y); }
inline double frameSizeWidth(To<CALayer> layer) { return layer.send<"frameSizeWidth", double>(); }
inline void setFrameSizeWidth(To<CALayer> layer, double width)
{
    layer.send<"setFrameSizeWidth:">(width);
}
inline double frameSizeHeight(To<CALayer> layer) { return layer.send<"frameSizeHeight", double>(); }
inline void setFrameSizeHeight(To<CALayer> layer, double height)
{
    layer.send<"setFrameSizeHeight:">(height);
}

}
