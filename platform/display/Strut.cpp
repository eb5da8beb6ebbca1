// SPDX-License-Identifier: Apache-2.0
#include "Strut.h"

#include <algorithm>
#include <cmath>

namespace brindle::display {

namespace {

    struct Span {
        int start = 0;
        int end = 0;
    };

    bool isVertical(Strut::Edge edge)
    {
        return edge == Strut::Edge::left || edge == Strut::Edge::right;
    }

    Span spanAlongEdge(const Strut& strut, const PixelMapping& mapping)
    {
        const double scale = mapping.scale;
        if (isVertical(strut.edge))
            return { saturatedPixel(mapping.bottom - strut.end * scale),
                saturatedPixel(mapping.bottom - strut.start * scale) };
        return { saturatedPixel(mapping.left + strut.start * scale),
            saturatedPixel(mapping.left + strut.end * scale) };
    }

    bool liesOutside(PixelRect other, PixelRect screen, Strut::Edge edge)
    {
        switch (edge) {
        case Strut::Edge::top:
            return other.bottom <= screen.top;
        case Strut::Edge::bottom:
            return other.top >= screen.bottom;
        case Strut::Edge::left:
            return other.right <= screen.left;
        case Strut::Edge::right:
            return other.left >= screen.right;
        }
        return false;
    }

    int distanceFromDesktop(PixelRect screen, PixelSize desktop, Strut::Edge edge)
    {
        switch (edge) {
        case Strut::Edge::top:
            return screen.top;
        case Strut::Edge::bottom:
            return desktop.height - screen.bottom;
        case Strut::Edge::left:
            return screen.left;
        case Strut::Edge::right:
            return desktop.width - screen.right;
        }
        return 0;
    }

    std::size_t rankOf(Strut::Edge edge)
    {
        switch (edge) {
        case Strut::Edge::left:
            return 0;
        case Strut::Edge::right:
            return 1;
        case Strut::Edge::top:
            return 2;
        case Strut::Edge::bottom:
            return 3;
        }
        return 0;
    }

}

CGRect frameWithoutStrut(CGRect screen, CGRect visible, const Strut& strut)
{
    double left = NSMinX(visible);
    double right = NSMaxX(visible);
    double bottom = NSMinY(visible);
    double top = NSMaxY(visible);
    switch (strut.edge) {
    case Strut::Edge::top:
        top = std::min(top, NSMaxY(screen) - strut.thickness);
        break;
    case Strut::Edge::bottom:
        bottom = std::max(bottom, NSMinY(screen) + strut.thickness);
        break;
    case Strut::Edge::left:
        left = std::max(left, NSMinX(screen) + strut.thickness);
        break;
    case Strut::Edge::right:
        right = std::min(right, NSMaxX(screen) - strut.thickness);
        break;
    }
    return { { left, bottom }, { std::max(0.0, right - left), std::max(0.0, top - bottom) } };
}

std::optional<StrutValues> strutValues(const Strut& strut, const std::vector<PixelRect>& screens,
    std::size_t index, PixelSize desktop, const PixelMapping& mapping)
{
    if (index >= screens.size() || !(strut.thickness > 0))
        return std::nullopt;
    const PixelRect screen = screens[index];
    const Span wanted = spanAlongEdge(strut, mapping);
    const bool vertical = isVertical(strut.edge);
    const int start = std::max(wanted.start, vertical ? screen.top : screen.left);
    const int end = std::min(wanted.end, vertical ? screen.bottom : screen.right);
    if (start >= end)
        return std::nullopt;

    for (const PixelRect& other : screens) {
        const int otherStart = vertical ? other.top : other.left;
        const int otherEnd = vertical ? other.bottom : other.right;
        if (liesOutside(other, screen, strut.edge) && otherStart < end && otherEnd > start)
            return std::nullopt;
    }

    const int thickness = saturatedPixel(std::ceil(strut.thickness * mapping.scale));
    const int reserved = distanceFromDesktop(screen, desktop, strut.edge) + thickness;
    StrutValues values {};
    const std::size_t rank = rankOf(strut.edge);
    values[rank] = static_cast<std::uint32_t>(std::max(0, reserved));
    values[4 + 2 * rank] = static_cast<std::uint32_t>(std::max(0, start));
    values[5 + 2 * rank] = static_cast<std::uint32_t>(std::max(0, end - 1));
    return values;
}

}
