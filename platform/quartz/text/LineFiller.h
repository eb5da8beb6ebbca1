// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "Typesetter.h"

namespace brindle::text {

/// How far a line reaches around its baseline, in whole points.
struct LineHeights {
    double ascent = 0;
    double descent = 0;
    double leading = 0;

    void include(const LineHeights& other)
    {
        ascent = std::max(ascent, other.ascent);
        descent = std::max(descent, other.descent);
        leading = std::max(leading, other.leading);
    }
};

/// A part of a paragraph that is not divided any further.
struct Part {
    enum Kind : std::uint8_t { space, word, cluster, tab };
    std::size_t end = 0;
    double width = 0;
    std::uint32_t heights = 0; // which, never less than that of the part before
    Kind kind = word;
    bool breakAfter = false;
};

inline constexpr char16_t kTab = u'\t';

/// Answers the stop to which a tab at a position leads; nil behind the last one, where the interval counts.
const TabStop* stopBehind(const ParagraphRules& rules, double position);

/// Answers how wide a tab is that stands at a position.
/// - stop: as `stopBehind` answers it. - following: the width of the text that the stop moves a share of: up to the next tab,
///   or to what ends the stop's column.
double tabWidth(
    const ParagraphRules& rules, double position, const TabStop* stop, double following);

/// Answers how much of the text behind a tab a stop moves.
/// - text: begins behind the tab.
std::size_t columnLength(std::u16string_view text, const TabStop& stop);

/// Answers the width of the text behind a tab that a stop moves, with kerning and boxes.
/// - text, runs: a paragraph or a line. - from: where the text behind the tab begins.
double columnWidth(std::u16string_view text, std::span<const StyledRun> runs, std::size_t from,
    const TabStop& stop, BaseDirection direction);

/// Fills lines with parts, as many as fit.
class LineFiller {
public:
    LineFiller(std::u16string_view text, std::span<const StyledRun> runs,
        const ParagraphRules& rules, const std::vector<LineHeights>& heights, LineTaker& taker);

    double room() const { return room_; }
    bool wraps() const { return rules_.wrapping != Wrapping::none; }
    bool isWanted() const { return wanted_; }

    void add(std::span<const Part> parts);
    /// Adds a part that is no tab.
    void add(const Part& part)
    {
        if (wanted_ && part.kind != Part::space && !fits(part.width))
            makeRoom(part);
        if (!wanted_)
            return;
        total_ += part.width;
        if (part.kind != Part::space)
            visible_ = total_;
        at_ = part.end;
        lastHeights_ = part.heights;
        restHeights_ = std::min(restHeights_, part.heights);
        if (part.breakAfter)
            commit();
    }
    /// - end: the length of the text. - whenEmpty: answers the heights of a paragraph without letters.
    template <class F> void finish(std::size_t end, F whenEmpty)
    {
        if (!wanted_)
            return;
        at_ = end;
        commit();
        LineHeights heights = committedHeights();
        if (end == 0 || (heights.ascent == 0 && heights.descent == 0 && start_ < end))
            heights.include(whenEmpty());
        // What stands at the end of a paragraph counts as far as there is room for it.
        emit(end, std::max(visible_, std::min(total_, room_)), heights, false);
    }

private:
    bool fits(double width) const { return !wraps() || total_ + width <= room_ + slack_; }
    double indent() const { return number_ == 0 ? rules_.firstIndent : rules_.indent; }

    void askForRoom();
    void makeRoom(const Part& part);
    void leaveStretches(double width);
    void addTab(const Part& part, std::span<const Part> following);
    double followingWidth(
        const Part& tab, std::span<const Part> following, const TabStop& stop) const;
    double tabWidthHere(const Part& tab, std::span<const Part> following) const;
    void commit()
    {
        break_ = at_;
        totalAtBreak_ = total_;
        visibleAtBreak_ = visible_;
        firstHeights_ = std::min(firstHeights_, restHeights_);
        committedHeights_ = lastHeights_;
        restHeights_ = kNone;
    }
    void wrap();
    LineHeights committedHeights() const;
    void emit(std::size_t end, double width, const LineHeights& heights, bool wrapped);

    std::u16string_view text_;
    std::span<const StyledRun> runs_;
    const ParagraphRules& rules_;
    const std::vector<LineHeights>& heights_;
    LineTaker& taker_;
    double room_ = 0;
    double slack_ = 0;
    bool wanted_ = true;
    std::size_t number_ = 0;
    std::size_t start_ = 0;
    std::size_t break_ = 0; // the last place where the line may end
    std::size_t at_ = 0;
    double total_ = 0;
    double visible_ = 0; // without white space at the end
    double totalAtBreak_ = 0;
    double visibleAtBreak_ = 0;

    // Which heights the parts have; they come in order.
    static constexpr std::uint32_t kNone = ~std::uint32_t {};
    std::uint32_t firstHeights_ = kNone; // of the line …
    std::uint32_t committedHeights_ = 0; // … up to the last place where it may end
    std::uint32_t restHeights_ = kNone; // the first behind it
    std::uint32_t lastHeights_ = 0;
};

}
