// SPDX-License-Identifier: Apache-2.0
#include "StencilCachePrivate.h"

#include <algorithm>
#include <cmath>

namespace brindle::quartz {

void ShapeKey::add(const PathData& path, int left, int top)
{
    constexpr double kSteps = 256;
    const auto placed = [](double value, int from) {
        const double steps = (value - from) * kSteps;
        return std::abs(steps) < 1 << 30 ? static_cast<std::int32_t>(std::lrint(steps)) : 1 << 30;
    };
    path.each([&](CGPathElementType type, const CGPoint* points) {
        add(static_cast<std::int32_t>(type));
        for (std::size_t i = 0; i < PathData::pointsOf(type); ++i) {
            add(placed(points[i].x, left));
            add(placed(points[i].y, top));
        }
    });
}

std::uint64_t ShapeKey::hash() const
{
    constexpr std::uint64_t kMix = 0x9E3779B97F4A7C15;
    if (wordsHash_ == 0) {
        wordsHash_ = count_ * kMix;
        for (std::size_t i = 0; i < count_; i += 2) {
            std::uint64_t two = 0;
            std::memcpy(&two, words_.data() + i,
                std::min<std::size_t>(count_ - i, 2) * sizeof(std::int32_t));
            wordsHash_ = (wordsHash_ ^ wordsHash_ >> 29 ^ two) * kMix;
        }
    }
    const std::uint64_t hash = (wordsHash_ ^ std::bit_cast<std::uint64_t>(blur_)) * kMix;
    return hash ^ hash >> 32;
}

StencilCache& StencilCache::shared()
{
    static auto* const cache
        = new StencilCache(std::size_t { 2 } << 20); // drawn with until the process ends
    return *cache;
}

StencilCache::Entry StencilCache::find(const ShapeKey& key)
{
    const std::uint64_t hash = key.hash();
    const std::lock_guard lock(mutex_);
    if (const auto at = young_.known.find(hash); at != young_.known.end())
        return at->second.key == key ? at->second.stencil : nullptr;
    const auto at = old_.known.find(hash);
    if (at == old_.known.end() || !(at->second.key == key))
        return nullptr;
    const Entry found = at->second.stencil;
    keep(hash, at->second);
    return found;
}

StencilCache::Entry StencilCache::insert(const ShapeKey& key, raster::Stencil stencil)
{
    const auto made = std::make_shared<const raster::Stencil>(std::move(stencil));
    const std::lock_guard lock(mutex_);
    keep(key.hash(), { key, made });
    return made;
}

void StencilCache::keep(std::uint64_t hash, Known known)
{
    const std::size_t bytes = known.stencil->coverage.size() + sizeof(Known);
    if (young_.bytes + bytes > generationLimit_) {
        old_ = std::move(young_);
        young_ = {};
    }
    young_.bytes += bytes;
    young_.known.insert_or_assign(hash, std::move(known));
}

std::size_t StencilCache::bytesInUse() const
{
    const std::lock_guard lock(mutex_);
    return young_.bytes + old_.bytes;
}

}
