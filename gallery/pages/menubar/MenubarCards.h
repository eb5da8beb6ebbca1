// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "kit/Card.h"
#include "kit/Chip.h"

namespace gallery {

/// Everything that a host chooses of the bar at the top of the screen, at once in force.
class MenubarOptionsCard : public GalleryCard {
    BRINDLE_OBJECT(MenubarOptionsCard, GalleryCard)

private:
    brindle::Ref<GalleryChip> custom_, overlay_, shadow_, spacing_, narrow_, left_, right_, anew_;
};

/// Where the bar lies, where it really stands, and why.
class MenubarReportCard : public GalleryCard {
    BRINDLE_OBJECT(MenubarReportCard, GalleryCard)
};

/// The bar's buttons in all their looks, alive.
class MenubarButtonsCard : public GalleryCard {
    BRINDLE_OBJECT(MenubarButtonsCard, GalleryCard)

private:
    std::vector<brindle::Ref<brindle::NSView>> buttons_; // the light ones first
};

}
