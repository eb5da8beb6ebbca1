// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSShadow.h"
#include "appkit/NSSlider.h"
#include "kit/Card.h"
#include "kit/Chip.h"

namespace gallery {

/// One shadow, cast by letters and by shapes; sliders say where it falls and how soft it is.
class ShadowsCard : public GalleryCard {
    BRINDLE_OBJECT(ShadowsCard, GalleryCard)

public:
    /// Answers the shadow as the sliders say it.
    brindle::Ref<brindle::NSShadow> shadow() const
    {
        return send<"shadow", brindle::Ref<brindle::NSShadow>>();
    }

private:
    brindle::Ref<brindle::NSSlider> direction_, distance_, softness_;
    brindle::Ref<GalleryChip> glow_;
};

}
