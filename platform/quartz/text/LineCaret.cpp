// SPDX-License-Identifier: Apache-2.0
#include "Line.h"
#include "Unicode.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace brindle::text {

namespace {

    /// A character as a reader counts them, with its place on the line.
    struct Cell {
        std::size_t start = 0;
        std::size_t end = 0;
        double left = 0;
        double width = 0;
        bool rightToLeft = false;

        double leading() const { return rightToLeft ? left + width : left; }
        double trailing() const { return rightToLeft ? left : left + width; }
    };

    /// Shares the room of one cluster evenly among its characters; a ligature has several.
    void addCluster(
        std::vector<Cell>& cells, std::span<const std::size_t> bounds, const Cell& cluster)
    {
        const auto first = std::ranges::lower_bound(bounds, cluster.start);
        const auto last = std::ranges::lower_bound(bounds, cluster.end);
        const auto count = last - first;
        if (count <= 0) {
            // The cluster is part of a character that began in an earlier one, and widens it.
            if (!cells.empty() && cells.back().rightToLeft == cluster.rightToLeft) {
                cells.back().left = std::min(cells.back().left, cluster.left);
                cells.back().width += cluster.width;
            }
            return;
        }
        const double share = cluster.width / static_cast<double>(count);
        for (std::ptrdiff_t i = 0; i < count; ++i) {
            const std::ptrdiff_t place = cluster.rightToLeft ? count - 1 - i : i;
            cells.push_back({ first[i], first + i + 1 < bounds.end() ? first[i + 1] : cluster.end,
                cluster.left + share * static_cast<double>(place), share, cluster.rightToLeft });
        }
    }

    /// Adds the cells of a run in the text's order.
    void addRun(std::vector<Cell>& cells, std::span<const std::size_t> bounds, const Line& line,
        const LineRun& run)
    {
        const auto glyphs = line.glyphs(run);
        const std::size_t count = glyphs.size();
        const auto logical = [&](std::size_t i) -> const LineGlyph& {
            return run.rightToLeft ? glyphs[count - 1 - i] : glyphs[i];
        };
        double pen = run.rightToLeft ? run.x + run.width : run.x;
        for (std::size_t i = 0; i < count;) {
            const std::size_t start = logical(i).cluster;
            double width = 0;
            for (; i < count && logical(i).cluster == start; ++i)
                width += logical(i).advance;
            const std::size_t end = i < count ? logical(i).cluster : NSMaxRange(run.range);
            addCluster(cells, bounds,
                { start, end, run.rightToLeft ? pen - width : pen, width, run.rightToLeft });
            pen += run.rightToLeft ? -width : width;
        }
    }

    /// Answers the line's characters in the text's order.
    std::vector<Cell> cellsOf(const Line& line)
    {
        const std::vector<std::size_t> bounds = characterBoundaries(line.text());
        std::vector<const LineRun*> runs;
        for (const LineRun& run : line.runs())
            runs.push_back(&run);
        std::ranges::sort(runs, {}, [](const LineRun* run) { return run->range.location; });
        std::vector<Cell> cells;
        for (const LineRun* run : runs)
            addRun(cells, bounds, line, *run);
        return cells;
    }

}

double Line::caretOffset(std::size_t index) const
{
    const std::vector<Cell> cells = cellsOf(*this);
    const auto after = std::ranges::upper_bound(cells, index, {}, &Cell::start);
    if (after == cells.begin())
        return cells.empty() ? 0 : cells.front().leading();
    const Cell& cell = after[-1];
    return index >= cell.end ? cell.trailing() : cell.leading();
}

std::size_t Line::indexAt(double x) const
{
    const std::vector<Cell> cells = cellsOf(*this);
    double nearest = std::numeric_limits<double>::infinity();
    std::size_t answer = 0;
    const double inside = std::clamp(x, 0.0, metrics_.width);
    for (const Cell& cell : cells) {
        if (inside < cell.left || inside > cell.left + cell.width)
            continue;
        const double toLeading = std::abs(inside - cell.leading());
        const double toTrailing = std::abs(inside - cell.trailing());
        const double distance = std::min(toLeading, toTrailing);
        if (distance < nearest) {
            nearest = distance;
            answer = toLeading <= toTrailing ? cell.start : cell.end;
        }
    }
    return answer;
}

std::vector<LineSpan> Line::spansOf(NSRange range) const
{
    std::vector<LineSpan> spans;
    for (const Cell& cell : cellsOf(*this)) {
        if (cell.end > range.location && cell.start < NSMaxRange(range))
            spans.push_back({ cell.left, cell.width });
    }
    std::ranges::sort(spans, {}, &LineSpan::x);
    constexpr double kTouching = 0.001;
    std::size_t last = 0;
    for (std::size_t i = 1; i < spans.size(); ++i) {
        if (spans[i].x <= spans[last].x + spans[last].width + kTouching)
            spans[last].width
                = std::max(spans[last].width, spans[i].x + spans[i].width - spans[last].x);
        else
            spans[++last] = spans[i];
    }
    if (!spans.empty())
        spans.resize(last + 1);
    return spans;
}

}
