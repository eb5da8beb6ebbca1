// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ChoosingCards.h"
#include "pages/Page.h"

namespace gallery {

/// Controls that choose one of several: bars of segments, buttons with menus, tabs on every side.
class ChoosingPage : public GalleryPage {
    BRINDLE_OBJECT(ChoosingPage, GalleryPage)

private:
    brindle::Ref<SegmentsCard> segments_;
    brindle::Ref<PopUpsCard> popUps_;
    brindle::Ref<TabSidesCard> tabs_;
};

class Tour;
void tourChoosing(Tour& tour);

}
