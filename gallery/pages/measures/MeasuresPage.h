// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "MeasureCards.h"
#include "pages/Page.h"

namespace gallery {

/// Texts laid out, measured, aligned and cut.
class MeasuresPage : public GalleryPage {
    BRINDLE_OBJECT(MeasuresPage, GalleryPage)

private:
    brindle::Ref<ScriptsCard> scripts_;
    brindle::Ref<AlignmentsCard> alignments_;
    brindle::Ref<CutsCard> cuts_;
    brindle::Ref<AttributesCard> attributes_;
};

class Tour;
void tourMeasures(Tour& tour);

}
