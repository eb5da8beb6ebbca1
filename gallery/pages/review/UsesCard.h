// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "kit/Card.h"
#include "kit/Chip.h"

namespace gallery {

/// Counts uses one by one; each square is a use, those that ask for a review stand out.
class UsesCard : public GalleryCard {
    BRINDLE_OBJECT(UsesCard, GalleryCard)

private:
    brindle::Ref<GalleryChip> once_;
    brindle::Ref<GalleryChip> seven_;
    brindle::Ref<GalleryChip> forget_;
};

}
