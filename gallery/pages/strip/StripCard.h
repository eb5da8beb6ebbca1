// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSWindow.h"
#include "controls/GWThemeFrameView.h"
#include "kit/Card.h"

namespace gallery {

/// A card under a window of its own, whose title area is a strip.
///
/// The window is a child of the one the card is in; it shows and hides with the card and lies over the card's
/// body. Cards that follow one another in a window share it.
class StripCard : public GalleryCard {
    BRINDLE_OBJECT(StripCard, GalleryCard)

public:
    /// Whether the window has no title bar, and its strip a dark band. NO at first.
    bool overlay() const { return send<"overlay", bool>(); }
    void setOverlay(bool overlay) { send<"setOverlay:">(overlay); }

private:
    brindle::Ref<brindle::NSWindow> sample_;
    bool overlay_ = false;
};

}
