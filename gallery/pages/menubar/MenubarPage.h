// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "MenuItemsCard.h"
#include "MenubarCards.h"
#include "pages/Page.h"

namespace gallery {

/// The bar at the top of the screen: all its options, where it stands, its buttons.
class MenubarPage : public GalleryPage {
    BRINDLE_OBJECT(MenubarPage, GalleryPage)

private:
    brindle::Ref<MenubarOptionsCard> options_;
    brindle::Ref<MenubarReportCard> report_;
    brindle::Ref<MenubarButtonsCard> buttons_;
    brindle::Ref<MenuItemsCard> items_;
};

class Tour;
void tourMenubar(Tour& tour);

}
