// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Music.h"
#include "kit/Card.h"

namespace gallery {

/// What the registry finds for the identity of a list, and how many objects it holds.
class IdentityCard : public GalleryCard {
    BRINDLE_OBJECT(IdentityCard, GalleryCard)

public:
    void setList(GalleryPlaylist* list) { send<"setList:">(list); }

private:
    brindle::Ref<GalleryPlaylist> list_;
};

}
