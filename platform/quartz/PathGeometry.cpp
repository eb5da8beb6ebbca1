// SPDX-License-Identifier: Apache-2.0
#include "PathGeometryPrivate.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace brindle::quartz {

namespace {

    /// Adds pieces of an outline in a space of their own.
    class Pen {
    public:
        Pen(PathData& path, const CGAffineTransform& transform)
            : path_(path)
            , transform_(transform)
        {
        }
        void move(double x, double y) { path_.move(at(x, y)); }
        void line(double x, double y) { path_.line(at(x, y)); }
        void curve(double ax, double ay, double bx, double by, double x, double y)
        {
            path_.curve(at(ax, ay), at(bx, by), at(x, y));
        }
        void close() { path_.close(); }

    private:
        CGPoint at(double x, double y) const
        {
            return CGPointApplyAffineTransform({ x, y }, transform_);
        }
        PathData& path_;
        const CGAffineTransform& transform_;
    };

    /// Answers how far an arc sweeps: 0 to a full turn, with the sign of its direction.
    double sweepOf(const ArcSpan& arc)
    {
        constexpr double kTurn = 2 * std::numbers::pi;
        const double asked = arc.clockwise ? arc.start - arc.end : arc.end - arc.start;
        double sweep = asked;
        if (asked >= kTurn)
            sweep = kTurn;
        else if (asked < 0) {
            sweep = std::fmod(asked, kTurn);
            if (sweep < 0)
                sweep += kTurn;
        }
        return arc.clockwise ? -sweep : sweep;
    }

}

void addArc(PathData& path, const CGAffineTransform& transform, const ArcSpan& arc)
{
    const double sweep = sweepOf(arc);
    if (!std::isfinite(sweep) || !std::isfinite(arc.radius) || !std::isfinite(arc.start))
        return;
    Pen pen(path, transform);
    const auto x = [&](double angle) { return arc.center.x + arc.radius * std::cos(angle); };
    const auto y = [&](double angle) { return arc.center.y + arc.radius * std::sin(angle); };
    if (path.isEmpty())
        pen.move(x(arc.start), y(arc.start));
    else
        pen.line(x(arc.start), y(arc.start));
    const int pieces = static_cast<int>(std::ceil(std::abs(sweep) / (std::numbers::pi / 2) - 1e-9));
    const double step = pieces > 0 ? sweep / pieces : 0;
    const double handle = 4.0 / 3 * std::tan(step / 4) * arc.radius;
    for (int i = 0; i < pieces; ++i) {
        const double from = arc.start + i * step;
        const double to = from + step;
        pen.curve(x(from) - handle * std::sin(from), y(from) + handle * std::cos(from),
            x(to) + handle * std::sin(to), y(to) - handle * std::cos(to), x(to), y(to));
    }
}

void addArcToPoint(PathData& path, const CGAffineTransform& transform, CGPoint current,
    CGPoint first, CGPoint second, double radius)
{
    Pen pen(path, transform);
    const double ux = current.x - first.x;
    const double uy = current.y - first.y;
    const double vx = second.x - first.x;
    const double vy = second.y - first.y;
    const double lengthU = std::hypot(ux, uy);
    const double lengthV = std::hypot(vx, vy);
    const double lengths = lengthU * lengthV;
    const double cross = ux * vy - uy * vx;
    if (!(std::abs(cross) > 1e-12 * lengths) || !(radius > 0) || !std::isfinite(lengths)) {
        pen.line(first.x, first.y);
        return;
    }
    const double dot = ux * vx + uy * vy;
    // The tangent of half the turn is that of what half the corner lacks of a right angle.
    const double halfTurn = (lengths + dot) / std::abs(cross);
    const double reach = radius * halfTurn;
    const CGPoint toCurrent { ux / lengthU, uy / lengthU };
    const CGPoint toSecond { vx / lengthV, vy / lengthV };
    const CGPoint in { first.x + toCurrent.x * reach, first.y + toCurrent.y * reach };
    const CGPoint out { first.x + toSecond.x * reach, first.y + toSecond.y * reach };
    if (halfTurn < 1 + 1e-9) {
        // At most a quarter of a circle: one curve, its handles along the lines; 4/3 of the tangent of a quarter of the turn.
        const double quarterTurn = halfTurn / (1 + std::sqrt(1 + halfTurn * halfTurn));
        const double left = reach - 4.0 / 3 * quarterTurn * radius; // of the way to the corner
        pen.line(in.x, in.y);
        return pen.curve(first.x + toCurrent.x * left, first.y + toCurrent.y * left,
            first.x + toSecond.x * left, first.y + toSecond.y * left, out.x, out.y);
    }
    // The centre lies beside the tangent point, on the side of the second line.
    const double side = cross > 0 ? 1 : -1;
    const CGPoint center { in.x - side * toCurrent.y * radius, in.y + side * toCurrent.x * radius };
    ArcSpan arc { center, radius, std::atan2(in.y - center.y, in.x - center.x),
        std::atan2(out.y - center.y, out.x - center.x), cross > 0 };
    addArc(path, transform, arc);
}

void addEllipse(PathData& path, const CGAffineTransform& transform, CGRect rect)
{
    const CGRect r = CGRectStandardize(rect);
    addRoundedRect(path, transform, r, r.size.width / 2, r.size.height / 2);
}

void addRoundedRect(
    PathData& path, const CGAffineTransform& transform, CGRect rect, double width, double height)
{
    const CGRect r = CGRectStandardize(rect);
    const double w = std::clamp(width, 0.0, std::max(r.size.width / 2, 0.0));
    const double h = std::clamp(height, 0.0, std::max(r.size.height / 2, 0.0));
    if (!(w > 0 && h > 0)) // curves of no length would spoil the corners of a line
        return path.rect(r, transform);
    const double hw = w * kQuarterHandle;
    const double hh = h * kQuarterHandle;
    const double left = r.origin.x;
    const double bottom = r.origin.y;
    const double right = NSMaxX(r);
    const double top = NSMaxY(r);
    const double midX = NSMidX(r);
    Pen pen(path, transform);
    // From the middle of the right side, as an ellipse starts at angle zero.
    pen.move(right, top - h > bottom + h ? NSMidY(r) : bottom + h);
    if (top - h > bottom + h)
        pen.line(right, top - h);
    pen.curve(right, top - h + hh, right - w + hw, top, right - w, top);
    if (right - w > midX)
        pen.line(left + w, top);
    pen.curve(left + w - hw, top, left, top - h + hh, left, top - h);
    if (top - h > bottom + h)
        pen.line(left, bottom + h);
    pen.curve(left, bottom + h - hh, left + w - hw, bottom, left + w, bottom);
    if (right - w > midX)
        pen.line(right - w, bottom);
    pen.curve(right - w + hw, bottom, right, bottom + h - hh, right, bottom + h);
    pen.close();
}

bool isUprightRect(const PathData& path, CGRect& rect)
{
    constexpr CGPathElementType kSteps[]
        = { kCGPathElementMoveToPoint, kCGPathElementAddLineToPoint, kCGPathElementAddLineToPoint,
              kCGPathElementAddLineToPoint, kCGPathElementCloseSubpath };
    CGPoint corners[4];
    std::size_t count = 0;
    bool fits = true;
    path.each([&](CGPathElementType type, const CGPoint* points) {
        fits = fits && count < 5 && type == kSteps[count];
        if (fits && count < 4)
            corners[count] = points[0];
        ++count;
    });
    if (!fits || count < 4)
        return false;
    const CGPoint& a = corners[0];
    const CGPoint& c = corners[2];
    const bool acrossFirst
        = corners[1] == CGPoint { c.x, a.y } && corners[3] == CGPoint { a.x, c.y };
    const bool upFirst = corners[1] == CGPoint { a.x, c.y } && corners[3] == CGPoint { c.x, a.y };
    rect = { { std::min(a.x, c.x), std::min(a.y, c.y) },
        { std::abs(c.x - a.x), std::abs(c.y - a.y) } };
    return acrossFirst || upFirst;
}

}
