// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <mutex>
#include <string>

#include <ft2build.h>
#include FT_FREETYPE_H

#include "CharacterMap.h"
#include "FontFace.h"
#include "FontFile.h"
#include "HarfBuzzPrivate.h"

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

/// How far the pen moves behind the glyphs of a face.
class GlyphAdvances {
public:
    GlyphAdvances(const FontFile& file, std::size_t unitsPerEm);

    std::size_t glyphCount() const { return glyphCount_; }
    /// Answers units of the face.
    std::int32_t of(GlyphId glyph) const;

private:
    FontTable table_;
    std::size_t glyphCount_ = 0;
    std::size_t statedCount_ = 0; // the glyphs behind have the last one's
    std::size_t unitsPerEm_ = 0;
};

/// A face's file, what is read from it, and the libraries' views of it.
///
/// The shaping font is scaled to the face's own units, so that one shaping serves every size, and
/// is never changed after opening: any thread may use it. The drawing face is opened when the first
/// glyph is drawn and belongs to whoever holds the glyph cache's lock.
struct FontFace::Handles {
    Handles(FontFile file, std::size_t unitsPerEm);

    FontFile file;
    CharacterMap characters;
    GlyphAdvances advances;
    bool coversAscii = false; // everything in ASCII that shows
    FT_Face drawing = nullptr;
    bool drawingFailed = false;

    /// Answers the shaping font, opened when it is asked for first.
    /// - Nil: null without the library.
    hb_font_t* shaping(const FontFace& face);

private:
    std::once_flag isOpened_;
    HarfBuzz<hb_font_t> font_;
};

}
