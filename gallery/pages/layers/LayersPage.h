// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "LayersCards.h"
#include "pages/Page.h"

namespace gallery {

/// Layers that move by curves of time, what they look like, and text in them.
class LayersPage : public GalleryPage {
    BRINDLE_OBJECT(LayersPage, GalleryPage)

private:
    brindle::Ref<CurvesCard> curves_;
    brindle::Ref<LooksCard> looks_;
    brindle::Ref<SmoothTextCard> texts_;
};

class Tour;
void tourLayers(Tour& tour);

}
