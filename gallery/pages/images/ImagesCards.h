// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "appkit/NSColor.h"
#include "appkit/NSImage.h"
#include "kit/Card.h"
#include "kit/Chip.h"

namespace gallery {

/// One picture in every content mode, larger or smaller than the frame, with square or round corners.
class ContentModesCard : public GalleryCard {
    BRINDLE_OBJECT(ContentModesCard, GalleryCard)

public:
    void showLarger() { send<"showLarger">(); }
    void showSmaller() { send<"showSmaller">(); }
    void roundCorners() { send<"roundCorners">(); }

private:
    brindle::Ref<brindle::NSImage> image_;
    brindle::Ref<GalleryChip> larger_;
    brindle::Ref<GalleryChip> smaller_;
    brindle::Ref<GalleryChip> round_;
};

/// Two pictures inverted, tinted and made again in another size.
class TintedImagesCard : public GalleryCard {
    BRINDLE_OBJECT(TintedImagesCard, GalleryCard)
};

/// Pictures beside the one colour that they are on average.
class AverageColorsCard : public GalleryCard {
    BRINDLE_OBJECT(AverageColorsCard, GalleryCard)

private:
    struct Sample {
        brindle::Ref<brindle::NSImage> image;
        brindle::Ref<brindle::NSColor> average;
    };
    std::vector<Sample> samples_; // an average asks for a drawing of the whole picture
};

}
