// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <vector>

#include "appkit/NSScrollView.h"
#include "appkit/NSTableView.h"
#include "kit/Card.h"
#include "kit/Chip.h"

namespace gallery {

/// A strip of numbered lines, 1,000 points high.
class LinesView : public brindle::NSView {
    BRINDLE_OBJECT(LinesView, brindle::NSView)
};

/// The position as a part of the document, told at each step and once it has settled.
class PositionCard : public GalleryCard {
    BRINDLE_OBJECT(PositionCard, GalleryCard)

private:
    brindle::Ref<brindle::NSScrollView> scroll_;
    std::array<brindle::Ref<GalleryChip>, 3> chips_;
    brindle::NSRect live_ {}; // as the last step told
    int steps_ = 0;
    double settled_ = 0; // as the last rest told
    int rests_ = 0;
};

/// Rows that change their heights, by degrees or at once.
class HeightsCard : public GalleryCard {
    BRINDLE_OBJECT(HeightsCard, GalleryCard)

private:
    brindle::Ref<brindle::NSTableView> table_;
    brindle::Ref<brindle::NSScrollView> scroll_;
    std::array<brindle::Ref<GalleryChip>, 2> chips_;
    bool grown_ = false;
};

}
