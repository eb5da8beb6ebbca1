// SPDX-License-Identifier: Apache-2.0
#include "ObjectNumbersPrivate.h"

#include "foundation/HashingPrivate.h"

namespace brindle::archives {

namespace {

    std::size_t hashOf(std::uintptr_t place)
    {
        return hashing::mixed(place ^ hashing::kFactor, 0xe7037ed1a0b428dbu);
    }

}

std::size_t ObjectNumbers::findPiece(std::uintptr_t place)
{
    recentPlace_ = place;
    if (slots_.size()) {
        const std::size_t mask = slots_.size() - 1;
        for (std::size_t at = hashOf(place) & mask; slots_[at]; at = (at + 1) & mask) {
            if (places_[slots_[at] - 1] == place)
                return recent_ = slots_[at] - 1;
        }
    }
    recent_ = pieces_.size();
    pieces_.add(Piece {});
    places_.add(place);
    if (2 * pieces_.size() > slots_.size()) {
        slots_ = lists::Row<std::uint32_t>(std::max<std::size_t>(64, 2 * slots_.size()));
        for (std::size_t piece = 0; piece < recent_; ++piece)
            enter(piece);
    }
    enter(recent_);
    return recent_;
}

void ObjectNumbers::enter(std::size_t piece)
{
    const std::size_t mask = slots_.size() - 1;
    std::size_t at = hashOf(places_[piece]) & mask;
    while (slots_[at])
        at = (at + 1) & mask;
    slots_[at] = static_cast<std::uint32_t>(piece + 1);
}

}
