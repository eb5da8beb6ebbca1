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

    template <class Word>
    unsigned char* storeAll(unsigned char* to, const std::uint32_t* from, std::size_t count)
    {
        for (std::size_t i = 0; i < count; ++i, to += sizeof(Word))
            storeAs<Word>(to, from[i]);
        return to;
    }

    std::uint64_t word(const unsigned char* at, std::size_t size)
    {
        std::uint64_t value = 0;
        std::memcpy(&value, at, size);
        return value;
    }

    std::uint64_t mixed(std::uint64_t a, std::uint64_t b)
    {
        __extension__ using Wide = unsigned __int128;
        const Wide product = static_cast<Wide>(a) * b;
        return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
    }

    std::uint32_t hashOf(const unsigned char* bytes, std::size_t count)
    {
        constexpr std::uint64_t kFactor = 0x9e3779b97f4a7c15u;
        std::uint64_t hash = count * kFactor;
        for (; count > 8; bytes += 8, count -= 8)
            hash = mixed(hash ^ word(bytes, 8), kFactor);
        hash ^= count == 8 ? word(bytes, 8) : word(bytes, count);
        return static_cast<std::uint32_t>(mixed(hash ^ kFactor, 0xe7037ed1a0b428dbu));
    }

}

// ---- values

BinaryListWriter::Index BinaryListWriter::place(std::size_t start)
{
    places_.push_back({ start, references_.size() });
    return static_cast<Index>(places_.size() - 1);
}

/// Keeps the value whose bytes begin at `start`, or takes them back and answers its equal.
BinaryListWriter::Index BinaryListWriter::unique(std::size_t start)
{
    if (2 * kept_ >= slots_.size())
        growTable();
    const unsigned char* const bytes = bytes_.bytes();
    const std::size_t length = bytes_.size() - start;
    const std::uint32_t hash = hashOf(bytes + start, length);
    const std::size_t mask = slots_.size() - 1;
    std::size_t at = hash & mask;
    for (; slots_[at].indexAndOne; at = (at + 1) & mask) {
        if (slots_[at].hash != hash)
            continue;
        // A value's bytes say how many they are, so the equal one needs no length.
        const std::uint64_t other = places_[slots_[at].indexAndOne - 1].bytes;
        if (std::memcmp(bytes + other, bytes + start, length) == 0) {
            bytes_.cutTo(start);
            return slots_[at].indexAndOne - 1;
        }
    }
    const Index index = place(start);
    slots_[at] = { hash, index + 1 };
    ++kept_;
    return index;
}

void BinaryListWriter::growTable()
{
    std::vector<Slot> old(std::max<std::size_t>(1024, 2 * slots_.size()));
    old.swap(slots_);
    const std::size_t mask = slots_.size() - 1;
    for (const Slot& slot : old) {
        if (!slot.indexAndOne)
            continue;
        std::size_t at = slot.hash & mask;
        while (slots_[at].indexAndOne)
            at = (at + 1) & mask;
        slots_[at] = slot;
    }
}

BinaryListWriter::Index BinaryListWriter::number(
    unsigned char marker, std::uint64_t bits, std::size_t size)
{
    const std::size_t start = bytes_.size();
    unsigned char* const to = bytes_.room(9);
    *to = marker;
    store(to + 1, bits, size);
    bytes_.advance(1 + size);
    return unique(start);
}

BinaryListWriter::Index BinaryListWriter::boolean(bool value)
{
    const std::size_t start = bytes_.size();
    bytes_.put(value ? '\x09' : '\x08');
    return unique(start);
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
    return unique(start);
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
    return unique(start);
}

BinaryListWriter::Index BinaryListWriter::string(strings::View text)
{
    const std::size_t count = text.size();
    if (text.isNarrow()) {
        const std::size_t start = head(0x50, count, 1);
        bytes_.put(text.narrow());
        return unique(start);
    }
    const std::size_t start = head(0x60, count, 2);
    unsigned char* const to = bytes_.room(2 * count);
    const char16_t* const units = text.wide().data();
    for (std::size_t i = 0; i < count; ++i)
        storeAs<std::uint16_t>(to + 2 * i, units[i]);
    bytes_.advance(2 * count);
    return unique(start);
}

// ---- containers

BinaryListWriter::Index BinaryListWriter::beginContainer(unsigned char marker, std::size_t count)
{
    const Index index = place(head(marker, count, 0));
    gaps_.push_back({ bytes_.size(), references_.size() });
    return index;
}

BinaryListWriter::Index BinaryListWriter::array(std::span<const Index> elements)
{
    const Index index = beginContainer(0xa0, elements.size());
    references_.insert(references_.end(), elements.begin(), elements.end());
    return index;
}

BinaryListWriter::Index BinaryListWriter::dictionary(std::span<const Entry> entries)
{
    const Index index = beginContainer(0xd0, entries.size());
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
    const std::size_t referenceSize = sizeFor(places_.size() - 1);
    const std::size_t table = kHeader.size() + bytes_.size() + references_.size() * referenceSize;
    const std::size_t offsetSize = sizeFor(table - 1);
    const std::size_t length = table + places_.size() * offsetSize + kTrailer;

    Output out;
    unsigned char* to = out.room(length);
    const auto copy = [&](const void* from, std::size_t count) {
        if (count)
            std::memcpy(to, from, count);
        to += count;
    };
    copy(kHeader.data(), kHeader.size());
    gaps_.push_back({ bytes_.size(), references_.size() });
    std::uint64_t copied = 0;
    for (std::size_t i = 0; i < gaps_.size(); ++i) {
        copy(bytes_.bytes() + copied, gaps_[i].bytes - copied);
        copied = gaps_[i].bytes;
        const std::uint64_t end
            = i + 1 < gaps_.size() ? gaps_[i + 1].references : references_.size();
        const Index* const from = references_.data() + gaps_[i].references;
        const std::size_t count = end - gaps_[i].references;
        to = referenceSize == 1  ? storeAll<std::uint8_t>(to, from, count)
            : referenceSize == 2 ? storeAll<std::uint16_t>(to, from, count)
                                 : storeAll<std::uint32_t>(to, from, count);
    }
    for (const Place& object : places_) {
        store(to, kHeader.size() + object.bytes + object.references * referenceSize, offsetSize);
        to += offsetSize;
    }
    std::memset(to, 0, kTrailer);
    to[6] = static_cast<unsigned char>(offsetSize);
    to[7] = static_cast<unsigned char>(referenceSize);
    store(to + 8, places_.size(), 8);
    store(to + 16, top, 8);
    store(to + 24, table, 8);
    out.advance(length);
    *this = BinaryListWriter();
    return out.data();
}

}
