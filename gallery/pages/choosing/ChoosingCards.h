// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "appkit/NSPopUpButton.h"
#include "appkit/NSSegmentedControl.h"
#include "appkit/NSTabView.h"
#include "kit/Card.h"

namespace gallery {

/// Bars of segments: one chosen, any number, none for longer than the press; small, and with one that cannot be chosen.
class SegmentsCard : public GalleryCard {
    BRINDLE_OBJECT(SegmentsCard, GalleryCard)

private:
    std::vector<brindle::Ref<brindle::NSSegmentedControl>> bars_;
    brindle::Ref<brindle::NSString> said_;
};

/// Buttons with menus: one that shows what is chosen, one that only does things, a small one, one that is off.
class PopUpsCard : public GalleryCard {
    BRINDLE_OBJECT(PopUpsCard, GalleryCard)

private:
    std::vector<brindle::Ref<brindle::NSPopUpButton>> buttons_;
    brindle::Ref<brindle::NSString> said_;
};

/// Tabs on any of the four sides, or none.
class TabSidesCard : public GalleryCard {
    BRINDLE_OBJECT(TabSidesCard, GalleryCard)

private:
    brindle::Ref<brindle::NSSegmentedControl> sides_;
    brindle::Ref<brindle::NSTabView> tabs_;
};

}
