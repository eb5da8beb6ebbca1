// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "kit/Card.h"
#include "kit/Chip.h"

namespace gallery {

/// Registers the values that the gallery ships in its settings bundle.
class SettingsCard : public GalleryCard {
    BRINDLE_OBJECT(SettingsCard, GalleryCard)

private:
    brindle::Ref<GalleryChip> chip_;
};

}
