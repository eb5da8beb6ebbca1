// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>

#include <ft2build.h>
#include FT_FREETYPE_H

#include <hb.h>

#include "FontFace.h"

namespace brindle::text {

/// What the font configuration knows of a face before its file is opened.
struct FontFace::Description {
    std::string postScriptName;
    std::string familyName;
    std::string filePath;
    unsigned index = 0;
    int weight = 400;
    Slant slant = Slant::upright;
    bool monospaced = false;
    bool colored = false;
};

struct HarfBuzzDeleter {
    void operator()(hb_font_t* font) const { hb_font_destroy(font); }
    void operator()(hb_face_t* face) const { hb_face_destroy(face); }
    void operator()(hb_blob_t* blob) const { hb_blob_destroy(blob); }
    void operator()(hb_buffer_t* buffer) const { hb_buffer_destroy(buffer); }
};

template <typename T> using HarfBuzz = std::unique_ptr<T, HarfBuzzDeleter>;

/// The libraries' views of a face, and what they said of it.
///
/// The shaping font is scaled to the face's own units, so that one shaping serves every size, and
/// is never changed after opening: any thread may use it. The drawing face is opened when the first
/// glyph is drawn and belongs to whoever holds the glyph cache's lock.
struct FontFace::Handles {
    HarfBuzz<hb_face_t> face;
    HarfBuzz<hb_font_t> font;
    bool coversAscii = false; // everything in ASCII that shows
    FT_Face drawing = nullptr;
    bool drawingFailed = false;
};

}
