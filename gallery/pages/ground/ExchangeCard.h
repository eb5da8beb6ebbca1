// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "kit/Card.h"
#include "kit/Chip.h"

namespace gallery {

/// An object whose two methods are exchanged while the program runs.
class ExchangeCard : public GalleryCard {
    BRINDLE_OBJECT(ExchangeCard, GalleryCard)

public:
    void exchange() { send<"exchange">(); }

private:
    brindle::Ref<GalleryChip> chip_;
    brindle::Ref<brindle::NSObject> greeter_;
    brindle::NSInteger exchanges_ = 0;
};

}
