// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "CGGeometry.h"
#include "runtime/NSObject.h"

namespace brindle {

enum CGPathElementType : std::int32_t {
    kCGPathElementMoveToPoint = 0,
    kCGPathElementAddLineToPoint = 1,
    kCGPathElementAddQuadCurveToPoint = 2,
    kCGPathElementAddCurveToPoint = 3,
    kCGPathElementCloseSubpath = 4,
};

/// One step of a path.
/// - Shape: move and line have 1 point, a quad curve 2 (control, end), a curve 3 (control, control, end), close none.
struct CGPathElement {
    CGPathElementType type = kCGPathElementMoveToPoint;
    CGPoint* points = nullptr; // lent for the call
};
using CGPathApplierFunction = void (*)(void* info, const CGPathElement* element);

namespace quartz {

    /// The steps of a path with their points in one row.
    class PathData {
    public:
        bool isEmpty() const { return steps_.empty(); }
        std::size_t count() const { return steps_.size(); }
        CGPathElementType typeAt(std::size_t index) const { return steps_[index].type; }
        const CGPoint* pointsAt(std::size_t index) const
        {
            return points_.data() + steps_[index].point;
        }
        /// Moves a step's points; the others stay.
        void setPointsAt(std::size_t index, const CGPoint* points);

        void clear();
        void move(CGPoint to);
        void line(CGPoint to);
        void quad(CGPoint control, CGPoint to);
        void curve(CGPoint control1, CGPoint control2, CGPoint to);
        /// Adds the cubic that has the shape of a quadratic curve.
        void curveLikeQuad(CGPoint control, CGPoint to);
        /// Ends the subpath; nothing on an empty path or twice in a row.
        void close();
        void rect(CGRect rect, const CGAffineTransform& transform);
        void append(const PathData& other, const CGAffineTransform& transform);

        /// Answers the current point: the last one, or the start of the subpath after a close.
        CGPoint current() const;
        /// Answers the rectangle around all points, control points included; null when there are none.
        CGRect controlBox() const;
        /// Answers the rectangle around the drawn curves.
        CGRect box() const;
        bool contains(CGPoint point, bool evenOdd) const;
        /// Answers the path with lines in place of its curves.
        /// - flatness: how far a line may stray from its curve, in points; a curve becomes 1,024 lines at most.
        PathData flattened(double flatness) const;
        /// Answers the same shape with each subpath run from its end to its start.
        PathData reversed() const;

        /// Calls `visit(type, points)` for each step.
        template <class F> void each(F&& visit) const
        {
            for (const Step& step : steps_)
                visit(step.type, points_.data() + step.point);
        }
        static std::size_t pointsOf(CGPathElementType type)
        {
            return type == kCGPathElementCloseSubpath ? 0
                : type <= 1                           ? 1
                                                      : static_cast<std::size_t>(type);
        }
        friend bool operator==(const PathData& a, const PathData& b)
        {
            return a.steps_ == b.steps_ && a.points_ == b.points_;
        }

    private:
        struct Step {
            CGPathElementType type;
            std::uint32_t point; // the place of its first point
            friend bool operator==(const Step&, const Step&) = default;
        };
        void add(CGPathElementType type);
        void begin();
        CGPoint endOf(std::size_t index) const;
        void appendReversed(const PathData& other, std::size_t first, std::size_t end);

        std::vector<Step> steps_;
        std::vector<CGPoint> points_;
        std::size_t start_ = 0; // the place of the last move's point
    };

}

/// A shape made of lines and curves; its steps are kept as they were added.
class CGPath : public NSObject {
    BRINDLE_OBJECT(CGPath, NSObject)

public:
    const quartz::PathData& data() const { return data_; }
    quartz::PathData& data() { return data_; }

private:
    quartz::PathData data_;
};

// In all of these the transform may be NULL, and a NULL path is left alone.
BRINDLE_EXPORT CGMutablePathRef CGPathCreateMutable();
BRINDLE_EXPORT CGPathRef CGPathCreateCopy(CGPathRef path);
BRINDLE_EXPORT CGMutablePathRef CGPathCreateMutableCopy(CGPathRef path);
BRINDLE_EXPORT CGPathRef CGPathCreateCopyByTransformingPath(
    CGPathRef path, const CGAffineTransform* transform);
/// Answers the outline of a path's line: filled by the non-zero rule it looks like the path stroked. Curves become lines.
/// - transform: applied first. - lineWidth: points; 0 and less have no outline.
BRINDLE_EXPORT CGPathRef CGPathCreateCopyByStrokingPath(CGPathRef path,
    const CGAffineTransform* transform, CGFloat lineWidth, CGLineCap lineCap, CGLineJoin lineJoin,
    CGFloat miterLimit);
/// Answers the dashes of a path as subpaths. Curves become lines.
/// - lengths: points on, points off, ...; lengths that make no dashes leave the whole path.
BRINDLE_EXPORT CGPathRef CGPathCreateCopyByDashingPath(CGPathRef path,
    const CGAffineTransform* transform, CGFloat phase, const CGFloat* lengths, std::size_t count);
BRINDLE_EXPORT CGPathRef CGPathCreateWithRect(CGRect rect, const CGAffineTransform* transform);
BRINDLE_EXPORT CGPathRef CGPathCreateWithEllipseInRect(
    CGRect rect, const CGAffineTransform* transform);
BRINDLE_EXPORT CGPathRef CGPathCreateWithRoundedRect(
    CGRect rect, CGFloat cornerWidth, CGFloat cornerHeight, const CGAffineTransform* transform);

BRINDLE_EXPORT void CGPathMoveToPoint(
    CGMutablePathRef path, const CGAffineTransform* transform, CGFloat x, CGFloat y);
/// Nothing on a path without a current point; so are the curves.
BRINDLE_EXPORT void CGPathAddLineToPoint(
    CGMutablePathRef path, const CGAffineTransform* transform, CGFloat x, CGFloat y);
BRINDLE_EXPORT void CGPathAddQuadCurveToPoint(CGMutablePathRef path,
    const CGAffineTransform* transform, CGFloat cpx, CGFloat cpy, CGFloat x, CGFloat y);
BRINDLE_EXPORT void CGPathAddCurveToPoint(CGMutablePathRef path, const CGAffineTransform* transform,
    CGFloat cp1x, CGFloat cp1y, CGFloat cp2x, CGFloat cp2y, CGFloat x, CGFloat y);
/// Nothing on an empty path.
BRINDLE_EXPORT void CGPathCloseSubpath(CGMutablePathRef path);
BRINDLE_EXPORT void CGPathAddRect(
    CGMutablePathRef path, const CGAffineTransform* transform, CGRect rect);
BRINDLE_EXPORT void CGPathAddRects(CGMutablePathRef path, const CGAffineTransform* transform,
    const CGRect* rects, std::size_t count);
/// Moves to the first point and adds lines to the others.
BRINDLE_EXPORT void CGPathAddLines(CGMutablePathRef path, const CGAffineTransform* transform,
    const CGPoint* points, std::size_t count);
BRINDLE_EXPORT void CGPathAddEllipseInRect(
    CGMutablePathRef path, const CGAffineTransform* transform, CGRect rect);
BRINDLE_EXPORT void CGPathAddRoundedRect(CGMutablePathRef path, const CGAffineTransform* transform,
    CGRect rect, CGFloat cornerWidth, CGFloat cornerHeight);
/// - startAngle, endAngle: radians. - clockwise: as seen with y up.
BRINDLE_EXPORT void CGPathAddArc(CGMutablePathRef path, const CGAffineTransform* transform,
    CGFloat x, CGFloat y, CGFloat radius, CGFloat startAngle, CGFloat endAngle, bool clockwise);
/// - delta: radians from the start, against the clock when positive.
BRINDLE_EXPORT void CGPathAddRelativeArc(CGMutablePathRef path, const CGAffineTransform* transform,
    CGFloat x, CGFloat y, CGFloat radius, CGFloat startAngle, CGFloat delta);
/// A line to the first point of tangency, then the arc that touches (current, 1) and (1, 2).
BRINDLE_EXPORT void CGPathAddArcToPoint(CGMutablePathRef path, const CGAffineTransform* transform,
    CGFloat x1, CGFloat y1, CGFloat x2, CGFloat y2, CGFloat radius);
BRINDLE_EXPORT void CGPathAddPath(
    CGMutablePathRef path, const CGAffineTransform* transform, CGPathRef other);

/// YES for NULL and for a path without elements.
BRINDLE_EXPORT bool CGPathIsEmpty(CGPathRef path);
BRINDLE_EXPORT bool CGPathEqualToPath(CGPathRef a, CGPathRef b);
/// Answers whether a path is one upright rectangle and nothing else.
/// - rect: where to put it; may be NULL.
BRINDLE_EXPORT bool CGPathIsRect(CGPathRef path, CGRect* rect);
/// Calls a function with each element in order.
BRINDLE_EXPORT void CGPathApply(CGPathRef path, void* info, CGPathApplierFunction function);
/// Answers the rectangle around all points, control points included; null for an empty path.
BRINDLE_EXPORT CGRect CGPathGetBoundingBox(CGPathRef path);
/// Answers the rectangle around what is drawn; null for an empty path.
BRINDLE_EXPORT CGRect CGPathGetPathBoundingBox(CGPathRef path);
BRINDLE_EXPORT CGPoint CGPathGetCurrentPoint(CGPathRef path);
BRINDLE_EXPORT bool CGPathContainsPoint(
    CGPathRef path, const CGAffineTransform* transform, CGPoint point, bool evenOdd);
BRINDLE_EXPORT CGPathRef CGPathRetain(CGPathRef path);
BRINDLE_EXPORT void CGPathRelease(CGPathRef path);

}
