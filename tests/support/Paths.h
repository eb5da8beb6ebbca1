// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "appkit/NSBezierPath.h"

/// Reading paths in tests: their elements as letters, their points in a row.

namespace brindle::test {

inline Ref<NSBezierPath> newPath() { return NSBezierPath::cls().bezierPath(); }

/// Answers a letter an element: m(ove), l(ine), c(urve), z for a close.
inline std::string stepsOf(const NSBezierPath* path)
{
    std::string steps;
    for (NSInteger i = 0; i < path->elementCount(); ++i)
        steps += "mlcz"[path->elementAtIndex(i)];
    return steps;
}
inline std::string stepsOf(const Ref<NSBezierPath>& path) { return stepsOf(path.get()); }

/// Answers the points of all elements, controls included.
inline std::vector<NSPoint> pointsOf(const NSBezierPath* path)
{
    constexpr std::size_t kPoints[] = { 1, 1, 3, 0 };
    std::vector<NSPoint> all;
    for (NSInteger i = 0; i < path->elementCount(); ++i) {
        NSPoint points[3];
        const NSBezierPathElement element = path->elementAtIndex_associatedPoints(i, points);
        all.insert(all.end(), points, points + kPoints[element]);
    }
    return all;
}
inline std::vector<NSPoint> pointsOf(const Ref<NSBezierPath>& path) { return pointsOf(path.get()); }

/// A Quartz path's elements as letters: m(ove), l(ine), q(uadratic), c(urve), z for a close.
inline std::string stepsOf(CGPath* path)
{
    std::string steps;
    CGPathApply(path, &steps, [](void* info, const CGPathElement* element) {
        *static_cast<std::string*>(info) += "mlqcz"[element->type];
    });
    return steps;
}
inline std::vector<NSPoint> pointsOf(CGPath* path)
{
    std::vector<NSPoint> all;
    CGPathApply(path, &all, [](void* info, const CGPathElement* element) {
        constexpr std::size_t kPoints[] = { 1, 1, 2, 3, 0 };
        auto& points = *static_cast<std::vector<NSPoint>*>(info);
        points.insert(points.end(), element->points, element->points + kPoints[element->type]);
    });
    return all;
}

}
