// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>

#include "foundation/lists/OutputPrivate.h"
#include "runtime/NSObject.h"

namespace brindle::archives {

/// Numbers of objects by their addresses, for objects that stay where they are as long as this lives.
///
/// It is a map of the pieces of memory where objects lie, with a number for every 32 bytes: no two objects begin in the
/// same 32, and objects that are made one after the other, and met one after the other, are next to each other here.
/// Cost: an eighth of the memory between the objects, at most some 140 bytes an object.
class ObjectNumbers {
public:
    /// Answers the number of an object, to be read or set; 0 at first. Good until another object is asked for.
    std::uint32_t& operator[](const NSObject* object)
    {
        const auto address = reinterpret_cast<std::uintptr_t>(object);
        const std::uintptr_t place = address / kPiece;
        Recent& recent = recent_[place % recent_.size()];
        if (recent.place != place)
            recent = { place, &pieceAt(place) };
        return (*recent.piece)[address % kPiece / kGrain];
    }

private:
    static constexpr std::size_t kPiece = 1024;
    static constexpr std::size_t kGrain = 32;
    // What takes more than 16 bytes and begins at a multiple of 16 is at least 32 bytes from the next.
    static_assert(sizeof(ObjectHeader) + sizeof(NSObject) > kGrain / 2);

    using Piece = std::array<std::uint32_t, kPiece / kGrain>;
    struct Recent {
        std::uintptr_t place = 0; // no object lies there
        Piece* piece = nullptr;
    };

    Piece& pieceAt(std::uintptr_t place);
    void enter(std::size_t piece);

    lists::Pile<Piece> pieces_;
    lists::Pile<std::uintptr_t> places_; // of each piece: its address divided by its size
    lists::Row<std::uint32_t>
        slots_; // pieces by the hashes of their places; 0 for none, else the piece and one
    std::array<Recent, 8> recent_ {}; // an object lies near those that it holds
};

}
