// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "kit/Card.h"

namespace gallery {

/// How many rows of about the standard height fill this screen, and how high each becomes.
class RowsCard : public GalleryCard {
    BRINDLE_OBJECT(RowsCard, GalleryCard)

public:
    double standardHeight() const { return send<"standardHeight", double>(); }
    void setStandardHeight(double height) { send<"setStandardHeight:">(height); }

private:
    double standardHeight_ = 22;
};

}
