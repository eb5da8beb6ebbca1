// SPDX-License-Identifier: Apache-2.0
#include "FontFace.h"

#include "FontFacePrivate.h"

#include <hb-ot.h>

namespace brindle::text {

namespace {

    std::int16_t signedWord(const char* bytes)
    {
        const auto high = static_cast<unsigned char>(bytes[0]);
        const auto low = static_cast<unsigned char>(bytes[1]);
        return static_cast<std::int16_t>(high << 8 | low);
    }

    bool readMetric(hb_font_t* font, hb_ot_metrics_tag_t tag, double unitsPerEm, double& result)
    {
        hb_position_t value = 0;
        if (!hb_ot_metrics_get_position(font, tag, &value))
            return false;
        result = value / unitsPerEm;
        return true;
    }

    /// The height of a letter's ink, for faces that do not state it.
    double letterHeight(hb_font_t* font, hb_codepoint_t letter, double unitsPerEm)
    {
        hb_codepoint_t glyph = 0;
        hb_glyph_extents_t extents {};
        if (!hb_font_get_nominal_glyph(font, letter, &glyph)
            || !hb_font_get_glyph_extents(font, glyph, &extents))
            return 0;
        return extents.y_bearing / unitsPerEm;
    }

    /// Collects an outline while HarfBuzz walks through it.
    struct OutlineSink {
        std::vector<OutlineStep> steps;
        double unit = 1;

        NSPoint point(float x, float y) const
        {
            return { double { x } * unit, double { y } * unit };
        }

        void add(
            OutlineStep::Kind kind, NSPoint to = {}, NSPoint control1 = {}, NSPoint control2 = {})
        {
            steps.push_back({ kind, control1, control2, to });
        }
    };

    OutlineSink& sinkFrom(void* data) { return *static_cast<OutlineSink*>(data); }

    void moveTo(hb_draw_funcs_t*, void* data, hb_draw_state_t*, float x, float y, void*)
    {
        sinkFrom(data).add(OutlineStep::Kind::move, sinkFrom(data).point(x, y));
    }

    void lineTo(hb_draw_funcs_t*, void* data, hb_draw_state_t*, float x, float y, void*)
    {
        sinkFrom(data).add(OutlineStep::Kind::line, sinkFrom(data).point(x, y));
    }

    void quadraticTo(hb_draw_funcs_t*, void* data, hb_draw_state_t*, float controlX, float controlY,
        float x, float y, void*)
    {
        const OutlineSink& sink = sinkFrom(data);
        sinkFrom(data).add(
            OutlineStep::Kind::quadratic, sink.point(x, y), sink.point(controlX, controlY));
    }

    void cubicTo(hb_draw_funcs_t*, void* data, hb_draw_state_t*, float x1, float y1, float x2,
        float y2, float x, float y, void*)
    {
        const OutlineSink& sink = sinkFrom(data);
        sinkFrom(data).add(
            OutlineStep::Kind::cubic, sink.point(x, y), sink.point(x1, y1), sink.point(x2, y2));
    }

    void closePath(hb_draw_funcs_t*, void* data, hb_draw_state_t*, void*)
    {
        sinkFrom(data).add(OutlineStep::Kind::close);
    }

    hb_draw_funcs_t* makeOutlineFunctions()
    {
        hb_draw_funcs_t* functions = hb_draw_funcs_create();
        hb_draw_funcs_set_move_to_func(functions, moveTo, nullptr, nullptr);
        hb_draw_funcs_set_line_to_func(functions, lineTo, nullptr, nullptr);
        hb_draw_funcs_set_quadratic_to_func(functions, quadraticTo, nullptr, nullptr);
        hb_draw_funcs_set_cubic_to_func(functions, cubicTo, nullptr, nullptr);
        hb_draw_funcs_set_close_path_func(functions, closePath, nullptr, nullptr);
        hb_draw_funcs_make_immutable(functions);
        return functions;
    }

}

FontFace::FontFace(const Description& description)
    : postScriptName_(description.postScriptName)
    , familyName_(description.familyName)
    , filePath_(description.filePath)
    , index_(description.index)
    , weight_(description.weight)
    , slant_(description.slant)
    , monospaced_(description.monospaced)
    , colored_(description.colored)
    , handles_(std::make_unique<Handles>())
{
}

FontFace::~FontFace()
{
    if (handles_->drawing)
        FT_Done_Face(handles_->drawing);
}

std::unique_ptr<FontFace> FontFace::open(const Description& description)
{
    HarfBuzz<hb_blob_t> blob(hb_blob_create_from_file_or_fail(description.filePath.c_str()));
    if (!blob)
        return nullptr;
    std::unique_ptr<FontFace> face(new FontFace(description));
    Handles& handles = *face->handles_;
    handles.face.reset(hb_face_create(blob.get(), description.index));
    if (hb_face_get_glyph_count(handles.face.get()) == 0)
        return nullptr;
    const unsigned unitsPerEm = hb_face_get_upem(handles.face.get());
    face->unitsPerEm_ = unitsPerEm;
    handles.font.reset(hb_font_create(handles.face.get()));
    hb_font_set_scale(
        handles.font.get(), static_cast<int>(unitsPerEm), static_cast<int>(unitsPerEm));
    hb_font_make_immutable(handles.font.get());
    hb_face_make_immutable(handles.face.get());
    face->readMetrics();
    face->readBoundingBox();
    face->readCoverage();
    return face;
}

void FontFace::readMetrics()
{
    hb_font_t* font = handles_->font.get();
    readMetric(font, HB_OT_METRICS_TAG_HORIZONTAL_ASCENDER, unitsPerEm_, metrics_.ascender);
    readMetric(font, HB_OT_METRICS_TAG_HORIZONTAL_DESCENDER, unitsPerEm_, metrics_.descender);
    readMetric(font, HB_OT_METRICS_TAG_HORIZONTAL_LINE_GAP, unitsPerEm_, metrics_.leading);
    if (!readMetric(font, HB_OT_METRICS_TAG_CAP_HEIGHT, unitsPerEm_, metrics_.capHeight))
        metrics_.capHeight = letterHeight(font, 'H', unitsPerEm_);
    if (!readMetric(font, HB_OT_METRICS_TAG_X_HEIGHT, unitsPerEm_, metrics_.xHeight))
        metrics_.xHeight = letterHeight(font, 'x', unitsPerEm_);
    readMetric(font, HB_OT_METRICS_TAG_UNDERLINE_OFFSET, unitsPerEm_, metrics_.underlinePosition);
    readMetric(font, HB_OT_METRICS_TAG_UNDERLINE_SIZE, unitsPerEm_, metrics_.underlineThickness);
}

void FontFace::readBoundingBox()
{
    constexpr unsigned kBoxOffset = 36; // xMin, yMin, xMax, yMax of the head table
    const HarfBuzz<hb_blob_t> head(
        hb_face_reference_table(handles_->face.get(), HB_TAG('h', 'e', 'a', 'd')));
    unsigned length = 0;
    const char* bytes = hb_blob_get_data(head.get(), &length);
    if (length < kBoxOffset + 8)
        return;
    const double left = signedWord(bytes + kBoxOffset) / unitsPerEm_;
    const double bottom = signedWord(bytes + kBoxOffset + 2) / unitsPerEm_;
    const double right = signedWord(bytes + kBoxOffset + 4) / unitsPerEm_;
    const double top = signedWord(bytes + kBoxOffset + 6) / unitsPerEm_;
    metrics_.boundingBox = NSMakeRect(left, bottom, right - left, top - bottom);
}

void FontFace::readCoverage()
{
    for (char32_t codePoint = 0; codePoint < quickCoverage_.size(); ++codePoint)
        quickCoverage_[codePoint] = glyphFor(codePoint) != 0;
    bool& coversAscii = handles_->coversAscii;
    coversAscii = true;
    for (std::size_t codePoint = 0x20; codePoint < 0x7F; ++codePoint)
        coversAscii = coversAscii && quickCoverage_[codePoint];
}

GlyphId FontFace::glyphFor(char32_t codePoint) const
{
    hb_codepoint_t glyph = 0;
    hb_font_get_nominal_glyph(handles_->font.get(), codePoint, &glyph);
    return glyph;
}

double FontFace::advance(GlyphId glyph) const
{
    return hb_font_get_glyph_h_advance(handles_->font.get(), glyph) / unitsPerEm_;
}

std::vector<OutlineStep> FontFace::outline(GlyphId glyph) const
{
    static hb_draw_funcs_t* const functions = makeOutlineFunctions();
    OutlineSink sink { {}, 1 / unitsPerEm_ };
    hb_font_get_glyph_shape(handles_->font.get(), glyph, functions, &sink);
    return std::move(sink.steps);
}

}
