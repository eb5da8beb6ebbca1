// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSArray.h"
#include "kit/Card.h"
#include "kit/Chip.h"

namespace gallery {

/// Dates and what people call their distance; they age while one watches, or faster by the chips.
class AgesCard : public GalleryCard {
    BRINDLE_OBJECT(AgesCard, GalleryCard)

private:
    brindle::Ref<brindle::NSArray> dates_;
    brindle::Ref<GalleryChip> minuteChip_, hourChip_, dayChip_, nowChip_;
};

}
