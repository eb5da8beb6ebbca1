// SPDX-License-Identifier: Apache-2.0
#include "BinaryListWriterPrivate.h"

#include <algorithm>
#include <bit>
#include <map>
#include <numeric>

#include "foundation/SameBytesPrivate.h"

namespace brindle::lists {

namespace {

    constexpr std::string_view kSignature = "bplist00";
    constexpr std::size_t kReference
        = sizeof(BinaryListWriter::Index); // bytes of one, until the end

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

BinaryListWriter::BinaryListWriter() { bytes_.put(kSignature); }

// ---- values

/// Answers where the bytes of an object end.
std::size_t BinaryListWriter::end(Index index) const
{
    return index + 1 < starts_.size() ? starts_[index + 1] : bytes_.size();
}

/// Answers whether a value equals the bytes from `start` on. They say how many they are, so that a longer value
/// cannot begin with them.
bool BinaryListWriter::isEqual(Index index, std::size_t start, std::size_t length) const
{
    return sameBytes(bytes_.bytes() + starts_[index], bytes_.bytes() + start, length);
}

/// Answers the place of an equal value in a table that has room, or the empty one where it belongs.
BinaryListWriter::Slot& BinaryListWriter::find(Row<Slot>& slots, Slot wanted) const
{
    const std::size_t mask = slots.size() - 1;
    const Index index = indexIn(wanted);
    const std::size_t start = starts_[index];
    std::size_t at = hashIn(wanted) & mask;
    for (; slots[at]; at = (at + 1) & mask) {
        if (hashIn(slots[at]) == hashIn(wanted)
            && isEqual(indexIn(slots[at]), start, end(index) - start))
            break;
    }
    return slots[at];
}

BinaryListWriter::Index BinaryListWriter::keep(std::size_t start)
{
    constexpr std::size_t kLong = 128;
    const std::size_t length = bytes_.size() - start;
    return length >= kLong ? keepOnce(start) : keep(start, hashOf(bytes_.bytes() + start, length));
}

/// Keeps the value whose bytes begin at `start`, or takes them back and answers one that was equal recently.
/// - hash: by the value. Bytes that were written a moment ago in several pieces are slow to read as one.
BinaryListWriter::Index BinaryListWriter::keep(std::size_t start, std::uint32_t hash)
{
    Slot& recent = recent_[hash % recent_.size()];
    if (recent && hashIn(recent) == hash
        && isEqual(indexIn(recent), start, bytes_.size() - start)) {
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
    starts_.cutTo(index);
    hashes_.cutTo(index);
    bytes_.cutTo(start);
    return indexIn(known);
}

// ---- equal values, at the end

/// Turns the hash of each object into the index of the first equal one, which may be itself.
void BinaryListWriter::findEqual()
{
    Row<Slot> sorted;
    const std::vector<std::uint32_t> ends = sortByHash(sorted);
    Row<Slot> table;
    Row<Repeat> repeats;
    std::size_t first = 0;
    for (const std::size_t end : ends) {
        const std::size_t size = std::bit_ceil(2 * (end - first) + 1);
        table.cutTo(0);
        std::memset(table.room(size), 0, size * sizeof(Slot));
        for (; first < end; ++first) {
            const std::uint32_t hash = hashIn(sorted[first]);
            std::size_t at = hash & (size - 1);
            while (table[at] && hashIn(table[at]) != hash)
                at = (at + 1) & (size - 1);
            if (table[at])
                repeats.add({ indexIn(sorted[first]), indexIn(table[at]) });
            else
                table[at] = sorted[first];
        }
    }
    joinEqual(repeats);
}

/// Puts all values into parts by the upper bits of their hashes, and those of a part into the order in which they were
/// added: a part and the table of it fit into the processor's cache. The hash of each object becomes its own index.
/// - Returns: where the parts end.
std::vector<std::uint32_t> BinaryListWriter::sortByHash(Row<Slot>& sorted)
{
    constexpr std::size_t kPart = 2048; // values, or few more
    constexpr unsigned kMostBits = 12;
    const std::size_t values = starts_.size() - containerCount_;
    const unsigned bits
        = std::min(static_cast<unsigned>(std::bit_width(values / kPart)), kMostBits);
    const auto partOf = [bits](std::uint64_t hash) { return hash << bits >> 32; };

    std::vector<std::uint32_t> places(std::size_t { 1 } << bits);
    for (const std::uint32_t hash : hashes_) {
        if (hash)
            ++places[partOf(hash)];
    }
    std::exclusive_scan(places.begin(), places.end(), places.begin(), 0u);
    sorted.room(values);
    for (std::size_t i = 0; i < hashes_.size(); ++i) {
        const auto index = static_cast<Index>(i);
        if (const std::uint32_t hash = std::exchange(hashes_[i], index))
            sorted[places[partOf(hash)]++] = slotOf(hash, index);
    }
    return places;
}

/// Looks whether values with one hash are equal. Those that are not, one in millions, are told apart by their bytes.
void BinaryListWriter::joinEqual(const Row<Repeat>& repeats)
{
    constexpr std::size_t kFar = 24;
    constexpr std::size_t kNear = 12;
    std::map<std::string_view, Index> others;
    for (std::size_t i = 0; i < repeats.size(); ++i) {
        if (i + kFar < repeats.size()) {
            const Repeat& far = repeats[i + kFar];
            __builtin_prefetch(&starts_[far.index]);
            __builtin_prefetch(&starts_[far.first]);
            __builtin_prefetch(&hashes_[far.index], 1);
            const Repeat& near = repeats[i + kNear];
            __builtin_prefetch(bytes_.bytes() + starts_[near.index]);
            __builtin_prefetch(bytes_.bytes() + starts_[near.first]);
        }
        const Repeat& repeat = repeats[i];
        const std::size_t start = starts_[repeat.index];
        const std::size_t length = end(repeat.index) - start;
        if (isEqual(repeat.first, start, length)) {
            hashes_[repeat.index] = repeat.first;
            continue;
        }
        const auto* const bytes = reinterpret_cast<const char*>(bytes_.bytes() + start);
        hashes_[repeat.index] = others.try_emplace({ bytes, length }, repeat.index).first->second;
    }
}

/// Turns the hashes into the indexes that the objects have in the list, counted without those that equal an earlier
/// one.
/// - Returns: how many there are.
std::size_t BinaryListWriter::makeFinal()
{
    findEqual();
    Index count = 0;
    for (std::size_t i = 0; i < hashes_.size(); ++i)
        hashes_[i] = hashes_[i] == i ? count++ : hashes_[hashes_[i]];
    return count;
}

// ---- containers

BinaryListWriter::Index BinaryListWriter::array(std::span<const Index> elements)
{
    const Index index = place(writeHead(0xa0, elements.size(), kReference), 0);
    bytes_.put(elements.data(), elements.size_bytes());
    ++containerCount_;
    referenceCount_ += elements.size();
    return index;
}

BinaryListWriter::Index BinaryListWriter::dictionary(
    std::span<const Index> keys, std::span<const Index> values)
{
    const Index index = place(writeHead(0xd0, keys.size(), 2 * kReference), 0);
    bytes_.put(keys.data(), keys.size_bytes());
    bytes_.put(values.data(), values.size_bytes());
    ++containerCount_;
    referenceCount_ += keys.size() + values.size();
    return index;
}

/// Moves what stays to the front and gives references their final form; nothing overtakes what is still to be read.
/// The starts become those of the list.
/// - Returns: where the objects end.
template <class Reference> std::size_t BinaryListWriter::moveTogether(std::size_t count)
{
    auto* const bytes = const_cast<unsigned char*>(bytes_.bytes());
    std::size_t to = kSignature.size();
    std::size_t moved = to; // up to here bytes have found their place, or are left out
    const auto moveTo = [&](std::size_t end) {
        if (to != moved)
            std::memmove(bytes + to, bytes + moved, end - moved);
        to += end - moved;
        moved = end;
    };
    std::size_t done = 0;
    for (std::size_t i = 0; i < hashes_.size(); ++i) {
        const std::size_t start = starts_[i];
        const std::size_t end = this->end(static_cast<Index>(i));
        if (hashes_[i] != done) { // equal to an earlier one
            moveTo(start);
            moved = end;
            continue;
        }
        starts_[done++] = to + (start - moved);
        const std::size_t head = headOfContainer(bytes + start);
        if (!head)
            continue;
        moveTo(start + head);
        for (; moved < end; moved += kReference, to += sizeof(Reference)) {
            Index index = 0;
            std::memcpy(&index, bytes + moved, kReference);
            storeAs<Reference>(bytes + to, hashes_[index]);
        }
    }
    moveTo(bytes_.size());
    starts_.cutTo(count);
    return to;
}

/// Writes where the objects begin.
template <class Offset> void BinaryListWriter::writeTable()
{
    unsigned char* to = bytes_.room(starts_.size() * sizeof(Offset));
    for (std::size_t i = 0; i < starts_.size(); ++i, to += sizeof(Offset))
        storeAs<Offset>(to, starts_[i]);
    bytes_.advance(starts_.size() * sizeof(Offset));
}

Ref<NSData> BinaryListWriter::finish(Index top)
{
    constexpr std::size_t kTrailer = 32;
    const std::size_t count = makeFinal();
    const std::size_t referenceSize = sizeFor(count - 1);
    const std::size_t offsetSize
        = sizeFor(bytes_.size() - referenceCount_ * (kReference - referenceSize));
    top = hashes_[top];
    const std::size_t table = withWord(
        referenceSize, [&](auto reference) { return moveTogether<decltype(reference)>(count); });
    bytes_.cutTo(table);
    withWord(offsetSize, [&](auto offset) { writeTable<decltype(offset)>(); });
    unsigned char* const to = bytes_.room(kTrailer);
    std::memset(to, 0, kTrailer);
    to[6] = static_cast<unsigned char>(offsetSize);
    to[7] = static_cast<unsigned char>(referenceSize);
    store(to + 8, count, 8);
    store(to + 16, top, 8);
    store(to + 24, table, 8);
    bytes_.advance(kTrailer);
    Ref<NSData> list = bytes_.data();
    *this = BinaryListWriter();
    return list;
}

}
