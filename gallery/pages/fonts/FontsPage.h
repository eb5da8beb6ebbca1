// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "FontCards.h"
#include "FontLists.h"
#include "pages/Page.h"

namespace gallery {

class Tour;

/// The fonts that are installed, what each becomes, and what stands in for it.
class FontsPage : public GalleryPage {
    BRINDLE_OBJECT(FontsPage, GalleryPage)

private:
    brindle::Ref<FamiliesCard> families_;
    brindle::Ref<FacesCard> faces_;
    brindle::Ref<FontSampleCard> sample_;
    brindle::Ref<FallbackCard> fallback_;
};

void tourFonts(Tour& tour);

}
