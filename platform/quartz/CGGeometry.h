// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <limits>

#include "CGTypes.h"
#include "runtime/Export.h"

/// Rectangles as Quartz sees them: a negative size names the same rectangle from another corner, and there are a null
/// and an infinite rectangle. The functions of NSGeometry.h take rectangles as they stand instead.

namespace brindle {

inline constexpr CGPoint CGPointZero {};
inline constexpr CGSize CGSizeZero {};
inline constexpr CGRect CGRectZero {};
/// No rectangle at all: what two rectangles that lie apart share.
inline constexpr CGRect CGRectNull {
    { std::numeric_limits<CGFloat>::infinity(), std::numeric_limits<CGFloat>::infinity() }, {}
};
/// A rectangle that holds everything.
inline constexpr CGRect CGRectInfinite { { -std::numeric_limits<CGFloat>::max() / 2,
                                             -std::numeric_limits<CGFloat>::max() / 2 },
    { std::numeric_limits<CGFloat>::max(), std::numeric_limits<CGFloat>::max() } };

constexpr CGPoint CGPointMake(CGFloat x, CGFloat y) { return { x, y }; }
constexpr CGSize CGSizeMake(CGFloat width, CGFloat height) { return { width, height }; }
constexpr CGRect CGRectMake(CGFloat x, CGFloat y, CGFloat width, CGFloat height)
{
    return { { x, y }, { width, height } };
}

constexpr bool CGPointEqualToPoint(CGPoint a, CGPoint b) { return a == b; }
constexpr bool CGSizeEqualToSize(CGSize a, CGSize b) { return a == b; }
/// Compares the four numbers: -0 equals 0, NaN equals nothing.
constexpr bool CGRectEqualToRect(CGRect a, CGRect b) { return a == b; }

// Edges, middles and extents of the rectangle with its sizes made positive; mid = min + extent x 0.5.
BRINDLE_EXPORT CGFloat CGRectGetMinX(CGRect rect);
BRINDLE_EXPORT CGFloat CGRectGetMidX(CGRect rect);
BRINDLE_EXPORT CGFloat CGRectGetMaxX(CGRect rect);
BRINDLE_EXPORT CGFloat CGRectGetMinY(CGRect rect);
BRINDLE_EXPORT CGFloat CGRectGetMidY(CGRect rect);
BRINDLE_EXPORT CGFloat CGRectGetMaxY(CGRect rect);
BRINDLE_EXPORT CGFloat CGRectGetWidth(CGRect rect);
BRINDLE_EXPORT CGFloat CGRectGetHeight(CGRect rect);

/// Answers whether either origin is positive infinity.
BRINDLE_EXPORT bool CGRectIsNull(CGRect rect);
/// Answers whether the rectangle is null or has no width or no height.
BRINDLE_EXPORT bool CGRectIsEmpty(CGRect rect);
BRINDLE_EXPORT bool CGRectIsInfinite(CGRect rect);

/// Answers the same rectangle with positive sizes.
BRINDLE_EXPORT CGRect CGRectStandardize(CGRect rect);
/// Answers the rectangle with every edge moved inward; null when less than nothing is left.
BRINDLE_EXPORT CGRect CGRectInset(CGRect rect, CGFloat dx, CGFloat dy);
BRINDLE_EXPORT CGRect CGRectOffset(CGRect rect, CGFloat dx, CGFloat dy);
/// Answers the smallest rectangle with whole numbers that holds this one.
BRINDLE_EXPORT CGRect CGRectIntegral(CGRect rect);
/// Answers the smallest rectangle that holds both; a null one adds nothing.
BRINDLE_EXPORT CGRect CGRectUnion(CGRect a, CGRect b);
/// Answers what both share. Rectangles that only touch share an edge or a corner, which is not null.
BRINDLE_EXPORT CGRect CGRectIntersection(CGRect a, CGRect b);
/// Answers whether the rectangles share more than nothing; touching rectangles do not.
BRINDLE_EXPORT bool CGRectIntersectsRect(CGRect a, CGRect b);
/// Answers whether the point lies inside; the edges of the greatest x and y lie outside.
BRINDLE_EXPORT bool CGRectContainsPoint(CGRect rect, CGPoint point);
BRINDLE_EXPORT bool CGRectContainsRect(CGRect outer, CGRect inner);
/// Cuts a rectangle in two, `amount` away from an edge.
/// - slice, remainder: receive the parts; either may be null. - amount: bounded to 0 and the extent.
BRINDLE_EXPORT void CGRectDivide(
    CGRect rect, CGRect* slice, CGRect* remainder, CGFloat amount, CGRectEdge edge);

inline constexpr CGAffineTransform CGAffineTransformIdentity { 1, 0, 0, 1, 0, 0 };

constexpr CGAffineTransform CGAffineTransformMake(
    CGFloat a, CGFloat b, CGFloat c, CGFloat d, CGFloat tx, CGFloat ty)
{
    return { a, b, c, d, tx, ty };
}
constexpr CGAffineTransform CGAffineTransformMakeTranslation(CGFloat tx, CGFloat ty)
{
    return { 1, 0, 0, 1, tx, ty };
}
constexpr CGAffineTransform CGAffineTransformMakeScale(CGFloat sx, CGFloat sy)
{
    return { sx, 0, 0, sy, 0, 0 };
}
/// - angle: radians, from the x axis to the y axis.
BRINDLE_EXPORT CGAffineTransform CGAffineTransformMakeRotation(CGFloat angle);
/// Answers the transform that applies `first`, then `second`.
BRINDLE_EXPORT CGAffineTransform CGAffineTransformConcat(
    CGAffineTransform first, CGAffineTransform second);
BRINDLE_EXPORT CGAffineTransform CGAffineTransformTranslate(
    CGAffineTransform transform, CGFloat tx, CGFloat ty);
BRINDLE_EXPORT CGAffineTransform CGAffineTransformScale(
    CGAffineTransform transform, CGFloat sx, CGFloat sy);
BRINDLE_EXPORT CGAffineTransform CGAffineTransformRotate(
    CGAffineTransform transform, CGFloat angle);
/// Answers the inverse, or the transform itself when it has none.
BRINDLE_EXPORT CGAffineTransform CGAffineTransformInvert(CGAffineTransform transform);
constexpr bool CGAffineTransformIsIdentity(CGAffineTransform transform)
{
    return transform == CGAffineTransformIdentity;
}
constexpr bool CGAffineTransformEqualToTransform(CGAffineTransform a, CGAffineTransform b)
{
    return a == b;
}
constexpr CGPoint CGPointApplyAffineTransform(CGPoint point, CGAffineTransform t)
{
    return { t.a * point.x + t.c * point.y + t.tx, t.b * point.x + t.d * point.y + t.ty };
}
constexpr CGSize CGSizeApplyAffineTransform(CGSize size, CGAffineTransform t)
{
    return { t.a * size.width + t.c * size.height, t.b * size.width + t.d * size.height };
}
/// Answers the smallest upright rectangle around the transformed one.
BRINDLE_EXPORT CGRect CGRectApplyAffineTransform(CGRect rect, CGAffineTransform transform);

}
