// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "kit/Card.h"

namespace gallery {

/// A grid whose even rows follow the card's height; the pointer snaps to it, a drag selects.
class GridCard : public GalleryCard {
    BRINDLE_OBJECT(GridCard, GalleryCard)

public:
    double standardHeight() const { return send<"standardHeight", double>(); }
    void setStandardHeight(double height) { send<"setStandardHeight:">(height); }

private:
    double standardHeight_ = 22;
    brindle::NSPoint pointer_ {}; // in the grid, y down
    brindle::NSPoint anchor_ {};
    bool inside_ = false;
    bool dragging_ = false;
};

}
