// SPDX-License-Identifier: Apache-2.0
#include "CGGradient.h"

#include "foundation/NSArray.h"
#include "runtime/Table.h"

#include "ContextPrivate.h"
#include "PathGeometryPrivate.h"
#include "TextDrawing.h"
#include "raster/PixelMath.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace brindle {

using quartz::ContextData;

template <> struct CGGradient::Methods<struct Basics> {
    static Ref<NSObject> copyWithZone(CGGradient& self, void*) { return &self; }
    static void table(Builder& t)
    {
        t.conformsTo({ "NSCopying" });
        t.methods({ { "copyWithZone:", imp<copyWithZone> } });
    }
};
BRINDLE_RECORD(CGGradient, Basics)

/// Fills gradients in.
struct Gradients {
    static Ref<CGGradient> create(std::vector<raster::GradientStop> stops)
    {
        for (raster::GradientStop& stop : stops) {
            stop.offset = raster::clampedUnit(stop.offset);
            stop.color = raster::clamped(stop.color);
        }
        std::stable_sort(stops.begin(), stops.end(),
            [](const auto& a, const auto& b) { return a.offset < b.offset; });
        Ref<CGGradient> gradient = make<CGGradient>();
        gradient->stops_ = std::move(stops);
        return gradient;
    }
};

Ref<CGGradient> quartz::gradientFromStops(std::vector<raster::GradientStop> stops)
{
    return Gradients::create(std::move(stops));
}

namespace {

    /// Answers where a colour stands: where it is told to, or evenly among the others.
    double placeOf(std::size_t index, std::size_t count, const CGFloat* locations)
    {
        if (locations)
            return locations[index];
        return count > 1 ? static_cast<double>(index) / static_cast<double>(count - 1) : 0;
    }

}

CGGradientRef CGGradientCreateWithColorComponents(
    CGColorSpaceRef space, const CGFloat* components, const CGFloat* locations, std::size_t count)
{
    if (!space || !components || count == 0)
        return nullptr;
    const std::size_t width = CGColorSpaceGetNumberOfComponents(space) + 1;
    std::vector<raster::GradientStop> stops(count);
    for (std::size_t i = 0; i < count; ++i) {
        const Ref<CGColor> color
            = Ref<CGColor>::adopt(CGColorCreate(space, components + i * width));
        stops[i] = { placeOf(i, count, locations), quartz::rasterColor(color.get()) };
    }
    return Gradients::create(std::move(stops)).leak();
}

CGGradientRef CGGradientCreateWithColors(CGColorSpaceRef, NSArray* colors, const CGFloat* locations)
{
    const std::size_t count = maybe(colors)->count();
    std::vector<raster::GradientStop> stops(count);
    for (std::size_t i = 0; i < count; ++i) {
        const Ref<NSObject> color = colors->objectAtIndex(i);
        if (!color->isKindOfClass(CGColor::cls()))
            return nullptr;
        stops[i] = { placeOf(i, count, locations),
            quartz::rasterColor(static_cast<const CGColor*>(color.get())) };
    }
    return count ? Gradients::create(std::move(stops)).leak() : nullptr;
}

CGGradientRef CGGradientRetain(CGGradientRef gradient)
{
    if (gradient)
        retain(gradient);
    return gradient;
}

void CGGradientRelease(CGGradientRef gradient)
{
    if (gradient)
        release(gradient);
}

namespace {

    struct GradientJob {
        quartz::Cairo<cairo_pattern_t> pattern;
        quartz::PathData area; // device space
        bool evenOdd = false;

        static void source(cairo_t* cr, const void* info)
        {
            cairo_set_source(cr, static_cast<const GradientJob*>(info)->pattern.get());
        }
        static void outline(cairo_t* cr, const void* info)
        {
            const auto& job = *static_cast<const GradientJob*>(info);
            cairo_set_fill_rule(
                cr, job.evenOdd ? CAIRO_FILL_RULE_EVEN_ODD : CAIRO_FILL_RULE_WINDING);
            quartz::tracePath(cr, job.area);
        }
        static void paint(cairo_t* cr, const void*) { cairo_fill(cr); }
    };

    void addStops(cairo_pattern_t* pattern, const CGGradient& gradient, double alpha)
    {
        for (const raster::GradientStop& stop : gradient.stops())
            cairo_pattern_add_color_stop_rgba(pattern, stop.offset, stop.color.red,
                stop.color.green, stop.color.blue, stop.color.alpha * alpha);
    }

    CGRect boxOf(const raster::PixelRect& r)
    {
        return CGRectMake(r.left, r.top, r.right - r.left, r.bottom - r.top);
    }

    /// A gradient fills what is there to be filled; it casts no shadow.
    void runGradient(ContextData& data, const GradientJob& job)
    {
        const bool shadow = std::exchange(data.state.shadow.paints, false);
        quartz::runJob(data,
            { intersection(data.state.clipBox, quartz::touchedPixels(job.area.controlBox())), &job,
                GradientJob::source, GradientJob::outline, GradientJob::paint });
        data.state.shadow.paints = shadow;
    }

    bool areFinite(CGPoint a, CGPoint b) { return std::isfinite(a.x + a.y + b.x + b.y); }

    constexpr CGGradientDrawingOptions kBothWays
        = kCGGradientDrawsBeforeStartLocation | kCGGradientDrawsAfterEndLocation;

    /// Colours from one point of user space to another.
    struct Way {
        const CGGradient& gradient;
        CGPoint start;
        CGPoint end;

        bool isStraight() const { return start.y == end.y || start.x == end.x; }
    };

    /// Answers the stripe of device space that a linear gradient paints.
    quartz::PathData stripe(
        const ContextData& data, const Way& way, CGGradientDrawingOptions options)
    {
        quartz::PathData path;
        const CGRect clip = boxOf(data.state.clipBox);
        if (options == kBothWays) {
            path.rect(clip, CGAffineTransformIdentity);
            return path;
        }
        const auto& [gradient, start, end] = way;
        const CGAffineTransform& t = data.state.toDevice;
        const CGRect user = CGRectApplyAffineTransform(clip, CGAffineTransformInvert(t));
        const double far = user.size.width + user.size.height + std::abs(user.origin.x - start.x)
            + std::abs(user.origin.y - start.y);
        const double length = std::hypot(end.x - start.x, end.y - start.y);
        const CGPoint along { (end.x - start.x) / length, (end.y - start.y) / length };
        const double from = options & kCGGradientDrawsBeforeStartLocation ? -far : 0;
        const double to = options & kCGGradientDrawsAfterEndLocation ? far + length : length;
        const auto at = [&](double distance, double side) {
            const CGPoint p { way.start.x + along.x * distance - along.y * side,
                way.start.y + along.y * distance + along.x * side };
            return CGPointApplyAffineTransform(p, t);
        };
        path.move(at(from, -far));
        path.line(at(to, -far));
        path.line(at(to, far));
        path.line(at(from, far));
        path.close();
        return path;
    }

    /// Answers whether a gradient can be written straight into the pixels of a rectangle.
    bool paintsStraight(const quartz::GraphicsState& state, const Way& way)
    {
        return way.isStraight() && paintsDirectly(state) && state.isScaleAndMove()
            && state.alpha >= 1;
    }

    /// - area: device space.
    void fillStraight(ContextData& data, const Way& way, const CGRect& area)
    {
        const quartz::GraphicsState& state = data.state;
        const bool across = way.start.y == way.end.y;
        const CGPoint a = CGPointApplyAffineTransform(way.start, state.toDevice);
        const CGPoint b = CGPointApplyAffineTransform(way.end, state.toDevice);
        quartz::Canvas& canvas = data.canvas();
        const double origin = across ? canvas.left() : canvas.top();
        const raster::Gradient direct { across ? raster::GradientAxis::horizontal
                                               : raster::GradientAxis::vertical,
            (across ? a.x : a.y) - origin, (across ? b.x : b.y) - origin, way.gradient.stops() };
        const quartz::Access access(data, quartz::touchedPixels(area));
        canvas.beginDirect();
        raster::fillGradient(canvas.bitmap(),
            { area.origin.x - canvas.left(), area.origin.y - canvas.top(), area.size.width,
                area.size.height },
            canvas.local(state.clipBox), direct, directBlend(state));
        canvas.endDirect();
    }

    /// Answers the part of the clip that a straight gradient paints.
    CGRect straightStripe(const ContextData& data, const Way& way, CGGradientDrawingOptions options)
    {
        const bool across = way.start.y == way.end.y;
        const CGPoint a = CGPointApplyAffineTransform(way.start, data.state.toDevice);
        const CGPoint b = CGPointApplyAffineTransform(way.end, data.state.toDevice);
        CGRect area = boxOf(data.state.clipBox);
        CGFloat& origin = across ? area.origin.x : area.origin.y;
        CGFloat& length = across ? area.size.width : area.size.height;
        const double from = across ? a.x : a.y;
        const double to = across ? b.x : b.y;
        const bool lowOpen = options
            & (from < to ? kCGGradientDrawsBeforeStartLocation : kCGGradientDrawsAfterEndLocation);
        const bool highOpen = options
            & (from < to ? kCGGradientDrawsAfterEndLocation : kCGGradientDrawsBeforeStartLocation);
        const double high
            = highOpen ? origin + length : std::min(origin + length, std::max(from, to));
        origin = lowOpen ? origin : std::max(origin, std::min(from, to));
        length = high - origin;
        return area;
    }

    void fillSlanted(ContextData& data, const Way& way, quartz::PathData area, bool evenOdd)
    {
        GradientJob job;
        job.pattern.reset(
            cairo_pattern_create_linear(way.start.x, way.start.y, way.end.x, way.end.y));
        addStops(job.pattern.get(), way.gradient, data.state.alpha);
        cairo_pattern_set_extend(job.pattern.get(), CAIRO_EXTEND_PAD);
        const cairo_matrix_t inverse
            = quartz::matrixFrom(CGAffineTransformInvert(data.state.toDevice));
        cairo_pattern_set_matrix(job.pattern.get(), &inverse);
        job.area = std::move(area);
        job.evenOdd = evenOdd;
        runGradient(data, job);
    }

    /// Answers whether there is anything to draw, and nothing that makes no sense.
    bool canRun(const ContextData* data, const Way& way)
    {
        return data && !data->state.clipBox.isEmpty() && way.start != way.end
            && areFinite(way.start, way.end) && quartz::isUsable(data->state.toDevice)
            && !way.gradient.stops().empty();
    }

}

void CGContextDrawLinearGradient(CGContextRef context, CGGradientRef gradient, CGPoint start,
    CGPoint end, CGGradientDrawingOptions options)
{
    ContextData* const data = quartz::dataOf(context);
    if (!gradient)
        return;
    const Way way { *gradient, start, end };
    if (!canRun(data, way))
        return;
    if (paintsStraight(data->state, way))
        fillStraight(*data, way, straightStripe(*data, way, options));
    else
        fillSlanted(*data, way, stripe(*data, way, options), false);
}

void quartz::fillWithGradient(CGContextRef context, const PathData& shape, bool evenOdd,
    const CGGradient& gradient, CGPoint start, CGPoint end)
{
    ContextData* const data = dataOf(context);
    const Way way { gradient, start, end };
    if (!canRun(data, way))
        return;
    PathData area;
    area.append(shape, data->state.toDevice);
    CGRect rect;
    if (isUprightRect(area, rect) && paintsStraight(data->state, way))
        fillStraight(*data, way, rect);
    else
        fillSlanted(*data, way, std::move(area), evenOdd);
}

namespace {

    /// Adds the colours; where the gradient must not go on beyond an end, the colour beyond it is clear.
    void addBoundedStops(cairo_pattern_t* pattern, const CGGradient& gradient, double alpha,
        CGGradientDrawingOptions options)
    {
        const auto addClear = [pattern](double offset, const raster::Color& color) {
            cairo_pattern_add_color_stop_rgba(
                pattern, offset, color.red, color.green, color.blue, 0);
        };
        if (!(options & kCGGradientDrawsBeforeStartLocation))
            addClear(0, gradient.stops().front().color);
        addStops(pattern, gradient, alpha);
        if (!(options & kCGGradientDrawsAfterEndLocation))
            addClear(1, gradient.stops().back().color);
        cairo_pattern_set_extend(pattern, CAIRO_EXTEND_PAD);
    }

}

void CGContextDrawRadialGradient(CGContextRef context, CGGradientRef gradient, CGPoint startCenter,
    CGFloat startRadius, CGPoint endCenter, CGFloat endRadius, CGGradientDrawingOptions options)
{
    ContextData* const data = quartz::dataOf(context);
    if (!data || !gradient || data->state.clipBox.isEmpty() || !areFinite(startCenter, endCenter)
        || !(startRadius >= 0 && startRadius < 1e6) || !(endRadius >= 0 && endRadius < 1e6)
        || !quartz::isUsable(data->state.toDevice) || gradient->stops().empty())
        return;
    GradientJob job;
    job.pattern.reset(cairo_pattern_create_radial(
        startCenter.x, startCenter.y, startRadius, endCenter.x, endCenter.y, endRadius));
    addBoundedStops(job.pattern.get(), *gradient, data->state.alpha, options);
    const cairo_matrix_t inverse
        = quartz::matrixFrom(CGAffineTransformInvert(data->state.toDevice));
    cairo_pattern_set_matrix(job.pattern.get(), &inverse);
    job.area.rect(boxOf(data->state.clipBox), CGAffineTransformIdentity);
    runGradient(*data, job);
}

}
