// SPDX-License-Identifier: Apache-2.0
#include "CGGeometry.h"

#include <algorithm>
#include <cmath>

namespace brindle {

CGRect CGRectStandardize(CGRect rect)
{
    if (CGRectIsNull(rect))
        return CGRectNull;
    if (rect.size.width < 0) {
        rect.origin.x += rect.size.width;
        rect.size.width = -rect.size.width;
    }
    if (rect.size.height < 0) {
        rect.origin.y += rect.size.height;
        rect.size.height = -rect.size.height;
    }
    return rect;
}

CGFloat CGRectGetMinX(CGRect rect) { return CGRectStandardize(rect).origin.x; }
CGFloat CGRectGetMinY(CGRect rect) { return CGRectStandardize(rect).origin.y; }
CGFloat CGRectGetMidX(CGRect rect) { return NSMidX(CGRectStandardize(rect)); }
CGFloat CGRectGetMidY(CGRect rect) { return NSMidY(CGRectStandardize(rect)); }
CGFloat CGRectGetMaxX(CGRect rect) { return NSMaxX(CGRectStandardize(rect)); }
CGFloat CGRectGetMaxY(CGRect rect) { return NSMaxY(CGRectStandardize(rect)); }
CGFloat CGRectGetWidth(CGRect rect) { return std::abs(rect.size.width); }
CGFloat CGRectGetHeight(CGRect rect) { return std::abs(rect.size.height); }

bool CGRectIsNull(CGRect rect)
{
    constexpr CGFloat kInfinity = std::numeric_limits<CGFloat>::infinity();
    return rect.origin.x == kInfinity || rect.origin.y == kInfinity;
}

bool CGRectIsEmpty(CGRect rect)
{
    return CGRectIsNull(rect) || rect.size.width == 0 || rect.size.height == 0;
}

bool CGRectIsInfinite(CGRect rect) { return rect == CGRectInfinite; }

CGRect CGRectInset(CGRect rect, CGFloat dx, CGFloat dy)
{
    if (CGRectIsNull(rect))
        return CGRectNull;
    CGRect inner = CGRectStandardize(rect);
    inner.origin.x += dx;
    inner.origin.y += dy;
    inner.size.width -= 2 * dx;
    inner.size.height -= 2 * dy;
    return inner.size.width < 0 || inner.size.height < 0 ? CGRectNull : inner;
}

CGRect CGRectOffset(CGRect rect, CGFloat dx, CGFloat dy)
{
    if (CGRectIsNull(rect))
        return CGRectNull;
    CGRect moved = CGRectStandardize(rect);
    moved.origin.x += dx;
    moved.origin.y += dy;
    return moved;
}

CGRect CGRectIntegral(CGRect rect)
{
    if (CGRectIsNull(rect))
        return CGRectNull;
    const CGRect r = CGRectStandardize(rect);
    const CGFloat left = std::floor(r.origin.x);
    const CGFloat bottom = std::floor(r.origin.y);
    return { { left, bottom }, { std::ceil(NSMaxX(r)) - left, std::ceil(NSMaxY(r)) - bottom } };
}

CGRect CGRectUnion(CGRect a, CGRect b)
{
    if (CGRectIsNull(a))
        return CGRectStandardize(b);
    if (CGRectIsNull(b))
        return CGRectStandardize(a);
    const CGRect p = CGRectStandardize(a);
    const CGRect q = CGRectStandardize(b);
    const CGFloat left = std::min(p.origin.x, q.origin.x);
    const CGFloat bottom = std::min(p.origin.y, q.origin.y);
    return { { left, bottom },
        { std::max(NSMaxX(p), NSMaxX(q)) - left, std::max(NSMaxY(p), NSMaxY(q)) - bottom } };
}

CGRect CGRectIntersection(CGRect a, CGRect b)
{
    if (CGRectIsNull(a) || CGRectIsNull(b))
        return CGRectNull;
    const CGRect p = CGRectStandardize(a);
    const CGRect q = CGRectStandardize(b);
    const CGFloat left = std::max(p.origin.x, q.origin.x);
    const CGFloat bottom = std::max(p.origin.y, q.origin.y);
    const CGFloat right = std::min(NSMaxX(p), NSMaxX(q));
    const CGFloat top = std::min(NSMaxY(p), NSMaxY(q));
    // Closed on purpose: an edge in common is a rectangle without an extent, not nothing.
    if (left > right || bottom > top)
        return CGRectNull;
    return { { left, bottom }, { right - left, top - bottom } };
}

bool CGRectIntersectsRect(CGRect a, CGRect b)
{
    const CGRect shared = CGRectIntersection(a, b);
    return !CGRectIsNull(shared) && shared.size.width > 0 && shared.size.height > 0;
}

bool CGRectContainsPoint(CGRect rect, CGPoint point)
{
    if (CGRectIsEmpty(rect))
        return false;
    const CGRect r = CGRectStandardize(rect);
    return point.x >= r.origin.x && point.x < NSMaxX(r) && point.y >= r.origin.y
        && point.y < NSMaxY(r);
}

bool CGRectContainsRect(CGRect outer, CGRect inner)
{
    return CGRectUnion(outer, inner) == CGRectStandardize(outer);
}

void CGRectDivide(CGRect rect, CGRect* slice, CGRect* remainder, CGFloat amount, CGRectEdge edge)
{
    CGRect cut = CGRectStandardize(rect);
    CGRect rest = cut;
    if (CGRectIsNull(rect)) {
        cut = rest = CGRectNull;
    } else if (edge == CGRectMinXEdge || edge == CGRectMaxXEdge) {
        const CGFloat part = std::clamp(amount, 0.0, std::max(cut.size.width, 0.0));
        cut.size.width = part;
        rest.size.width -= part;
        (edge == CGRectMinXEdge ? rest : cut).origin.x
            += edge == CGRectMinXEdge ? part : rest.size.width;
    } else {
        const CGFloat part = std::clamp(amount, 0.0, std::max(cut.size.height, 0.0));
        cut.size.height = part;
        rest.size.height -= part;
        (edge == CGRectMinYEdge ? rest : cut).origin.y
            += edge == CGRectMinYEdge ? part : rest.size.height;
    }
    if (slice)
        *slice = cut;
    if (remainder)
        *remainder = rest;
}

CGAffineTransform CGAffineTransformMakeRotation(CGFloat angle)
{
    const CGFloat sine = std::sin(angle);
    const CGFloat cosine = std::cos(angle);
    return { cosine, sine, -sine, cosine, 0, 0 };
}

CGAffineTransform CGAffineTransformConcat(CGAffineTransform first, CGAffineTransform second)
{
    const CGAffineTransform& p = first;
    const CGAffineTransform& q = second;
    return { p.a * q.a + p.b * q.c, p.a * q.b + p.b * q.d, p.c * q.a + p.d * q.c,
        p.c * q.b + p.d * q.d, p.tx * q.a + p.ty * q.c + q.tx, p.tx * q.b + p.ty * q.d + q.ty };
}

CGAffineTransform CGAffineTransformTranslate(CGAffineTransform transform, CGFloat tx, CGFloat ty)
{
    return CGAffineTransformConcat(CGAffineTransformMakeTranslation(tx, ty), transform);
}

CGAffineTransform CGAffineTransformScale(CGAffineTransform transform, CGFloat sx, CGFloat sy)
{
    return CGAffineTransformConcat(CGAffineTransformMakeScale(sx, sy), transform);
}

CGAffineTransform CGAffineTransformRotate(CGAffineTransform transform, CGFloat angle)
{
    return CGAffineTransformConcat(CGAffineTransformMakeRotation(angle), transform);
}

CGAffineTransform CGAffineTransformInvert(CGAffineTransform t)
{
    const CGFloat determinant = t.a * t.d - t.b * t.c;
    if (determinant == 0 || !std::isfinite(determinant))
        return t;
    const CGFloat factor = 1 / determinant;
    return { t.d * factor, -t.b * factor, -t.c * factor, t.a * factor,
        (t.c * t.ty - t.d * t.tx) * factor, (t.b * t.tx - t.a * t.ty) * factor };
}

CGRect CGRectApplyAffineTransform(CGRect rect, CGAffineTransform transform)
{
    if (CGRectIsNull(rect))
        return CGRectNull;
    const CGRect r = CGRectStandardize(rect);
    const CGPoint corners[] = {
        CGPointApplyAffineTransform(r.origin, transform),
        CGPointApplyAffineTransform({ NSMaxX(r), r.origin.y }, transform),
        CGPointApplyAffineTransform({ NSMaxX(r), NSMaxY(r) }, transform),
        CGPointApplyAffineTransform({ r.origin.x, NSMaxY(r) }, transform),
    };
    CGPoint low = corners[0];
    CGPoint high = corners[0];
    for (const CGPoint corner : corners) {
        low = { std::min(low.x, corner.x), std::min(low.y, corner.y) };
        high = { std::max(high.x, corner.x), std::max(high.y, corner.y) };
    }
    return { low, { high.x - low.x, high.y - low.y } };
}

}
