// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSImage.h"

namespace brindle {

class NSColor;

/// Answers a copy whose covered pixels have the colour; a translucent colour mixes with what is there. Alpha stays.
/// - Nil: a nil colour answers the copy as it is.
inline Ref<NSImage> imageTintedWithColor(To<NSImage> image, NSColor* color)
{
    return image.send<"imageTintedWithColor:", Ref<NSImage>>(color);
}

}
