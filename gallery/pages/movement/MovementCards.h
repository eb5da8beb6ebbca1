// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "kit/Card.h"
#include "kit/Chip.h"

namespace gallery {

/// A coloured sheet that cards move about.
class Tile : public brindle::NSView {
    BRINDLE_OBJECT(Tile, brindle::NSView)

public:
    double hue_ = 0; // 0 to 1
};

/// Tiles that go from one arrangement to the next, fade and grow, all in one group.
class TilesCard : public GalleryCard {
    BRINDLE_OBJECT(TilesCard, GalleryCard)

private:
    std::vector<brindle::Ref<Tile>> tiles_;
    brindle::Ref<GalleryChip> move_, fade_, grow_, slow_;
    brindle::NSUInteger arrangement_ = 0;
    bool faded_ = false;
    bool grown_ = false;
};

/// A tile that goes round; the end of each way begins the next.
class RoundCard : public GalleryCard {
    BRINDLE_OBJECT(RoundCard, GalleryCard)

private:
    brindle::Ref<Tile> tile_;
    brindle::Ref<GalleryChip> go_;
    brindle::NSUInteger corner_ = 0;
    brindle::NSUInteger ways_ = 0; // that have ended
    bool going_ = false;
};

/// The window itself: it glides aside and back, and fades and comes back.
class WindowMovementCard : public GalleryCard {
    BRINDLE_OBJECT(WindowMovementCard, GalleryCard)

private:
    brindle::Ref<GalleryChip> glide_, fade_;
    brindle::NSUInteger movements_ = 0; // that have ended
};

}
