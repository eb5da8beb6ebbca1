// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AccessCard.h"
#include "PanelsCard.h"
#include "PlacesCard.h"
#include "pages/Page.h"

namespace gallery {

/// Files that the user grants, and the panels and alerts that ask for them.
class FilesPage : public GalleryPage {
    BRINDLE_OBJECT(FilesPage, GalleryPage)

private:
    brindle::Ref<AccessCard> access_;
    brindle::Ref<PanelsCard> panels_;
    brindle::Ref<PlacesCard> places_;
};

class Tour;
void tourFiles(Tour& tour);

}
