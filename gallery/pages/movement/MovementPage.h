// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "MovementCards.h"
#include "pages/Page.h"

namespace gallery {

class Tour;

/// Views and windows that change by degrees.
class MovementPage : public GalleryPage {
    BRINDLE_OBJECT(MovementPage, GalleryPage)

private:
    brindle::Ref<TilesCard> tiles_;
    brindle::Ref<RoundCard> round_;
    brindle::Ref<WindowMovementCard> window_;
};

void tourMovement(Tour& tour);

}
