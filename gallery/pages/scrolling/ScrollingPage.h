// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ScrollCards.h"
#include "pages/Page.h"

namespace gallery {

class Tour;

/// Positions of scroll views, and rows that change their heights.
class ScrollingPage : public GalleryPage {
    BRINDLE_OBJECT(ScrollingPage, GalleryPage)

private:
    brindle::Ref<PositionCard> position_;
    brindle::Ref<HeightsCard> heights_;
};

void tourScrolling(Tour& tour);

}
