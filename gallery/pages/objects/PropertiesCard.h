// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "kit/Card.h"
#include "kit/Chip.h"

namespace gallery {

/// What a class tells about the properties that it declares: nobody wrote this list.
class PropertiesCard : public GalleryCard {
    BRINDLE_OBJECT(PropertiesCard, GalleryCard)

public:
    /// Shows the class so many places after the present one, round and round.
    void chooseNext(brindle::NSInteger places) { send<"chooseNext:">(places); }

private:
    std::vector<brindle::Ref<GalleryChip>> chips_; // one a class
    brindle::NSUInteger chosen_ = 0;
    brindle::NSUInteger firstRow_ = 0;
};

}
