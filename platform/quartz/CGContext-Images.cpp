// SPDX-License-Identifier: Apache-2.0
#include "ContextPrivate.h"
#include "ImageScalingPrivate.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace brindle {

using quartz::ContextData;
using quartz::Sampling;
using quartz::Stretch;
using raster::Bitmap;
using raster::PixelRect;

namespace {

    Bitmap bitmapOf(const CGImage& image)
    {
        return { const_cast<raster::Pixel*>(image.pixels()), static_cast<int>(image.width()),
            static_cast<int>(image.height()), static_cast<std::ptrdiff_t>(image.width() * 4) };
    }

    Sampling samplingFor(CGInterpolationQuality quality)
    {
        if (quality == kCGInterpolationNone)
            return Sampling::nearest;
        return quality == kCGInterpolationLow ? Sampling::linear : Sampling::area;
    }

    bool isWhole(double value) { return std::abs(value - std::round(value)) < 1.0 / 512; }

    /// Answers whether each pixel of the image lies exactly on one pixel of the device.
    bool fitsExactly(const Bitmap& image, Stretch across, Stretch down)
    {
        return isWhole(across.from) && isWhole(down.from)
            && std::abs(across.to - across.from - image.width) < 1.0 / 512
            && std::abs(down.to - down.from - image.height) < 1.0 / 512;
    }

    /// Answers whether there is a part of a pixel to be seen, and numbers exact enough to find its place.
    bool makesSense(Stretch stretch)
    {
        constexpr double kLeast = 1e-6; // pixels
        constexpr double kMost = 1e9;
        return std::abs(stretch.from) < kMost && std::abs(stretch.to) < kMost
            && std::abs(stretch.to - stretch.from) > kLeast;
    }

    void drawUpright(ContextData& data, const Bitmap& image, Stretch across, Stretch down)
    {
        if (fitsExactly(image, across, down) && std::abs(across.from) < 1e6
            && std::abs(down.from) < 1e6)
            return quartz::drawPixels(data, image, static_cast<int>(std::round(across.from)),
                static_cast<int>(std::round(down.from)));
        const CGRect box { { std::min(across.from, across.to), std::min(down.from, down.to) },
            { std::abs(across.to - across.from), std::abs(down.to - down.from) } };
        const PixelRect visible = intersection(quartz::touchedPixels(box), data.state.clipBox);
        if (visible.isEmpty() || !makesSense(across) || !makesSense(down))
            return;
        quartz::ScaledImage scaled = quartz::scaleImage(
            image, across, down, visible, samplingFor(data.state.interpolation));
        quartz::drawPixels(data, scaled.bitmap(), scaled.left, scaled.top);
    }

    // ---- turned and slanted images

    struct TurnedJob {
        Bitmap image;
        CGAffineTransform toDevice; // from the image's pixels, top row first
        double alpha;
        bool nearest;

        static void source(cairo_t* cr, const void* info)
        {
            const auto& job = *static_cast<const TurnedJob*>(info);
            const quartz::Cairo<cairo_surface_t> surface = quartz::surfaceOf(job.image, job.alpha);
            const quartz::Cairo<cairo_pattern_t> pattern(
                cairo_pattern_create_for_surface(surface.get()));
            cairo_pattern_set_extend(pattern.get(), CAIRO_EXTEND_PAD);
            cairo_pattern_set_filter(
                pattern.get(), job.nearest ? CAIRO_FILTER_NEAREST : CAIRO_FILTER_BILINEAR);
            const cairo_matrix_t inverse
                = quartz::matrixFrom(CGAffineTransformInvert(job.toDevice));
            cairo_pattern_set_matrix(pattern.get(), &inverse);
            cairo_set_source(cr, pattern.get());
        }
        static void outline(cairo_t* cr, const void* info)
        {
            const auto& job = *static_cast<const TurnedJob*>(info);
            quartz::PathData path;
            path.rect(CGRectMake(0, 0, job.image.width, job.image.height), job.toDevice);
            quartz::tracePath(cr, path);
        }
        static void paint(cairo_t* cr, const void*)
        {
            cairo_fill(cr);
            cairo_set_source_rgba(cr, 0, 0, 0, 0); // lets go of the lent pixels
        }
    };

    /// Answers the image made as small as it will be shown, so that no pixel of it is passed over.
    quartz::ScaledImage shrunk(const Bitmap& image, const CGAffineTransform& t)
    {
        const auto side = [](int length, double scale) {
            return static_cast<int>(
                std::clamp(std::ceil(length * scale), 1.0, static_cast<double>(length)));
        };
        const int width = side(image.width, std::hypot(t.a, t.b));
        const int height = side(image.height, std::hypot(t.c, t.d));
        return quartz::scaleImage(image, { 0, static_cast<double>(width) },
            { 0, static_cast<double>(height) }, { 0, 0, width, height }, Sampling::area);
    }

    void drawTurned(ContextData& data, const Bitmap& image, const CGAffineTransform& toDevice)
    {
        if (!quartz::isUsable(toDevice))
            return;
        const Sampling sampling = samplingFor(data.state.interpolation);
        quartz::ScaledImage small;
        TurnedJob job { image, toDevice, data.state.alpha, sampling == Sampling::nearest };
        if (sampling == Sampling::area) {
            small = shrunk(image, toDevice);
            job.image = small.bitmap();
            job.toDevice
                = CGAffineTransformScale(toDevice, static_cast<double>(image.width) / small.width,
                    static_cast<double>(image.height) / small.height);
        }
        if (!quartz::isUsable(job.toDevice))
            return;
        const CGRect box = CGRectApplyAffineTransform(
            CGRectMake(0, 0, job.image.width, job.image.height), job.toDevice);
        const quartz::PenJob step { quartz::touchedPixels(box), &job, TurnedJob::source,
            TurnedJob::outline, TurnedJob::paint };
        quartz::castShadow(data, step);
        const quartz::ShadowPause plain(data.state);
        quartz::runJob(data, step);
    }

}

void CGContextDrawImage(CGContextRef context, CGRect rect, CGImageRef image)
{
    ContextData* const data = quartz::dataOf(context);
    if (!data || !image || CGRectIsEmpty(rect))
        return;
    const Bitmap bitmap = bitmapOf(*image);
    const CGAffineTransform& t = data->state.toDevice;
    const CGRect r = CGRectStandardize(rect);
    if (data->state.isScaleAndMove()) {
        // The image's first row lies at the greatest y.
        const Stretch across { r.origin.x * t.a + t.tx, NSMaxX(r) * t.a + t.tx };
        const Stretch down { NSMaxY(r) * t.d + t.ty, r.origin.y * t.d + t.ty };
        return drawUpright(*data, bitmap, across, down);
    }
    const CGAffineTransform fromPixels { r.size.width / bitmap.width, 0, 0,
        -r.size.height / bitmap.height, r.origin.x, NSMaxY(r) };
    drawTurned(*data, bitmap, CGAffineTransformConcat(fromPixels, t));
}

namespace {

    /// Answers a group's pixels as coverage.
    raster::Stencil stencilOf(const quartz::Canvas& canvas, int shift)
    {
        const Bitmap& bitmap = canvas.bitmap();
        raster::Stencil stencil { {}, canvas.left(), canvas.top(), bitmap.width, bitmap.height };
        for (int y = 0; y < bitmap.height; ++y) {
            const raster::Pixel* row = bitmap.row(y);
            std::transform(row, row + bitmap.width, std::back_inserter(stencil.coverage),
                [shift](raster::Pixel pixel) { return static_cast<std::uint8_t>(pixel >> shift); });
        }
        return stencil;
    }

}

void CGContextClipToMask(CGContextRef context, CGRect rect, CGImageRef mask)
{
    ContextData* const data = quartz::dataOf(context);
    if (!data || !mask)
        return;
    if (CGRectIsEmpty(rect))
        return data->state.clipAll();
    const bool gray
        = CGColorSpaceGetModel(CGImageGetColorSpace(mask)) == kCGColorSpaceModelMonochrome
        && CGImageGetAlphaInfo(mask) == kCGImageAlphaNone;
    const quartz::GraphicsState outer = data->state;
    const CGRect device = CGRectApplyAffineTransform(rect, outer.toDevice);
    data->state.shadow.paints = false;
    quartz::beginLayer(*data, quartz::touchedPixels(device));
    CGContextDrawImage(context, rect, mask);
    const std::unique_ptr<quartz::Layer> layer = std::move(data->layers.back());
    data->layers.pop_back();
    data->state = outer;
    layer->canvas.beginDirect();
    quartz::clipToStencil(*data, stencilOf(layer->canvas, gray ? 0 : 24));
}

}
