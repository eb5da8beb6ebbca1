// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSWindow.h"
#include "kit/Card.h"
#include "kit/Chip.h"

namespace gallery {

/// What the gallery's own window can do, and how it is now.
class WindowStateCard : public GalleryCard {
    BRINDLE_OBJECT(WindowStateCard, GalleryCard)

private:
    brindle::Ref<GalleryChip> sheet_, ratio_, steps_, zoom_;
    brindle::Ref<brindle::NSWindow> shown_; // the sheet, while there is one
    brindle::Ref<brindle::NSString> answer_; // to the last sheet
};

/// The screens as they stand to each other, and where the windows are on them.
class ScreensCard : public GalleryCard {
    BRINDLE_OBJECT(ScreensCard, GalleryCard)
};

}
