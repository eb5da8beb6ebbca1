// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "kit/Card.h"
#include "kit/Chip.h"

namespace gallery {

/// Asks for access to a letter, and says what came of it.
class AccessCard : public GalleryCard {
    BRINDLE_OBJECT(AccessCard, GalleryCard)

private:
    brindle::Ref<GalleryChip> once_;
    brindle::Ref<GalleryChip> always_;
    brindle::Ref<GalleryChip> forget_;
    std::vector<brindle::Ref<brindle::NSString>> lines_;
};

}
