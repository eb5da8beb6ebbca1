// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "appkit/NSButton.h"
#include "kit/Card.h"

namespace gallery {

/// Check boxes in three states and a group of radio buttons, enabled and not, in all sizes.
class ChoicesCard : public GalleryCard {
    BRINDLE_OBJECT(ChoicesCard, GalleryCard)

public:
    /// The action of the radio buttons; what makes them a group.
    void choose(brindle::NSObject* sender) { send<"choose:">(sender); }

private:
    std::vector<brindle::Ref<brindle::NSButton>> boxes_;
    std::vector<brindle::Ref<brindle::NSButton>> radios_;
    std::vector<brindle::Ref<brindle::NSButton>> sizes_;
};

}
