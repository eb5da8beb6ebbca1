// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PointerCards.h"
#include "pages/Page.h"

namespace gallery {

/// What follows the pointer: cursors, tool tips, context menus and popovers.
class PointerPage : public GalleryPage {
    BRINDLE_OBJECT(PointerPage, GalleryPage)

private:
    brindle::Ref<CursorsCard> cursors_;
    brindle::Ref<TipsCard> tips_;
    brindle::Ref<ContextMenuCard> menus_;
    brindle::Ref<PopoverCard> popovers_;
};

class Tour;
void tourPointer(Tour& tour);

}
