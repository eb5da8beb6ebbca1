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

ObjectNumbers::Piece& ObjectNumbers::pieceAt(std::uintptr_t place)
{
    if (slots_.size()) {
        const std::size_t mask = slots_.size() - 1;
        for (std::size_t at = hashOf(place) & mask; slots_[at]; at = (at + 1) & mask) {
            if (places_[slots_[at] - 1] == place)
                return pieces_[slots_[at] - 1];
        }
    }
    const std::size_t fresh = pieces_.size();
    pieces_.add(Piece {});
    places_.add(place);
    if (2 * pieces_.size() > slots_.size()) {
        slots_ = lists::Row<std::uint32_t>(std::max<std::size_t>(64, 2 * slots_.size()));
        for (std::size_t piece = 0; piece < fresh; ++piece)
            enter(piece);
    }
    enter(fresh);
    return pieces_[fresh];
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
