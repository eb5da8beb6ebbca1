// SPDX-License-Identifier: Apache-2.0
#pragma once

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

/// Answers whether a path is nothing but one upright rectangle.
bool isUprightRect(const PathData& path, CGRect& rect);

}
