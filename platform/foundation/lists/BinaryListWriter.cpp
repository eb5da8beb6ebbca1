// SPDX-License-Identifier: Apache-2.0
#include "BinaryListWriterPrivate.h"

#include <bit>

namespace brindle::lists {

namespace {

    constexpr std::uint64_t slotOf(std::uint32_t hash, std::uint32_t index)
    {
        return std::uint64_t { hash } << 32 | (index + 1);
    }
    constexpr std::uint32_t hashIn(std::uint64_t slot)
    {
        return static_cast<std::uint32_t>(slot >> 32);
    }
    constexpr std::uint32_t indexIn(std::uint64_t slot)
    {
        return static_cast<std::uint32_t>(slot) - 1;
    }

}

// ---- values

BinaryListWriter::Index BinaryListWriter::place(std::size_t start, std::uint32_t hash)
{
    places_.add({ start, references_.size() });
    hashes_.add(hash);
    return static_cast<Index>(places_.size() - 1);
}

/// Answers where the bytes of an object end.
std::size_t BinaryListWriter::end(Index index) const
{
    return index + 1 < places_.size() ? places_[index + 1].bytes : bytes_.size();
}

/// Answers whether a value equals the bytes from `start` on. They say how many they are, so that a longer value
/// cannot begin with them.
bool BinaryListWriter::isEqual(Index index, std::size_t start, std::size_t length) const
{
    return std::memcmp(bytes_.bytes() + places_[index].bytes, bytes_.bytes() + start, length) == 0;
}

/// Answers the place of an equal value in a table that has room, or the empty one where it belongs.
BinaryListWriter::Slot& BinaryListWriter::find(Row<Slot>& slots, Slot wanted) const
{
    const std::size_t mask = slots.size() - 1;
    const Index index = indexIn(wanted);
    const std::size_t start = places_[index].bytes;
    std::size_t at = hashIn(wanted) & mask;
    for (; slots[at]; at = (at + 1) & mask) {
        if (hashIn(slots[at]) == hashIn(wanted)
            && isEqual(indexIn(slots[at]), start, end(index) - start))
            break;
    }
    return slots[at];
}

/// Keeps the value whose bytes begin at `start`, or takes them back and answers one that was equal recently.
BinaryListWriter::Index BinaryListWriter::keep(std::size_t start)
{
    constexpr std::size_t kLong = 128;
    const std::size_t length = bytes_.size() - start;
    if (length >= kLong)
        return keepOnce(start);
    const std::uint32_t hash = hashOf(bytes_.bytes() + start, length);
    Slot& recent = recent_[hash % recent_.size()];
    if (recent && hashIn(recent) == hash && isEqual(indexIn(recent), start, length)) {
        bytes_.cutTo(start);
        return indexIn(recent);
    }
    const Index index = place(start, hash);
    recent = slotOf(hash, index);
    return index;
}

/// Keeps the value whose bytes begin at `start`, or takes them back and answers the one that was equal.
BinaryListWriter::Index BinaryListWriter::keepOnce(std::size_t start)
{
    if (2 * knownCount_ >= known_.size()) {
        const Row<Slot> old
            = std::exchange(known_, Row<Slot>(std::max<std::size_t>(64, 2 * known_.size())));
        for (const Slot slot : old) {
            if (slot)
                find(known_, slot) = slot;
        }
    }
    const std::uint32_t hash = hashOf(bytes_.bytes() + start, bytes_.size() - start);
    const Index index = place(start, hash);
    Slot& known = find(known_, slotOf(hash, index));
    if (!known) {
        known = slotOf(hash, index);
        ++knownCount_;
        return index;
    }
    places_.cutTo(index);
    hashes_.cutTo(index);
    bytes_.cutTo(start);
    return indexIn(known);
}

/// Answers the index that each object has in the list, counted without those that equal an earlier one.
Row<BinaryListWriter::Index> BinaryListWriter::finalIndexes(std::size_t& count) const
{
    constexpr std::size_t kAhead = 16;
    Row<Slot> slots(std::bit_ceil(2 * places_.size()));
    Row<Index> indexes(places_.size());
    count = 0;
    for (std::size_t i = 0; i < indexes.size(); ++i) {
        if (i + kAhead < indexes.size())
            __builtin_prefetch(&slots[hashes_[i + kAhead] & (slots.size() - 1)], 1);
        const auto index = static_cast<Index>(i);
        if (!hashes_[i]) {
            indexes[i] = static_cast<Index>(count++);
            continue;
        }
        Slot& slot = find(slots, slotOf(hashes_[i], index));
        if (slot) {
            indexes[i] = indexes[indexIn(slot)];
            continue;
        }
        slot = slotOf(hashes_[i], index);
        indexes[i] = static_cast<Index>(count++);
    }
    return indexes;
}

// ---- containers

BinaryListWriter::Index BinaryListWriter::array(std::span<const Index> elements)
{
    const Index index = place(writeHead(0xa0, elements.size(), 0), 0);
    references_.add(elements);
    return index;
}

BinaryListWriter::Index BinaryListWriter::dictionary(std::span<const Entry> entries)
{
    const Index index = place(writeHead(0xd0, entries.size(), 0), 0);
    Index* to = references_.room(2 * entries.size());
    for (const Entry& entry : entries)
        *to++ = entry.key;
    for (const Entry& entry : entries)
        *to++ = entry.value;
    references_.advance(2 * entries.size());
    return index;
}

Ref<NSData> BinaryListWriter::finish(Index top)
{
    constexpr std::string_view kHeader = "bplist00";
    constexpr std::size_t kTrailer = 32;
    std::size_t count = 0;
    const Row<Index> indexes = finalIndexes(count);
    const std::size_t referenceSize = sizeFor(count - 1);
    const std::size_t longest = kHeader.size() + bytes_.size() + references_.size() * referenceSize;
    const std::size_t offsetSize = sizeFor(longest);

    Output out;
    out.reserve(longest + count * offsetSize + kTrailer);
    out.put(kHeader);
    Row<std::uint64_t> offsets;
    offsets.reserve(count);
    std::size_t copied = 0; // bytes up to here are written, or left out
    for (std::size_t i = 0; i < indexes.size(); ++i) {
        const Place place = places_[i];
        const std::size_t end = this->end(static_cast<Index>(i));
        if (indexes[i] != offsets.size()) { // equal to an earlier one
            out.put(bytes_.bytes() + copied, place.bytes - copied);
            copied = end;
            continue;
        }
        offsets.add(out.size() + place.bytes - copied);
        const std::size_t last
            = i + 1 < places_.size() ? places_[i + 1].references : references_.size();
        if (last == place.references)
            continue;
        out.put(bytes_.bytes() + copied, end - copied);
        copied = end;
        unsigned char* to = out.room(0);
        for (std::size_t held = place.references; held < last; ++held, to += referenceSize)
            store(to, indexes[references_[held]], referenceSize);
        out.advance((last - place.references) * referenceSize);
    }
    out.put(bytes_.bytes() + copied, bytes_.size() - copied);

    const std::size_t table = out.size();
    unsigned char* to = out.room(0);
    for (const std::uint64_t offset : offsets) {
        store(to, offset, offsetSize);
        to += offsetSize;
    }
    std::memset(to, 0, kTrailer);
    to[6] = static_cast<unsigned char>(offsetSize);
    to[7] = static_cast<unsigned char>(referenceSize);
    store(to + 8, count, 8);
    store(to + 16, indexes[top], 8);
    store(to + 24, table, 8);
    out.advance(count * offsetSize + kTrailer);
    *this = BinaryListWriter();
    return out.data();
}

}
