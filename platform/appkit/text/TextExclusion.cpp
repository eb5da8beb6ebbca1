// SPDX-License-Identifier: Apache-2.0
#include "TextExclusionPrivate.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "TextLayoutPrivate.h"
#include "appkit/NSBezierPath.h"

namespace brindle::layouts {

namespace {

    // How many heights of a row are looked at: one a point, as letters are seldom smaller.
    constexpr double kMostHeights = 64;

    // A stretch that leaves less for letters is none.
    constexpr double kLeastWidth = 4;

    void cutSpan(std::vector<FreeSpan>& free, double left, double right)
    {
        for (std::size_t i = 0; i < free.size(); ++i) {
            const FreeSpan span = free[i];
            if (!(right > span.left) || !(left < span.right))
                continue;
            free[i].right = std::max(left, span.left);
            if (right < span.right)
                free.insert(
                    free.begin() + static_cast<std::ptrdiff_t>(i) + 1, { right, span.right });
        }
        std::erase_if(free, [](const FreeSpan& span) { return !(span.width() > 0); });
    }

}

Exclusion::Exclusion(NSBezierPath& path)
    : evenOdd_(path.windingRule() == NSEvenOddWindingRule)
{
    const Ref<NSBezierPath> flat = path.bezierPathByFlatteningPath();
    const NSInteger count = maybe(flat)->elementCount();
    NSPoint start {};
    NSPoint last {};
    for (NSInteger i = 0; i < count; ++i) {
        std::array<NSPoint, 3> points {};
        const NSBezierPathElement element = flat->elementAtIndex_associatedPoints(i, points.data());
        if (element == NSLineToBezierPathElement) {
            addEdge(last, points[0]);
        } else {
            addEdge(last, start); // what is left open is filled as if it were closed
            start = element == NSMoveToBezierPathElement ? points[0] : start;
        }
        last = element == NSClosePathBezierPathElement ? start : points[0];
    }
    addEdge(last, start);
    const auto isUsable = [](const Edge& edge) {
        return std::isfinite(edge.from.x) && std::isfinite(edge.from.y) && std::isfinite(edge.to.x)
            && std::isfinite(edge.to.y);
    };
    if (!std::ranges::all_of(edges_, isUsable))
        edges_.clear();
    if (edges_.empty())
        return;
    top_ = std::min(edges_[0].from.y, edges_[0].to.y);
    bottom_ = top_;
    for (const Edge& edge : edges_) {
        top_ = std::min({ top_, edge.from.y, edge.to.y });
        bottom_ = std::max({ bottom_, edge.from.y, edge.to.y });
    }
}

void Exclusion::addEdge(NSPoint from, NSPoint to)
{
    if (from.y != to.y)
        edges_.push_back({ from, to });
}

void Exclusion::cut(std::vector<FreeSpan>& free, double top, double bottom) const
{
    top = std::max(top, top_);
    bottom = std::min(bottom, bottom_);
    if (!(top < bottom))
        return;
    const double steps = std::clamp(std::ceil(bottom - top), 1.0, kMostHeights);
    // The ends count just inside, where edges that meet there are still apart.
    const double inset = (bottom - top) * 1e-6;
    for (double i = 0; i <= steps && !free.empty(); ++i)
        cutAt(free, top + inset + (bottom - top - 2 * inset) * i / steps);
}

void Exclusion::cutAt(std::vector<FreeSpan>& free, double y) const
{
    struct Crossing {
        double x;
        int turn;
    };
    std::vector<Crossing> crossings;
    for (const Edge& edge : edges_) {
        const bool isDown = edge.from.y < edge.to.y;
        const NSPoint upper = isDown ? edge.from : edge.to;
        const NSPoint lower = isDown ? edge.to : edge.from;
        if (y < upper.y || y >= lower.y)
            continue;
        const double share = (y - upper.y) / (lower.y - upper.y);
        crossings.push_back({ upper.x + (lower.x - upper.x) * share, isDown ? 1 : -1 });
    }
    std::ranges::sort(crossings, {}, &Crossing::x);
    int winding = 0;
    for (std::size_t i = 0; i + 1 < crossings.size(); ++i) {
        winding += crossings[i].turn;
        if (evenOdd_ ? winding % 2 != 0 : winding != 0)
            cutSpan(free, crossings[i].x, crossings[i + 1].x);
    }
}

namespace {

    /// Answers where nothing is in the way any more.
    double endOf(const Container& container)
    {
        double end = 0;
        for (const Exclusion& exclusion : container.exclusions)
            end = std::max(end, exclusion.bottom());
        return std::min(end, container.height);
    }

    /// Goes down by a distance at least; a very high area is passed in long steps.
    double below(double y, double distance, double end)
    {
        constexpr double kSteps = 1024;
        return y + std::max({ distance, 1.0, (end - y) / kSteps });
    }

}

std::vector<FreeSpan> freeRow(const Container& container, double& y, double height)
{
    const FreeSpan whole { 0, container.width };
    for (const double end = endOf(container); y < end; y = below(y, 0, end)) {
        std::vector<FreeSpan> free { whole };
        for (const Exclusion& exclusion : container.exclusions)
            exclusion.cut(free, y, y + height);
        std::erase_if(free, [&](const FreeSpan& span) {
            return span.width() < 2 * container.padding + kLeastWidth;
        });
        if (!free.empty())
            return free;
    }
    return { whole };
}

double nextRow(const Container& container, double y, double height)
{
    return below(y, height, endOf(container));
}

}
