// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "Shaper.h"

namespace brindle::text {

/// What a remembered word is known by.
struct WordKey {
    ShapingStyle style;
    bool beforeSpace = false; // a space follows, which may pull the last letter closer
    std::u16string_view text;

    friend bool operator==(const WordKey& a, const WordKey& b)
    {
        return a.style == b.style && a.beforeSpace == b.beforeSpace
            && a.text.size() == b.text.size()
            && std::memcmp(a.text.data(), b.text.data(), a.text.size() * sizeof(char16_t)) == 0;
    }
};

/// A remembered word. Its text and glyphs lie in the cache's memory.
struct CachedWord {
    WordKey key;
    Advances advances;
    std::span<const ShapedGlyph> glyphs;
};

/// Shaped words, in bounded memory.
///
/// There are two generations. New words and words that are used again go to the young one; when
/// that is full, it becomes the old one and the words that nobody asked for since are forgotten
/// together; its memory then serves the new one. Thread: one at a time.
class WordCache {
public:
    /// Longer words are not worth remembering.
    static constexpr std::size_t kLongestWord = 48;

    /// Answers a word, good until the next call.
    /// - Nil: null for a word that is not remembered.
    /// - hash: the key's `hashOf`.
    const CachedWord* find(const WordKey& key, std::uint64_t hash);

    void insert(const WordKey& key, std::uint64_t hash, const Advances& advances,
        std::span<const ShapedGlyph> glyphs);

    static std::uint64_t hashOf(const WordKey& key);

    void clear();
    std::size_t wordCount() const { return young_.count + old_.count; }
    std::size_t byteCount() const;

private:
    static constexpr std::size_t kBlockBytes = 64 * 1024;

    /// Where a word lies, with a part of its hash, so that other words are passed over without a look at them.
    struct Slot {
        static constexpr std::uint32_t kEmpty = ~std::uint32_t {};
        std::uint32_t place = kEmpty;
        std::uint32_t tag = 0;
    };

    struct Generation {
        std::vector<Slot> slots; // a power of two, or none
        std::vector<std::unique_ptr<std::byte[]>> blocks; // kept when their words are forgotten
        std::size_t used = 0; // bytes of the blocks, up to a place in the last one that is used
        std::size_t count = 0;

        const CachedWord* find(const WordKey& key, std::uint64_t hash) const;
        std::size_t slotFor(const WordKey& key, std::uint64_t hash) const;
        std::byte* at(std::size_t place) const
        {
            return blocks[place / kBlockBytes].get() + place % kBlockBytes;
        }
        bool hasRoomFor(std::size_t bytes) const;
        std::size_t allocate(std::size_t bytes);
        void insert(std::uint64_t hash, const WordKey& key, const Advances& advances,
            std::span<const ShapedGlyph> glyphs);
        void forget();
    };

    Generation young_;
    Generation old_;
};

}
