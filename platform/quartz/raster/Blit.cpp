// SPDX-License-Identifier: Apache-2.0
#include "Blit.h"

#include "Spans.h"
#include "WideSpans.h"

#include <algorithm>
#include <cstring>

namespace brindle::raster {

namespace {

    /// Where a source of some size lands, clipped; computed wide, so that far places do not wrap
    /// around.
    PixelRect landing(const Bitmap& bitmap, int x, int y, int width, int height, PixelRect clip)
    {
        const auto narrow = [](std::int64_t value) {
            constexpr std::int64_t kFarthest = 1 << 30;
            return static_cast<int>(std::clamp(value, -kFarthest, kFarthest));
        };
        const PixelRect whole { x, y, narrow(std::int64_t { x } + width),
            narrow(std::int64_t { y } + height) };
        return intersection(whole, intersection(clip, bounds(bitmap)));
    }

    void copyRow(Pixel* row, const Pixel* source, int count, Pixel alpha)
    {
        if (alpha == 255) {
            std::memcpy(row, source, static_cast<std::size_t>(count) * sizeof(Pixel));
            return;
        }
        for (int i = 0; i < count; ++i)
            row[i] = scaled(source[i], alpha);
    }

    /// Answers the covered part of a row of `count` pixels that begins at `left`, in whole steps of the wide way: all other
    /// pixels are reached in the same steps as without it, and come out the same.
    Stretch stepsIn(const Cover& cover, int line, int left, int count)
    {
        constexpr int kStep = 8;
        const auto row = static_cast<std::size_t>(line - cover.top);
        if (line < cover.top || row >= cover.rows.size())
            return {};
        const int from = std::max(cover.rows[row].from + cover.left - left, 0);
        const int to = std::min(cover.rows[row].to + cover.left - left, count);
        return { (from + kStep - 1) / kStep * kStep, to / kStep * kStep };
    }

    /// Lays a colour over a row where a mask lets it through.
    void maskRow(Pixel* row, const std::uint8_t* coverage, int count, Pixel color)
    {
        int i = maskWide(row, coverage, count, color);
        for (; i + 4 <= count; i += 4) {
            const Pixels4 factors { coverage[i], coverage[i + 1], coverage[i + 2],
                coverage[i + 3] };
            const Pixels4 source = scaled(fourOf(color), factorsFrom(factors));
            storePixels(row + i, over(source, loadPixels(row + i)));
        }
        for (; i < count; ++i)
            row[i] = over(scaled(color, coverage[i]), row[i]);
    }

}

void drawImage(const Bitmap& bitmap, const Bitmap& image, int x, int y, PixelRect clip, Blend blend,
    double alpha)
{
    const PixelRect target = landing(bitmap, x, y, image.width, image.height, clip);
    if (target.isEmpty())
        return;
    const auto factor = static_cast<Pixel>(clampedUnit(alpha) * 255 + 0.5);
    const int count = target.right - target.left;
    for (int line = target.top; line < target.bottom; ++line) {
        Pixel* row = bitmap.row(line) + target.left;
        const Pixel* source = image.row(line - y) + (target.left - x);
        if (blend == Blend::copy)
            copyRow(row, source, count, factor);
        else if (factor != 0)
            overSpan(row, count, source, factor);
    }
}

void drawMask(const Bitmap& bitmap, const Mask& mask, int x, int y, PixelRect clip, Pixel color)
{
    drawMaskAround(bitmap, mask, x, y, clip, color, {});
}

void drawMaskAround(const Bitmap& bitmap, const Mask& mask, int x, int y, PixelRect clip,
    Pixel color, const Cover& cover)
{
    const PixelRect target = landing(bitmap, x, y, mask.width, mask.height, clip);
    if (target.isEmpty() || color == 0)
        return;
    const int count = target.right - target.left;
    for (int line = target.top; line < target.bottom; ++line) {
        Pixel* const row = bitmap.row(line) + target.left;
        const std::uint8_t* const coverage
            = mask.coverage + (line - y) * mask.stride + (target.left - x);
        const Stretch hidden = stepsIn(cover, line, target.left, count);
        if (hidden.from >= hidden.to) {
            maskRow(row, coverage, count, color);
            continue;
        }
        maskRow(row, coverage, hidden.from, color);
        maskRow(row + hidden.to, coverage + hidden.to, count - hidden.to, color);
    }
}

}
