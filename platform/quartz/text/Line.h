// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Font.h"

namespace brindle::text {

/// The direction a line starts with; `natural` takes that of the first strong character.
enum class BaseDirection { natural, leftToRight, rightToLeft };

/// A stretch of text (UTF-16 units) in one font. Stretches are in order and do not overlap;
/// text outside every stretch is not drawn.
struct FontRun {
    NSRange range;
    Font font;
};

/// A glyph with its place on a line, in points from the line's origin on the baseline, y up.
struct LineGlyph {
    GlyphId glyph = 0;
    std::uint32_t cluster = 0; // index of the first UTF-16 unit that the glyph stands for
    double x = 0;
    double y = 0;
    double advance = 0;
};

/// Neighbouring glyphs of one font and one direction.
struct LineRun {
    Font font; // after fallback
    NSRange range; // of the text
    std::size_t firstGlyph = 0;
    std::size_t glyphCount = 0;
    double x = 0; // left edge
    double width = 0;
    bool rightToLeft = false;
};

/// The typographic measures of a line, in points; descent is positive.
struct LineMetrics {
    double width = 0;
    double ascent = 0;
    double descent = 0;
    double leading = 0;
};

/// A stretch of a line from left to right, in points.
struct LineSpan {
    double x = 0;
    double width = 0;
};

/// One line of shaped text: glyphs from left to right, ready to draw at any scale.
class Line {
public:
    /// Answers the runs in visual order, leftmost first.
    std::span<const LineRun> runs() const { return runs_; }

    /// Answers all glyphs in visual order.
    std::span<const LineGlyph> glyphs() const { return glyphs_; }

    /// Answers a run's glyphs, leftmost first; their clusters fall in a right-to-left run.
    std::span<const LineGlyph> glyphs(const LineRun& run) const
    {
        return std::span(glyphs_).subspan(run.firstGlyph, run.glyphCount);
    }

    const LineMetrics& metrics() const { return metrics_; }
    double width() const { return metrics_.width; }
    std::u16string_view text() const { return text_; }

    /// Answers where the caret stands before the character at an index, in points from the left.
    ///
    /// Inside a character that has several units the answer is that character's leading edge.
    /// - index: clamped to the text; the length answers the trailing edge of the last character.
    double caretOffset(std::size_t index) const;

    /// Answers the index whose caret is nearest to a place; never inside a character.
    /// - x: points from the left; places outside the line answer its ends.
    std::size_t indexAt(double x) const;

    /// Answers the stretches that a range of the text covers, leftmost first; several where directions mix.
    std::vector<LineSpan> spansOf(NSRange range) const;

    /// Answers the same line with only those glyphs that stand for a range of the text, at their places.
    Line partFor(NSRange range) const;

    /// Becomes an empty line that keeps its memory for the next text, unless it was a long one.
    void clear();

    /// Adds room behind characters and moves what follows.
    /// - room: points for each unit of the text; looked at where a glyph's cluster begins.
    void addRoom(std::span<const double> room);

private:
    friend class LineBuilder;

    std::u16string text_;
    std::vector<LineRun> runs_;
    std::vector<LineGlyph> glyphs_;
    LineMetrics metrics_;
};

/// Shapes text into one line. Line breaks and other control characters are kept and take no room;
/// a tab is as wide as a space.
/// - memory: a line that is over; the new one is made in its place.
/// Thread: any. Cost: words that were seen before are not shaped again.
Line shapeLine(std::u16string_view text, std::span<const FontRun> fonts,
    BaseDirection direction = BaseDirection::natural, Line memory = {});

/// The same for text in a single font.
Line shapeLine(
    std::u16string_view text, const Font& font, BaseDirection direction = BaseDirection::natural);

/// Answers what `shapeLine` would measure, without making the line.
LineMetrics measureLine(std::u16string_view text, std::span<const FontRun> fonts,
    BaseDirection direction = BaseDirection::natural);
LineMetrics measureLine(std::u16string_view text, const Font& font);

}
