// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSImage.h"

namespace brindle {

class NSBundle;

/// Answers a new image from a bundle's resources.
/// - Nil: when the bundle has none of that name.
inline Ref<NSImage> imageNamed_fromBundle(To<Class> cls, NSString* name, NSBundle* bundle)
{
    return cls.send<"imageNamed:fromBundle:", Ref<NSImage>>(name, bundle);
}
/// The same from the framework's own bundle.
inline Ref<NSImage> imageNamedFromBrindle(To<Class> cls, NSString* name)
{
    return cls.send<"imageNamedFromBrindle:", Ref<NSImage>>(name);
}
/// Answers a new image of another size, drawn smoothly. The receiver has the new size afterwards too.
/// - Nil: when it is not valid; the line "Invalid Image" is logged then.
inline Ref<NSImage> resizeImageToNewSize(To<NSImage> image, NSSize size)
{
    return image.send<"resizeImageToNewSize:", Ref<NSImage>>(size);
}

}
