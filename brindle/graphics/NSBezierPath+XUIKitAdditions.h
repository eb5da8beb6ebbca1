// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSBezierPath.h"

/// Paths in the words of touch screens: Quartz paths both ways, chosen corners, quadratic curves, blend modes.

namespace brindle {

/// Which corners are rounded: bits of a mask. Their names hold where y grows downward.
enum : NSUInteger {
    BRRectCornerTopLeft = 1, // origin x, origin y
    BRRectCornerTopRight = 2, // max x, min y
    BRRectCornerBottomLeft = 4, // min x, max y
    BRRectCornerBottomRight = 8, // max x, max y
    BRRectCornerAll = 15,
};

/// Answers the platform's rounded rectangle with one radius for both directions.
inline Ref<NSBezierPath> bezierPathWithRoundedRect_cornerRadius(
    To<Class> cls, NSRect rect, CGFloat radius)
{
    return cls.send<"bezierPathWithRoundedRect:cornerRadius:", Ref<NSBezierPath>>(rect, radius);
}
/// Answers a closed rectangle with some corners rounded.
///
/// A round corner is one cubic whose first control is the sharp corner and whose second is its end: flatter than the
/// quarter ellipse of the platform's rounded rectangle.
/// - corners: a mask; other bits count for nothing. - radii: taken as they are, larger than the rectangle too.
inline Ref<NSBezierPath> bezierPathWithRoundedRect_byRoundingCorners_cornerRadii(
    To<Class> cls, NSRect rect, NSUInteger corners, NSSize radii)
{
    return cls.send<"bezierPathWithRoundedRect:byRoundingCorners:cornerRadii:", Ref<NSBezierPath>>(
        rect, corners, radii);
}
/// Answers an arc alone. Angles are degrees, as in the operation of the platform that adds it.
inline Ref<NSBezierPath> bezierPathWithArcCenter_radius_startAngle_endAngle_clockwise(To<Class> cls,
    NSPoint center, CGFloat radius, CGFloat startAngle, CGFloat endAngle, bool clockwise)
{
    return cls
        .send<"bezierPathWithArcCenter:radius:startAngle:endAngle:clockwise:", Ref<NSBezierPath>>(
            center, radius, startAngle, endAngle, clockwise);
}
/// Answers a path of a Quartz path's elements; an empty one for NULL.
inline Ref<NSBezierPath> bezierPathWithCGPath(To<Class> cls, CGPathRef path)
{
    return cls.send<"bezierPathWithCGPath:", Ref<NSBezierPath>>(path);
}

/// Adds a quadratic curve as the cubic of the same shape.
/// - Raises: `NSGenericException` on a path without elements.
inline void addQuadCurveToPoint_controlPoint(To<NSBezierPath> path, NSPoint end, NSPoint control)
{
    path.send<"addQuadCurveToPoint:controlPoint:">(end, control);
}
/// Adds an arc; angles are degrees.
inline void addArcWithCenter_radius_startAngle_endAngle_clockwise(To<NSBezierPath> path,
    NSPoint center, CGFloat radius, CGFloat startAngle, CGFloat endAngle, bool clockwise)
{
    path.send<"addArcWithCenter:radius:startAngle:endAngle:clockwise:">(
        center, radius, startAngle, endAngle, clockwise);
}
inline void applyTransform(To<NSBezierPath> path, CGAffineTransform transform)
{
    path.send<"applyTransform:">(transform);
}

// Painting in the current context; its blend mode and alpha are as before afterwards.
inline void fillWithBlendMode_alpha(To<NSBezierPath> path, CGBlendMode mode, CGFloat alpha)
{
    path.send<"fillWithBlendMode:alpha:">(mode, alpha);
}
inline void strokeWithBlendMode_alpha(To<NSBezierPath> path, CGBlendMode mode, CGFloat alpha)
{
    path.send<"strokeWithBlendMode:alpha:">(mode, alpha);
}

/// Replaces all elements by those of a Quartz path, quadratic curves as cubics; NULL and an empty one leave none.
inline void setCGPath(To<NSBezierPath> path, CGPathRef elements)
{
    path.send<"setCGPath:">(elements);
}
/// Answers the path as a Quartz path, made anew each time (selector `CGPath`).
///
/// Its last subpath is always closed, also where the path's is open.
/// - Owner: the receiver keeps the last one answered, until the next or its own end.
inline Ref<CGPath> quartzPath(To<NSBezierPath> path) { return path.send<"CGPath", Ref<CGPath>>(); }

/// Chooses between the winding rules even-odd and non-zero.
inline void setUsesEvenOddFillRule(To<NSBezierPath> path, bool evenOdd)
{
    path.send<"setUsesEvenOddFillRule:">(evenOdd);
}
inline bool usesEvenOddFillRule(To<NSBezierPath> path)
{
    return path.send<"usesEvenOddFillRule", bool>();
}

}
