// SPDX-License-Identifier: Apache-2.0
#include "BinaryListWriterPrivate.h"

#include <bit>

namespace brindle::lists {

namespace {

    /// Answers how many bytes a number takes that is at most `largest`.
    std::size_t sizeFor(std::uint64_t largest)
    {
        return largest <= 0xff ? 1 : largest <= 0xffff ? 2 : largest <= 0xffffffff ? 4 : 8;
    }

    template <class Word> Word bigEndian(Word word)
    {
        if constexpr (std::endian::native == std::endian::big || sizeof word == 1)
            return word;
        else if constexpr (sizeof word == 2)
            return __builtin_bswap16(word);
        else if constexpr (sizeof word == 4)
            return __builtin_bswap32(word);
        else
            return __builtin_bswap64(word);
    }

    template <class Word> void storeAs(unsigned char* to, std::uint64_t value)
    {
        const Word word = bigEndian(static_cast<Word>(value));
        std::memcpy(to, &word, sizeof word);
    }

    /// Writes a number of 1, 2, 4 or 8 bytes, the highest first.
    void store(unsigned char* to, std::uint64_t value, std::size_t size)
    {
        switch (size) {
        case 1:
            return storeAs<std::uint8_t>(to, value);
        case 2:
            return storeAs<std::uint16_t>(to, value);
        case 4:
            return storeAs<std::uint32_t>(to, value);
        default:
            return storeAs<std::uint64_t>(to, value);
        }
    }

    template <class Word> std::uint64_t word(const unsigned char* at)
    {
        Word value;
        std::memcpy(&value, at, sizeof value);
        return value;
    }

    std::uint64_t mixed(std::uint64_t a, std::uint64_t b)
    {
        __extension__ using Wide = unsigned __int128;
        const Wide product = static_cast<Wide>(a) * b;
        return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
    }

    /// Answers up to eight bytes as a number that tells them apart from others of the same length.
    std::uint64_t rest(const unsigned char* bytes, std::size_t count)
    {
        if (count >= 8)
            return word<std::uint64_t>(bytes);
        if (count >= 4)
            return word<std::uint32_t>(bytes) | word<std::uint32_t>(bytes + count - 4) << 32;
        return bytes[0] | std::uint64_t { bytes[count / 2] } << 8
            | std::uint64_t { bytes[count - 1] } << 16;
    }

    /// - count: at least 1.
    std::uint32_t hashOf(const unsigned char* bytes, std::size_t count)
    {
        constexpr std::uint64_t kFactor = 0x9e3779b97f4a7c15u;
        std::uint64_t hash = count * kFactor;
        for (; count > 8; bytes += 8, count -= 8)
            hash = mixed(hash ^ word<std::uint64_t>(bytes), kFactor);
        hash ^= rest(bytes, count);
        const auto half = static_cast<std::uint32_t>(mixed(hash ^ kFactor, 0xe7037ed1a0b428dbu));
        return half ? half : 1; // containers have 0
    }

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
    places_.push_back({ start, references_.size() });
    hashes_.push_back(hash);
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
BinaryListWriter::Slot& BinaryListWriter::find(std::vector<Slot>& slots, Slot wanted) const
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
        std::vector<Slot> old(std::max<std::size_t>(64, 2 * known_.size()));
        old.swap(known_);
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
    places_.pop_back();
    hashes_.pop_back();
    bytes_.cutTo(start);
    return indexIn(known);
}

/// Answers the index that each object has in the list, counted without those that equal an earlier one.
std::vector<BinaryListWriter::Index> BinaryListWriter::finalIndexes(std::size_t& count) const
{
    constexpr std::size_t kAhead = 16;
    std::vector<Slot> slots(std::bit_ceil(2 * places_.size()));
    std::vector<Index> indexes(places_.size());
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

BinaryListWriter::Index BinaryListWriter::number(
    unsigned char marker, std::uint64_t bits, std::size_t size)
{
    const std::size_t start = bytes_.size();
    unsigned char* const to = bytes_.room(9);
    *to = marker;
    store(to + 1, bits, size);
    bytes_.advance(1 + size);
    return keep(start);
}

BinaryListWriter::Index BinaryListWriter::boolean(bool value)
{
    const std::size_t start = bytes_.size();
    bytes_.put(value ? '\x09' : '\x08');
    return keep(start);
}

BinaryListWriter::Index BinaryListWriter::integer(std::int64_t value)
{
    const auto bits = static_cast<std::uint64_t>(value);
    const std::size_t size = sizeFor(bits); // negative ones take eight bytes
    return number(static_cast<unsigned char>(0x10 | std::countr_zero(size)), bits, size);
}

BinaryListWriter::Index BinaryListWriter::natural(std::uint64_t value)
{
    if (static_cast<std::int64_t>(value) >= 0)
        return integer(static_cast<std::int64_t>(value));
    const std::size_t start = bytes_.size();
    unsigned char* const to = bytes_.room(17);
    *to = 0x14;
    store(to + 1, 0, 8);
    store(to + 9, value, 8);
    bytes_.advance(17);
    return keep(start);
}

BinaryListWriter::Index BinaryListWriter::real(double value)
{
    return number(0x23, std::bit_cast<std::uint64_t>(value), 8);
}

BinaryListWriter::Index BinaryListWriter::single(float value)
{
    return number(0x22, std::bit_cast<std::uint32_t>(value), 4);
}

BinaryListWriter::Index BinaryListWriter::date(double seconds)
{
    return number(0x33, std::bit_cast<std::uint64_t>(seconds), 8);
}

BinaryListWriter::Index BinaryListWriter::uid(std::uint64_t value)
{
    const std::size_t size = sizeFor(value);
    return number(static_cast<unsigned char>(0x80 | (size - 1)), value, size);
}

/// Writes a marker with a count and answers where. There is room for the units behind it.
std::size_t BinaryListWriter::head(unsigned char marker, std::size_t count, std::size_t unit)
{
    const std::size_t start = bytes_.size();
    unsigned char* const to = bytes_.room(10 + count * unit);
    if (count < 15) {
        *to = static_cast<unsigned char>(marker | count);
        bytes_.advance(1);
        return start;
    }
    const std::size_t size = sizeFor(count);
    to[0] = marker | 15;
    to[1] = static_cast<unsigned char>(0x10 | std::countr_zero(size));
    store(to + 2, count, size);
    bytes_.advance(2 + size);
    return start;
}

BinaryListWriter::Index BinaryListWriter::data(std::span<const unsigned char> bytes)
{
    const std::size_t start = head(0x40, bytes.size(), 1);
    bytes_.put(bytes.data(), bytes.size());
    return keep(start);
}

std::size_t BinaryListWriter::write(strings::View text)
{
    const std::size_t count = text.size();
    if (text.isNarrow()) {
        const std::size_t start = head(0x50, count, 1);
        bytes_.put(text.narrow());
        return start;
    }
    const std::size_t start = head(0x60, count, 2);
    unsigned char* const to = bytes_.room(2 * count);
    const char16_t* const units = text.wide().data();
    for (std::size_t i = 0; i < count; ++i)
        storeAs<std::uint16_t>(to + 2 * i, units[i]);
    bytes_.advance(2 * count);
    return start;
}

BinaryListWriter::Index BinaryListWriter::string(strings::View text)
{
    return keepOnce(write(text));
}

BinaryListWriter::Index BinaryListWriter::passingString(strings::View text)
{
    return keep(write(text));
}

// ---- containers

BinaryListWriter::Index BinaryListWriter::array(std::span<const Index> elements)
{
    const Index index = place(head(0xa0, elements.size(), 0), 0);
    references_.insert(references_.end(), elements.begin(), elements.end());
    return index;
}

BinaryListWriter::Index BinaryListWriter::dictionary(std::span<const Entry> entries)
{
    const Index index = place(head(0xd0, entries.size(), 0), 0);
    const std::size_t first = references_.size();
    references_.resize(first + 2 * entries.size());
    Index* to = references_.data() + first;
    for (const Entry& entry : entries)
        *to++ = entry.key;
    for (const Entry& entry : entries)
        *to++ = entry.value;
    return index;
}

Ref<NSData> BinaryListWriter::finish(Index top)
{
    constexpr std::string_view kHeader = "bplist00";
    constexpr std::size_t kTrailer = 32;
    std::size_t count = 0;
    const std::vector<Index> indexes = finalIndexes(count);
    const std::size_t referenceSize = sizeFor(count - 1);
    const std::size_t longest = kHeader.size() + bytes_.size() + references_.size() * referenceSize;
    const std::size_t offsetSize = sizeFor(longest);

    Output out;
    out.room(longest + count * offsetSize + kTrailer);
    out.put(kHeader);
    std::vector<std::uint64_t> offsets;
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
        offsets.push_back(out.size() + place.bytes - copied);
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
