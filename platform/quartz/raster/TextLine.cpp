// SPDX-License-Identifier: Apache-2.0
#include "TextLine.h"

#include "Blit.h"
#include "quartz/text/GlyphCache.h"

#include <algorithm>
#include <cmath>

namespace brindle::raster {

namespace {

    // Beyond this no glyph can touch a bitmap, and its place no longer fits a whole number.
    constexpr double kFarthest = 1 << 24;

    /// A place cut into a whole pixel and quarters of one.
    struct PenPlace {
        int pixel = 0;
        int quarter = 0;
    };

    PenPlace penPlace(double x)
    {
        constexpr int kParts = text::GlyphCache::kPositions;
        const auto parts = static_cast<int>(std::floor(x * kParts + 0.5));
        const int pixel = static_cast<int>(std::floor(static_cast<double>(parts) / kParts));
        return { pixel, parts - pixel * kParts };
    }

    bool isTooLarge(const text::LineRun& run, double scale)
    {
        return !(run.font.size * scale <= text::GlyphCache::kLargestPixelSize);
    }

    /// Draws the runs of one line with the glyph cache held.
    class LineDrawer {
    public:
        LineDrawer(const Bitmap& bitmap, PixelRect clip, const Color& color, double scale)
            : bitmap_(bitmap)
            , clip_(intersection(clip, bounds(bitmap)))
            , color_(pixelFromColor(color))
            , alpha_(color.alpha)
            , scale_(scale)
            , glyphs_(text::GlyphCache::shared())
        {
        }

        void drawRun(const text::Line& line, const text::LineRun& run, double x, double y)
        {
            const double pixelSize = run.font.size * scale_;
            // Ink may stand out from a glyph's place by an em or two.
            const double margin = 2 * pixelSize + 1;
            const double left = x + run.x * scale_;
            if (left - margin > clip_.right || left + run.width * scale_ + margin < clip_.left)
                return;
            for (const text::LineGlyph& glyph : line.glyphs(run)) {
                const double penX = x + glyph.x * scale_;
                const double penY = y - glyph.y * scale_;
                if (penX + margin < clip_.left || penX - margin > clip_.right)
                    continue;
                if (std::abs(penX) < kFarthest && std::abs(penY) < kFarthest)
                    drawGlyph(*run.font.face, glyph.glyph, pixelSize, penX, penY);
            }
        }

    private:
        void drawGlyph(const text::FontFace& face, text::GlyphId glyph, double pixelSize,
            double penX, double penY)
        {
            const PenPlace place = penPlace(penX);
            const text::GlyphMask mask = glyphs_.mask(face, glyph, pixelSize, place.quarter);
            const int left = place.pixel + mask.left;
            const int top = static_cast<int>(std::floor(penY + 0.5)) - mask.top;
            if (mask.coverage)
                drawMask(bitmap_, { mask.coverage, mask.width, mask.height, mask.width }, left, top,
                    clip_, color_);
            else if (mask.pixels)
                drawPicture(mask, left, top);
        }

        /// A picture has its own colours, and fades with the text's.
        void drawPicture(const text::GlyphMask& mask, int left, int top)
        {
            const Bitmap picture { const_cast<Pixel*>(mask.pixels), mask.width, mask.height,
                std::ptrdiff_t { mask.width } * 4 }; // only read
            drawImage(bitmap_, picture, left, top, clip_, Blend::over, alpha_);
        }

        const Bitmap& bitmap_;
        PixelRect clip_;
        Pixel color_;
        double alpha_;
        double scale_;
        text::GlyphCache::Session glyphs_;
    };

}

bool canDrawLine(const text::Line& line, double scale)
{
    return std::ranges::none_of(
        line.runs(), [scale](const text::LineRun& run) { return isTooLarge(run, scale); });
}

void drawLine(const Bitmap& bitmap, const text::Line& line, double x, double y, double scale,
    PixelRect clip, const Color& color)
{
    LineDrawer drawer(bitmap, clip, color, scale);
    for (const text::LineRun& run : line.runs()) {
        if (!isTooLarge(run, scale))
            drawer.drawRun(line, run, x, y);
    }
}

}
