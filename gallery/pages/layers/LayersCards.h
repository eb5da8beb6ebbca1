// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "graphics/BRSmoothTextLayer.h"
#include "kit/Card.h"
#include "kit/Chip.h"

namespace gallery {

/// A dot for each curve of time; they run from one side to the other together.
class CurvesCard : public GalleryCard {
    BRINDLE_OBJECT(CurvesCard, GalleryCard)

public:
    void run() { send<"run">(); }

private:
    std::vector<brindle::Ref<brindle::CALayer>> dots_;
    brindle::Ref<GalleryChip> chip_;
    bool right_ = false;
};

/// What layers look like: a gradient, a border, a mask, a turn, a shadow, two faded as one.
class LooksCard : public GalleryCard {
    BRINDLE_OBJECT(LooksCard, GalleryCard)

public:
    void turn() { send<"turn">(); }

private:
    std::vector<brindle::Ref<brindle::CALayer>> samples_;
    brindle::Ref<GalleryChip> chip_;
    double angle_ = 0; // radians
};

/// Text in layers that size themselves to it, at three widths.
class SmoothTextCard : public GalleryCard {
    BRINDLE_OBJECT(SmoothTextCard, GalleryCard)

private:
    std::vector<brindle::Ref<brindle::BRSmoothTextLayer>> texts_;
};

}
