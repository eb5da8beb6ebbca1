// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "kit/Card.h"

namespace gallery {

/// Texts in several scripts, each in the box that it measures at the same width.
class ScriptsCard : public GalleryCard {
    BRINDLE_OBJECT(ScriptsCard, GalleryCard)
};

/// One paragraph in every alignment.
class AlignmentsCard : public GalleryCard {
    BRINDLE_OBJECT(AlignmentsCard, GalleryCard)
};

/// One line that is too long, in every manner of cutting it.
class CutsCard : public GalleryCard {
    BRINDLE_OBJECT(CutsCard, GalleryCard)
};

/// A text with several attributes.
class AttributesCard : public GalleryCard {
    BRINDLE_OBJECT(AttributesCard, GalleryCard)
};

}
