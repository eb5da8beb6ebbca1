// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <vector>

#include "appkit/NSButton.h"
#include "controls/BRBorderedView.h"
#include "controls/GWBackgroundColorView.h"
#include "controls/VLImageView.h"
#include "kit/Card.h"
#include "kit/Chip.h"

namespace gallery {

/// A view with lines along chosen edges and a child that stays within them.
class BorderCard : public GalleryCard {
    BRINDLE_OBJECT(BorderCard, GalleryCard)

private:
    brindle::Ref<brindle::BRBorderedView> bordered_;
    brindle::Ref<brindle::GWBackgroundColorView> child_;
    std::array<brindle::Ref<GalleryChip>, 4> edges_;
    brindle::Ref<GalleryChip> size_;
    bool small_ = false;
};

/// One translucent colour blended, and in place of what lies behind.
class GroundCard : public GalleryCard {
    BRINDLE_OBJECT(GroundCard, GalleryCard)

private:
    brindle::Ref<brindle::GWBackgroundColorView> blended_;
    brindle::Ref<brindle::GWBackgroundColorView> opaque_;
    brindle::Ref<brindle::GWBackgroundColorView> without_;
};

/// One image that covers views of several shapes.
class CoverCard : public GalleryCard {
    BRINDLE_OBJECT(CoverCard, GalleryCard)

private:
    std::array<brindle::Ref<brindle::VLImageView>, 3> views_;
};

/// Buttons in boxes in a box, enabled and disabled by class and tag.
class ControlsCard : public GalleryCard {
    BRINDLE_OBJECT(ControlsCard, GalleryCard)

private:
    brindle::Ref<brindle::NSView> root_;
    std::vector<brindle::Ref<brindle::NSButton>> buttons_;
    std::array<brindle::Ref<GalleryChip>, 3> chips_;
};

}
