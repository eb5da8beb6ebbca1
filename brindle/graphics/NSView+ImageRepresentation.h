// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSImage.h"
#include "appkit/NSView.h"

namespace brindle {

/// Answers a picture of the view as it draws itself now, also when it is hidden or was never shown. It is hidden, and has a
/// layer, as before afterwards.
/// - Raises: `NSImageCacheException` for a view without a size.
inline Ref<NSImage> imageRepresentation(To<NSView> view)
{
    return view.send<"imageRepresentation", Ref<NSImage>>();
}

}
