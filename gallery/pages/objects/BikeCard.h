// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Bike.h"
#include "foundation/NSData.h"
#include "foundation/NSDictionary.h"
#include "kit/Card.h"
#include "kit/Chip.h"

namespace gallery {

/// A bike that is archived, changed and put back as it was.
class BikeCard : public GalleryCard {
    BRINDLE_OBJECT(BikeCard, GalleryCard)

public:
    void archive() { send<"archive">(); }
    void change() { send<"change">(); }
    void restore() { send<"restore">(); }
    /// Called with each archive that is made.
    void setOnArchived(const brindle::Block<void(brindle::NSData*)>& code)
    {
        send<"setOnArchived:">(code.get());
    }

private:
    brindle::Ref<GalleryBike> bike_;
    brindle::Ref<brindle::NSData> data_; // the archive
    brindle::Ref<brindle::NSDictionary> archived_; // the values in it
    brindle::Block<void(brindle::NSData*)> onArchived_;
    brindle::Ref<GalleryChip> archiveChip_, changeChip_, restoreChip_;
};

}
