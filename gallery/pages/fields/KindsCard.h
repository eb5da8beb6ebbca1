// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "appkit/NSTextField.h"
#include "kit/Card.h"

namespace gallery {

/// Fields of every kind, one row a kind.
class KindsCard : public GalleryCard {
    BRINDLE_OBJECT(KindsCard, GalleryCard)

private:
    std::vector<brindle::Ref<brindle::NSTextField>> fields_;
};

}
