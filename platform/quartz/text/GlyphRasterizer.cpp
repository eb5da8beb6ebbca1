// SPDX-License-Identifier: Apache-2.0
#include "GlyphRasterizer.h"

#include "DrawingFacePrivate.h"

#include FT_OUTLINE_H

namespace brindle::text {

namespace {

    // A damaged font can state any extent; no real glyph is this many pixels wide or high.
    constexpr long kLargestMask = 4096;

    FT_Library library()
    {
        static FT_Library const shared = [] {
            FT_Library made = nullptr;
            return FT_Init_FreeType(&made) == 0 ? made : nullptr;
        }();
        return shared;
    }

    /// Loads the outline in the face's own units and scales it here: the font drivers round some
    /// sizes to whole pixels even without hinting.
    bool loadOutline(
        FT_Face drawing, GlyphId glyph, double unitsPerEm, int pixelsPerEm64, int shift64)
    {
        constexpr FT_Int32 kFlags = FT_LOAD_NO_SCALE | FT_LOAD_NO_HINTING | FT_LOAD_NO_BITMAP;
        if (FT_Load_Glyph(drawing, glyph, kFlags) != 0
            || drawing->glyph->format != FT_GLYPH_FORMAT_OUTLINE)
            return false;
        constexpr double kFixedOne = 65536;
        const auto scale = static_cast<FT_Fixed>(pixelsPerEm64 * kFixedOne / unitsPerEm + 0.5);
        const FT_Matrix matrix { scale, 0, 0, scale };
        FT_Outline_Transform(&drawing->glyph->outline, &matrix);
        FT_Outline_Translate(&drawing->glyph->outline, shift64, 0);
        return true;
    }

}

FT_Face drawingFace(const FontFace& face)
{
    FontFace::Handles& handles = face.handles();
    if (handles.drawing || handles.drawingFailed)
        return handles.drawing;
    const std::span<const unsigned char> file = handles.file.bytes();
    handles.drawingFailed = !library()
        || FT_New_Memory_Face(library(), file.data(), static_cast<FT_Long>(file.size()),
               static_cast<FT_Long>(face.fileIndex()), &handles.drawing)
            != 0;
    if (handles.drawingFailed)
        handles.drawing = nullptr;
    return handles.drawing;
}

DrawnGlyph drawGlyph(const FontFace& face, GlyphId glyph, int pixelsPerEm64, int shift64)
{
    constexpr double kParts = 64;
    if (face.isColored())
        return drawPicture(face, glyph, pixelsPerEm64 / kParts, shift64 / kParts);
    DrawnGlyph result;
    FT_Face drawing = drawingFace(face);
    if (!drawing || !loadOutline(drawing, glyph, face.unitsPerEm(), pixelsPerEm64, shift64))
        return result;
    FT_Outline& outline = drawing->glyph->outline;
    FT_BBox box {};
    FT_Outline_Get_CBox(&outline, &box);
    const long left = box.xMin >> 6;
    const long bottom = box.yMin >> 6;
    const long width = ((box.xMax + 63) >> 6) - left;
    const long height = ((box.yMax + 63) >> 6) - bottom;
    if (outline.n_points == 0 || width <= 0 || height <= 0 || width > kLargestMask
        || height > kLargestMask)
        return result;
    FT_Outline_Translate(&outline, -left * 64, -bottom * 64);
    result.coverage.resize(static_cast<std::size_t>(width * height));
    FT_Bitmap bitmap {};
    bitmap.rows = static_cast<unsigned>(height);
    bitmap.width = static_cast<unsigned>(width);
    bitmap.pitch = static_cast<int>(width);
    bitmap.buffer = result.coverage.data();
    bitmap.num_grays = 256;
    bitmap.pixel_mode = FT_PIXEL_MODE_GRAY;
    if (FT_Outline_Get_Bitmap(library(), &outline, &bitmap) != 0)
        return {};
    result.width = static_cast<int>(width);
    result.height = static_cast<int>(height);
    result.left = static_cast<int>(left);
    result.top = static_cast<int>(bottom + height);
    return result;
}

}
