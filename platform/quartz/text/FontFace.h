// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <bitset>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/NSGeometry.h"

namespace brindle::text {

using GlyphId = std::uint32_t;

enum class Slant { upright, italic };

/// The measures of a face in parts of the em: multiply by the size to get points. y grows upward.
struct FaceMetrics {
    double ascender = 0;
    double descender = 0; // negative below the baseline
    double leading = 0;
    double capHeight = 0;
    double xHeight = 0;
    double underlinePosition = 0; // middle of the stroke, negative below the baseline
    double underlineThickness = 0;
    NSRect boundingBox; // holds every glyph of the face
};

/// One step of a glyph's outline, in parts of the em, y up.
/// - Shape: `move` and `line` use `to`; `quadratic` uses `control1` and `to`; `cubic` uses all
///   three;
///   `close` uses none.
struct OutlineStep {
    enum class Kind { move, line, quadratic, cubic, close };
    Kind kind = Kind::move;
    NSPoint control1;
    NSPoint control2;
    NSPoint to;
};

/// One installed font file face, without a size. Measures are ideal: not hinted, not rounded.
///
/// Faces are made once a process and live until it ends, so a bare pointer to one is always good
/// and comparing pointers compares faces.
/// Thread: any. Cost: the first look-up of the process reads the font configuration.
class FontFace {
public:
    /// Answers the face with this PostScript name, full name or family name (then its regular
    /// face).
    ///
    /// A name that is not installed is looked up in a fixed table of customary faces and their
    /// nearest relatives; nothing else is ever put in its place.
    /// - Nil: null for an unknown name.
    static const FontFace* named(std::string_view name);

    /// Answers the family's face nearest to a weight and a slant.
    /// - weight: 100 (thin) to 900 (black); 400 is regular, 700 bold.
    /// - Nil: null when no such family is installed.
    static const FontFace* inFamily(std::string_view family, int weight, Slant slant);

    /// Answers the face of the user interface.
    /// - weight: 100 to 900.
    /// - Nil: null only on a machine without any scalable font.
    static const FontFace* system(int weight, Slant slant);

    /// Answers the names of all usable faces (PostScript names), sorted.
    static std::vector<std::string> installedNames();

    const std::string& postScriptName() const { return postScriptName_; }
    const std::string& familyName() const { return familyName_; }
    const std::string& filePath() const { return filePath_; }
    unsigned fileIndex() const { return index_; }
    int weight() const { return weight_; }
    Slant slant() const { return slant_; }
    bool isMonospaced() const { return monospaced_; }
    /// Answers whether the glyphs are small pictures in colours of their own (emoji); they have no outlines.
    bool isColored() const { return colored_; }

    const FaceMetrics& metrics() const { return metrics_; }
    double unitsPerEm() const { return unitsPerEm_; }

    /// Answers the glyph for a code point, 0 when the face has none.
    GlyphId glyphFor(char32_t codePoint) const;

    /// Answers whether the face draws this code point; quick for Latin letters.
    bool covers(char32_t codePoint) const
    {
        return codePoint < quickCoverage_.size() ? quickCoverage_[codePoint]
                                                 : glyphFor(codePoint) != 0;
    }

    /// Answers how far the pen moves after a glyph, in parts of the em.
    double advance(GlyphId glyph) const;

    /// Answers a glyph's outline; empty for a blank or unknown glyph.
    std::vector<OutlineStep> outline(GlyphId glyph) const;

    FontFace(const FontFace&) = delete;
    FontFace& operator=(const FontFace&) = delete;
    ~FontFace();

    struct Description;
    struct Handles;

    /// Opens the file that a description names. Only the library of faces calls this.
    /// - Nil: null when the file cannot be read or holds no scalable glyphs.
    static std::unique_ptr<FontFace> open(const Description& description);

    Handles& handles() const { return *handles_; }

private:
    explicit FontFace(const Description& description);
    void readMetrics();
    void readBoundingBox();
    void readCoverage();

    std::string postScriptName_;
    std::string familyName_;
    std::string filePath_;
    unsigned index_ = 0;
    int weight_ = 400;
    Slant slant_ = Slant::upright;
    bool monospaced_ = false;
    bool colored_ = false;
    double unitsPerEm_ = 1000;
    FaceMetrics metrics_;
    std::bitset<0x300> quickCoverage_;
    std::unique_ptr<Handles> handles_;
};

}
