// SPDX-License-Identifier: Apache-2.0
#include "ContextPrivate.h"
#include "PathGeometryPrivate.h"

#include <algorithm>
#include <cmath>

namespace brindle {

using quartz::ContextData;
using quartz::dataOf;
using quartz::PathData;

// ---- the current path

namespace {

    CGPoint deviceOf(const ContextData& data, CGFloat x, CGFloat y)
    {
        return CGPointApplyAffineTransform({ x, y }, data.state.toDevice);
    }

    CGAffineTransform toUser(const ContextData& data)
    {
        return CGAffineTransformInvert(data.state.toDevice);
    }

}

void CGContextBeginPath(CGContextRef context)
{
    if (ContextData* const data = dataOf(context))
        data->path.clear();
}

void CGContextMoveToPoint(CGContextRef context, CGFloat x, CGFloat y)
{
    if (ContextData* const data = dataOf(context))
        data->path.move(deviceOf(*data, x, y));
}

void CGContextAddLineToPoint(CGContextRef context, CGFloat x, CGFloat y)
{
    if (ContextData* const data = dataOf(context))
        data->path.line(deviceOf(*data, x, y));
}

void CGContextAddLines(CGContextRef context, const CGPoint* points, std::size_t count)
{
    if (!points || count == 0)
        return;
    CGContextMoveToPoint(context, points[0].x, points[0].y);
    for (std::size_t i = 1; i < count; ++i)
        CGContextAddLineToPoint(context, points[i].x, points[i].y);
}

void CGContextAddCurveToPoint(CGContextRef context, CGFloat cp1x, CGFloat cp1y, CGFloat cp2x,
    CGFloat cp2y, CGFloat x, CGFloat y)
{
    if (ContextData* const data = dataOf(context))
        data->path.curve(
            deviceOf(*data, cp1x, cp1y), deviceOf(*data, cp2x, cp2y), deviceOf(*data, x, y));
}

void CGContextAddQuadCurveToPoint(
    CGContextRef context, CGFloat cpx, CGFloat cpy, CGFloat x, CGFloat y)
{
    if (ContextData* const data = dataOf(context))
        data->path.quad(deviceOf(*data, cpx, cpy), deviceOf(*data, x, y));
}

void CGContextClosePath(CGContextRef context)
{
    if (ContextData* const data = dataOf(context))
        data->path.close();
}

void CGContextAddRect(CGContextRef context, CGRect rect)
{
    ContextData* const data = dataOf(context);
    if (data && !CGRectIsNull(rect))
        data->path.rect(rect, data->state.toDevice);
}

void CGContextAddRects(CGContextRef context, const CGRect* rects, std::size_t count)
{
    for (std::size_t i = 0; rects && i < count; ++i)
        CGContextAddRect(context, rects[i]);
}

void CGContextAddEllipseInRect(CGContextRef context, CGRect rect)
{
    ContextData* const data = dataOf(context);
    if (data && !CGRectIsNull(rect))
        quartz::addEllipse(data->path, data->state.toDevice, rect);
}

void CGContextAddArc(CGContextRef context, CGFloat x, CGFloat y, CGFloat radius, CGFloat startAngle,
    CGFloat endAngle, bool clockwise)
{
    if (ContextData* const data = dataOf(context))
        quartz::addArc(data->path, data->state.toDevice,
            { { x, y }, radius, startAngle, endAngle, clockwise });
}

void CGContextAddArcToPoint(
    CGContextRef context, CGFloat x1, CGFloat y1, CGFloat x2, CGFloat y2, CGFloat radius)
{
    ContextData* const data = dataOf(context);
    if (!data || data->path.isEmpty())
        return;
    const CGPoint current = CGPointApplyAffineTransform(data->path.current(), toUser(*data));
    quartz::addArcToPoint(
        data->path, data->state.toDevice, current, { x1, y1 }, { x2, y2 }, radius);
}

void CGContextAddPath(CGContextRef context, CGPathRef path)
{
    ContextData* const data = dataOf(context);
    if (data && path)
        data->path.append(path->data(), data->state.toDevice);
}

bool CGContextIsPathEmpty(CGContextRef context)
{
    const ContextData* const data = dataOf(context);
    return !data || data->path.isEmpty();
}

CGPoint CGContextGetPathCurrentPoint(CGContextRef context)
{
    const ContextData* const data = dataOf(context);
    if (!data || data->path.isEmpty())
        return CGPointZero;
    return CGPointApplyAffineTransform(data->path.current(), toUser(*data));
}

CGRect CGContextGetPathBoundingBox(CGContextRef context)
{
    const ContextData* const data = dataOf(context);
    return data ? CGRectApplyAffineTransform(data->path.controlBox(), toUser(*data)) : CGRectNull;
}

CGPathRef CGContextCopyPath(CGContextRef context)
{
    const ContextData* const data = dataOf(context);
    if (!data || data->path.isEmpty())
        return nullptr;
    Ref<CGPath> path = make<CGPath>();
    path->data().append(data->path, toUser(*data));
    return path.leak();
}

// ---- painting

void CGContextDrawPath(CGContextRef context, CGPathDrawingMode mode)
{
    ContextData* const data = dataOf(context);
    if (!data)
        return;
    PathData path = std::move(data->path); // a pattern may draw meanwhile
    data->path.clear();
    if (mode != kCGPathStroke) {
        const bool evenOdd = mode == kCGPathEOFill || mode == kCGPathEOFillStroke;
        quartz::fillPath(*data, path, evenOdd, data->state.fill);
    }
    if (mode != kCGPathFill && mode != kCGPathEOFill)
        quartz::strokePath(*data, path);
    path.clear();
    if (data->path.isEmpty())
        data->path = std::move(path); // its memory serves the next one
}

void CGContextFillPath(CGContextRef context) { CGContextDrawPath(context, kCGPathFill); }
void CGContextEOFillPath(CGContextRef context) { CGContextDrawPath(context, kCGPathEOFill); }
void CGContextStrokePath(CGContextRef context) { CGContextDrawPath(context, kCGPathStroke); }

void CGContextFillRect(CGContextRef context, CGRect rect)
{
    if (ContextData* const data = dataOf(context))
        quartz::fillRect(*data, rect);
}

void CGContextFillRects(CGContextRef context, const CGRect* rects, std::size_t count)
{
    for (std::size_t i = 0; rects && i < count; ++i)
        CGContextFillRect(context, rects[i]);
}

void CGContextFillEllipseInRect(CGContextRef context, CGRect rect)
{
    ContextData* const data = dataOf(context);
    if (!data || CGRectIsNull(rect))
        return;
    PathData path;
    quartz::addEllipse(path, data->state.toDevice, rect);
    quartz::fillPath(*data, path, false, data->state.fill);
}

void CGContextStrokeRect(CGContextRef context, CGRect rect)
{
    ContextData* const data = dataOf(context);
    if (!data || CGRectIsNull(rect))
        return;
    PathData path;
    path.rect(rect, data->state.toDevice);
    quartz::strokePath(*data, path);
}

void CGContextStrokeRectWithWidth(CGContextRef context, CGRect rect, CGFloat width)
{
    ContextData* const data = dataOf(context);
    if (!data)
        return;
    const double kept = data->state.lineWidth;
    CGContextSetLineWidth(context, width);
    CGContextStrokeRect(context, rect);
    data->state.lineWidth = kept;
}

void CGContextStrokeEllipseInRect(CGContextRef context, CGRect rect)
{
    ContextData* const data = dataOf(context);
    if (!data || CGRectIsNull(rect))
        return;
    PathData path;
    quartz::addEllipse(path, data->state.toDevice, rect);
    quartz::strokePath(*data, path);
}

void CGContextStrokeLineSegments(CGContextRef context, const CGPoint* points, std::size_t count)
{
    ContextData* const data = dataOf(context);
    if (!data || !points)
        return;
    PathData path;
    for (std::size_t i = 0; i + 1 < count; i += 2) {
        path.move(deviceOf(*data, points[i].x, points[i].y));
        path.line(deviceOf(*data, points[i + 1].x, points[i + 1].y));
    }
    quartz::strokePath(*data, path);
}

void CGContextClearRect(CGContextRef context, CGRect rect)
{
    ContextData* const data = dataOf(context);
    if (!data)
        return;
    const quartz::Paint fill = data->state.fill;
    const CGBlendMode blend = data->state.blend;
    const double alpha = data->state.alpha;
    const quartz::Paint shadow = data->state.shadow;
    data->state.fill = { { 0, 0, 0, 0 }, true, nullptr };
    data->state.blend = kCGBlendModeCopy;
    data->state.alpha = 1;
    data->state.shadow.paints = false;
    quartz::fillRect(*data, rect);
    data->state.fill = fill;
    data->state.blend = blend;
    data->state.alpha = alpha;
    data->state.shadow = shadow;
}

// ---- clip

namespace {

    void clip(CGContextRef context, bool evenOdd)
    {
        ContextData* const data = dataOf(context);
        if (!data)
            return;
        const PathData path = std::move(data->path);
        data->path.clear();
        quartz::clipToPath(*data, path, evenOdd);
    }

}

void CGContextClip(CGContextRef context) { clip(context, false); }
void CGContextEOClip(CGContextRef context) { clip(context, true); }

void quartz::resetClip(CGContextRef context)
{
    ContextData* const data = dataOf(context);
    if (!data)
        return;
    data->state.clipAll();
    data->state.clipBox = data->canvas().bounds();
}

void CGContextClipToRect(CGContextRef context, CGRect rect)
{
    CGContextClipToRects(context, &rect, 1);
}

namespace {

    /// Clips to rectangles that `add` puts into a path in device space.
    template <class Add>
    void clipToAll(ContextData& data, std::span<const CGRect> rects, const Add& add)
    {
        // Every view that is drawn is clipped: the path lies in the same memory again.
        constexpr std::size_t kFew = 16;
        static thread_local PathData path;
        path.clear();
        for (const CGRect& rect : rects) {
            if (!CGRectIsNull(rect))
                add(path, CGRectStandardize(rect));
        }
        quartz::clipToPath(data, path, false);
        if (rects.size() > kFew)
            path = {};
    }

    /// Answers a rectangle of device space with its edges on pixels; what is off by an error of arithmetic stays.
    CGRect outwards(CGRect rect)
    {
        constexpr double kTolerance = 1.0 / 512;
        const double left = std::floor(NSMinX(rect) + kTolerance);
        const double top = std::floor(NSMinY(rect) + kTolerance);
        return CGRectMake(left, top, std::max(0.0, std::ceil(NSMaxX(rect) - kTolerance) - left),
            std::max(0.0, std::ceil(NSMaxY(rect) - kTolerance) - top));
    }

    /// Clips to the pixels that a rectangle touches, where the axes stay upright.
    void clipToOne(ContextData& data, CGRect rect)
    {
        quartz::GraphicsState& state = data.state;
        if (CGRectIsNull(rect))
            return state.clipAll();
        const CGAffineTransform& t = state.toDevice;
        const CGRect r = CGRectStandardize(rect);
        const double x1 = r.origin.x * t.a + t.tx;
        const double x2 = NSMaxX(r) * t.a + t.tx;
        const double y1 = r.origin.y * t.d + t.ty;
        const double y2 = NSMaxY(r) * t.d + t.ty;
        const CGRect device = outwards(
            CGRectMake(std::min(x1, x2), std::min(y1, y2), std::abs(x2 - x1), std::abs(y2 - y1)));
        state.clipBox = raster::intersection(state.clipBox, quartz::touchedPixels(device));
        if (state.clipBox.isEmpty())
            state.clipAll();
    }

}

void CGContextClipToRects(CGContextRef context, const CGRect* rects, std::size_t count)
{
    ContextData* const data = dataOf(context);
    if (!data || (!rects && count > 0))
        return;
    clipToAll(*data, { rects, count },
        [data](PathData& path, CGRect rect) { path.rect(rect, data->state.toDevice); });
}

void quartz::clipToTouchedPixels(CGContextRef context, std::span<const CGRect> rects)
{
    ContextData* const data = dataOf(context);
    if (!data)
        return;
    if (!data->state.isScaleAndMove())
        return CGContextClipToRects(context, rects.data(), rects.size());
    if (rects.size() == 1) // nearly every view that is drawn
        return clipToOne(*data, rects.front());
    clipToAll(*data, rects, [data](PathData& path, CGRect rect) {
        path.rect(outwards(CGRectApplyAffineTransform(rect, data->state.toDevice)),
            CGAffineTransformIdentity);
    });
}

CGRect CGContextGetClipBoundingBox(CGContextRef context)
{
    const ContextData* const data = dataOf(context);
    if (!data || data->state.clipBox.isEmpty())
        return CGRectNull;
    const raster::PixelRect& box = data->state.clipBox;
    const CGRect device = CGRectMake(box.left, box.top, static_cast<double>(box.right) - box.left,
        static_cast<double>(box.bottom) - box.top);
    return CGRectApplyAffineTransform(device, toUser(*data));
}

// ---- groups

void CGContextBeginTransparencyLayer(CGContextRef context, NSDictionary*)
{
    if (ContextData* const data = dataOf(context))
        quartz::beginLayer(*data, quartz::rectThatShows(*data));
}

void CGContextBeginTransparencyLayerWithRect(CGContextRef context, CGRect rect, NSDictionary*)
{
    ContextData* const data = dataOf(context);
    if (!data)
        return;
    const CGRect device = CGRectApplyAffineTransform(rect, data->state.toDevice);
    quartz::beginLayer(*data, quartz::touchedPixels(device));
}

void CGContextEndTransparencyLayer(CGContextRef context)
{
    ContextData* const data = dataOf(context);
    if (data && data->layers.size() > data->layersFloor)
        quartz::endLayer(*data);
}

}
