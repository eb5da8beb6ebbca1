// SPDX-License-Identifier: Apache-2.0
#include "WordCache.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <new>
#include <utility>

namespace brindle::text {

namespace {

    // Both generations together lie in a processor's own memory, or looking for new words would cost as much again.
    constexpr std::size_t kSlots = 4096;
    constexpr std::size_t kWordsPerGeneration = kSlots / 2;
    constexpr std::size_t kBlocksPerGeneration = 6;

    // A word of the longest kind has a few glyphs a unit at most; more is not worth remembering.
    constexpr std::size_t kMostGlyphs = 256;

    std::size_t roundedUp(std::size_t bytes) { return (bytes + 7) / 8 * 8; }

    std::size_t bytesFor(const WordKey& key, std::size_t glyphCount)
    {
        return roundedUp(sizeof(CachedWord)) + roundedUp(glyphCount * sizeof(ShapedGlyph))
            + roundedUp(key.text.size() * sizeof(char16_t));
    }

    std::uint32_t tagOf(std::uint64_t hash) { return static_cast<std::uint32_t>(hash >> 32); }

    std::uint64_t mixed(std::uint64_t hash, std::uint64_t value)
    {
        constexpr std::uint64_t kMultiplier = 0x9E3779B97F4A7C15;
        return std::rotl((hash ^ value) * kMultiplier, 29);
    }

}

std::uint64_t WordCache::hashOf(const WordKey& key)
{
    std::uint64_t hash = reinterpret_cast<std::uintptr_t>(key.style.face);
    hash = mixed(hash,
        std::uint64_t { key.style.script } << 2 | (key.style.rightToLeft ? 2u : 0u)
            | (key.beforeSpace ? 1u : 0u));
    constexpr std::size_t kUnitsPerStep = sizeof(std::uint64_t) / sizeof(char16_t);
    std::size_t index = 0;
    for (; index + kUnitsPerStep <= key.text.size(); index += kUnitsPerStep) {
        std::uint64_t units = 0;
        std::memcpy(&units, key.text.data() + index, sizeof units);
        hash = mixed(hash, units);
    }
    std::uint64_t rest = key.text.size();
    for (; index < key.text.size(); ++index)
        rest = rest << 16 | key.text[index];
    return mixed(mixed(hash, rest), 0);
}

/// Answers the slot of a word, or the empty one where it belongs.
std::size_t WordCache::Generation::slotFor(const WordKey& key, std::uint64_t hash) const
{
    std::size_t slot = hash % kSlots;
    for (; slots[slot].place != Slot::kEmpty; slot = (slot + 1) % kSlots) {
        if (slots[slot].tag == tagOf(hash)
            && reinterpret_cast<const CachedWord*>(at(slots[slot].place))->key == key)
            break;
    }
    return slot;
}

const CachedWord* WordCache::Generation::find(const WordKey& key, std::uint64_t hash) const
{
    if (slots.empty())
        return nullptr;
    const std::uint32_t place = slots[slotFor(key, hash)].place;
    return place == Slot::kEmpty ? nullptr : reinterpret_cast<const CachedWord*>(at(place));
}

bool WordCache::Generation::hasRoomFor(std::size_t bytes) const
{
    const std::size_t block = used / kBlockBytes;
    const std::size_t whole = block + (used % kBlockBytes + bytes <= kBlockBytes ? 0 : 1);
    return count < kWordsPerGeneration && whole < kBlocksPerGeneration;
}

std::size_t WordCache::Generation::allocate(std::size_t bytes)
{
    if (used % kBlockBytes + bytes > kBlockBytes)
        used = (used / kBlockBytes + 1) * kBlockBytes;
    if (used / kBlockBytes == blocks.size())
        blocks.push_back(std::make_unique_for_overwrite<std::byte[]>(kBlockBytes));
    return std::exchange(used, used + bytes);
}

void WordCache::Generation::insert(std::uint64_t hash, const WordKey& key, const Advances& advances,
    std::span<const ShapedGlyph> glyphs)
{
    if (slots.empty())
        slots.resize(kSlots);
    const std::size_t slot = slotFor(key, hash);
    if (slots[slot].place != Slot::kEmpty)
        return;
    const std::size_t start = allocate(bytesFor(key, glyphs.size()));
    std::byte* place = at(start);
    auto* word = new (place) CachedWord { key, advances, {} };
    place += roundedUp(sizeof(CachedWord));
    auto* keptGlyphs = reinterpret_cast<ShapedGlyph*>(place);
    std::uninitialized_copy(glyphs.begin(), glyphs.end(), keptGlyphs);
    word->glyphs = { keptGlyphs, glyphs.size() };
    auto* keptText = reinterpret_cast<char16_t*>(place + roundedUp(glyphs.size_bytes()));
    std::uninitialized_copy(key.text.begin(), key.text.end(), keptText);
    word->key.text = { keptText, key.text.size() };
    slots[slot] = { static_cast<std::uint32_t>(start), tagOf(hash) };
    ++count;
}

void WordCache::Generation::forget()
{
    std::ranges::fill(slots, Slot {});
    used = 0;
    count = 0;
}

const CachedWord* WordCache::find(const WordKey& key, std::uint64_t hash)
{
    if (const CachedWord* word = young_.find(key, hash))
        return word;
    const CachedWord* word = old_.find(key, hash);
    if (!word)
        return nullptr;
    // When the young generation is full, this word would be dropped by the change it causes.
    if (young_.hasRoomFor(bytesFor(key, word->glyphs.size())))
        young_.insert(hash, word->key, word->advances, word->glyphs);
    return word;
}

void WordCache::insert(const WordKey& key, std::uint64_t hash, const Advances& advances,
    std::span<const ShapedGlyph> glyphs)
{
    if (key.text.size() > kLongestWord || glyphs.size() > kMostGlyphs)
        return;
    if (!young_.hasRoomFor(bytesFor(key, glyphs.size()))) {
        std::swap(old_, young_);
        young_.forget();
    }
    young_.insert(hash, key, advances, glyphs);
}

void WordCache::clear()
{
    young_ = Generation {};
    old_ = Generation {};
}

std::size_t WordCache::byteCount() const
{
    return (young_.blocks.size() + old_.blocks.size()) * kBlockBytes
        + (young_.slots.size() + old_.slots.size()) * sizeof(Slot);
}

}
