// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSWindow.h"
#include "kit/Card.h"
#include "kit/Chip.h"

namespace gallery {

/// Opens windows of all kinds, and the about panel.
class WindowKindsCard : public GalleryCard {
    BRINDLE_OBJECT(WindowKindsCard, GalleryCard)

private:
    brindle::Ref<GalleryChip> titled_, borderless_, panel_, bare_, about_, close_;
    brindle::NSInteger opened_ = 0;
};

/// The windows that are open, front to back, and which of them is key and main.
class WindowListCard : public GalleryCard {
    BRINDLE_OBJECT(WindowListCard, GalleryCard)
};

}
