// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <bit>
#include <span>
#include <string_view>

#include "PropertyListPrivate.h"
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

/// Writes a number of 1, 2, 4 or 8 bytes, the highest first.
inline void store(unsigned char* to, std::uint64_t value, std::size_t size)
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

inline std::uint64_t mixed(std::uint64_t a, std::uint64_t b)
{
    __extension__ using Wide = unsigned __int128;
    const Wide product = static_cast<Wide>(a) * b;
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

/// Answers up to eight bytes as a number that tells them apart from others of the same length.
inline std::uint64_t rest(const unsigned char* bytes, std::size_t count)
{
    if (count >= 8)
        return word<std::uint64_t>(bytes);
    if (count >= 4)
        return word<std::uint32_t>(bytes) | word<std::uint32_t>(bytes + count - 4) << 32;
    return bytes[0] | std::uint64_t { bytes[count / 2] } << 8
        | std::uint64_t { bytes[count - 1] } << 16;
}

/// - count: at least 1.
inline std::uint32_t hashOf(const unsigned char* bytes, std::size_t count)
{
    constexpr std::uint64_t kFactor = 0x9e3779b97f4a7c15u;
    std::uint64_t hash = count * kFactor;
    for (; count > 8; bytes += 8, count -= 8)
        hash = mixed(hash ^ word<std::uint64_t>(bytes), kFactor);
    hash ^= rest(bytes, count);
    const auto half = static_cast<std::uint32_t>(mixed(hash ^ kFactor, 0xe7037ed1a0b428dbu));
    return half ? half : 1; // containers have 0
}

/// Writes the values of a binary list that hold no others, one after the other. Every operation answers where the
/// value's bytes begin; they say how many they are.
class ValueBytes {
protected:
    std::size_t writeBoolean(bool value);
    std::size_t writeInteger(std::int64_t value);
    std::size_t writeNatural(std::uint64_t value);
    std::size_t writeReal(double value);
    std::size_t writeSingle(float value);
    std::size_t writeDate(double seconds);
    std::size_t writeUid(std::uint64_t value);
    std::size_t writeData(std::span<const unsigned char> bytes);
    std::size_t writeString(strings::View text);
    /// Writes a marker with a count. There is room for the units behind it.
    std::size_t writeHead(unsigned char marker, std::size_t count, std::size_t unit);

    Output bytes_;

private:
    std::size_t writeNumber(unsigned char marker, std::uint64_t bits, std::size_t size);
};

}
