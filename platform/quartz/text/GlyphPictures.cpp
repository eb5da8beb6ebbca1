// SPDX-License-Identifier: Apache-2.0
#include "GlyphRasterizer.h"

#include "DrawingFacePrivate.h"
#include "quartz/ImageScalingPrivate.h"

#include <cmath>
#include <cstring>

namespace brindle::text {

namespace {

    // A damaged font can state any extent; no picture of a glyph is this many pixels wide or high.
    constexpr unsigned kLargestPicture = 1024;

    /// Answers which of a face's sizes suits: the smallest that is large enough, or else the largest.
    /// - Nil: -1 for a face without pictures.
    int bestSize(FT_Face face, double pixelsPerEm)
    {
        const auto height = [face](int which) { return face->available_sizes[which].y_ppem; };
        int best = -1;
        for (int i = 0; i < face->num_fixed_sizes; ++i) {
            const bool fits = static_cast<double>(height(i)) >= pixelsPerEm * 64;
            const bool bestFits
                = best >= 0 && static_cast<double>(height(best)) >= pixelsPerEm * 64;
            const bool better = fits ? !bestFits || height(i) < height(best)
                                     : best < 0 || (!bestFits && height(i) > height(best));
            best = better ? i : best;
        }
        return best;
    }

    /// Pixels in the library's order (blue, green, red, alpha as bytes) are ours as words on a little-endian machine.
    std::vector<std::uint32_t> pixelsOf(const FT_Bitmap& bitmap)
    {
        std::vector<std::uint32_t> pixels(std::size_t { bitmap.width } * bitmap.rows);
        for (unsigned y = 0; y < bitmap.rows; ++y) {
            const unsigned char* row
                = bitmap.buffer + static_cast<std::ptrdiff_t>(y) * bitmap.pitch;
            std::memcpy(pixels.data() + std::size_t { y } * bitmap.width, row,
                std::size_t { bitmap.width } * sizeof(std::uint32_t));
        }
        return pixels;
    }

}

GlyphPicture readPicture(const FontFace& face, GlyphId glyph, double pixelsPerEm)
{
    FT_Face drawing = drawingFace(face);
    const int size = drawing ? bestSize(drawing, pixelsPerEm) : -1;
    if (size < 0 || FT_Select_Size(drawing, size) != 0
        || FT_Load_Glyph(drawing, glyph, FT_LOAD_COLOR | FT_LOAD_NO_HINTING) != 0)
        return {};
    const FT_GlyphSlot slot = drawing->glyph;
    const FT_Bitmap& bitmap = slot->bitmap;
    if (slot->format != FT_GLYPH_FORMAT_BITMAP || bitmap.pixel_mode != FT_PIXEL_MODE_BGRA
        || bitmap.width == 0 || bitmap.rows == 0 || bitmap.width > kLargestPicture
        || bitmap.rows > kLargestPicture || drawing->available_sizes[size].y_ppem <= 0)
        return {};
    const double pixel = 64.0 / static_cast<double>(drawing->available_sizes[size].y_ppem);
    const double bottom = slot->bitmap_top - static_cast<double>(bitmap.rows);
    return { pixelsOf(bitmap), static_cast<int>(bitmap.width), static_cast<int>(bitmap.rows),
        NSMakeRect(
            slot->bitmap_left * pixel, bottom * pixel, bitmap.width * pixel, bitmap.rows * pixel) };
}

DrawnGlyph drawPicture(const FontFace& face, GlyphId glyph, double pixelsPerEm, double shift)
{
    GlyphPicture picture = readPicture(face, glyph, pixelsPerEm);
    if (picture.pixels.empty())
        return {};
    const NSRect& place = picture.place;
    const quartz::Stretch across { place.origin.x * pixelsPerEm + shift,
        (place.origin.x + place.size.width) * pixelsPerEm + shift };
    const quartz::Stretch down { -(place.origin.y + place.size.height) * pixelsPerEm,
        -place.origin.y * pixelsPerEm };
    const raster::PixelRect whole { static_cast<int>(std::floor(across.from)),
        static_cast<int>(std::floor(down.from)), static_cast<int>(std::ceil(across.to)),
        static_cast<int>(std::ceil(down.to)) };
    quartz::ScaledImage scaled
        = quartz::scaleImage({ picture.pixels.data(), picture.width, picture.height,
                                 std::ptrdiff_t { picture.width } * 4 },
            across, down, whole, quartz::Sampling::area);
    DrawnGlyph result;
    result.pixels = std::move(scaled.pixels);
    result.width = scaled.width;
    result.height = scaled.height;
    result.left = scaled.left;
    result.top = -scaled.top;
    return result;
}

}
