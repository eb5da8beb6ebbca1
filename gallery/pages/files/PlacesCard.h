// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "kit/Card.h"

namespace gallery {

/// What the file manager, the bundle and formatters know of the sample letter and its surroundings.
class PlacesCard : public GalleryCard {
    BRINDLE_OBJECT(PlacesCard, GalleryCard)
};

}
