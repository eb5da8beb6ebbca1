// SPDX-License-Identifier: Apache-2.0
#include "CGPath.h"

#include "runtime/Table.h"

#include "PathGeometryPrivate.h"

namespace brindle {

template <> struct CGPath::Methods<struct Values> {

    static bool isEqual(CGPath& self, NSObject* other)
    {
        return other && other->isKindOfClass(CGPath::cls())
            && self.data_ == static_cast<CGPath*>(other)->data_;
    }

    static std::uint64_t hash(CGPath& self)
    {
        std::uint64_t steps = 0;
        self.data_.each([&](CGPathElementType type, const CGPoint*) {
            steps = steps * 31 + static_cast<std::uint64_t>(type) + 1;
        });
        return steps;
    }

    static Ref<NSObject> copyWithZone(CGPath& self, void*)
    {
        return Ref<NSObject>::adopt(CGPathCreateCopy(&self));
    }

    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        t.methods({
            { "isEqual:", imp<isEqual> },
            { "hash", imp<hash> },
            { "copyWithZone:", imp<copyWithZone> },
        });
    }
};
BRINDLE_RECORD(CGPath, Values)

namespace {

    const CGAffineTransform& orIdentity(const CGAffineTransform* transform)
    {
        return transform ? *transform : CGAffineTransformIdentity;
    }

    CGPoint at(const CGAffineTransform* transform, CGFloat x, CGFloat y)
    {
        const CGPoint point { x, y };
        return transform ? CGPointApplyAffineTransform(point, *transform) : point;
    }

    CGPathRef madeOf(quartz::PathData data)
    {
        Ref<CGPath> path = make<CGPath>();
        path->data() = std::move(data);
        return path.leak();
    }

    quartz::PathData transformed(const CGPath& path, const CGAffineTransform* transform)
    {
        quartz::PathData data;
        data.append(path.data(), orIdentity(transform));
        return data;
    }

}

CGMutablePathRef CGPathCreateMutable() { return make<CGPath>().leak(); }

CGPathRef CGPathCreateCopy(CGPathRef path) { return CGPathCreateMutableCopy(path); }

CGMutablePathRef CGPathCreateMutableCopy(CGPathRef path)
{
    if (!path)
        return nullptr;
    Ref<CGPath> copy = make<CGPath>();
    copy->data() = path->data();
    return copy.leak();
}

CGPathRef CGPathCreateCopyByTransformingPath(CGPathRef path, const CGAffineTransform* transform)
{
    if (!path)
        return nullptr;
    return madeOf(transformed(*path, transform));
}

CGPathRef CGPathCreateCopyByStrokingPath(CGPathRef path, const CGAffineTransform* transform,
    CGFloat lineWidth, CGLineCap lineCap, CGLineJoin lineJoin, CGFloat miterLimit)
{
    if (!path)
        return nullptr;
    return madeOf(quartz::outlined(
        transformed(*path, transform), { lineWidth, lineCap, lineJoin, miterLimit }));
}

CGPathRef CGPathCreateCopyByDashingPath(CGPathRef path, const CGAffineTransform* transform,
    CGFloat phase, const CGFloat* lengths, std::size_t count)
{
    if (!path)
        return nullptr;
    return madeOf(
        quartz::dashed(transformed(*path, transform), phase, { lengths, lengths ? count : 0 }));
}

CGPathRef CGPathCreateWithRect(CGRect rect, const CGAffineTransform* transform)
{
    Ref<CGPath> path = make<CGPath>();
    CGPathAddRect(path.get(), transform, rect);
    return path.leak();
}

CGPathRef CGPathCreateWithEllipseInRect(CGRect rect, const CGAffineTransform* transform)
{
    Ref<CGPath> path = make<CGPath>();
    CGPathAddEllipseInRect(path.get(), transform, rect);
    return path.leak();
}

CGPathRef CGPathCreateWithRoundedRect(
    CGRect rect, CGFloat cornerWidth, CGFloat cornerHeight, const CGAffineTransform* transform)
{
    Ref<CGPath> path = make<CGPath>();
    CGPathAddRoundedRect(path.get(), transform, rect, cornerWidth, cornerHeight);
    return path.leak();
}

void CGPathMoveToPoint(
    CGMutablePathRef path, const CGAffineTransform* transform, CGFloat x, CGFloat y)
{
    if (path)
        path->data().move(at(transform, x, y));
}

void CGPathAddLineToPoint(
    CGMutablePathRef path, const CGAffineTransform* transform, CGFloat x, CGFloat y)
{
    if (path)
        path->data().line(at(transform, x, y));
}

void CGPathAddQuadCurveToPoint(CGMutablePathRef path, const CGAffineTransform* transform,
    CGFloat cpx, CGFloat cpy, CGFloat x, CGFloat y)
{
    if (path)
        path->data().quad(at(transform, cpx, cpy), at(transform, x, y));
}

void CGPathAddCurveToPoint(CGMutablePathRef path, const CGAffineTransform* transform, CGFloat cp1x,
    CGFloat cp1y, CGFloat cp2x, CGFloat cp2y, CGFloat x, CGFloat y)
{
    if (path)
        path->data().curve(
            at(transform, cp1x, cp1y), at(transform, cp2x, cp2y), at(transform, x, y));
}

void CGPathCloseSubpath(CGMutablePathRef path)
{
    if (path)
        path->data().close();
}

void CGPathAddRect(CGMutablePathRef path, const CGAffineTransform* transform, CGRect rect)
{
    if (path && !CGRectIsNull(rect))
        path->data().rect(rect, orIdentity(transform));
}

void CGPathAddRects(CGMutablePathRef path, const CGAffineTransform* transform, const CGRect* rects,
    std::size_t count)
{
    for (std::size_t i = 0; rects && i < count; ++i)
        CGPathAddRect(path, transform, rects[i]);
}

void CGPathAddLines(CGMutablePathRef path, const CGAffineTransform* transform,
    const CGPoint* points, std::size_t count)
{
    if (!points || count == 0)
        return;
    CGPathMoveToPoint(path, transform, points[0].x, points[0].y);
    for (std::size_t i = 1; i < count; ++i)
        CGPathAddLineToPoint(path, transform, points[i].x, points[i].y);
}

void CGPathAddEllipseInRect(CGMutablePathRef path, const CGAffineTransform* transform, CGRect rect)
{
    if (path && !CGRectIsNull(rect))
        quartz::addEllipse(path->data(), orIdentity(transform), rect);
}

void CGPathAddRoundedRect(CGMutablePathRef path, const CGAffineTransform* transform, CGRect rect,
    CGFloat cornerWidth, CGFloat cornerHeight)
{
    if (path && !CGRectIsNull(rect))
        quartz::addRoundedRect(
            path->data(), orIdentity(transform), rect, cornerWidth, cornerHeight);
}

void CGPathAddArc(CGMutablePathRef path, const CGAffineTransform* transform, CGFloat x, CGFloat y,
    CGFloat radius, CGFloat startAngle, CGFloat endAngle, bool clockwise)
{
    if (path)
        quartz::addArc(path->data(), orIdentity(transform),
            { { x, y }, radius, startAngle, endAngle, clockwise });
}

void CGPathAddRelativeArc(CGMutablePathRef path, const CGAffineTransform* transform, CGFloat x,
    CGFloat y, CGFloat radius, CGFloat startAngle, CGFloat delta)
{
    CGPathAddArc(path, transform, x, y, radius, startAngle, startAngle + delta, delta < 0);
}

void CGPathAddArcToPoint(CGMutablePathRef path, const CGAffineTransform* transform, CGFloat x1,
    CGFloat y1, CGFloat x2, CGFloat y2, CGFloat radius)
{
    if (!path || path->data().isEmpty())
        return;
    const CGPoint current = CGPointApplyAffineTransform(
        path->data().current(), CGAffineTransformInvert(orIdentity(transform)));
    quartz::addArcToPoint(
        path->data(), orIdentity(transform), current, { x1, y1 }, { x2, y2 }, radius);
}

void CGPathAddPath(CGMutablePathRef path, const CGAffineTransform* transform, CGPathRef other)
{
    if (!path || !other)
        return;
    const quartz::PathData added = other->data(); // the other may be the path itself
    path->data().append(added, orIdentity(transform));
}

bool CGPathIsEmpty(CGPathRef path) { return !path || path->data().isEmpty(); }

bool CGPathEqualToPath(CGPathRef a, CGPathRef b)
{
    return a == b || (a && b && a->data() == b->data());
}

bool CGPathIsRect(CGPathRef path, CGRect* rect)
{
    CGRect found;
    if (!path || !quartz::isUprightRect(path->data(), found))
        return false;
    if (rect)
        *rect = found;
    return true;
}

void CGPathApply(CGPathRef path, void* info, CGPathApplierFunction function)
{
    if (!path || !function)
        return;
    const quartz::PathData steps = path->data(); // the function may change the path
    steps.each([&](CGPathElementType type, const CGPoint* points) {
        const CGPathElement element { type, const_cast<CGPoint*>(points) };
        function(info, &element);
    });
}

CGRect CGPathGetBoundingBox(CGPathRef path)
{
    return path ? path->data().controlBox() : CGRectNull;
}

CGRect CGPathGetPathBoundingBox(CGPathRef path) { return path ? path->data().box() : CGRectNull; }

CGPoint CGPathGetCurrentPoint(CGPathRef path)
{
    return CGPathIsEmpty(path) ? CGPointZero : path->data().current();
}

bool CGPathContainsPoint(
    CGPathRef path, const CGAffineTransform* transform, CGPoint point, bool evenOdd)
{
    if (!path)
        return false;
    const CGPoint asked = transform ? CGPointApplyAffineTransform(point, *transform) : point;
    return path->data().contains(asked, evenOdd);
}

CGPathRef CGPathRetain(CGPathRef path)
{
    if (path)
        retain(path);
    return path;
}

void CGPathRelease(CGPathRef path)
{
    if (path)
        release(path);
}

}
