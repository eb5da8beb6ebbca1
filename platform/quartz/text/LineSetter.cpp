// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "LineFiller.h"

namespace brindle::text {

namespace {

    bool hasBoxes(std::span<const StyledRun> runs)
    {
        return std::ranges::any_of(runs, &StyledRun::isBox);
    }

    /// The text that is shaped: boxes stand as no-break spaces, which nothing draws.
    std::u16string withoutBoxes(std::u16string_view text, std::span<const StyledRun> runs)
    {
        constexpr char16_t kBlank = 0x00A0;
        std::u16string shaped(text);
        for (const StyledRun& run : runs) {
            if (run.isBox)
                std::fill_n(shaped.begin() + static_cast<std::ptrdiff_t>(run.range.location),
                    run.range.length, kBlank);
        }
        return shaped;
    }

    Line shapeText(std::u16string_view text, std::span<const StyledRun> runs,
        BaseDirection direction, Line memory)
    {
        const FontRuns fonts(runs);
        return hasBoxes(runs)
            ? shapeLine(withoutBoxes(text, runs), fonts, direction, std::move(memory))
            : shapeLine(text, fonts, direction, std::move(memory));
    }

    /// Room that stands behind the characters of a line beside their own.
    class RoomFinder {
    public:
        RoomFinder(const Line& line, std::u16string_view text, std::span<const StyledRun> runs)
            : text_(text)
            , own_(text.size())
            , room_(text.size())
            , isCluster_(text.size())
        {
            for (const LineGlyph& glyph : line.glyphs()) {
                own_[glyph.cluster] += glyph.advance;
                isCluster_[glyph.cluster] = true;
            }
            for (const StyledRun& run : runs)
                addRun(run);
        }

        std::span<const double> find(const ParagraphRules& rules)
        {
            double position = rules.firstIndent;
            for (std::size_t at = 0; at < text_.size(); ++at) {
                if (text_[at] == kTab) {
                    const TabStop* const stop = stopBehind(rules, position);
                    const double following
                        = stop && stop->share > 0 ? columnWidth(at + 1, *stop) : 0;
                    room_[at] = tabWidth(rules, position, stop, following) - own_[at];
                }
                position += own_[at] + room_[at];
            }
            return room_;
        }

        /// Answers the width of the text from an index that a stop moves.
        double columnWidth(std::size_t at, const TabStop& stop) const
        {
            const std::size_t end = at + columnLength(text_.substr(at), stop);
            double width = 0;
            for (; at < end; ++at)
                width += own_[at] + room_[at];
            return width;
        }

    private:
        void addRun(const StyledRun& run)
        {
            for (std::size_t at = run.range.location; at < NSMaxRange(run.range); ++at) {
                if (run.isBox)
                    room_[at] = run.boxWidth - own_[at];
                else if (isCluster_[at])
                    room_[at] = run.kern;
            }
        }

        std::u16string_view text_;
        std::vector<double> own_;
        std::vector<double> room_;
        std::vector<bool> isCluster_;
    };

}

FontRuns::FontRuns(std::span<const StyledRun> runs)
{
    for (const StyledRun& run : runs)
        push_back({ run.range, run.font });
}

std::size_t columnLength(std::u16string_view text, const TabStop& stop)
{
    const auto ends
        = [&](char16_t c) { return c == kTab || (stop.endsColumn && stop.endsColumn(c)); };
    return static_cast<std::size_t>(std::ranges::find_if(text, ends) - text.begin());
}

namespace {

    /// Answers how much of the text behind a tab is shaped to measure its column: the rest of the word in which that ends
    /// too, as it will be in the line, for letters next to the column's end may be kerned.
    std::size_t shapedLength(std::u16string_view text, const TabStop& stop)
    {
        constexpr std::size_t kMostOfWord = 64;
        const std::size_t column = columnLength(text, stop);
        const std::u16string_view rest = text.substr(column, kMostOfWord);
        return column + std::min(rest.find_first_of(u"\t "), rest.size());
    }

}

double columnWidth(std::u16string_view text, std::span<const StyledRun> runs, std::size_t from,
    const TabStop& stop, BaseDirection direction)
{
    const NSRange column = NSMakeRange(from, shapedLength(text.substr(from), stop));
    std::vector<StyledRun> inside;
    const auto endOf = [](const StyledRun& run) { return NSMaxRange(run.range); };
    for (auto run = std::ranges::upper_bound(runs, column.location, {}, endOf);
         run != runs.end() && run->range.location < NSMaxRange(column); ++run) {
        inside.push_back(*run);
        inside.back().range = NSIntersectionRange(run->range, column);
        inside.back().range.location -= from;
    }
    const std::u16string_view shaped = text.substr(column.location, column.length);
    const Line line = shapeText(shaped, inside, direction, {});
    return RoomFinder(line, shaped, inside).columnWidth(0, stop);
}

Line setLine(std::u16string_view text, std::span<const StyledRun> runs, const ParagraphRules& rules,
    Line memory)
{
    const bool isKerned
        = std::ranges::any_of(runs, [](const StyledRun& run) { return run.kern != 0; });
    Line line = shapeText(text, runs, rules.direction, std::move(memory));
    if (hasBoxes(runs) || isKerned || text.find(kTab) != text.npos)
        line.addRoom(RoomFinder(line, text, runs).find(rules));
    return line;
}

}
