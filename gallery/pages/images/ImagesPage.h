// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ImagesCards.h"
#include "pages/Page.h"

namespace gallery {

/// Pictures placed in frames, inverted, tinted, resized and averaged.
class ImagesPage : public GalleryPage {
    BRINDLE_OBJECT(ImagesPage, GalleryPage)

private:
    brindle::Ref<ContentModesCard> modes_;
    brindle::Ref<TintedImagesCard> tints_;
    brindle::Ref<AverageColorsCard> averages_;
};

class Tour;
void tourImages(Tour& tour);

}
