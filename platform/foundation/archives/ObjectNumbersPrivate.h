// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>

#include "foundation/lists/OutputPrivate.h"
#include "runtime/NSObject.h"

namespace brindle::archives {

/// Numbers of objects by their addresses, for objects that stay where they are as long as this lives.
///
/// It is a map of the pieces of memory where objects lie, with a number for every 16 bytes: no two objects begin in the
/// same 16, and objects that are made one after the other, and met one after the other, are next to each other here.
/// Cost: a quarter of the memory between the objects, at most some 140 bytes an object.
class ObjectNumbers {
public:
    /// Answers the number of an object, to be read or set; 0 at first. Good until another object is asked for.
    std::uint32_t& operator[](const NSObject* object)
    {
        const auto address = reinterpret_cast<std::uintptr_t>(object);
        return pieces_[pieceOf(address / kPiece)][address % kPiece / kGrain];
    }

private:
    static constexpr std::size_t kPiece = 512;
    static constexpr std::size_t kGrain = 16;

    std::size_t pieceOf(std::uintptr_t place)
    {
        return place == recentPlace_ ? recent_ : findPiece(place);
    }
    std::size_t findPiece(std::uintptr_t place);
    void enter(std::size_t piece);

    using Piece = std::array<std::uint32_t, kPiece / kGrain>;

    lists::Row<Piece> pieces_;
    lists::Row<std::uintptr_t> places_; // of each piece: its address divided by its size
    lists::Row<std::uint32_t>
        slots_; // pieces by the hashes of their places; 0 for none, else the piece and one
    std::uintptr_t recentPlace_ = 0; // nothing lies there
    std::size_t recent_ = 0;
};

}
