// SPDX-License-Identifier: Apache-2.0
#include "PathGeometryPrivate.h"

#include <algorithm>
#include <cmath>

namespace brindle::quartz {

namespace {

    CGPoint operator+(CGPoint a, CGPoint b) { return { a.x + b.x, a.y + b.y }; }
    CGPoint operator-(CGPoint a, CGPoint b) { return { a.x - b.x, a.y - b.y }; }
    CGPoint operator*(CGPoint a, double by) { return { a.x * by, a.y * by }; }
    double cross(CGPoint a, CGPoint b) { return a.x * b.y - a.y * b.x; }
    double dot(CGPoint a, CGPoint b) { return a.x * b.x + a.y * b.y; }

    /// Points joined by lines, no two neighbours alike; of one point where a subpath had no length.
    struct Polyline {
        std::vector<CGPoint> points;
        bool closed = false;
    };

    std::vector<Polyline> polylinesOf(const PathData& path, double flatness)
    {
        std::vector<Polyline> lines;
        path.flattened(flatness).each([&](CGPathElementType type, const CGPoint* p) {
            if (type == kCGPathElementMoveToPoint)
                lines.push_back({ { *p }, false });
            else if (type == kCGPathElementCloseSubpath) {
                std::vector<CGPoint>& points = lines.back().points;
                lines.back().closed = points.size() > 1;
                if (points.size() > 1 && points.back() == points.front())
                    points.pop_back();
            } else if (lines.back().points.back() != *p)
                lines.back().points.push_back(*p);
        });
        return lines;
    }

    /// Runs round lines at half their width.
    class Outliner {
    public:
        explicit Outliner(const StrokeShape& shape)
            : shape_(shape)
            , half_(shape.width / 2)
        {
        }
        PathData take() { return std::move(path_); }

        void add(Polyline line)
        {
            if (line.points.size() == 1)
                return addDot(line.points.front());
            begun_ = false;
            addSide(line);
            if (line.closed)
                finish();
            else
                addCap(line.points.back(), directionTo(line, line.points.size() - 1));
            std::ranges::reverse(line.points);
            addSide(line);
            if (!line.closed)
                addCap(line.points.back(), directionTo(line, line.points.size() - 1));
            finish();
        }

    private:
        static CGPoint direction(CGPoint from, CGPoint to)
        {
            const CGPoint way = to - from;
            return way * (1 / std::hypot(way.x, way.y));
        }
        static CGPoint directionTo(const Polyline& line, std::size_t index)
        {
            return direction(line.points[index - 1], line.points[index]);
        }
        CGPoint leftOf(CGPoint along) const { return { -along.y * half_, along.x * half_ }; }

        void to(CGPoint point)
        {
            if (begun_)
                path_.line(point);
            else
                path_.move(point);
            begun_ = true;
        }
        void finish()
        {
            path_.close();
            begun_ = false;
        }
        void turn(CGPoint center, CGPoint from, CGPoint to)
        {
            addArc(path_, CGAffineTransformIdentity,
                { center, half_, std::atan2(from.y, from.x), std::atan2(to.y, to.x), true });
        }

        /// Adds the left side of a line from its first point to its last, or all round.
        void addSide(const Polyline& line)
        {
            const std::vector<CGPoint>& p = line.points;
            const std::size_t pieces = line.closed ? p.size() : p.size() - 1;
            for (std::size_t i = 0; i < pieces; ++i) {
                const CGPoint& end = p[(i + 1) % p.size()];
                const CGPoint left = leftOf(direction(p[i], end));
                to(p[i] + left);
                to(end + left);
                if (i + 1 < pieces || line.closed)
                    addJoin(end, left, leftOf(direction(end, p[(i + 2) % p.size()])));
            }
        }

        void addJoin(CGPoint corner, CGPoint from, CGPoint next)
        {
            if (cross(from, next)
                > 0) // on the inside the sides cross; through the corner all stays covered
                return to(corner);
            const double cosine = dot(from, next) / (half_ * half_);
            if (shape_.join == kCGLineJoinRound)
                turn(corner, from, next);
            else if (shape_.join == kCGLineJoinMiter
                && 2 <= shape_.miterLimit * shape_.miterLimit * (1 + cosine))
                to(corner + (from + next) * (1 / (1 + cosine)));
        }

        void addCap(CGPoint end, CGPoint along)
        {
            const CGPoint left = leftOf(along);
            if (shape_.cap == kCGLineCapRound)
                turn(end, left, left * -1);
            else if (shape_.cap == kCGLineCapSquare) {
                to(end + left + along * half_);
                to(end - left + along * half_);
            }
        }

        void addDot(CGPoint at)
        {
            const CGRect box { { at.x - half_, at.y - half_ }, { shape_.width, shape_.width } };
            if (shape_.cap == kCGLineCapRound)
                addEllipse(path_, CGAffineTransformIdentity, box);
            else if (shape_.cap == kCGLineCapSquare)
                path_.rect(box, CGAffineTransformIdentity);
        }

        const StrokeShape& shape_;
        double half_;
        bool begun_ = false;
        PathData path_;
    };

    /// Cuts lines into what is drawn and what is not.
    class Dasher {
    public:
        Dasher(double phase, std::span<const double> lengths)
            : lengths_(lengths)
        {
            double sum = 0;
            for (const double length : lengths)
                sum += length;
            const double period = sum * (lengths.size() % 2 ? 2 : 1);
            double into = std::fmod(phase, period);
            if (into < 0)
                into += period;
            while (into >= lengths_[first_ % lengths_.size()]) {
                into -= lengths_[first_ % lengths_.size()];
                ++first_;
            }
            firstRest_ = lengths_[first_ % lengths_.size()] - into;
        }
        PathData take() { return std::move(path_); }

        void add(const Polyline& line)
        {
            index_ = first_;
            rest_ = firstRest_;
            const std::vector<CGPoint>& p = line.points;
            if (isOn())
                path_.move(p.front());
            const std::size_t pieces = line.closed ? p.size() : p.size() - 1;
            for (std::size_t i = 0; i < pieces; ++i)
                addPiece(p[i], p[(i + 1) % p.size()]);
        }

    private:
        bool isOn() const { return index_ % 2 == 0; }

        void addPiece(CGPoint from, CGPoint to)
        {
            const double length = std::hypot(to.x - from.x, to.y - from.y);
            double gone = 0;
            while (length - gone > rest_) {
                gone += rest_;
                const CGPoint at = from + (to - from) * (gone / length);
                if (isOn())
                    path_.line(at);
                rest_ = lengths_[++index_ % lengths_.size()];
                if (isOn())
                    path_.move(at);
            }
            rest_ -= length - gone;
            if (isOn())
                path_.line(to);
        }

        std::span<const double> lengths_;
        std::size_t first_ = 0;
        double firstRest_ = 0;
        std::size_t index_ = 0; // of the dash or gap under way; even ones are dashes
        double rest_ = 0; // of it
        PathData path_;
    };

    // Finer than half a level of a pixel's coverage, at up to four pixels a point.
    constexpr double kFlatness = 0.02;

    bool isFinite(const PathData& path)
    {
        const CGRect box = path.controlBox();
        bool all = true;
        path.each([&all](CGPathElementType type, const CGPoint* points) {
            for (std::size_t i = 0; i < PathData::pointsOf(type); ++i)
                all = all && std::isfinite(points[i].x + points[i].y);
        });
        return all && std::isfinite(box.size.width + box.size.height);
    }

}

PathData outlined(const PathData& path, const StrokeShape& shape)
{
    if (!(shape.width > 0) || !std::isfinite(shape.width) || !isFinite(path))
        return {};
    Outliner outliner(shape);
    for (Polyline& line : polylinesOf(path, kFlatness))
        outliner.add(std::move(line));
    return outliner.take();
}

PathData dashed(const PathData& path, double phase, std::span<const double> lengths)
{
    constexpr double kMostDashes = 1e6;
    double sum = 0;
    bool usable = !lengths.empty() && std::isfinite(phase) && isFinite(path);
    for (const double length : lengths) {
        usable = usable && length >= 0;
        sum += length;
    }
    if (!usable || !(sum > 0) || !std::isfinite(sum))
        return path;
    const std::vector<Polyline> lines = polylinesOf(path, kFlatness);
    double whole = 0;
    for (const Polyline& line : lines) {
        for (std::size_t i = 1; i < line.points.size(); ++i)
            whole += std::hypot(
                line.points[i].x - line.points[i - 1].x, line.points[i].y - line.points[i - 1].y);
    }
    if (whole / sum * static_cast<double>(lengths.size()) > kMostDashes)
        return path;
    Dasher dasher(phase, lengths);
    for (const Polyline& line : lines)
        dasher.add(line);
    return dasher.take();
}

}
