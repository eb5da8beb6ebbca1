// SPDX-License-Identifier: Apache-2.0
#include <array>
#include <cstring>

#include "RasterFloors.h"
#include "quartz/raster/Blit.h"
#include "quartz/raster/Fill.h"
#include "support/Measure.h"
#include "support/Topics.h"

namespace brindle::bench {

namespace {

    using raster::Bitmap;
    using raster::Blend;
    using raster::Color;
    using raster::Pixel;

    constexpr int kWidth = 256;
    constexpr int kHeight = 128;
    constexpr int kLeft = 20;
    constexpr int kTop = 30;
    constexpr int kAcross = 60;
    constexpr int kDown = 20;
    constexpr raster::DeviceRect kRect { kLeft, kTop, kAcross, kDown };

    /// Pixels of its own.
    struct Picture {
        explicit Picture(int width, int height, Pixel pixel = 0xFFFFFFFF)
            : pixels(static_cast<std::size_t>(width * height), pixel)
            , bitmap { pixels.data(), width, height, width * 4 }
        {
        }
        Picture(const Picture&) = delete;
        Picture& operator=(const Picture&) = delete;

        std::vector<Pixel> pixels;
        Bitmap bitmap;
    };

    std::shared_ptr<Picture> makeCanvas() { return std::make_shared<Picture>(kWidth, kHeight); }

    /// Runs `paint` for each row of the rectangle, with the row's first pixel and its number.
    template <class Paint> Sample rowByRow(Paint paint)
    {
        return repeated([canvas = makeCanvas(), paint](std::size_t) {
            for (int y = 0; y < kDown; ++y)
                paint(canvas->bitmap.row(kTop + y) + kLeft, y);
            keep(canvas->pixels.data());
        });
    }

    Pair solid(const Color& color)
    {
        const Pixel pixel = raster::pixelFromColor(color);
        return { repeated([=, canvas = makeCanvas()](std::size_t) {
                    fillRect(canvas->bitmap, kRect, bounds(canvas->bitmap), color, Blend::over);
                }),
            rowByRow([pixel](Pixel* row, int) { floors::fill(row, kAcross, pixel); }) };
    }

    Pair blended(const Color& color)
    {
        const Pixel pixel = raster::pixelFromColor(color);
        return { repeated([=, canvas = makeCanvas()](std::size_t) {
                    fillRect(canvas->bitmap, kRect, bounds(canvas->bitmap), color, Blend::over);
                }),
            rowByRow([pixel](Pixel* row, int) { floors::blend(row, kAcross, pixel); }) };
    }

    Pair gradient()
    {
        const auto stops = std::make_shared<std::array<raster::GradientStop, 2>>();
        (*stops)[0] = { 0, { 0.2, 0.4, 0.9, 1 } };
        (*stops)[1] = { 1, { 0.1, 0.2, 0.5, 1 } };
        const auto ours = [stops, canvas = makeCanvas()](std::size_t) {
            const raster::Gradient gradient { raster::GradientAxis::vertical, kTop, kTop + kDown,
                *stops };
            fillGradient(canvas->bitmap, kRect, bounds(canvas->bitmap), gradient, Blend::over);
        };
        const auto floor = [stops](Pixel* row, int y) {
            const Color& from = (*stops)[0].color;
            const Color& to = (*stops)[1].color;
            const double place = (y + 0.5) / kDown;
            const auto part = [place](double a, double b) {
                return static_cast<Pixel>((a + (b - a) * place) * 255 + 0.5);
            };
            const Pixel pixel = 0xFF000000 | part(from.red, to.red) << 16
                | part(from.green, to.green) << 8 | part(from.blue, to.blue);
            floors::fill(row, kAcross, pixel);
        };
        return { repeated(ours), rowByRow(floor) };
    }

    Pair image(Pixel pixel, Blend blend)
    {
        const auto source = std::make_shared<Picture>(64, 64, pixel);
        return { repeated([source, blend, canvas = makeCanvas()](std::size_t) {
                    drawImage(
                        canvas->bitmap, source->bitmap, kLeft, kTop, bounds(canvas->bitmap), blend);
                }),
            repeated([source, canvas = makeCanvas()](std::size_t) {
                for (int y = 0; y < 64; ++y)
                    std::memcpy(
                        canvas->bitmap.row(kTop + y) + kLeft, source->bitmap.row(y), 64 * 4);
                keep(canvas->pixels.data());
            }) };
    }

}

void addRaster(Plan& plan)
{
    plan.time("rectangle 60 x 20, solid, beside a loop", timesFloor(1.6), [] {
        return solid({ 0.2, 0.4, 0.9, 1 });
    });
    plan.time("rectangle 60 x 20, half transparent, beside a loop", timesFloor(1.5), [] {
        return blended({ 0.2, 0.4, 0.9, 0.5 });
    });
    plan.time("rectangle 60 x 20, vertical gradient, beside a loop", timesFloor(3), gradient);
    plan.time("image 64 x 64, unscaled, transparent, beside a copy", atMost(1300),
        [] { return image(0x80404040, Blend::over); });
    plan.time("image 64 x 64, unscaled, opaque, beside a copy", atMost(1300),
        [] { return image(0xFF404040, Blend::copy); });
}

}
