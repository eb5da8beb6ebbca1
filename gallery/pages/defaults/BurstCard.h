// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "kit/Card.h"
#include "kit/Chip.h"

namespace gallery {

/// A thousand writes in a row, and how often the file was replaced for them.
class BurstCard : public GalleryCard {
    BRINDLE_OBJECT(BurstCard, GalleryCard)

private:
    brindle::Ref<GalleryChip> chip_;
    brindle::NSInteger bursts_ = 0;
    brindle::NSInteger replacements_ = 0; // of the last burst
};

}
