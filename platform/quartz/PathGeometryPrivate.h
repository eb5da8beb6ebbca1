// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>

#include "CGPath.h"

namespace brindle::quartz {

/// The length of a cubic's handles that makes the nearest quarter of a circle of radius 1.
inline constexpr double kQuarterHandle = 0.5522847498;

struct ArcSpan {
    CGPoint center;
    double radius = 0;
    double start = 0; // radians
    double end = 0;
    bool clockwise = false;
};

/// Adds an arc of at most a full turn, joined by a line where there is a current point.
void addArc(PathData& path, const CGAffineTransform& transform, const ArcSpan& arc);
/// Adds a line and the arc that touches the lines from `current` to `first` and on to `second`.
/// - current: the path's current point before the transform.
void addArcToPoint(PathData& path, const CGAffineTransform& transform, CGPoint current,
    CGPoint first, CGPoint second, double radius);
void addEllipse(PathData& path, const CGAffineTransform& transform, CGRect rect);
void addRoundedRect(
    PathData& path, const CGAffineTransform& transform, CGRect rect, double width, double height);

/// How a path's line is drawn.
struct StrokeShape {
    double width = 1;
    CGLineCap cap = kCGLineCapButt;
    CGLineJoin join = kCGLineJoinMiter;
    double miterLimit = 10;
};
/// Answers the outline of a path's line, to be filled by the non-zero rule; nothing for numbers that make no sense.
PathData outlined(const PathData& path, const StrokeShape& shape);
/// Answers the dashes of a path; all of it where the lengths make none.
PathData dashed(const PathData& path, double phase, std::span<const double> lengths);

/// Answers whether a path is nothing but one upright rectangle.
bool isUprightRect(const PathData& path, CGRect& rect);

}
