// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SwitchesCard.h"
#include "pages/Page.h"

namespace gallery {

/// The framework's slide switch in every state, size and colour pair.
class SwitchesPage : public GalleryPage {
    BRINDLE_OBJECT(SwitchesPage, GalleryPage)

private:
    brindle::Ref<SwitchesCard> switches_;
    brindle::Ref<TintsCard> tints_;
    brindle::Ref<LampCard> lamp_;
};

class Tour;
void tourSwitches(Tour& tour);

}
