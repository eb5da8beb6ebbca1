// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ViewCards.h"
#include "pages/Page.h"

namespace gallery {

/// The views that screens are built from: lines along edges, grounds, images, trees of controls.
class ViewsPage : public GalleryPage {
    BRINDLE_OBJECT(ViewsPage, GalleryPage)

private:
    brindle::Ref<BorderCard> borders_;
    brindle::Ref<GroundCard> grounds_;
    brindle::Ref<CoverCard> covers_;
    brindle::Ref<ControlsCard> controls_;
};

class Tour;
void tourViews(Tour& tour);

}
