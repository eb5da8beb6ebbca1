// SPDX-License-Identifier: Apache-2.0
#include "LineFiller.h"

#include <cmath>

namespace brindle::text {

namespace {

    // Widths were added up in another order, or went through single precision, since somebody measured them.
    constexpr double kSlack = 0.001;
    constexpr double kRelativeSlack = 1e-6;

    constexpr double kLeastTab = 0.01; // points; a stop that is closer is passed

    double slackFor(double room) { return kSlack + std::min(room, 1e6) * kRelativeSlack; }

}

const TabStop* stopBehind(const ParagraphRules& rules, double position)
{
    const auto stop = std::ranges::find_if(
        rules.tabs, [=](const TabStop& each) { return each.location > position + kLeastTab; });
    return stop == rules.tabs.end() ? nullptr : &*stop;
}

double tabWidth(const ParagraphRules& rules, double position, const TabStop* stop, double following)
{
    if (stop)
        return std::max(stop->location - following * stop->share - position, 0.0);
    if (rules.tabInterval < 1)
        return 0;
    const double last = rules.tabs.empty() ? 0 : rules.tabs.back().location;
    const double steps = std::floor((position + kLeastTab - last) / rules.tabInterval) + 1;
    return std::max(last + steps * rules.tabInterval - position, 0.0);
}

LineFiller::LineFiller(std::u16string_view text, std::span<const StyledRun> runs,
    const ParagraphRules& rules, const std::vector<LineHeights>& heights, LineTaker& taker)
    : text_(text)
    , runs_(runs)
    , rules_(rules)
    , heights_(heights)
    , taker_(taker)
{
    askForRoom();
}

void LineFiller::add(std::span<const Part> parts)
{
    for (std::size_t i = 0; i < parts.size() && wanted_; ++i) {
        if (parts[i].kind == Part::tab)
            addTab(parts[i], parts.subspan(i + 1));
        else
            add(parts[i]);
    }
}

void LineFiller::askForRoom()
{
    room_ = std::max(taker_.roomForLine(number_), 0.0);
    slack_ = slackFor(room_);
}

void LineFiller::makeRoom(const Part& part)
{
    if (break_ > start_)
        wrap();
    if (!fits(part.width) && at_ > start_) {
        // Even alone the word is too wide: it is broken where it is full.
        commit();
        wrap();
    }
    if (at_ <= start_)
        leaveStretches(part.width);
}

/// Looks for a line with room for what begins it.
void LineFiller::leaveStretches(double width)
{
    while (wanted_ && wraps() && width > room_ + slack_ && taker_.leaveStretch())
        askForRoom();
}

double LineFiller::followingWidth(
    const Part& tab, std::span<const Part> following, const TabStop& stop) const
{
    if (stop.endsColumn)
        return columnWidth(text_, runs_, tab.end, stop, rules_.direction);
    double width = 0;
    for (const Part& next : following) {
        if (next.kind == Part::tab)
            break;
        width += next.width;
    }
    return width;
}

double LineFiller::tabWidthHere(const Part& tab, std::span<const Part> following) const
{
    const double position = indent() + total_;
    const TabStop* const stop = stopBehind(rules_, position);
    const bool movesText = stop && stop->share > 0;
    return tabWidth(rules_, position, stop, movesText ? followingWidth(tab, following, *stop) : 0);
}

void LineFiller::addTab(const Part& part, std::span<const Part> following)
{
    Part tab = part;
    tab.width = tabWidthHere(part, following);
    if (wraps() && total_ > 0 && total_ + tab.width > room_ + slack_) {
        commit();
        wrap();
        tab.width = tabWidthHere(part, following);
    }
    tab.kind = Part::word;
    tab.breakAfter = true;
    add(tab);
}

void LineFiller::wrap()
{
    const double rest = total_ - totalAtBreak_;
    emit(break_, visibleAtBreak_, committedHeights(), true);
    firstHeights_ = kNone;
    start_ = break_;
    total_ = visible_ = rest;
    totalAtBreak_ = visibleAtBreak_ = 0;
    ++number_;
    if (!wanted_)
        return;
    askForRoom();
    if (rest > 0)
        leaveStretches(rest);
}

LineHeights LineFiller::committedHeights() const
{
    LineHeights heights;
    for (std::size_t i = firstHeights_; i <= committedHeights_; ++i)
        heights.include(heights_[i]);
    return heights;
}

void LineFiller::emit(std::size_t end, double width, const LineHeights& heights, bool wrapped)
{
    wanted_ = taker_.addLine({ NSMakeRange(start_, end - start_), width, heights.ascent,
        heights.descent, heights.leading, wrapped });
}

}
