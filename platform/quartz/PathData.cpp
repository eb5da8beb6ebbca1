// SPDX-License-Identifier: Apache-2.0
#include "CGPath.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace brindle::quartz {

void PathData::clear()
{
    types_.clear();
    points_.clear();
}

void PathData::move(CGPoint to)
{
    // A move behind a move replaces it.
    if (!types_.empty() && types_.back() == kCGPathElementMoveToPoint)
        points_.back() = to;
    else {
        types_.push_back(kCGPathElementMoveToPoint);
        points_.push_back(to);
    }
    start_ = current_ = to;
}

/// Makes the subpath's start explicit when drawing goes on after a close.
void PathData::begin()
{
    if (types_.back() == kCGPathElementCloseSubpath)
        move(start_);
}

void PathData::line(CGPoint to)
{
    if (types_.empty())
        return;
    begin();
    types_.push_back(kCGPathElementAddLineToPoint);
    points_.push_back(to);
    current_ = to;
}

void PathData::quad(CGPoint control, CGPoint to)
{
    if (types_.empty())
        return;
    begin();
    types_.push_back(kCGPathElementAddQuadCurveToPoint);
    points_.insert(points_.end(), { control, to });
    current_ = to;
}

void PathData::curve(CGPoint control1, CGPoint control2, CGPoint to)
{
    if (types_.empty())
        return;
    begin();
    types_.push_back(kCGPathElementAddCurveToPoint);
    points_.insert(points_.end(), { control1, control2, to });
    current_ = to;
}

void PathData::close()
{
    if (types_.empty() || types_.back() == kCGPathElementCloseSubpath)
        return;
    types_.push_back(kCGPathElementCloseSubpath);
    current_ = start_;
}

void PathData::rect(CGRect rect, const CGAffineTransform& transform)
{
    const CGPoint corners[] = { { NSMinX(rect), NSMinY(rect) }, { NSMaxX(rect), NSMinY(rect) },
        { NSMaxX(rect), NSMaxY(rect) }, { NSMinX(rect), NSMaxY(rect) } };
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
        void add(CGPoint p)
        {
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
            constexpr int kSteps = 64;
            CGPoint from = c[0];
            for (int i = 1; i <= kSteps; ++i) {
                const CGPoint to = cubicAt(c, static_cast<double>(i) / kSteps);
                edge(from, to);
                from = to;
            }
        }
        bool inside(bool evenOdd) const { return evenOdd ? crossings_ % 2 != 0 : turns_ != 0; }

    private:
        CGPoint point_;
        int turns_ = 0;
        int crossings_ = 0;
    };

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

}
