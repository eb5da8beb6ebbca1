// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSImage.h"

namespace gallery {

/// How a picture stands. Content modes take no notice of a flipped view, so one for such a view stands on its head.
enum class Stand { upright, forFlippedViews };

/// Answers hills under a sun, drawn anew in every size: opaque.
brindle::Ref<brindle::NSImage> landscape(brindle::NSSize size, Stand stand = Stand::upright);
/// Answers a balloon with nothing round it.
brindle::Ref<brindle::NSImage> balloon(brindle::NSSize size, Stand stand = Stand::upright);

}
