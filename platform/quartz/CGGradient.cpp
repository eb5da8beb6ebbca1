// SPDX-License-Identifier: Apache-2.0
#include "CGGradient.h"

#include "runtime/Table.h"

#include "ContextPrivate.h"
#include "TextDrawing.h"

#include <algorithm>
#include <cmath>

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
        for (raster::GradientStop& stop : stops)
            stop.offset = stop.offset > 0 ? std::min(stop.offset, 1.0) : 0;
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
        const double even = count > 1 ? static_cast<double>(i) / static_cast<double>(count - 1) : 0;
        stops[i] = { locations ? locations[i] : even, quartz::rasterColor(color.get()) };
    }
    return Gradients::create(std::move(stops)).leak();
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

        static void source(cairo_t* cr, const void* info)
        {
            cairo_set_source(cr, static_cast<const GradientJob*>(info)->pattern.get());
        }
        static void outline(cairo_t* cr, const void* info)
        {
            cairo_set_fill_rule(cr, CAIRO_FILL_RULE_WINDING);
            quartz::tracePath(cr, static_cast<const GradientJob*>(info)->area);
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

    void runGradient(ContextData& data, const GradientJob& job)
    {
        quartz::runJob(data,
            { data.state.clipBox, &job, GradientJob::source, GradientJob::outline,
                GradientJob::paint });
    }

    bool areFinite(CGPoint a, CGPoint b) { return std::isfinite(a.x + a.y + b.x + b.y); }

    /// Answers the stripe of device space that a linear gradient paints.
    quartz::PathData stripe(
        const ContextData& data, CGPoint start, CGPoint end, CGGradientDrawingOptions options)
    {
        quartz::PathData path;
        const CGRect clip = boxOf(data.state.clipBox);
        if (options == (kCGGradientDrawsBeforeStartLocation | kCGGradientDrawsAfterEndLocation)) {
            path.rect(clip, CGAffineTransformIdentity);
            return path;
        }
        const CGAffineTransform& t = data.state.toDevice;
        const CGRect user = CGRectApplyAffineTransform(clip, CGAffineTransformInvert(t));
        const double far = user.size.width + user.size.height + std::abs(user.origin.x - start.x)
            + std::abs(user.origin.y - start.y);
        const double length = std::hypot(end.x - start.x, end.y - start.y);
        const CGPoint along { (end.x - start.x) / length, (end.y - start.y) / length };
        const double from = options & kCGGradientDrawsBeforeStartLocation ? -far : 0;
        const double to = options & kCGGradientDrawsAfterEndLocation ? far + length : length;
        const auto at = [&](double distance, double side) {
            const CGPoint p { start.x + along.x * distance - along.y * side,
                start.y + along.y * distance + along.x * side };
            return CGPointApplyAffineTransform(p, t);
        };
        path.move(at(from, -far));
        path.line(at(to, -far));
        path.line(at(to, far));
        path.line(at(from, far));
        path.close();
        return path;
    }

    /// Paints gradients that run straight across or down without the pen. Answers NO when this one does not.
    bool drawDirectly(ContextData& data, const CGGradient& gradient, CGPoint start, CGPoint end,
        CGGradientDrawingOptions options)
    {
        const quartz::GraphicsState& state = data.state;
        const bool across = start.y == end.y;
        if (!paintsDirectly(state) || !state.isScaleAndMove() || state.alpha < 1
            || (!across && start.x != end.x))
            return false;
        const CGPoint a = CGPointApplyAffineTransform(start, state.toDevice);
        const CGPoint b = CGPointApplyAffineTransform(end, state.toDevice);
        CGRect area = boxOf(state.clipBox);
        const CGRect painted = stripe(data, start, end, options).controlBox();
        area = CGRectIntersection(area, painted);
        if (CGRectIsEmpty(area))
            return true;
        quartz::Canvas& canvas = data.canvas();
        const quartz::Access access(data, state.clipBox);
        const double origin = across ? canvas.left() : canvas.top();
        const raster::Gradient direct { across ? raster::GradientAxis::horizontal
                                               : raster::GradientAxis::vertical,
            (across ? a.x : a.y) - origin, (across ? b.x : b.y) - origin, gradient.stops() };
        canvas.beginDirect();
        raster::fillGradient(canvas.bitmap(),
            { area.origin.x - canvas.left(), area.origin.y - canvas.top(), area.size.width,
                area.size.height },
            canvas.local(state.clipBox), direct, directBlend(state));
        canvas.endDirect();
        return true;
    }

}

void CGContextDrawLinearGradient(CGContextRef context, CGGradientRef gradient, CGPoint start,
    CGPoint end, CGGradientDrawingOptions options)
{
    ContextData* const data = quartz::dataOf(context);
    if (!data || !gradient || data->state.clipBox.isEmpty() || start == end
        || !areFinite(start, end) || !quartz::isUsable(data->state.toDevice))
        return;
    if (drawDirectly(*data, *gradient, start, end, options))
        return;
    GradientJob job;
    job.pattern.reset(cairo_pattern_create_linear(start.x, start.y, end.x, end.y));
    addStops(job.pattern.get(), *gradient, data->state.alpha);
    cairo_pattern_set_extend(job.pattern.get(), CAIRO_EXTEND_PAD);
    const cairo_matrix_t inverse
        = quartz::matrixFrom(CGAffineTransformInvert(data->state.toDevice));
    cairo_pattern_set_matrix(job.pattern.get(), &inverse);
    job.area = stripe(*data, start, end, options);
    runGradient(*data, job);
}

void CGContextDrawRadialGradient(CGContextRef context, CGGradientRef gradient, CGPoint startCenter,
    CGFloat startRadius, CGPoint endCenter, CGFloat endRadius, CGGradientDrawingOptions options)
{
    ContextData* const data = quartz::dataOf(context);
    if (!data || !gradient || data->state.clipBox.isEmpty() || !areFinite(startCenter, endCenter)
        || !(startRadius >= 0 && startRadius < 1e6) || !(endRadius >= 0 && endRadius < 1e6)
        || !quartz::isUsable(data->state.toDevice))
        return;
    GradientJob job;
    job.pattern.reset(cairo_pattern_create_radial(
        startCenter.x, startCenter.y, startRadius, endCenter.x, endCenter.y, endRadius));
    addStops(job.pattern.get(), *gradient, data->state.alpha);
    if (!(options & kCGGradientDrawsBeforeStartLocation) && startRadius <= endRadius) {
        // A clear stop at the very start keeps the inside of the first circle free.
        const raster::Color& first = gradient->stops().front().color;
        if (startRadius > 0) {
            job.pattern.reset(cairo_pattern_create_radial(
                startCenter.x, startCenter.y, startRadius, endCenter.x, endCenter.y, endRadius));
            cairo_pattern_add_color_stop_rgba(
                job.pattern.get(), 0, first.red, first.green, first.blue, 0);
            addStops(job.pattern.get(), *gradient, data->state.alpha);
        }
    }
    const bool after = options & kCGGradientDrawsAfterEndLocation;
    cairo_pattern_set_extend(job.pattern.get(), after ? CAIRO_EXTEND_PAD : CAIRO_EXTEND_NONE);
    const cairo_matrix_t inverse
        = quartz::matrixFrom(CGAffineTransformInvert(data->state.toDevice));
    cairo_pattern_set_matrix(job.pattern.get(), &inverse);
    job.area.rect(boxOf(data->state.clipBox), CGAffineTransformIdentity);
    runGradient(*data, job);
}

}
