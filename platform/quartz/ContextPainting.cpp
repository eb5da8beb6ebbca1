// SPDX-License-Identifier: Apache-2.0
#include "ContextPrivate.h"
#include "PathGeometryPrivate.h"
#include "StencilCachePrivate.h"
#include "raster/Blit.h"
#include "raster/Fill.h"
#include "raster/PixelMath.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace brindle::quartz {

using raster::Pixel;
using raster::PixelRect;

// ---- outlines

namespace {

    // The pen keeps places in 24 bits before the point.
    double nearby(double value)
    {
        constexpr double kFarthest = 1 << 22;
        return std::clamp(value, -kFarthest, kFarthest);
    }

    CGPoint nearby(CGPoint p) { return { nearby(p.x), nearby(p.y) }; }

    bool areNumbers(const CGPoint* points, std::size_t count)
    {
        return std::all_of(
            points, points + count, [](CGPoint p) { return !std::isnan(p.x) && !std::isnan(p.y); });
    }

    void traceQuad(cairo_t* cr, CGPoint control, CGPoint to)
    {
        double x = 0;
        double y = 0;
        cairo_get_current_point(cr, &x, &y);
        cairo_curve_to(cr, x + (control.x - x) * 2 / 3, y + (control.y - y) * 2 / 3,
            to.x + (control.x - to.x) * 2 / 3, to.y + (control.y - to.y) * 2 / 3, to.x, to.y);
    }

}

void tracePath(cairo_t* cr, const PathData& path)
{
    path.each([cr](CGPathElementType type, const CGPoint* points) {
        if (!areNumbers(points, PathData::pointsOf(type)))
            return;
        CGPoint p[3];
        std::transform(points, points + PathData::pointsOf(type), p,
            [](CGPoint point) { return nearby(point); });
        switch (type) {
        case kCGPathElementMoveToPoint:
            return cairo_move_to(cr, p[0].x, p[0].y);
        case kCGPathElementAddLineToPoint:
            return cairo_line_to(cr, p[0].x, p[0].y);
        case kCGPathElementAddQuadCurveToPoint:
            if (!cairo_has_current_point(cr))
                cairo_move_to(cr, p[0].x, p[0].y);
            return traceQuad(cr, p[0], p[1]);
        case kCGPathElementAddCurveToPoint:
            return cairo_curve_to(cr, p[0].x, p[0].y, p[1].x, p[1].y, p[2].x, p[2].y);
        case kCGPathElementCloseSubpath:
            return cairo_close_path(cr);
        }
    });
}

// ---- through the pen

namespace {

    /// Operators that change pixels outside the shape too; here they must not.
    bool reachesOutside(cairo_operator_t op)
    {
        return op == CAIRO_OPERATOR_IN || op == CAIRO_OPERATOR_OUT || op == CAIRO_OPERATOR_DEST_IN
            || op == CAIRO_OPERATOR_DEST_ATOP;
    }

    /// Answers what an operator makes of the whole of a rectangle.
    Cairo<cairo_surface_t> painted(
        Canvas& canvas, PixelRect box, const PenJob& job, cairo_operator_t op)
    {
        const int width = box.right - box.left;
        const int height = box.bottom - box.top;
        Cairo<cairo_surface_t> result(
            cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height));
        unsigned char* const bytes = cairo_image_surface_get_data(result.get());
        if (!bytes)
            return nullptr;
        canvas.beginDirect();
        const PixelRect from = canvas.local(box);
        for (int y = 0; y < height; ++y)
            std::copy_n(canvas.bitmap().row(from.top + y) + from.left, width,
                reinterpret_cast<Pixel*>(
                    bytes + std::ptrdiff_t { y } * cairo_image_surface_get_stride(result.get())));
        canvas.endDirect();
        cairo_surface_mark_dirty(result.get());
        cairo_surface_set_device_offset(result.get(), -box.left, -box.top);
        const Cairo<cairo_t> cr(cairo_create(result.get()));
        cairo_set_operator(cr.get(), op);
        job.source(cr.get(), job.info);
        cairo_paint(cr.get());
        return result;
    }

    /// Paints a job whose paint alone bounds it with an operator that reaches outside.
    void runBounded(ContextData& data, const PenJob& job, PixelRect touched, cairo_operator_t op)
    {
        Canvas& canvas = data.canvas();
        const PixelRect box = intersection(touched, canvas.bounds());
        if (box.isEmpty())
            return;
        const Access access(data, touched);
        const Cairo<cairo_surface_t> whole = painted(canvas, box, job, op);
        if (!whole)
            return;
        cairo_t* const cr = canvas.pen(data.state);
        cairo_set_antialias(
            cr, data.state.smoothEdges() ? CAIRO_ANTIALIAS_DEFAULT : CAIRO_ANTIALIAS_NONE);
        cairo_set_operator(cr, CAIRO_OPERATOR_SOURCE);
        cairo_set_source_surface(cr, whole.get(), 0, 0);
        job.outline(cr, job.info);
        job.paint(cr, job.info);
        cairo_identity_matrix(cr);
        cairo_new_path(cr);
        cairo_set_source_rgba(cr, 0, 0, 0, 0);
    }

    /// Paints a job where the group ends: within it the source has its plain place.
    void runInLayer(ContextData& data, const PenJob& job)
    {
        const double alpha = std::exchange(data.state.alpha, 1); // the job's source has it already
        beginLayer(data, job.touched);
        runJob(data, job);
        endLayer(data);
        data.state.alpha = alpha;
    }

    /// Bounds every part to its alpha: where edges are soft, the modes of hue and light leave parts that are brighter, and
    /// sums of such pixels would run over.
    void boundParts(Canvas& canvas, PixelRect touched)
    {
        const PixelRect r = canvas.local(touched);
        canvas.beginDirect();
        for (int y = r.top; y < r.bottom; ++y) {
            for (Pixel* p = canvas.bitmap().row(y) + r.left; p < canvas.bitmap().row(y) + r.right;
                 ++p)
                *p = raster::bounded(*p);
        }
        canvas.endDirect();
    }

    void runWithOperator(cairo_t* cr, const PenJob& job, cairo_operator_t op)
    {
        cairo_set_operator(cr, op);
        job.source(cr, job.info);
        job.outline(cr, job.info);
        job.paint(cr, job.info);
        cairo_identity_matrix(cr);
        cairo_new_path(cr);
    }

}

void runJob(ContextData& data, const PenJob& job)
{
    const PixelRect touched = intersection(job.touched, data.state.clipBox);
    if (touched.isEmpty())
        return;
    const cairo_operator_t op = operatorFor(data.state.blend);
    if (data.state.blend == kCGBlendModePlusDarker)
        return runInLayer(data, job);
    if (reachesOutside(op) && !job.clipsToShape)
        return runBounded(data, job, touched, op);
    const Access access(data, touched);
    cairo_t* const cr = data.canvas().pen(data.state);
    cairo_set_antialias(
        cr, data.state.smoothEdges() ? CAIRO_ANTIALIAS_DEFAULT : CAIRO_ANTIALIAS_NONE);
    if (!reachesOutside(op)) {
        runWithOperator(cr, job, op);
        if (data.state.blend >= kCGBlendModeHue && data.state.blend <= kCGBlendModeLuminosity)
            boundParts(data.canvas(), intersection(touched, data.canvas().bounds()));
        return;
    }
    cairo_save(cr);
    cairo_set_operator(cr, op);
    job.source(cr, job.info);
    job.outline(cr, job.info);
    cairo_clip(cr);
    cairo_paint(cr);
    cairo_restore(cr);
}

namespace {

    /// What a pen paints with: a colour, or the cells of a pattern. The state's alpha is in it.
    struct Ink {
        raster::Color color;
        Cairo<cairo_pattern_t> tiles;

        Ink(const ContextData& data, const Paint& paint)
            : color(paint.color)
        {
            color.alpha *= data.state.alpha;
            if (paint.pattern)
                tiles = tilesFor(data, paint, color.alpha);
            if (paint.pattern && !tiles)
                color.alpha = 0;
        }
        void put(cairo_t* cr) const
        {
            if (tiles)
                cairo_set_source(cr, tiles.get());
            else
                cairo_set_source_rgba(cr, color.red, color.green, color.blue, color.alpha);
        }
        const raster::Color* plain() const { return tiles ? nullptr : &color; }
    };

    struct FillJob {
        const PathData& path;
        const Ink& ink;
        bool evenOdd;

        static void source(cairo_t* cr, const void* info)
        {
            static_cast<const FillJob*>(info)->ink.put(cr);
        }
        static void outline(cairo_t* cr, const void* info)
        {
            const auto& job = *static_cast<const FillJob*>(info);
            cairo_set_fill_rule(
                cr, job.evenOdd ? CAIRO_FILL_RULE_EVEN_ODD : CAIRO_FILL_RULE_WINDING);
            tracePath(cr, job.path);
        }
        static void paint(cairo_t* cr, const void*) { cairo_fill(cr); }
    };

    raster::Color withAlpha(raster::Color color, double alpha)
    {
        color.alpha *= alpha;
        return color;
    }

    void fillDeviceRect(ContextData& data, CGRect rect, const raster::Color& color)
    {
        Canvas& canvas = data.canvas();
        const PixelRect touched = touchedPixels(rect);
        const Access access(data, touched);
        canvas.beginDirect();
        raster::fillRect(canvas.bitmap(),
            { rect.origin.x - canvas.left(), rect.origin.y - canvas.top(), rect.size.width,
                rect.size.height },
            canvas.local(data.state.clipBox), color, directBlend(data.state));
        canvas.endDirect();
    }

}

namespace {

    void strokeRing(ContextData& data, const PathData& path)
    {
        constexpr double kReach = 3; // points, outside the shape
        GraphicsState& state = data.state;
        const GraphicsState kept = state;
        state.stroke = { state.ringColor, true, nullptr };
        state.lineWidth = 2 * kReach;
        state.join = kCGLineJoinRound;
        state.dashes.clear();
        state.shadow.paints = false;
        strokePath(data, path);
        state = kept;
    }

    void fillWithRing(ContextData& data, const PathData& path, bool evenOdd, const Paint& paint)
    {
        const FocusRing ring = std::exchange(data.state.ring, FocusRing::none);
        if (ring != FocusRing::above)
            strokeRing(data, path);
        if (ring != FocusRing::only)
            fillPath(data, path, evenOdd, paint);
        if (ring == FocusRing::above)
            strokeRing(data, path);
        data.state.ring = ring;
    }

}

void fillPath(ContextData& data, const PathData& path, bool evenOdd, const Paint& paint)
{
    if (path.isEmpty())
        return;
    if (data.state.ring != FocusRing::none)
        return fillWithRing(data, path, evenOdd, paint);
    if (!paint.paints)
        return;
    const Ink ink(data, paint);
    const FillJob job { path, ink, evenOdd };
    PenJob step { touchedPixels(path.controlBox()), &job, FillJob::source, FillJob::outline,
        FillJob::paint };
    step.color = ink.plain();
    CGRect rect;
    const bool isRect = ink.plain() && isUprightRect(path, rect);
    if (isRect && paintsDirectly(data.state))
        return fillDeviceRect(data, rect, ink.color);
    ShapeKey key;
    if (canBeRemembered(step, data.state)) {
        key.add(std::int32_t { evenOdd });
        key.add(path, step.touched.left, step.touched.top);
        step.key = key.fits() ? &key : nullptr;
    }
    castShadow(data, step);
    const ShadowPause plain(data.state);
    if (isRect && paintsDirectly(data.state))
        fillDeviceRect(data, rect, ink.color);
    else
        paintShape(data, step);
}

void fillRect(ContextData& data, CGRect userRect)
{
    if (!data.state.fill.paints || CGRectIsNull(userRect))
        return;
    const GraphicsState& state = data.state;
    if (paintsDirectly(state) && state.isScaleAndMove() && !state.fill.pattern) {
        const CGAffineTransform& t = state.toDevice;
        const CGRect r = CGRectStandardize(userRect);
        const raster::DeviceRect device = raster::Placement { t.a, t.d, t.tx, t.ty }.map(
            r.origin.x, r.origin.y, r.size.width, r.size.height);
        return fillDeviceRect(data, { { device.x, device.y }, { device.width, device.height } },
            withAlpha(state.fill.color, state.alpha));
    }
    PathData path;
    path.rect(userRect, state.toDevice);
    fillPath(data, path, false, state.fill);
}

// ---- lines

namespace {

    struct StrokeJob {
        const PathData& path;
        const GraphicsState& state;
        const Ink& ink;
        double width; // user space
        bool dashed;

        static void source(cairo_t* cr, const void* info)
        {
            static_cast<const StrokeJob*>(info)->ink.put(cr);
        }
        static void outline(cairo_t* cr, const void* info)
        {
            tracePath(cr, static_cast<const StrokeJob*>(info)->path);
        }
        static void paint(cairo_t* cr, const void* info)
        {
            const auto& job = *static_cast<const StrokeJob*>(info);
            const GraphicsState& state = job.state;
            // The path stays where it is; the transform shapes the pen's tip.
            const cairo_matrix_t matrix = matrixFrom(state.toDevice);
            cairo_set_matrix(cr, &matrix);
            cairo_set_line_width(cr, job.width);
            cairo_set_miter_limit(cr, std::clamp(state.miterLimit, 1.0, 1000.0));
            cairo_set_line_cap(cr, static_cast<cairo_line_cap_t>(state.cap));
            cairo_set_line_join(cr, static_cast<cairo_line_join_t>(state.join));
            const int count = job.dashed ? static_cast<int>(state.dashes.size()) : 0;
            cairo_set_dash(cr, state.dashes.data(), count, job.dashed ? state.dashPhase : 0);
            cairo_stroke(cr);
            cairo_identity_matrix(cr);
        }
    };

    double scaleOf(const CGAffineTransform& t)
    {
        return std::max(std::hypot(t.a, t.b), std::hypot(t.c, t.d));
    }

    /// A dash must be long enough to be seen, and short enough in number to be drawn in no time.
    bool dashesMakeSense(const GraphicsState& state, CGRect box, double scale)
    {
        double sum = 0;
        for (const double length : state.dashes)
            sum += length;
        const double reach = std::min(box.size.width, 1e7) + std::min(box.size.height, 1e7);
        return sum > 0 && sum * scale * 100000 > reach && sum * scale > 0.01;
    }

}

void strokePath(ContextData& data, const PathData& path)
{
    const GraphicsState& state = data.state;
    if (!state.stroke.paints || path.isEmpty() || !isUsable(state.toDevice))
        return;
    const double scale = scaleOf(state.toDevice);
    constexpr double kWidest = 1 << 16; // pixels
    const double width
        = state.lineWidth > 0 ? std::min(state.lineWidth, kWidest / scale) : 1 / scale;
    const CGRect box = path.controlBox();
    const double reach = width * scale * std::max(state.miterLimit, 2.0) / 2 + 2;
    const Ink ink(data, state.stroke);
    const StrokeJob job { path, state, ink, width, dashesMakeSense(state, box, scale) };
    PenJob step { touchedPixels({ { box.origin.x - reach, box.origin.y - reach },
                      { box.size.width + 2 * reach, box.size.height + 2 * reach } }),
        &job, StrokeJob::source, StrokeJob::outline, StrokeJob::paint };
    step.clipsToShape = false;
    step.color = ink.plain();
    ShapeKey key;
    if (!job.dashed && canBeRemembered(step, state)) {
        key.add(std::int32_t { 2 + state.cap + 4 * state.join });
        const CGAffineTransform& t = state.toDevice;
        for (const double number : { width, state.miterLimit, t.a, t.b, t.c, t.d })
            key.add(number);
        key.add(path, step.touched.left, step.touched.top);
        step.key = key.fits() ? &key : nullptr;
    }
    castShadow(data, step);
    const ShadowPause plain(data.state);
    paintShape(data, step);
}

// ---- clip

void clipToPath(ContextData& data, const PathData& path, bool evenOdd)
{
    GraphicsState& state = data.state;
    const CGRect box = path.controlBox();
    if (path.isEmpty() || CGRectIsNull(box))
        return state.clipAll();
    const auto whole = [](double value) { return std::abs(value - std::round(value)) < 1.0 / 512; };
    CGRect rect;
    if (isUprightRect(path, rect)
        && (!state.smoothEdges()
            || (whole(NSMinX(rect)) && whole(NSMinY(rect)) && whole(NSMaxX(rect))
                && whole(NSMaxY(rect))))) {
        const auto nearest = [](double value) { return wholePixel(std::floor(value + 0.5)); };
        state.clipBox = intersection(state.clipBox,
            { nearest(NSMinX(rect)), nearest(NSMinY(rect)), nearest(NSMaxX(rect)),
                nearest(NSMaxY(rect)) });
    } else {
        state.clipBox = intersection(state.clipBox, touchedPixels(box));
        state.clipShapes = std::make_shared<const ClipShape>(
            ClipShape { path, evenOdd, state.smoothEdges(), std::move(state.clipShapes) });
    }
    if (state.clipBox.isEmpty())
        state.clipAll();
}

void clipToStencil(ContextData& data, raster::Stencil stencil)
{
    GraphicsState& state = data.state;
    state.clipBox = intersection(state.clipBox,
        { stencil.left, stencil.top, stencil.left + stencil.width, stencil.top + stencil.height });
    if (state.clipBox.isEmpty())
        return state.clipAll();
    if (const ClipMask outer = state.clipMask) {
        std::uint8_t* part = stencil.coverage.data();
        for (int y = 0; y < stencil.height; ++y) {
            for (int x = 0; x < stencil.width; ++x, ++part)
                *part = static_cast<std::uint8_t>(
                    raster::scaled(*part, outer->at(stencil.left + x, stencil.top + y)));
        }
    }
    state.clipMask = std::make_shared<const raster::Stencil>(std::move(stencil));
}

}
