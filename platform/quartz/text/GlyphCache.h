// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>

#include "FontFace.h"

namespace brindle::text {

/// The picture of a glyph: how much of each device pixel it covers, 0 to 255, or the pixels of a coloured one
/// (alpha in the top byte, the rest multiplied by it).
/// - Shape: `height` rows of `width` bytes or pixels, top row first, no padding.
struct GlyphMask {
    const std::uint8_t* coverage = nullptr; // null for a blank or coloured glyph
    const std::uint32_t* pixels = nullptr; // null for all others
    int width = 0;
    int height = 0;
    int left = 0; // from the pen's whole pixel to the mask's left edge
    int top = 0; // from the baseline up to the mask's top edge
};

struct GlyphPicture;

/// Glyph masks of all faces at all device sizes, drawn once and kept in bounded memory.
///
/// A glyph is drawn unhinted at one of four places across a pixel, so that spacing stays even; the
/// baseline always lies between two rows of pixels, so that feet stay sharp.
/// Thread: any; a `Session` holds the cache for one thread until it goes.
class GlyphCache {
public:
    /// Places across a pixel at which a glyph can be drawn.
    static constexpr int kPositions = 4;
    /// Glyphs larger than this are drawn as outlines by the caller.
    static constexpr double kLargestPixelSize = 256;

    static GlyphCache& shared();

    /// The right to use the cache. Keep it while drawing a line.
    class Session {
    public:
        explicit Session(GlyphCache& cache)
            : cache_(cache)
            , lock_(cache.mutex_)
        {
        }

        /// Answers a glyph's mask, good until the next question to this session.
        /// - pixelSize: device pixels an em, up to `kLargestPixelSize`; finer steps than 1/64 are
        ///   rounded.
        /// - position: 0 to `kPositions` - 1, quarters of a pixel to the right.
        GlyphMask mask(const FontFace& face, GlyphId glyph, double pixelSize, int position)
        {
            return cache_.find(face, glyph, pixelSize, position);
        }

        /// Answers a coloured glyph's picture as its file holds it, for sizes and places without masks.
        GlyphPicture picture(const FontFace& face, GlyphId glyph, double pixelSize) const;

    private:
        GlyphCache& cache_;
        std::lock_guard<std::mutex> lock_;
    };

    explicit GlyphCache(std::size_t byteLimit);
    ~GlyphCache();
    GlyphCache(const GlyphCache&) = delete;
    GlyphCache& operator=(const GlyphCache&) = delete;

    /// Answers the bytes that masks occupy now; at most the limit, and one mask.
    std::size_t bytesInUse() const;

private:
    struct Store;
    GlyphMask find(const FontFace& face, GlyphId glyph, double pixelSize, int position);

    mutable std::mutex mutex_;
    std::unique_ptr<Store> store_;
};

}
