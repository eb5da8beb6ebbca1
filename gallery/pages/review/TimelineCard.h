// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "kit/Card.h"

namespace gallery {

/// At which uses the application asks, for each answer there may be.
class TimelineCard : public GalleryCard {
    BRINDLE_OBJECT(TimelineCard, GalleryCard)
};

}
