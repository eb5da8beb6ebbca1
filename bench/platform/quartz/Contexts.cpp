// SPDX-License-Identifier: Apache-2.0
#include <numbers>

#include <cairo.h>

#include "RasterFloors.h"
#include "quartz/CGBitmapContext.h"
#include "quartz/CGColor.h"
#include "quartz/CGContext.h"
#include "quartz/CGGradient.h"
#include "quartz/CGImage.h"
#include "support/Measure.h"
#include "support/Topics.h"

namespace brindle::bench {

namespace {

    constexpr int kWidth = 256;
    constexpr int kHeight = 128;
    constexpr CGRect kRect { { 20, 30 }, { 60, 20 } };
    constexpr double kRadius = 5;

    Ref<CGContext> makeCanvas()
    {
        const Ref<CGContext> canvas = quartz::makeContext(kWidth, kHeight);
        CGContextSetGrayFillColor(canvas.get(), 1, 1);
        CGContextFillRect(canvas.get(), { {}, { kWidth, kHeight } });
        return canvas;
    }

    /// Does something to a row of the rectangle, twenty times.
    template <class Paint> Sample rows(Paint paint)
    {
        const auto pixels = std::make_shared<std::vector<raster::Pixel>>(
            std::size_t { kWidth * kHeight }, 0xFFFFFFFF);
        return repeated([=](std::size_t) {
            for (int y = 0; y < 20; ++y)
                paint(pixels->data() + (30 + y) * kWidth + 20);
            keep(pixels->data());
        });
    }

    Pair fill(double alpha)
    {
        const Ref<CGContext> canvas = makeCanvas();
        CGContextSetRGBFillColor(canvas.get(), 0.2, 0.4, 0.9, alpha);
        const auto ours = [canvas](std::size_t) { CGContextFillRect(canvas.get(), kRect); };
        const raster::Pixel pixel = raster::pixelFromColor({ 0.2, 0.4, 0.9, alpha });
        if (alpha < 1)
            return { repeated(ours),
                rows([pixel](raster::Pixel* row) { floors::blend(row, 60, pixel); }) };
        return { repeated(ours),
            rows([pixel](raster::Pixel* row) { floors::fill(row, 60, pixel); }) };
    }

    Pair gradient()
    {
        const Ref<CGContext> canvas = makeCanvas();
        CGContextClipToRect(canvas.get(), kRect);
        const Ref<CGGradient> colors = quartz::gradientFromStops(
            { { 0, { 0.2, 0.4, 0.9, 1 } }, { 1, { 0.1, 0.2, 0.5, 1 } } });
        const auto ours = [=](std::size_t) {
            CGContextDrawLinearGradient(canvas.get(), colors.get(), { 20, 30 }, { 20, 50 }, 0);
        };
        return { repeated(ours),
            rows([](raster::Pixel* row) { floors::fill(row, 60, 0xFF3366CC); }) };
    }

    void addRounded(CGContextRef context, CGRect r)
    {
        const double right = r.origin.x + r.size.width;
        const double top = r.origin.y + r.size.height;
        const double middle = r.origin.x + r.size.width / 2;
        CGContextBeginPath(context);
        CGContextMoveToPoint(context, middle, r.origin.y);
        CGContextAddArcToPoint(context, right, r.origin.y, right, top, kRadius);
        CGContextAddArcToPoint(context, right, top, r.origin.x, top, kRadius);
        CGContextAddArcToPoint(context, r.origin.x, top, r.origin.x, r.origin.y, kRadius);
        CGContextAddArcToPoint(context, r.origin.x, r.origin.y, right, r.origin.y, kRadius);
        CGContextClosePath(context);
    }

    void addRounded(cairo_t* drawing, CGRect r)
    {
        constexpr double kRight = std::numbers::pi / 2;
        const double left = r.origin.x + kRadius;
        const double right = r.origin.x + r.size.width - kRadius;
        const double top = r.origin.y + kRadius;
        const double bottom = r.origin.y + r.size.height - kRadius;
        cairo_new_path(drawing);
        cairo_arc(drawing, right, top, kRadius, -kRight, 0);
        cairo_arc(drawing, right, bottom, kRadius, 0, kRight);
        cairo_arc(drawing, left, bottom, kRadius, kRight, 2 * kRight);
        cairo_arc(drawing, left, top, kRadius, 2 * kRight, 3 * kRight);
        cairo_close_path(drawing);
    }

    Pair rounded()
    {
        const Ref<CGContext> canvas = makeCanvas();
        CGContextSetRGBFillColor(canvas.get(), 0.2, 0.4, 0.9, 1);
        CGContextSetRGBStrokeColor(canvas.get(), 0.1, 0.2, 0.5, 1);
        const auto ours = [canvas](std::size_t) {
            addRounded(canvas.get(), kRect);
            CGContextDrawPath(canvas.get(), kCGPathFillStroke);
        };
        cairo_surface_t* const surface
            = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, kWidth, kHeight);
        const std::shared_ptr<cairo_t> drawing(cairo_create(surface), &cairo_destroy);
        cairo_surface_destroy(surface);
        cairo_set_line_width(drawing.get(), 1);
        const auto floor = [drawing](std::size_t) {
            addRounded(drawing.get(), kRect);
            cairo_set_source_rgb(drawing.get(), 0.2, 0.4, 0.9);
            cairo_fill_preserve(drawing.get());
            cairo_set_source_rgb(drawing.get(), 0.1, 0.2, 0.5);
            cairo_stroke(drawing.get());
        };
        return { repeated(ours), repeated(floor) };
    }

    Pair shadow()
    {
        const Ref<CGContext> canvas = makeCanvas();
        CGContextSetRGBFillColor(canvas.get(), 0.2, 0.4, 0.9, 1);
        CGContextSetShadow(canvas.get(), { 0, -1 }, 3);
        return { repeated([canvas](std::size_t) {
                    addRounded(canvas.get(), kRect);
                    CGContextFillPath(canvas.get());
                }),
            {} };
    }

    Pair image(double side)
    {
        const std::vector<std::uint32_t> pixels(64 * 64, 0x80404040);
        const Ref<CGImage> picture = quartz::imageFromPixels(pixels.data(), 64, 64, 64 * 4);
        const Ref<CGContext> canvas = makeCanvas();
        return { repeated([=](std::size_t) {
                    CGContextDrawImage(canvas.get(), { { 20, 30 }, { side, side } }, picture.get());
                }),
            {} };
    }

}

void addContexts(Plan& plan)
{
    plan.time("context: rectangle 60 x 20, solid", timesFloor(1.6), [] { return fill(1); });
    plan.time(
        "context: rectangle 60 x 20, half transparent", timesFloor(1.5), [] { return fill(0.5); });
    plan.time("context: rectangle 60 x 20, vertical gradient", timesFloor(3), gradient);
    plan.time(
        "context: rounded rectangle, filled and stroked, beside bare Cairo", atMost(3000), rounded);
    plan.time("context: rounded rectangle with a shadow, blur 3", atMost(2200), shadow);
    plan.time("context: image 64 x 64, unscaled", atMost(1300), [] { return image(64); });
    plan.time("context: image 64 x 64 to 32 x 32", atMost(3000), [] { return image(32); });
}

}
