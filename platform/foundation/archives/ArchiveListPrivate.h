// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>

#include "foundation/lists/BinaryListBytesPrivate.h"

namespace brindle::lists {

/// Writes the binary list of an archive in one pass: the bytes that grow here are the ones that are handed out.
///
/// Unlike `BinaryListWriter` it keeps references of four bytes in place, and shares equal values only while they are
/// recent: most of an archive's values are different, and an archive knows the same object by its address. Small lists
/// get their references shortened at the end.
/// - Raises: `NSInvalidArchiveOperationException` for more than four gigabytes.
class ArchiveList : ValueBytes {
public:
    using Index = std::uint32_t;

    struct Entry {
        Index key;
        Index value;
    };

    ArchiveList();

    Index boolean(bool value)
    {
        Index& known = booleans_[value];
        return known ? known : known = place(writeBoolean(value));
    }
    Index integer(std::int64_t value)
    {
        return once(
            Kind::integer, static_cast<std::uint64_t>(value), [&] { return writeInteger(value); });
    }
    Index natural(std::uint64_t value)
    {
        return once(Kind::natural, value, [&] { return writeNatural(value); });
    }
    Index real(double value)
    {
        return once(
            Kind::real, std::bit_cast<std::uint64_t>(value), [&] { return writeReal(value); });
    }
    Index single(float value)
    {
        return once(
            Kind::single, std::bit_cast<std::uint32_t>(value), [&] { return writeSingle(value); });
    }
    Index data(std::span<const unsigned char> bytes) { return keep(writeData(bytes)); }
    Index string(strings::View text) { return keep(writeString(text)); }
    Index string(const NSString* text) { return string(strings::Contents(text).view()); }
    /// Adds a number that is not there yet.
    Index uid(std::uint64_t value) { return place(writeUid(value)); }
    Index array(std::span<const Index> elements);
    /// - entries: their keys are strings.
    Index dictionary(std::span<const Entry> entries);

    /// Answers the whole list; the writer is used up.
    Ref<NSData> finish(Index top);

private:
    enum class Kind : std::uint32_t { none, integer, natural, real, single };
    /// A number that was written recently.
    struct RecentNumber {
        std::uint64_t bits = 0;
        Kind kind = Kind::none;
        Index index = 0;
    };
    /// A string or data that was written recently; `indexAndOne` is 0 for none.
    struct Recent {
        std::uint32_t hash = 0;
        Index indexAndOne = 0;
    };

    /// Answers the number if it was written recently, or writes it.
    template <class F> Index once(Kind kind, std::uint64_t bits, F write)
    {
        RecentNumber& recent = recentNumbers_[(bits * hashing::kFactor) >> 55];
        if (recent.bits != bits || recent.kind != kind)
            recent = { bits, kind, place(write()) };
        return recent.index;
    }

    /// Answers the index of the value whose bytes begin at `start`.
    Index place(std::size_t start)
    {
        if (start > ~Index {}) [[unlikely]]
            refuseSize();
        offsets_.add(static_cast<std::uint32_t>(start));
        return static_cast<Index>(offsets_.size() - 1);
    }
    [[noreturn]] static void refuseSize();
    Index keep(std::size_t start);
    void shortenReferences(std::size_t size);

    Pile<std::uint32_t> offsets_;
    std::array<RecentNumber, 512> recentNumbers_ {};
    std::array<Recent, 1024> recent_ {};
    std::array<Index, 2> booleans_ {}; // 0 before they are written; a first one is written twice
};

}
