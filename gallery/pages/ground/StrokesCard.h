// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "kit/Card.h"

namespace gallery {

/// Every move of the pointer restarts a timeout; the card is drawn again only when the pointer has come to rest.
class StrokesCard : public GalleryCard {
    BRINDLE_OBJECT(StrokesCard, GalleryCard)

public:
    /// Draws what has been gathered; sent by the timeout.
    void settle() { send<"settle">(); }

private:
    brindle::NSInteger moves_ = 0;
    brindle::NSInteger shownMoves_ = 0;
    brindle::NSInteger redraws_ = 0;
};

}
