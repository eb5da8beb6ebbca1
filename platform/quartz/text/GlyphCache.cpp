// SPDX-License-Identifier: Apache-2.0
#include "GlyphCache.h"

#include "GlyphRasterizer.h"

#include <algorithm>
#include <unordered_map>

namespace brindle::text {

namespace {

    constexpr std::size_t kSharedLimit = 4 * 1024 * 1024;

    // What a mask costs besides its bytes: the table's node and the two blocks of memory.
    constexpr std::size_t kEntryOverhead = 128;

    struct Key {
        const FontFace* face = nullptr;
        GlyphId glyph = 0;
        int pixelsPerEm64 = 0;
        int position = 0;

        friend bool operator==(const Key&, const Key&) = default;
    };

    struct KeyHash {
        std::size_t operator()(const Key& key) const
        {
            constexpr std::uint64_t kMultiplier = 0x9E3779B97F4A7C15;
            const std::uint64_t size = static_cast<std::uint32_t>(key.pixelsPerEm64);
            std::uint64_t hash = reinterpret_cast<std::uintptr_t>(key.face);
            hash = (hash ^ std::uint64_t { key.glyph } << 34 ^ size << 4
                       ^ static_cast<std::uint32_t>(key.position))
                * kMultiplier;
            return static_cast<std::size_t>(hash ^ hash >> 32);
        }
    };

    GlyphMask viewOf(const DrawnGlyph& glyph)
    {
        return { glyph.coverage.empty() ? nullptr : glyph.coverage.data(),
            glyph.pixels.empty() ? nullptr : glyph.pixels.data(), glyph.width, glyph.height,
            glyph.left, glyph.top };
    }

    std::size_t bytesOf(const DrawnGlyph& glyph)
    {
        return glyph.coverage.capacity() + glyph.pixels.capacity() * sizeof(std::uint32_t)
            + kEntryOverhead;
    }

}

/// Two generations of masks: when the young one holds half of what is allowed, it becomes the old
/// one and the masks that nobody asked for since are forgotten together.
struct GlyphCache::Store {
    using Generation = std::unordered_map<Key, DrawnGlyph, KeyHash>;

    std::size_t generationLimit = 0;
    Generation young;
    Generation old;
    std::size_t youngBytes = 0;
    std::size_t oldBytes = 0;

    const DrawnGlyph& keep(const Key& key, DrawnGlyph glyph)
    {
        const std::size_t bytes = bytesOf(glyph);
        if (youngBytes + bytes > generationLimit) {
            old = std::move(young);
            oldBytes = youngBytes;
            young = {};
            youngBytes = 0;
        }
        youngBytes += bytes;
        return young.insert_or_assign(key, std::move(glyph)).first->second;
    }

    /// Moves a mask over from the old generation.
    /// - Nil: null when it is not there.
    const DrawnGlyph* revive(const Key& key)
    {
        const auto found = old.find(key);
        if (found == old.end())
            return nullptr;
        DrawnGlyph glyph = std::move(found->second);
        oldBytes -= bytesOf(glyph);
        old.erase(found);
        return &keep(key, std::move(glyph));
    }
};

GlyphCache::GlyphCache(std::size_t byteLimit)
    : store_(std::make_unique<Store>())
{
    store_->generationLimit = byteLimit / 2;
}

GlyphCache::~GlyphCache() = default;

GlyphCache& GlyphCache::shared()
{
    // Never destroyed: other threads may still draw while the process ends.
    static GlyphCache* const cache = new GlyphCache(kSharedLimit);
    return *cache;
}

std::size_t GlyphCache::bytesInUse() const
{
    const std::lock_guard lock(mutex_);
    return store_->youngBytes + store_->oldBytes;
}

GlyphPicture GlyphCache::Session::picture(
    const FontFace& face, GlyphId glyph, double pixelSize) const
{
    return readPicture(face, glyph, pixelSize);
}

GlyphMask GlyphCache::find(const FontFace& face, GlyphId glyph, double pixelSize, int position)
{
    constexpr int kSteps = 64; // of the font library's coordinates, in one pixel
    const double size = pixelSize > 0 ? std::min(pixelSize, kLargestPixelSize) : 0;
    const Key key { &face, glyph, static_cast<int>(size * kSteps + 0.5), position };
    const auto known = store_->young.find(key);
    if (known != store_->young.end())
        return viewOf(known->second);
    if (const DrawnGlyph* old = store_->revive(key))
        return viewOf(*old);
    const int shift = position * kSteps / kPositions;
    return viewOf(store_->keep(key, drawGlyph(face, glyph, key.pixelsPerEm64, shift)));
}

}
