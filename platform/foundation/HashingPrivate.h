// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <cstdint>
#include <cstring>
#include <span>

/// Hashes of values. They are others in every process: who chooses the values cannot choose them so that their hashes
/// are equal, and make a search in a table look at all of them.

namespace brindle::hashing {

extern constinit std::atomic<std::uint64_t> seedOfProcess; // 0 until somebody asks
std::uint64_t makeSeed();

/// Answers a random number, the same one as long as the process runs.
inline std::uint64_t seed()
{
    const std::uint64_t known = seedOfProcess.load(std::memory_order_relaxed);
    return known ? known : makeSeed();
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
    if (!count)
        return 0;
    return bytes[0] | std::uint64_t { bytes[count / 2] } << 8
        | std::uint64_t { bytes[count - 1] } << 16;
}

inline constexpr std::uint64_t kFactor = 0x9e3779b97f4a7c15u;

/// Answers the hash of one word.
inline std::uint64_t ofWord(std::uint64_t bits, std::uint64_t seed = hashing::seed())
{
    return mixed(mixed(bits ^ seed, kFactor) ^ seed, 0xe7037ed1a0b428dbu);
}

/// Answers the hash of bytes.
inline std::uint64_t ofBytes(
    const unsigned char* bytes, std::size_t count, std::uint64_t seed = hashing::seed())
{
    std::uint64_t hash = seed ^ count * kFactor;
    for (; count > 8; bytes += 8, count -= 8)
        hash = mixed(hash ^ word<std::uint64_t>(bytes), seed | 1);
    return ofWord(hash ^ rest(bytes, count), seed);
}
inline std::uint64_t ofBytes(std::span<const unsigned char> bytes)
{
    return ofBytes(bytes.data(), bytes.size());
}

}
