// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSBitmapImageRep.h"
#include "appkit/NSImage.h"

namespace brindle {

/// Answers a new image of the same size in which every colour is 1 minus itself; alpha stays.
inline Ref<NSImage> invertedImage(To<NSImage> image)
{
    return image.send<"invertedImage", Ref<NSImage>>();
}
/// Draws the image into a bitmap of its size in whole points, rounded down: R, G, B, A, 8 bits each.
/// - Nil: when it is less than a point wide or high.
inline Ref<NSBitmapImageRep> bitmapImageRepresentation(To<NSImage> image)
{
    return image.send<"bitmapImageRepresentation", Ref<NSBitmapImageRep>>();
}

}
