// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "appkit/NSButton.h"
#include "appkit/NSPopover.h"
#include "kit/Card.h"

namespace gallery {

/// Fields over which the pointer has the shape that they name.
class CursorsCard : public GalleryCard {
    BRINDLE_OBJECT(CursorsCard, GalleryCard)
};

/// Tips of whole controls, and of the parts of a view.
class TipsCard : public GalleryCard {
    BRINDLE_OBJECT(TipsCard, GalleryCard)

private:
    std::vector<brindle::Ref<brindle::NSButton>> buttons_;
};

/// A view with a menu: by the right button, or by the Menu key while it has the keyboard.
class ContextMenuCard : public GalleryCard {
    BRINDLE_OBJECT(ContextMenuCard, GalleryCard)

private:
    brindle::Ref<brindle::NSView> field_;
};

/// A bubble beside a button, on each of its sides.
class PopoverCard : public GalleryCard {
    BRINDLE_OBJECT(PopoverCard, GalleryCard)

private:
    std::vector<brindle::Ref<brindle::NSButton>> buttons_;
    brindle::Ref<brindle::NSPopover> popover_;
};

}
