// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "GraphCard.h"
#include "IdentityCard.h"
#include "StoreCard.h"
#include "pages/Page.h"

namespace gallery {

/// Objects that are found by their identity, and an archive that refers to them by it.
///
/// Keys: Left and Right select a list; the letters are those of the chips.
class UniquePage : public GalleryPage {
    BRINDLE_OBJECT(UniquePage, GalleryPage)

private:
    brindle::Ref<GraphCard> graph_;
    brindle::Ref<StoreCard> store_;
    brindle::Ref<IdentityCard> identity_;
};

class Tour;
void tourUnique(Tour& tour);

}
