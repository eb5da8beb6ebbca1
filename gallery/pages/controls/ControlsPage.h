// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "BezelsCard.h"
#include "ChoicesCard.h"
#include "HoldersCard.h"
#include "RangesCard.h"
#include "pages/Page.h"

namespace gallery {

/// Buttons of every kind in every state, sliders, progress, and what holds views. Tab moves the keyboard focus.
class ControlsPage : public GalleryPage {
    BRINDLE_OBJECT(ControlsPage, GalleryPage)

private:
    brindle::Ref<BezelsCard> bezels_;
    brindle::Ref<ChoicesCard> choices_;
    brindle::Ref<RangesCard> ranges_;
    brindle::Ref<HoldersCard> holders_;
};

class Tour;
void tourControls(Tour& tour);

}
