// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "kit/Card.h"
#include "kit/Chip.h"

namespace gallery {

/// Opens panels and alerts as sheets of the window, and shows what they answered.
class PanelsCard : public GalleryCard {
    BRINDLE_OBJECT(PanelsCard, GalleryCard)

private:
    brindle::Ref<GalleryChip> open_;
    brindle::Ref<GalleryChip> save_;
    brindle::Ref<GalleryChip> alert_;
    brindle::Ref<brindle::NSString> answer_;
};

}
