// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "appkit/NSButton.h"
#include "kit/Card.h"

namespace gallery {

/// Push buttons of every style, one row a style: at rest, pressed, on, disabled.
class BezelsCard : public GalleryCard {
    BRINDLE_OBJECT(BezelsCard, GalleryCard)

private:
    std::vector<brindle::Ref<brindle::NSButton>> buttons_; // row by row
};

}
