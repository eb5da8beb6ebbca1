// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "controls/OnOffSwitchControl.h"
#include "kit/Card.h"

namespace gallery {

/// Slide switches: two and three positions, enabled and not, in three sizes.
class SwitchesCard : public GalleryCard {
    BRINDLE_OBJECT(SwitchesCard, GalleryCard)

public:
    /// The action of all switches: shows which one has changed.
    void changed(brindle::NSObject* sender) { send<"changed:">(sender); }

private:
    std::vector<brindle::Ref<brindle::OnOffSwitchControl>> switches_; // row by row
    brindle::NSUInteger actions_ = 0;
};

/// One large switch with three positions, and the lamp that it turns on.
class LampCard : public GalleryCard {
    BRINDLE_OBJECT(LampCard, GalleryCard)

public:
    /// The action of the switch.
    void turn(brindle::NSObject* sender) { send<"turn:">(sender); }

private:
    brindle::Ref<brindle::OnOffSwitchControl> switch_;
};

/// Tints and labels, as `tintBackgroundWithFrame:inView:` draws them: every colour pair in every state.
class TintsCard : public GalleryCard {
    BRINDLE_OBJECT(TintsCard, GalleryCard)
};

}
