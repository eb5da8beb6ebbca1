// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "BurstCard.h"
#include "ChangesCard.h"
#include "SearchCard.h"
#include "SettingsCard.h"
#include "pages/Page.h"

namespace gallery {

/// The user's settings: where they are looked for, and how they are written.
///
/// Keys: the arrows frame a cell of the table; the letters are those of the chips.
class DefaultsPage : public GalleryPage {
    BRINDLE_OBJECT(DefaultsPage, GalleryPage)

private:
    brindle::Ref<SearchCard> search_;
    brindle::Ref<SettingsCard> settings_;
    brindle::Ref<BurstCard> burst_;
    brindle::Ref<ChangesCard> changes_;
};

class Tour;
void tourDefaults(Tour& tour);

}
