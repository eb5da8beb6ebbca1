// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdlib>
#include <functional>
#include <memory>
#include <vector>

#include <cairo/cairo.h>

#include <gtest/gtest.h>

#include "quartz/raster/Bitmap.h"

namespace brindle::raster {

/// One picture drawn twice: by the direct road and by Cairo, from the same colourful ground.
class RasterTwin {
public:
    using DrawDirectly = std::function<void(const Bitmap&)>;
    using DrawByCairo = std::function<void(cairo_t*)>;

    RasterTwin(int width, int height)
        : direct_(ground(width, height))
        , cairo_(ground(width, height))
        , width_(width)
        , height_(height)
    {
    }

    /// Answers the largest difference of one channel between the two pictures.
    int difference(const DrawDirectly& drawDirectly, const DrawByCairo& drawByCairo)
    {
        drawDirectly(view(direct_));
        const std::unique_ptr<cairo_surface_t, void (*)(cairo_surface_t*)> surface(
            cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(cairo_.data()),
                CAIRO_FORMAT_ARGB32, width_, height_, width_ * 4),
            cairo_surface_destroy);
        const std::unique_ptr<cairo_t, void (*)(cairo_t*)> context(
            cairo_create(surface.get()), cairo_destroy);
        drawByCairo(context.get());
        cairo_surface_flush(surface.get());
        int largest = 0;
        for (std::size_t i = 0; i < direct_.size(); ++i)
            largest = std::max(largest, channelDifference(direct_[i], cairo_[i]));
        return largest;
    }

    Pixel at(int x, int y) const { return direct_[static_cast<std::size_t>(y * width_ + x)]; }

private:
    static std::vector<Pixel> ground(int width, int height)
    {
        std::vector<Pixel> pixels;
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                const Color color { (x * 37 % 256) / 255.0, (y * 59 % 256) / 255.0,
                    ((x + y) * 13 % 256) / 255.0, (x * y * 7 % 256) / 255.0 };
                pixels.push_back(pixelFromColor(color));
            }
        }
        return pixels;
    }

    Bitmap view(std::vector<Pixel>& pixels) const
    {
        return { pixels.data(), width_, height_, width_ * 4 };
    }

    static int channelDifference(Pixel a, Pixel b)
    {
        int largest = 0;
        for (int shift = 0; shift < 32; shift += 8) {
            const int first = static_cast<int>(a >> shift & 0xFF);
            const int second = static_cast<int>(b >> shift & 0xFF);
            largest = std::max(largest, std::abs(first - second));
        }
        return largest;
    }

    std::vector<Pixel> direct_;
    std::vector<Pixel> cairo_;
    int width_;
    int height_;
};

}
