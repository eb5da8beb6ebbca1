// SPDX-License-Identifier: Apache-2.0
#include "BinaryListWriterPrivate.h"

#include <bit>

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

BinaryListWriter::Index BinaryListWriter::place(std::size_t start, std::uint32_t hash)
{
    starts_.add(start);
    hashes_.add(hash);
    return static_cast<Index>(starts_.size() - 1);
}

/// Answers where the bytes of an object end.
std::size_t BinaryListWriter::end(Index index) const
{
    return index + 1 < starts_.size() ? starts_[index + 1] : bytes_.size();
}

/// Answers whether a value equals the bytes from `start` on. They say how many they are, so that a longer value
/// cannot begin with them.
bool BinaryListWriter::isEqual(Index index, std::size_t start, std::size_t length) const
{
    return std::memcmp(bytes_.bytes() + starts_[index], bytes_.bytes() + start, length) == 0;
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
    starts_.cutTo(index);
    hashes_.cutTo(index);
    bytes_.cutTo(start);
    return indexIn(known);
}

/// Turns the hashes into the indexes that the objects have in the list, counted without those that equal an earlier
/// one.
/// - Returns: how many there are.
std::size_t BinaryListWriter::makeFinal()
{
    constexpr std::size_t kAhead = 16;
    constexpr std::size_t kNear = 8;
    const std::size_t values = starts_.size() - containerCount_;
    Row<Slot> slots(std::bit_ceil(values + values / 2 + 1));
    const std::size_t mask = slots.size() - 1;
    std::size_t count = 0;
    for (std::size_t i = 0; i < hashes_.size(); ++i) {
        if (i + kAhead < hashes_.size()) {
            __builtin_prefetch(&slots[hashes_[i + kAhead] & mask], 1);
            const std::uint32_t near = hashes_[i + kNear];
            if (const Slot slot = slots[near & mask]; slot && hashIn(slot) == near) {
                __builtin_prefetch(&starts_[indexIn(slot)]);
                __builtin_prefetch(&hashes_[indexIn(slot)]);
            }
        }
        const std::uint32_t hash = hashes_[i];
        if (!hash) {
            hashes_[i] = static_cast<Index>(count++);
            continue;
        }
        const Slot wanted = slotOf(hash, static_cast<Index>(i));
        Slot& slot = find(slots, wanted);
        if (slot) {
            hashes_[i] = hashes_[indexIn(slot)];
            continue;
        }
        slot = wanted;
        hashes_[i] = static_cast<Index>(count++);
    }
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

BinaryListWriter::Index BinaryListWriter::dictionary(std::span<const Entry> entries)
{
    const std::size_t size = entries.size() * kReference;
    const Index index = place(writeHead(0xd0, entries.size(), 2 * kReference), 0);
    unsigned char* key = bytes_.room(2 * size);
    for (const Entry& entry : entries) {
        std::memcpy(key, &entry.key, kReference);
        std::memcpy(key + size, &entry.value, kReference);
        key += kReference;
    }
    bytes_.advance(2 * size);
    ++containerCount_;
    referenceCount_ += 2 * entries.size();
    return index;
}

/// Moves what stays to the front and gives references their final form; nothing overtakes what is still to be read.
/// The starts become those of the list.
/// - Returns: where the objects end.
std::size_t BinaryListWriter::moveTogether(std::size_t count, std::size_t referenceSize)
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
        for (; moved < end; moved += kReference, to += referenceSize) {
            Index index = 0;
            std::memcpy(&index, bytes + moved, kReference);
            store(bytes + to, hashes_[index], referenceSize);
        }
    }
    moveTo(bytes_.size());
    starts_.cutTo(count);
    return to;
}

Ref<NSData> BinaryListWriter::finish(Index top)
{
    constexpr std::size_t kTrailer = 32;
    const std::size_t count = makeFinal();
    const std::size_t referenceSize = sizeFor(count - 1);
    const std::size_t offsetSize
        = sizeFor(bytes_.size() - referenceCount_ * (kReference - referenceSize));
    top = hashes_[top];
    const std::size_t table = moveTogether(count, referenceSize);
    bytes_.cutTo(table);
    unsigned char* to = bytes_.room(count * offsetSize + kTrailer);
    for (const std::uint64_t start : starts_) {
        store(to, start, offsetSize);
        to += offsetSize;
    }
    std::memset(to, 0, kTrailer);
    to[6] = static_cast<unsigned char>(offsetSize);
    to[7] = static_cast<unsigned char>(referenceSize);
    store(to + 8, count, 8);
    store(to + 16, top, 8);
    store(to + 24, table, 8);
    bytes_.advance(count * offsetSize + kTrailer);
    Ref<NSData> list = bytes_.data();
    *this = BinaryListWriter();
    return list;
}

}
