// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "StripCard.h"
#include "pages/Page.h"

namespace gallery {

/// Title areas of the framework's own, in two windows that lie over the page.
class StripPage : public GalleryPage {
    BRINDLE_OBJECT(StripPage, GalleryPage)

private:
    brindle::Ref<StripCard> plain_;
    brindle::Ref<StripCard> banded_;
};

class Tour;
void tourStrip(Tour& tour);

}
