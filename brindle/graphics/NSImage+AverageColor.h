// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSColor.h"
#include "appkit/NSImage.h"

namespace brindle {

/// Answers the mean of all pixels of a picture, which is drawn into one pixel for it.
///
/// That pixel's components, already multiplied by its alpha, are multiplied by it once more; of a picture that is transparent all
/// over they are taken as they are, with alpha 0.
inline Ref<NSColor> averageColorFromCGImage(To<NSObject> object, CGImageRef picture)
{
    return object.send<"averageColorFromCGImage:", Ref<NSColor>>(picture);
}
/// The same for an image.
inline Ref<NSColor> averageColor(To<NSImage> image)
{
    return image.send<"averageColor", Ref<NSColor>>();
}

}
