// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "kit/Card.h"
#include "kit/Chip.h"

namespace gallery {

/// Counts the notifications that values have changed.
class ChangesCard : public GalleryCard {
    BRINDLE_OBJECT(ChangesCard, GalleryCard)

private:
    brindle::Ref<GalleryChip> toggleChip_;
    brindle::NSInteger changes_ = 0;
};

}
