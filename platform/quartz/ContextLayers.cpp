// SPDX-License-Identifier: Apache-2.0
#include "ContextPrivate.h"
#include "raster/Blit.h"

#include <algorithm>

namespace brindle::quartz {

using raster::Pixel;
using raster::PixelRect;

// ---- finished pixels

Cairo<cairo_surface_t> surfaceOf(const raster::Bitmap& pixels, double alpha)
{
    Cairo<cairo_surface_t> lent(
        cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(pixels.pixels),
            CAIRO_FORMAT_ARGB32, pixels.width, pixels.height, static_cast<int>(pixels.stride)));
    if (alpha >= 1)
        return lent;
    Cairo<cairo_surface_t> faded(
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, pixels.width, pixels.height));
    const Cairo<cairo_t> fade(cairo_create(faded.get()));
    cairo_set_source_surface(fade.get(), lent.get(), 0, 0);
    cairo_paint_with_alpha(fade.get(), alpha);
    return faded;
}

namespace {

    struct PixelsJob {
        raster::Bitmap pixels;
        int x;
        int y;
        double alpha;

        static void source(cairo_t* cr, const void* info)
        {
            const auto& job = *static_cast<const PixelsJob*>(info);
            const Cairo<cairo_surface_t> surface = surfaceOf(job.pixels, job.alpha);
            cairo_set_source_surface(cr, surface.get(), job.x, job.y);
            cairo_pattern_set_filter(cairo_get_source(cr), CAIRO_FILTER_NEAREST);
        }
        static void outline(cairo_t* cr, const void* info)
        {
            const auto& job = *static_cast<const PixelsJob*>(info);
            cairo_rectangle(cr, job.x, job.y, job.pixels.width, job.pixels.height);
        }
        static void paint(cairo_t* cr, const void*)
        {
            cairo_fill(cr);
            cairo_set_source_rgba(cr, 0, 0, 0, 0); // lets go of the lent pixels
        }
    };

    /// Adds darkness: what two colours lack of white is lacking in both.
    Pixel plusDarker(Pixel source, Pixel destination)
    {
        const auto part = [](Pixel p, int shift) { return static_cast<int>(p >> shift & 0xFF); };
        const int sourceAlpha = part(source, 24);
        const int destinationAlpha = part(destination, 24);
        const int alpha = std::min(255, sourceAlpha + destinationAlpha);
        Pixel result = static_cast<Pixel>(alpha) << 24;
        for (int shift = 0; shift <= 16; shift += 8) {
            const int lacking
                = sourceAlpha - part(source, shift) + destinationAlpha - part(destination, shift);
            result |= static_cast<Pixel>(std::max(0, alpha - lacking)) << shift;
        }
        return result;
    }

    void drawDarker(ContextData& data, const raster::Bitmap& pixels, int x, int y)
    {
        const PixelRect target = intersection(data.state.clipBox, data.canvas().bounds());
        if (target.isEmpty())
            return;
        // Drawn plainly into a group first, which applies clip and alpha.
        const int width = target.right - target.left;
        std::vector<Pixel> memory(
            static_cast<std::size_t>(width) * static_cast<std::size_t>(target.bottom - target.top));
        Canvas plain({ memory.data(), width, target.bottom - target.top,
                         static_cast<std::ptrdiff_t>(sizeof(Pixel)) * width },
            target.left, target.top);
        GraphicsState state = data.state;
        state.clipBox = target;
        const PixelsJob job { pixels, x, y, state.alpha };
        cairo_t* const cr = plain.pen(state);
        cairo_set_operator(cr, CAIRO_OPERATOR_OVER);
        PixelsJob::source(cr, &job);
        PixelsJob::outline(cr, &job);
        PixelsJob::paint(cr, &job);

        const Access access(data, target);
        Canvas& canvas = data.canvas();
        canvas.beginDirect();
        for (int line = target.top; line < target.bottom; ++line) {
            Pixel* row = canvas.bitmap().row(line - canvas.top()) + (target.left - canvas.left());
            const Pixel* source = plain.bitmap().row(line - target.top);
            for (int i = 0; i < width; ++i)
                row[i] = source[i] ? plusDarker(source[i], row[i]) : row[i];
        }
        canvas.endDirect();
    }

}

void drawPixels(ContextData& data, const raster::Bitmap& pixels, int x, int y)
{
    castShadow(data, pixels, x, y);
    const ShadowPause plain(data.state);
    const GraphicsState& state = data.state;
    if (state.blend == kCGBlendModePlusDarker)
        return drawDarker(data, pixels, x, y);
    const PixelRect touched { x, y, x + pixels.width, y + pixels.height };
    if (paintsDirectly(state) || (!state.clipShapes && state.blend == kCGBlendModeNormal)) {
        const Access access(data, touched);
        Canvas& canvas = data.canvas();
        canvas.beginDirect();
        raster::drawImage(canvas.bitmap(), pixels, x - canvas.left(), y - canvas.top(),
            canvas.local(state.clipBox), directBlend(state), state.alpha);
        return canvas.endDirect();
    }
    const PixelsJob job { pixels, x, y, state.alpha };
    runJob(data, { touched, &job, PixelsJob::source, PixelsJob::outline, PixelsJob::paint });
}

// ---- groups

void beginLayer(ContextData& data, PixelRect box)
{
    PixelRect target = intersection(box, rectThatShows(data));
    if (target.isEmpty())
        target = {};
    const int width = target.right - target.left;
    const int height = target.bottom - target.top;
    std::vector<Pixel> pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    const raster::Bitmap bitmap { pixels.data(), width, height,
        static_cast<std::ptrdiff_t>(sizeof(Pixel)) * width };
    data.layers.push_back(std::make_unique<Layer>(Layer { std::move(pixels),
        Canvas(bitmap, target.left, target.top), data.state, data.saved.size() }));
    GraphicsState& state = data.state;
    state.alpha = 1;
    state.blend = kCGBlendModeNormal;
    state.shadow.paints = false;
    // The outer shapes cut the finished group; cutting its parts as well would count their soft edges twice.
    state.clipShapes = nullptr;
    state.clipMask = nullptr;
    state.clipBox = target;
}

void endLayer(ContextData& data)
{
    if (data.layers.empty())
        return;
    const std::unique_ptr<Layer> layer = std::move(data.layers.back());
    data.layers.pop_back();
    data.saved.resize(std::min(data.saved.size(), layer->savedDepth));
    data.state = std::move(layer->outer);
    const raster::Bitmap& bitmap = layer->canvas.bitmap();
    layer->canvas.beginDirect();
    if (bitmap.width > 0 && bitmap.height > 0)
        drawPixels(data, bitmap, layer->canvas.left(), layer->canvas.top());
}

}
