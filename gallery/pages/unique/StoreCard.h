// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "GraphCard.h"
#include "kit/Chip.h"

namespace gallery {

/// Saves the objects class by class in the defaults, reads copies of the lists, and resolves what these refer to.
class StoreCard : public GalleryCard {
    BRINDLE_OBJECT(StoreCard, GalleryCard)

public:
    void setGraph(GraphCard* graph) { send<"setGraph:">(graph); }
    void save() { send<"save">(); }
    void read() { send<"read">(); }
    void resolve() { send<"resolve">(); }

private:
    brindle::WeakRef<GraphCard> graph_;
    brindle::Ref<brindle::NSArray> copies_; // of the lists
    brindle::Ref<GalleryChip> saveChip_, readChip_, resolveChip_;
};

}
