// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string_view>
#include <vector>

#include "Line.h"
#include "foundation/ShortVector.h"

namespace brindle::text {

/// A stretch of a paragraph in one style. Runs are in order and cover the paragraph.
struct StyledRun {
    NSRange range;
    Font font;
    double kern = 0; // room behind each character, points
    double raise = 0; // of the baseline, points
    bool isBox = false; // each unit is a box of these measures instead of a letter
    double boxWidth = 0;
    double boxAscent = 0;
    double boxDescent = 0;
};

enum class Wrapping { words, characters, none };

/// A place that a tab leads to, in points from the leading edge.
struct TabStop {
    double location = 0;
    double share
        = 0; // of the text behind the tab that stands before the stop: 0 left, 0.5 centred, 1 right
    std::function<bool(char16_t)> endsColumn; // the share is of the text up to the first of these
};

struct ParagraphRules {
    Wrapping wrapping = Wrapping::words;
    BaseDirection direction = BaseDirection::natural;
    bool mayHaveTabs = true; // no: nobody needs to look for them
    std::span<const TabStop> tabs; // nearest first
    double tabInterval = 0; // of further stops; 0 for none
    double firstIndent = 0; // where the first line begins, measured as stops are
    double indent = 0; // where the others begin
    double wordRoom = 0; // a word may be as wide before it is divided; 0: as wide as the line
};

/// A line as the text was broken.
struct LineBox {
    NSRange range; // with the white space at its end
    double width = 0; // without the white space that hangs over where the text was wrapped
    // Whole points, so that lines stand on pixels; descent is positive.
    double ascent = 0;
    double descent = 0;
    double leading = 0;
    bool wrapped = false; // the paragraph goes on

    double height() const { return ascent + descent + leading; }
};

/// Takes the lines of a paragraph one by one.
class LineTaker {
public:
    /// Answers how wide the next line may be, in points.
    virtual double roomForLine(std::size_t number) = 0;
    /// - Returns: false when no more lines are wanted.
    virtual bool addLine(const LineBox& line) = 0;
    /// Answers whether a word that has no room in an empty line may find more in another, which is asked for next.
    virtual bool leaveStretch() { return false; }

protected:
    ~LineTaker() = default;
};

/// Breaks a paragraph into lines. An empty paragraph has one line, as high as the first run's font.
/// - text: without the line break at its end.
/// - Returns: false when the taker wanted no more lines.
/// Thread: any. Cost: words that were seen before are not shaped again.
bool breakParagraph(std::u16string_view text, std::span<const StyledRun> runs,
    const ParagraphRules& rules, LineTaker& taker);

/// The fonts of runs, for the time of a call.
struct FontRuns : ShortVector<FontRun, 8> {
    explicit FontRuns(std::span<const StyledRun> runs);
};

/// Answers a line of a paragraph with kerning, tabs and boxes in their places.
/// - text, runs: those of the line alone. - rules: its indent is the one for first lines.
/// - memory: a line that is over; the new one is made in its place.
Line setLine(std::u16string_view text, std::span<const StyledRun> runs, const ParagraphRules& rules,
    Line memory = {});

/// Answers whether a paragraph runs from right to left.
bool isRightToLeft(std::u16string_view text, BaseDirection direction);

}
