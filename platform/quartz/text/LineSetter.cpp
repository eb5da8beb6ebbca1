// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "LineFiller.h"

namespace brindle::text {

namespace {

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
                if (text_[at] == kTab)
                    room_[at] = tabWidth(rules, position, widthUpToTab(at + 1)) - own_[at];
                position += own_[at] + room_[at];
            }
            return room_;
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
        double widthUpToTab(std::size_t at) const
        {
            double width = 0;
            for (; at < text_.size() && text_[at] != kTab; ++at)
                width += own_[at] + room_[at];
            return width;
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

Line setLine(std::u16string_view text, std::span<const StyledRun> runs, const ParagraphRules& rules,
    Line memory)
{
    const bool hasBoxes = std::ranges::any_of(runs, &StyledRun::isBox);
    const bool isKerned
        = std::ranges::any_of(runs, [](const StyledRun& run) { return run.kern != 0; });
    const FontRuns fonts(runs);
    Line line = hasBoxes
        ? shapeLine(withoutBoxes(text, runs), fonts, rules.direction, std::move(memory))
        : shapeLine(text, fonts, rules.direction, std::move(memory));
    if (hasBoxes || isKerned || text.find(kTab) != text.npos)
        line.addRoom(RoomFinder(line, text, runs).find(rules));
    return line;
}

}
