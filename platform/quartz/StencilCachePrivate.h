// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <bit>
#include <cstring>
#include <memory>
#include <mutex>
#include <unordered_map>

#include "CGPath.h"
#include "raster/Blur.h"

namespace brindle::quartz {

/// What a painted shape is known by: its outline in steps of 1/256 of a pixel, counted from a whole pixel, and how it is
/// painted. Shapes of many points do not fit.
class ShapeKey {
public:
    void add(std::int32_t word)
    {
        if (count_ < words_.size())
            words_[count_] = word;
        ++count_;
        wordsHash_ = 0;
    }
    void add(double number)
    {
        const auto bits = std::bit_cast<std::int64_t>(number);
        add(static_cast<std::int32_t>(bits));
        add(static_cast<std::int32_t>(bits >> 32));
    }
    /// - left, top: the pixel that points are counted from.
    void add(const PathData& path, int left, int top);
    /// Tells the soft stencil of a shape from the sharp one.
    void setBlur(double sigma) { blur_ = sigma; }

    bool fits() const { return count_ <= words_.size(); }
    std::uint64_t hash() const;
    friend bool operator==(const ShapeKey& a, const ShapeKey& b)
    {
        return a.count_ == b.count_ && a.blur_ == b.blur_
            && std::memcmp(a.words_.data(), b.words_.data(), a.count_ * sizeof(std::int32_t)) == 0;
    }

private:
    std::array<std::int32_t, 128> words_;
    std::size_t count_ = 0;
    double blur_ = 0;
    mutable std::uint64_t wordsHash_ = 0; // 0: not yet known
};

/// Stencils of shapes that were painted lately, in bounded memory: interfaces draw the same few again and again.
///
/// There are two generations. When the young one is full it becomes the old one, and what nobody asked for since is
/// forgotten together. Thread: any.
class StencilCache {
public:
    using Entry = std::shared_ptr<const raster::Stencil>;

    static StencilCache& shared();

    explicit StencilCache(std::size_t byteLimit)
        : generationLimit_(byteLimit / 2)
    {
    }

    /// Answers a remembered stencil; null when there is none.
    Entry find(const ShapeKey& key);
    /// Remembers a stencil and answers it.
    Entry insert(const ShapeKey& key, raster::Stencil stencil);
    std::size_t bytesInUse() const;

private:
    struct Known {
        ShapeKey key;
        Entry stencil;
    };
    struct Generation {
        std::unordered_map<std::uint64_t, Known>
            known; // by hash; of two with one hash the last stays
        std::size_t bytes = 0;
    };
    void keep(std::uint64_t hash, Known known);

    mutable std::mutex mutex_;
    std::size_t generationLimit_;
    Generation young_;
    Generation old_;
};

}
