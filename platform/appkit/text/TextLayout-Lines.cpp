// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <limits>

#include "TextLayoutPrivate.h"

// Finding lines that are laid out.

namespace brindle::layouts {

std::size_t Layout::fragmentAt(NSUInteger index) const
{
    if (fragments_.empty())
        return 0;
    const auto after = std::ranges::upper_bound(
        fragments_, index, {}, [](const Fragment& fragment) { return fragment.range.location; });
    return after == fragments_.begin() ? 0
                                       : static_cast<std::size_t>(after - fragments_.begin()) - 1;
}

std::pair<std::size_t, std::size_t> Layout::fragmentsIn(std::size_t container) const
{
    if (container == 0 && containers_.size() <= 1)
        return { 0, fragments_.size() };
    const auto number = static_cast<std::uint32_t>(container);
    const auto first = std::ranges::lower_bound(fragments_, number, {}, &Fragment::container);
    const auto end = std::ranges::upper_bound(fragments_, number, {}, &Fragment::container);
    return { static_cast<std::size_t>(first - fragments_.begin()),
        static_cast<std::size_t>(end - fragments_.begin()) };
}

std::pair<std::size_t, std::size_t> Layout::rowNear(std::size_t container, double y) const
{
    const auto [first, end] = fragmentsIn(container);
    if (first == end)
        return { fragments_.size(), fragments_.size() };
    const auto begin = fragments_.begin();
    const auto found = std::partition_point(begin + static_cast<std::ptrdiff_t>(first),
        begin + static_cast<std::ptrdiff_t>(end),
        [y](const Fragment& fragment) { return NSMaxY(fragment.rect) <= y; });
    std::size_t row = std::min(static_cast<std::size_t>(found - begin), end - 1);
    const double top = NSMinY(fragments_[row].rect);
    while (row > first && NSMinY(fragments_[row - 1].rect) == top)
        --row;
    std::size_t behind = row + 1;
    while (behind < end && NSMinY(fragments_[behind].rect) == top)
        ++behind;
    return { row, behind };
}

std::size_t Layout::fragmentNear(std::size_t container, NSPoint point) const
{
    const auto [first, end] = rowNear(container, point.y);
    const auto distance = [&](std::size_t at) {
        const NSRect& rect = fragments_[at].rect;
        return std::max({ NSMinX(rect) - point.x, point.x - NSMaxX(rect), 0.0 });
    };
    std::size_t nearest = first;
    for (std::size_t at = first + 1; at < end; ++at) {
        if (distance(at) < distance(nearest))
            nearest = at;
    }
    return nearest;
}

NSRect Layout::usedRect(std::size_t container) const
{
    const auto [first, end] = fragmentsIn(container);
    double left = std::numeric_limits<double>::infinity();
    double right = 0;
    double top = 0;
    double bottom = 0;
    const auto include = [&](const NSRect& used, bool isFirst) {
        left = std::min(left, used.origin.x);
        right = std::max(right, NSMaxX(used));
        top = isFirst ? used.origin.y : std::min(top, used.origin.y);
        bottom = isFirst ? NSMaxY(used) : std::max(bottom, NSMaxY(used));
    };
    for (std::size_t i = first; i < end; ++i)
        include(fragments_[i].used, i == first);
    const bool hasExtra = hasExtraLine_ && extraLine_.container == container;
    if (hasExtra)
        include(extraLine_.used, first == end);
    if (first == end && !hasExtra)
        return NSZeroRect;
    return NSMakeRect(left, top, right - left, bottom - top);
}

}
