// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <bit>
#include <span>
#include <string_view>

#include "OutputPrivate.h"
#include "PropertyListPrivate.h"
#include "foundation/HashingPrivate.h"
#include "foundation/NSStringPrivate.h"

// What everything that writes binary property lists is made of.

namespace brindle::lists {

/// Answers how many bytes a number takes that is at most `largest`.
inline std::size_t sizeFor(std::uint64_t largest)
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

/// Answers what `body` does with a zero of 1, 2, 4 or 8 bytes.
template <class F> auto withWord(std::size_t size, F body)
{
    switch (size) {
    case 1:
        return body(std::uint8_t {});
    case 2:
        return body(std::uint16_t {});
    case 4:
        return body(std::uint32_t {});
    default:
        return body(std::uint64_t {});
    }
}

/// Writes a number of 1, 2, 4 or 8 bytes, the highest first.
inline void store(unsigned char* to, std::uint64_t value, std::size_t size)
{
    withWord(size, [&](auto word) { storeAs<decltype(word)>(to, value); });
}

/// Answers how many bytes stand before a container's references; 0 for an object that holds nothing.
inline std::size_t headOfContainer(const unsigned char* object)
{
    const unsigned kind = *object >> 4;
    if (kind != 0xa && kind != 0xd)
        return 0;
    return (*object & 15) == 15 ? 2 + (std::size_t { 1 } << (object[1] & 15)) : 1;
}

/// Answers half a hash, which is never 0: containers have that.
inline std::uint32_t halfOf(std::uint64_t hash)
{
    const auto half = static_cast<std::uint32_t>(hash);
    return half ? half : 1;
}
/// Answers the hash of a value's bytes. Most are few, or text of some words.
inline std::uint32_t hashOf(const unsigned char* bytes, std::size_t count)
{
    using namespace hashing;
    const std::uint64_t seed = hashing::seed();
    std::uint64_t hash = seed ^ count * kFactor;
    for (; count > 16; bytes += 16, count -= 16)
        hash = mixed(word<std::uint64_t>(bytes) ^ seed, word<std::uint64_t>(bytes + 8) ^ hash);
    const std::uint64_t last = count > 8 ? word<std::uint64_t>(bytes + count - 8) : 0;
    hash = mixed(mixed(rest(bytes, count) ^ seed, last ^ hash) ^ seed, kFactor);
    return halfOf(hash);
}
/// The same of a number, by its bits.
inline std::uint32_t hashOf(std::uint64_t bits) { return halfOf(hashing::ofWord(bits)); }

/// Writes the values of a binary list that hold no others, one after the other. Every operation answers where the
/// value's bytes begin; they say how many they are.
class ValueBytes {
protected:
    std::size_t writeBoolean(bool value)
    {
        const std::size_t start = bytes_.size();
        bytes_.put(value ? '\x09' : '\x08');
        return start;
    }
    std::size_t writeInteger(std::int64_t value)
    {
        return writeNumber(
            0x10, static_cast<std::uint64_t>(value)); // negative ones take eight bytes
    }
    std::size_t writeNatural(std::uint64_t value);
    std::size_t writeReal(double value)
    {
        return write<std::uint64_t>(0x23, std::bit_cast<std::uint64_t>(value));
    }
    std::size_t writeSingle(float value)
    {
        return write<std::uint32_t>(0x22, std::bit_cast<std::uint32_t>(value));
    }
    /// - seconds: since the reference date.
    std::size_t writeDate(double seconds)
    {
        return write<std::uint64_t>(0x33, std::bit_cast<std::uint64_t>(seconds));
    }
    std::size_t writeUid(std::uint64_t value)
    {
        return value <= 0xff      ? write<std::uint8_t>(0x80, value)
            : value <= 0xffff     ? write<std::uint16_t>(0x81, value)
            : value <= 0xffffffff ? write<std::uint32_t>(0x83, value)
                                  : write<std::uint64_t>(0x87, value);
    }
    std::size_t writeData(std::span<const unsigned char> bytes);
    std::size_t writeString(strings::View text);
    /// Writes a marker with a count. There is room for the units behind it.
    std::size_t writeHead(unsigned char marker, std::size_t count, std::size_t unit)
    {
        const std::size_t start = bytes_.size();
        unsigned char* const to = bytes_.room(10 + count * unit);
        if (count >= 15) [[unlikely]]
            return writeLongHead(marker, count);
        *to = static_cast<unsigned char>(marker | count);
        bytes_.advance(1);
        return start;
    }

    Output bytes_;

private:
    template <class Word> std::size_t write(unsigned char marker, std::uint64_t bits)
    {
        const std::size_t start = bytes_.size();
        unsigned char* const to = bytes_.room(1 + sizeof(Word));
        *to = marker;
        storeAs<Word>(to + 1, bits);
        bytes_.advance(1 + sizeof(Word));
        return start;
    }
    /// Writes a number in as few bytes as it needs; the marker gets the power of two that their number is.
    std::size_t writeNumber(unsigned char marker, std::uint64_t value)
    {
        return value <= 0xff      ? write<std::uint8_t>(marker, value)
            : value <= 0xffff     ? write<std::uint16_t>(marker | 1, value)
            : value <= 0xffffffff ? write<std::uint32_t>(marker | 2, value)
                                  : write<std::uint64_t>(marker | 3, value);
    }
    std::size_t writeLongHead(unsigned char marker, std::size_t count);
};

}
