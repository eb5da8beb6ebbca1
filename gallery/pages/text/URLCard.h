// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "kit/Card.h"

namespace gallery {

/// Addresses as users type them, and what is made of the chosen one.
class URLCard : public GalleryCard {
    BRINDLE_OBJECT(URLCard, GalleryCard)

public:
    /// Chooses the address so many places further, round and round.
    void chooseNext(brindle::NSInteger places) { send<"chooseNext:">(places); }

private:
    brindle::NSUInteger chosen_ = 0;
};

}
