// SPDX-License-Identifier: Apache-2.0
#include "CGPath.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace brindle::quartz {

void PathData::add(CGPathElementType type)
{
    steps_.push_back({ type, static_cast<std::uint32_t>(points_.size()) });
}

CGPoint PathData::current() const
{
    if (steps_.empty())
        return {};
    return steps_.back().type == kCGPathElementCloseSubpath ? points_[start_] : points_.back();
}

void PathData::setPointsAt(std::size_t index, const CGPoint* points)
{
    std::copy_n(points, pointsOf(typeAt(index)), points_.begin() + steps_[index].point);
}

void PathData::clear()
{
    constexpr std::size_t kKept = 1024;
    const auto empty = [](auto& list) {
        if (list.capacity() > kKept)
            list = {};
        else
            list.clear();
    };
    empty(steps_);
    empty(points_);
}

void PathData::move(CGPoint to)
{
    // A move behind a move replaces it.
    if (!steps_.empty() && steps_.back().type == kCGPathElementMoveToPoint) {
        points_.back() = to;
        return;
    }
    start_ = points_.size();
    add(kCGPathElementMoveToPoint);
    points_.push_back(to);
}

/// Makes the subpath's start explicit when drawing goes on after a close.
void PathData::begin()
{
    if (steps_.back().type == kCGPathElementCloseSubpath)
        move(current());
}

void PathData::line(CGPoint to)
{
    if (steps_.empty())
        return;
    begin();
    add(kCGPathElementAddLineToPoint);
    points_.push_back(to);
}

void PathData::quad(CGPoint control, CGPoint to)
{
    if (steps_.empty())
        return;
    begin();
    add(kCGPathElementAddQuadCurveToPoint);
    points_.insert(points_.end(), { control, to });
}

void PathData::curve(CGPoint control1, CGPoint control2, CGPoint to)
{
    if (steps_.empty())
        return;
    begin();
    add(kCGPathElementAddCurveToPoint);
    points_.insert(points_.end(), { control1, control2, to });
}

void PathData::close()
{
    if (!steps_.empty() && steps_.back().type != kCGPathElementCloseSubpath)
        add(kCGPathElementCloseSubpath);
}

void PathData::rect(CGRect rect, const CGAffineTransform& transform)
{
    const CGPoint corners[] = { { NSMinX(rect), NSMinY(rect) }, { NSMaxX(rect), NSMinY(rect) },
        { NSMaxX(rect), NSMaxY(rect) }, { NSMinX(rect), NSMaxY(rect) } };
    if (steps_.empty()) { // most clips are one rectangle
        steps_.reserve(5);
        points_.reserve(4);
    }
    move(CGPointApplyAffineTransform(corners[0], transform));
    for (std::size_t i = 1; i < 4; ++i)
        line(CGPointApplyAffineTransform(corners[i], transform));
    close();
}

void PathData::append(const PathData& other, const CGAffineTransform& transform)
{
    other.each([&](CGPathElementType type, const CGPoint* points) {
        std::array<CGPoint, 3> p;
        for (std::size_t i = 0; i < pointsOf(type); ++i)
            p[i] = CGPointApplyAffineTransform(points[i], transform);
        switch (type) {
        case kCGPathElementMoveToPoint:
            return move(p[0]);
        case kCGPathElementAddLineToPoint:
            return line(p[0]);
        case kCGPathElementAddQuadCurveToPoint:
            return quad(p[0], p[1]);
        case kCGPathElementAddCurveToPoint:
            return curve(p[0], p[1], p[2]);
        case kCGPathElementCloseSubpath:
            return close();
        }
    });
}

namespace {

    /// A rectangle that grows with each point.
    class Box {
    public:
        /// A point that is no number adds nothing.
        void add(CGPoint p)
        {
            if (std::isnan(p.x) || std::isnan(p.y))
                return;
            low_ = { std::min(low_.x, p.x), std::min(low_.y, p.y) };
            high_ = { std::max(high_.x, p.x), std::max(high_.y, p.y) };
            empty_ = false;
        }
        CGRect rect() const
        {
            if (empty_)
                return CGRectNull;
            return { low_, { high_.x - low_.x, high_.y - low_.y } };
        }

    private:
        static constexpr double kInfinity = std::numeric_limits<double>::infinity();
        CGPoint low_ { kInfinity, kInfinity };
        CGPoint high_ { -kInfinity, -kInfinity };
        bool empty_ = true;
    };

    using Cubic = std::array<CGPoint, 4>;

    Cubic cubicFromQuad(CGPoint from, CGPoint control, CGPoint to)
    {
        const auto towards = [](CGPoint a, CGPoint b) {
            return CGPoint { a.x + (b.x - a.x) * 2 / 3, a.y + (b.y - a.y) * 2 / 3 };
        };
        return { from, towards(from, control), towards(to, control), to };
    }

    double cubicAt(double a, double b, double c, double d, double t)
    {
        const double u = 1 - t;
        return u * u * u * a + 3 * u * u * t * b + 3 * u * t * t * c + t * t * t * d;
    }

    CGPoint cubicAt(const Cubic& c, double t)
    {
        return { cubicAt(c[0].x, c[1].x, c[2].x, c[3].x, t),
            cubicAt(c[0].y, c[1].y, c[2].y, c[3].y, t) };
    }

    /// Answers how many lines follow a cubic within a distance.
    ///
    /// A line over one of n equal spans strays by at most M/8n², M being the greatest second derivative; that of a cubic is
    /// six times its greatest second difference of controls (Wang's bound).
    int linesFor(const Cubic& c, double flatness)
    {
        const auto bend = [&c](std::size_t i) {
            return std::hypot(
                c[i].x - 2 * c[i + 1].x + c[i + 2].x, c[i].y - 2 * c[i + 1].y + c[i + 2].y);
        };
        constexpr double kMost = 1024;
        const double lines = std::sqrt(6.0 / 8 * std::max(bend(0), bend(1)) / flatness);
        return lines > 1 ? static_cast<int>(std::ceil(std::min(lines, kMost))) : 1;
    }

    /// Calls `visit(point)` for the end of each line that follows a cubic.
    template <class F> void eachLine(const Cubic& c, double flatness, F&& visit)
    {
        const int lines = linesFor(c, flatness);
        for (int i = 1; i < lines; ++i)
            visit(cubicAt(c, static_cast<double>(i) / lines));
        visit(c[3]);
    }

    /// Adds the places between the ends where a coordinate of a cubic turns round.
    void addTurns(Box& box, const Cubic& cubic, double a, double b, double c, double d)
    {
        const double p = -a + 3 * b - 3 * c + d;
        const double q = 2 * (a - 2 * b + c);
        const double r = b - a;
        std::array<double, 2> turns { -1, -1 };
        if (std::abs(p) < 1e-12)
            turns[0] = q != 0 ? -r / q : -1;
        else if (const double root = q * q - 4 * p * r; root >= 0) {
            turns[0] = (-q + std::sqrt(root)) / (2 * p);
            turns[1] = (-q - std::sqrt(root)) / (2 * p);
        }
        for (const double t : turns) {
            if (t > 0 && t < 1)
                box.add(cubicAt(cubic, t));
        }
    }

    void addCubic(Box& box, const Cubic& c)
    {
        box.add(c[3]);
        addTurns(box, c, c[0].x, c[1].x, c[2].x, c[3].x);
        addTurns(box, c, c[0].y, c[1].y, c[2].y, c[3].y);
    }

    /// Counts how often edges run around a point.
    class Winding {
    public:
        explicit Winding(CGPoint point)
            : point_(point)
        {
        }
        void edge(CGPoint from, CGPoint to)
        {
            const bool up = from.y <= point_.y && to.y > point_.y;
            const bool down = from.y > point_.y && to.y <= point_.y;
            if (!up && !down)
                return;
            const double side
                = (to.x - from.x) * (point_.y - from.y) - (point_.x - from.x) * (to.y - from.y);
            if (up && side > 0)
                ++turns_;
            else if (down && side < 0)
                --turns_;
            else
                return;
            ++crossings_;
        }
        void cubic(const Cubic& c)
        {
            constexpr double kFlatness = 0.01;
            CGPoint from = c[0];
            eachLine(c, kFlatness, [&](CGPoint to) {
                edge(from, to);
                from = to;
            });
        }
        bool inside(bool evenOdd) const { return evenOdd ? crossings_ % 2 != 0 : turns_ != 0; }

    private:
        CGPoint point_;
        int turns_ = 0;
        int crossings_ = 0;
    };

}

void PathData::curveLikeQuad(CGPoint control, CGPoint to)
{
    const Cubic cubic = cubicFromQuad(current(), control, to);
    curve(cubic[1], cubic[2], cubic[3]);
}

CGRect PathData::controlBox() const
{
    Box box;
    for (const CGPoint point : points_)
        box.add(point);
    return box.rect();
}

CGRect PathData::box() const
{
    Box box;
    CGPoint current;
    CGPoint start;
    each([&](CGPathElementType type, const CGPoint* p) {
        if (type == kCGPathElementCloseSubpath) {
            current = start;
            return;
        }
        if (type == kCGPathElementAddQuadCurveToPoint)
            addCubic(box, cubicFromQuad(current, p[0], p[1]));
        else if (type == kCGPathElementAddCurveToPoint)
            addCubic(box, { current, p[0], p[1], p[2] });
        else
            box.add(p[0]);
        current = p[pointsOf(type) - 1];
        if (type == kCGPathElementMoveToPoint)
            start = current;
    });
    return box.rect();
}

bool PathData::contains(CGPoint point, bool evenOdd) const
{
    Winding winding(point);
    CGPoint current;
    CGPoint start;
    each([&](CGPathElementType type, const CGPoint* p) {
        if (type == kCGPathElementMoveToPoint || type == kCGPathElementCloseSubpath)
            winding.edge(current, start); // subpaths are closed for filling
        else if (type == kCGPathElementAddLineToPoint)
            winding.edge(current, p[0]);
        else if (type == kCGPathElementAddQuadCurveToPoint)
            winding.cubic(cubicFromQuad(current, p[0], p[1]));
        else
            winding.cubic({ current, p[0], p[1], p[2] });
        current = type == kCGPathElementCloseSubpath ? start : p[pointsOf(type) - 1];
        if (type == kCGPathElementMoveToPoint)
            start = current;
    });
    winding.edge(current, start);
    return winding.inside(evenOdd);
}

PathData PathData::flattened(double flatness) const
{
    PathData result;
    const auto addLine = [&result](CGPoint to) { result.line(to); };
    each([&](CGPathElementType type, const CGPoint* p) {
        switch (type) {
        case kCGPathElementMoveToPoint:
            return result.move(p[0]);
        case kCGPathElementAddLineToPoint:
            return result.line(p[0]);
        case kCGPathElementAddQuadCurveToPoint:
            return eachLine(cubicFromQuad(result.current(), p[0], p[1]), flatness, addLine);
        case kCGPathElementAddCurveToPoint:
            return eachLine({ result.current(), p[0], p[1], p[2] }, flatness, addLine);
        case kCGPathElementCloseSubpath:
            return result.close();
        }
    });
    return result;
}

CGPoint PathData::endOf(std::size_t index) const
{
    return pointsAt(index)[pointsOf(typeAt(index)) - 1];
}

/// Adds a subpath of another path, last step first.
void PathData::appendReversed(const PathData& other, std::size_t first, std::size_t end)
{
    const bool closed = other.typeAt(end - 1) == kCGPathElementCloseSubpath;
    const std::size_t last = closed ? end - 2 : end - 1;
    move(other.endOf(last));
    for (std::size_t i = last; i > first; --i) {
        const CGPoint* const p = other.pointsAt(i);
        const CGPoint to = other.endOf(i - 1);
        if (other.typeAt(i) == kCGPathElementAddLineToPoint)
            line(to);
        else if (other.typeAt(i) == kCGPathElementAddQuadCurveToPoint)
            quad(p[0], to);
        else
            curve(p[1], p[0], to);
    }
    if (closed)
        close();
}

PathData PathData::reversed() const
{
    PathData result;
    std::size_t end = 0;
    for (std::size_t first = 0; first < count(); first = end) {
        end = first + 1;
        while (end < count() && typeAt(end) != kCGPathElementMoveToPoint)
            ++end;
        result.appendReversed(*this, first, end);
    }
    return result;
}

}
