// SPDX-License-Identifier: Apache-2.0
#include "FontFace.h"

#include "FontFacePrivate.h"

#include <algorithm>
#include <cmath>

namespace brindle::text {

namespace {

    /// Answers how many units of its own a face divides the em into.
    std::size_t unitsPerEmOf(const FontFile& file)
    {
        constexpr std::size_t kUsual = 1000;
        const std::size_t stated = file.table("head").word(18);
        return stated >= 16 && stated <= 16384 ? stated : kUsual;
    }

    /// The height of a letter's ink, for faces that do not state it.
    double letterHeight(hb_font_t* font, GlyphId letter, double unitsPerEm)
    {
        hb_glyph_extents_t extents {};
        if (!font || !letter
            || !BRINDLE_HARFBUZZ(hb_font_get_glyph_extents)(font, letter, &extents))
            return 0;
        return extents.y_bearing / unitsPerEm;
    }

    /// Where the upper and the lower end of the lines of a face and the space between them are stated.
    struct LineEnds {
        FontTable table;
        std::size_t start = 0; // of three numbers
    };

    LineEnds lineEnds(const FontFile& file, const FontTable& system)
    {
        constexpr std::size_t kTypographic = 68; // in the table for systems
        constexpr std::size_t kPrefersThose = 0x80;
        const FontTable header = file.table("hhea");
        const bool prefersThose
            = system.size() >= kTypographic + 10 && (system.word(62) & kPrefersThose);
        return prefersThose || header.size() < 36 ? LineEnds { system, kTypographic }
                                                  : LineEnds { header, 4 };
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
        hb_draw_funcs_t* functions = BRINDLE_HARFBUZZ(hb_draw_funcs_create)();
        BRINDLE_HARFBUZZ(hb_draw_funcs_set_move_to_func)(functions, moveTo, nullptr, nullptr);
        BRINDLE_HARFBUZZ(hb_draw_funcs_set_line_to_func)(functions, lineTo, nullptr, nullptr);
        BRINDLE_HARFBUZZ(hb_draw_funcs_set_quadratic_to_func)
        (functions, quadraticTo, nullptr, nullptr);
        BRINDLE_HARFBUZZ(hb_draw_funcs_set_cubic_to_func)(functions, cubicTo, nullptr, nullptr);
        BRINDLE_HARFBUZZ(hb_draw_funcs_set_close_path_func)(functions, closePath, nullptr, nullptr);
        BRINDLE_HARFBUZZ(hb_draw_funcs_make_immutable)(functions);
        return functions;
    }

}

GlyphAdvances::GlyphAdvances(const FontFile& file, std::size_t unitsPerEm)
    : table_(file.table("hmtx"))
    , glyphCount_(file.table("maxp").word(4))
    , statedCount_(std::min(file.table("hhea").word(34), table_.size() / 4))
    , unitsPerEm_(unitsPerEm)
{
}

std::int32_t GlyphAdvances::of(GlyphId glyph) const
{
    if (statedCount_ == 0)
        return static_cast<std::int32_t>(unitsPerEm_);
    if (glyph >= glyphCount_)
        return 0;
    return static_cast<std::int32_t>(
        table_.word(4 * std::min<std::size_t>(glyph, statedCount_ - 1)));
}

FontFace::Handles::Handles(FontFile opened, std::size_t unitsPerEm)
    : file(std::move(opened))
    , characters(file.table("cmap"))
    , advances(file, unitsPerEm)
{
}

hb_font_t* FontFace::Handles::shaping(const FontFace& face)
{
    std::call_once(isOpened_, [&] {
        if (!harfBuzz())
            return;
        const std::span<const unsigned char> bytes = file.bytes();
        const HarfBuzz<hb_blob_t> blob(
            BRINDLE_HARFBUZZ(hb_blob_create)(reinterpret_cast<const char*>(bytes.data()),
                static_cast<unsigned>(bytes.size()), HB_MEMORY_MODE_READONLY, nullptr, nullptr));
        const HarfBuzz<hb_face_t> shared(
            BRINDLE_HARFBUZZ(hb_face_create)(blob.get(), face.fileIndex()));
        BRINDLE_HARFBUZZ(hb_face_make_immutable)(shared.get());
        font_.reset(BRINDLE_HARFBUZZ(hb_font_create)(shared.get()));
        const int scale = static_cast<int>(face.unitsPerEm());
        BRINDLE_HARFBUZZ(hb_font_set_scale)(font_.get(), scale, scale);
        BRINDLE_HARFBUZZ(hb_font_make_immutable)(font_.get());
    });
    return font_.get();
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
{
}

FontFace::~FontFace()
{
    if (handles_->drawing)
        FT_Done_Face(handles_->drawing);
}

std::unique_ptr<FontFace> FontFace::open(const Description& description)
{
    std::optional<FontFile> file = FontFile::open(description.filePath, description.index);
    if (!file)
        return nullptr;
    const std::size_t unitsPerEm = unitsPerEmOf(*file);
    std::unique_ptr<FontFace> face(new FontFace(description));
    face->handles_ = std::make_unique<Handles>(std::move(*file), unitsPerEm);
    if (face->handles_->advances.glyphCount() == 0)
        return nullptr;
    face->unitsPerEm_ = static_cast<double>(unitsPerEm);
    face->readMetrics();
    face->readBoundingBox();
    face->readCoverage();
    return face;
}

void FontFace::readMetrics()
{
    const FontFile& file = handles_->file;
    const auto read = [this](const FontTable& table, std::size_t offset) {
        return table.signedWord(offset) / unitsPerEm_;
    };
    const FontTable system = file.table("OS/2");
    const LineEnds ends = lineEnds(file, system);
    metrics_.ascender = std::abs(read(ends.table, ends.start));
    metrics_.descender = -std::abs(read(ends.table, ends.start + 2));
    metrics_.leading = read(ends.table, ends.start + 4);
    const bool statesHeights = system.word(0) >= 2 && system.has(86, 4) && system.longWord(86) != 0;
    if (statesHeights) {
        metrics_.xHeight = read(system, 86);
        metrics_.capHeight = read(system, 88);
    } else {
        hb_font_t* const font = handles_->shaping(*this);
        metrics_.xHeight = letterHeight(font, glyphFor(U'x'), unitsPerEm_);
        metrics_.capHeight = letterHeight(font, glyphFor(U'H'), unitsPerEm_);
    }
    const FontTable post = file.table("post");
    metrics_.underlinePosition = read(post, 8);
    metrics_.underlineThickness = read(post, 10);
}

void FontFace::readBoundingBox()
{
    const FontTable head = handles_->file.table("head");
    const auto read = [&](std::size_t offset) { return head.signedWord(offset) / unitsPerEm_; };
    const double left = read(36);
    const double bottom = read(38);
    metrics_.boundingBox = NSMakeRect(left, bottom, read(40) - left, read(42) - bottom);
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
    if (handles_->characters.isReadable())
        return handles_->characters.glyphFor(codePoint);
    hb_codepoint_t glyph = 0;
    if (hb_font_t* const font = handles_->shaping(*this))
        BRINDLE_HARFBUZZ(hb_font_get_nominal_glyph)(font, codePoint, &glyph);
    return glyph;
}

double FontFace::advance(GlyphId glyph) const { return handles_->advances.of(glyph) / unitsPerEm_; }

std::vector<OutlineStep> FontFace::outline(GlyphId glyph) const
{
    hb_font_t* const font = handles_->shaping(*this);
    if (!font)
        return {};
    static hb_draw_funcs_t* const functions = makeOutlineFunctions();
    OutlineSink sink { {}, 1 / unitsPerEm_ };
    BRINDLE_HARFBUZZ(hb_font_get_glyph_shape)(font, glyph, functions, &sink);
    return std::move(sink.steps);
}

}
