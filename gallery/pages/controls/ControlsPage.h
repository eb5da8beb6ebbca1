// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "BezelsCard.h"
#include "ChoicesCard.h"
#include "pages/Page.h"

namespace gallery {

/// Buttons of every kind in every state. Tab moves the keyboard focus.
class ControlsPage : public GalleryPage {
    BRINDLE_OBJECT(ControlsPage, GalleryPage)

private:
    brindle::Ref<BezelsCard> bezels_;
    brindle::Ref<ChoicesCard> choices_;
};

class Tour;
void tourControls(Tour& tour);

}
