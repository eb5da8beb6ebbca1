// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "kit/Card.h"
#include "kit/Chip.h"

namespace gallery {

/// A menu with a line of every kind.
class MenuItemsCard : public GalleryCard {
    BRINDLE_OBJECT(MenuItemsCard, GalleryCard)

private:
    brindle::Ref<GalleryChip> open_;
    brindle::Ref<brindle::NSString> chosen_;
};

}
