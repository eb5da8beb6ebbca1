// SPDX-License-Identifier: Apache-2.0
#include "ContextPrivate.h"
#include "StencilCachePrivate.h"
#include "raster/PixelMath.h"

#include <algorithm>
#include <cmath>

namespace brindle::quartz {

using raster::Pixel;
using raster::PixelRect;
using raster::Stencil;

namespace {

    int widthOf(PixelRect r) { return r.right - r.left; }
    int heightOf(PixelRect r) { return r.bottom - r.top; }

    PixelRect moved(PixelRect r, int x, int y)
    {
        return { r.left + x, r.top + y, r.right + x, r.bottom + y };
    }
    PixelRect grown(PixelRect r, int by)
    {
        return { r.left - by, r.top - by, r.right + by, r.bottom + by };
    }

    // ---- shapes as stencils

    /// Draws a job's coverage of an area.
    Stencil draw(const PenJob& job, PixelRect area, const GraphicsState& state)
    {
        Stencil stencil { {}, area.left, area.top, widthOf(area), heightOf(area) };
        const Cairo<cairo_surface_t> surface(
            cairo_image_surface_create(CAIRO_FORMAT_A8, stencil.width, stencil.height));
        cairo_surface_set_device_offset(surface.get(), -area.left, -area.top);
        const Cairo<cairo_t> cr(cairo_create(surface.get()));
        if (cairo_status(cr.get()) != CAIRO_STATUS_SUCCESS)
            return {};
        cairo_set_antialias(
            cr.get(), state.smoothEdges() ? CAIRO_ANTIALIAS_DEFAULT : CAIRO_ANTIALIAS_NONE);
        job.source(cr.get(), job.info);
        if (job.color)
            cairo_set_source_rgb(cr.get(), 0, 0, 0); // its alpha counts when the stencil is used
        job.outline(cr.get(), job.info);
        job.paint(cr.get(), job.info);
        cairo_surface_flush(surface.get());
        const unsigned char* bytes = cairo_image_surface_get_data(surface.get());
        const int stride = cairo_image_surface_get_stride(surface.get());
        for (int y = 0; y < stencil.height; ++y, bytes += stride)
            stencil.coverage.insert(stencil.coverage.end(), bytes, bytes + stencil.width);
        return stencil;
    }

    /// Answers a job's stencil, counted from the corner of what it touches, blurred where `sigma` is not 0.
    StencilCache::Entry remembered(const PenJob& job, const GraphicsState& state, double sigma)
    {
        ShapeKey& key = *job.key;
        key.setBlur(sigma);
        StencilCache& cache = StencilCache::shared();
        if (StencilCache::Entry found = cache.find(key))
            return found;
        Stencil stencil = trimmed(blurred(trimmed(draw(job, job.touched, state)), sigma));
        stencil.left -= job.touched.left;
        stencil.top -= job.touched.top;
        if (sigma == 0)
            raster::findSolid(stencil);
        return cache.insert(key, std::move(stencil));
    }

    /// Answers whether stencils are laid right into the pixels.
    bool laysDirectly(const GraphicsState& state)
    {
        return !state.clipShapes && state.blend == kCGBlendModeNormal;
    }

    /// Lays a colour through a stencil whose place is counted from `x`, `y`. - cover: what will be covered, in device pixels.
    void lay(ContextData& data, const Stencil& stencil, int x, int y, const raster::Color& color,
        raster::Cover cover = {})
    {
        const int left = x + stencil.left;
        const int top = y + stencil.top;
        if (stencil.isEmpty())
            return;
        const GraphicsState& state = data.state;
        const Pixel pixel = raster::pixelFromColor(color);
        if (laysDirectly(state)) {
            const Access access(data, { left, top, left + stencil.width, top + stencil.height });
            Canvas& canvas = data.canvas();
            canvas.beginDirect();
            cover.left -= canvas.left();
            cover.top -= canvas.top();
            raster::drawMaskAround(canvas.bitmap(), stencil.mask(), left - canvas.left(),
                top - canvas.top(), canvas.local(state.clipBox), pixel, cover);
            return canvas.endDirect();
        }
        std::vector<Pixel> pixels(stencil.coverage.size());
        std::transform(stencil.coverage.begin(), stencil.coverage.end(), pixels.begin(),
            [pixel](std::uint8_t part) { return raster::scaled(pixel, part); });
        const double alpha = std::exchange(data.state.alpha, 1); // the colour has it already
        drawPixels(data,
            { pixels.data(), stencil.width, stencil.height,
                static_cast<std::ptrdiff_t>(sizeof(Pixel)) * stencil.width },
            left, top);
        data.state.alpha = alpha;
    }

    // ---- shadows

    /// How a shadow lies, in whole pixels; y down.
    struct Cast {
        int x = 0;
        int y = 0;
        double sigma = 0;
        int reach = 0;

        explicit Cast(const ContextData& data)
        {
            const GraphicsState& state = data.state;
            constexpr double kSoftest = 256; // pixels
            const auto nearest
                = [&](double points) { return wholePixel(std::floor(points * data.scale + 0.5)); };
            x = nearest(state.shadowOffset.width);
            y = -nearest(state.shadowOffset.height);
            sigma = std::min(state.shadowBlur * data.scale / 2, kSoftest);
            if (sigma < 1.0 / 8) // less is not to be seen
                sigma = 0;
            reach = raster::blurReach(sigma);
        }
        /// Answers where something must lie for its shadow to show in a rectangle.
        PixelRect sourceOf(PixelRect shown) const { return grown(moved(shown, -x, -y), reach); }
    };

    bool isOpaque(const raster::Color& color)
    {
        return raster::alphaOf(raster::pixelFromColor(color)) == 255;
    }

    raster::Color faded(raster::Color color, double alpha)
    {
        color.alpha *= alpha;
        return color;
    }

}

bool canBeRemembered(const PenJob& job, const GraphicsState& state)
{
    constexpr int kLongestSide = 512; // pixels
    constexpr int kLargest = kLongestSide * kLongestSide / 4;
    const int width = widthOf(job.touched);
    const int height = heightOf(job.touched);
    const bool isUsed = state.shadow.paints || laysDirectly(state);
    return isUsed && job.color && state.smoothEdges() && width <= kLongestSide
        && height <= kLongestSide && width * height <= kLargest;
}

void castShadow(ContextData& data, const PenJob& job)
{
    if (!data.state.shadow.paints)
        return;
    const Cast cast(data);
    const PixelRect area = intersection(job.touched, cast.sourceOf(data.state.clipBox));
    if (area.isEmpty())
        return;
    const ShadowPause plain(data.state);
    const raster::Color color = faded(data.state.shadow.color, job.color ? job.color->alpha : 1);
    if (job.key) {
        const auto [left, top, right, bottom] = job.touched;
        const StencilCache::Entry stencil = remembered(job, data.state, cast.sigma);
        if (!isOpaque(*job.color) || !laysDirectly(data.state))
            return lay(data, *stencil, left + cast.x, top + cast.y, color);
        // The shape itself will cover most of its shadow.
        const StencilCache::Entry shape = remembered(job, data.state, 0);
        return lay(data, *stencil, left + cast.x, top + cast.y, color,
            { shape->solid, left + shape->left, top + shape->top });
    }
    lay(data, blurred(draw(job, area, data.state), cast.sigma), cast.x, cast.y, color);
}

void castShadow(ContextData& data, const raster::Bitmap& pixels, int x, int y)
{
    if (!data.state.shadow.paints)
        return;
    const Cast cast(data);
    const PixelRect area
        = intersection(moved(raster::bounds(pixels), x, y), cast.sourceOf(data.state.clipBox));
    if (area.isEmpty())
        return;
    Stencil stencil { {}, area.left, area.top, widthOf(area), heightOf(area) };
    for (int line = area.top; line < area.bottom; ++line) {
        const Pixel* row = pixels.row(line - y) + (area.left - x);
        std::transform(row, row + stencil.width, std::back_inserter(stencil.coverage),
            [](Pixel pixel) { return static_cast<std::uint8_t>(raster::alphaOf(pixel)); });
    }
    const ShadowPause plain(data.state);
    lay(data, blurred(stencil, cast.sigma), cast.x, cast.y,
        faded(data.state.shadow.color, data.state.alpha));
}

PixelRect rectThatShows(const ContextData& data)
{
    const PixelRect& clip = data.state.clipBox;
    if (!data.state.shadow.paints || clip.isEmpty())
        return clip;
    const Cast cast(data);
    const PixelRect source = cast.sourceOf(clip);
    const PixelRect both { std::min(clip.left, source.left), std::min(clip.top, source.top),
        std::max(clip.right, source.right), std::max(clip.bottom, source.bottom) };
    constexpr std::int64_t kMostMemory = std::int64_t { 1 } << 25;
    const bool fits = std::int64_t { widthOf(both) } * heightOf(both) <= kMostMemory;
    return fits ? both : clip; // from so far away no shadow is worth its memory
}

void paintShape(ContextData& data, const PenJob& job)
{
    const GraphicsState& state = data.state;
    if (intersection(job.touched, state.clipBox).isEmpty())
        return;
    if (!laysDirectly(state) || !job.key)
        return runJob(data, job);
    lay(data, *remembered(job, state, 0), job.touched.left, job.touched.top, *job.color);
}

}
