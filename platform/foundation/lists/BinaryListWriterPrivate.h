// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <span>
#include <string_view>
#include <vector>

#include "BinaryListBytesPrivate.h"
#include "BlockRowPrivate.h"

namespace brindle::lists {

/// Writes a binary property list object by object; what an object holds is added before it. Every operation answers
/// the index by which containers refer to the object.
///
/// Equal values of one kind are in the list once, whether or not adding them answered one index; containers are each.
/// Equal strings answer one index always.
/// Cost: some ten nanoseconds a value, no allocation for each.
class BinaryListWriter : ValueBytes {
public:
    using Index = std::uint32_t;

    BinaryListWriter();

    Index boolean(bool value) { return keep(writeBoolean(value), hashOf(value)); }
    Index integer(std::int64_t value)
    {
        return keep(writeInteger(value), hashOf(static_cast<std::uint64_t>(value)));
    }
    Index natural(std::uint64_t value) { return keep(writeNatural(value), hashOf(value)); }
    Index real(double value)
    {
        return keep(writeReal(value), hashOf(std::bit_cast<std::uint64_t>(value)));
    }
    Index single(float value)
    {
        return keep(writeSingle(value), hashOf(std::bit_cast<std::uint32_t>(value)));
    }
    /// - seconds: since the reference date; readers refuse what is not finite.
    Index date(double seconds)
    {
        return keep(writeDate(seconds), hashOf(std::bit_cast<std::uint64_t>(seconds)));
    }
    Index uid(std::uint64_t value) { return keep(writeUid(value), hashOf(value)); }
    Index data(std::span<const unsigned char> bytes) { return keep(writeData(bytes)); }
    /// Readers refuse text with unpaired surrogates.
    Index string(strings::View text) { return keepOnce(writeString(text)); }
    /// The same for strings of which most are different: equal ones may answer several indexes.
    Index passingString(strings::View text) { return keep(writeString(text)); }
    Index string(const NSString* text) { return string(strings::Contents(text).view()); }
    Index array(std::span<const Index> elements);
    /// - keys: strings. - values: as many.
    Index dictionary(std::span<const Index> keys, std::span<const Index> values);

    /// Answers the whole list. The writer is empty afterwards.
    Ref<NSData> finish(Index top);

private:
    /// A value by its hash: the upper half is the hash, the lower one the index and one, or 0 for none.
    using Slot = std::uint64_t;
    /// A value and the first one with its hash.
    struct Repeat {
        Index index;
        Index first;
    };

    Index place(std::size_t start, std::uint32_t hash)
    {
        starts_.add(start);
        hashes_.add(hash);
        return static_cast<Index>(starts_.size() - 1);
    }
    Index keep(std::size_t start);
    Index keep(std::size_t start, std::uint32_t hash);
    Index keepOnce(std::size_t start);
    bool isEqual(Index index, std::size_t start, std::size_t length) const;
    std::size_t end(Index index) const;
    Slot& find(Row<Slot>& slots, Slot wanted) const;
    void findEqual();
    std::vector<std::uint32_t> sortByHash(Row<Slot>& sorted);
    void joinEqual(const Row<Repeat>& repeats);
    std::size_t makeFinal();
    template <class Reference> std::size_t moveTogether(std::size_t count);
    template <class Offset> void writeTable();

    // The bytes of all objects stand in a row. References of containers are of four bytes, in this machine's order and
    // to objects as they were added; what the list needs fits into the same memory at the end.
    BlockRow<std::uint64_t> starts_;
    Row<std::uint32_t> hashes_; // containers have 0; at the end the indexes that the list has
    std::size_t containerCount_ = 0;
    std::size_t referenceCount_ = 0;

    // Strings and long values are known by a table. The rest, unless it was written recently, is sorted out at the end:
    // then all values are there, and can be looked at part by part, each small enough for the processor's cache.
    Row<Slot> known_;
    std::size_t knownCount_ = 0;
    std::array<Slot, 1024> recent_ {};
};

}
