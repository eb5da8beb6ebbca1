// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "appkit/NSProgressIndicator.h"
#include "appkit/NSSlider.h"
#include "kit/Card.h"

namespace gallery {

/// Sliders of several kinds, and bars and sectors that show the value of the first one.
class RangesCard : public GalleryCard {
    BRINDLE_OBJECT(RangesCard, GalleryCard)

private:
    std::vector<brindle::Ref<brindle::NSSlider>> sliders_; // the first one leads the indicators
    brindle::Ref<brindle::NSSlider> dial_, upright_;
    brindle::Ref<brindle::NSProgressIndicator> bar_, endless_, sector_, spinner_;
};

}
