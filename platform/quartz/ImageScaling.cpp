// SPDX-License-Identifier: Apache-2.0
#include "ImageScalingPrivate.h"

#include "raster/PixelMath.h"

#include <algorithm>
#include <cmath>

namespace brindle::quartz {

namespace {

    using raster::Pixel;
    // Alpha, red, green and blue side by side.
    using Parts = float __attribute__((vector_size(16)));

    Parts partsOf(Pixel p)
    {
        return Parts { static_cast<float>(p >> 24), static_cast<float>(p >> 16 & 0xFF),
            static_cast<float>(p >> 8 & 0xFF), static_cast<float>(p & 0xFF) };
    }

    Pixel pixelOf(Parts p)
    {
        const auto byte
            = [](float part) { return static_cast<Pixel>(std::clamp(part + 0.5F, 0.0F, 255.0F)); };
        return byte(p[0]) << 24 | byte(p[1]) << 16 | byte(p[2]) << 8 | byte(p[3]);
    }

    /// Which pixels of the image make one new pixel, and how much each counts.
    struct Taps {
        int first = 0;
        int count = 0;
        std::size_t weights = 0; // index of the first
    };

    /// The taps of all new pixels along one axis.
    class Axis {
    public:
        Axis(int length, Stretch stretch, int begin, int end, Sampling sampling)
            : length_(length)
            , stretch_(stretch)
            , scale_(length / (stretch.to - stretch.from))
        {
            low_ = std::min(stretch.from, stretch.to);
            high_ = std::max(stretch.from, stretch.to);
            const bool shrinks = std::abs(scale_) > 1;
            for (int i = begin; i < end; ++i) {
                const double a = std::max<double>(i, low_);
                const double b = std::min<double>(i + 1.0, high_);
                if (sampling == Sampling::area && shrinks)
                    addArea(a, b);
                else if (sampling == Sampling::nearest)
                    addNearest(a, b);
                else
                    addLinear(a, b);
            }
        }

        const Taps& operator[](int i) const { return taps_[static_cast<std::size_t>(i)]; }
        const float* weights(const Taps& taps) const { return weights_.data() + taps.weights; }

    private:
        double sourceOf(double device) const { return (device - stretch_.from) * scale_; }
        int bounded(double index) const
        {
            return static_cast<int>(std::clamp(index, 0.0, static_cast<double>(length_ - 1)));
        }
        void start(int first) { taps_.push_back({ first, 0, weights_.size() }); }
        void add(double weight)
        {
            weights_.push_back(static_cast<float>(weight));
            ++taps_.back().count;
        }

        void addArea(double a, double b)
        {
            const double from = std::min(sourceOf(a), sourceOf(b));
            const double to = std::max(sourceOf(a), sourceOf(b));
            const int first = bounded(std::floor(from));
            const int last = bounded(std::ceil(to) - 1);
            start(first);
            const double whole = std::abs(scale_); // source pixels in one full new pixel
            for (int i = first; i <= last; ++i)
                add(std::max(0.0, std::min(to, i + 1.0) - std::max(from, static_cast<double>(i)))
                    / whole);
        }

        void addNearest(double a, double b)
        {
            start(bounded(std::floor(sourceOf((a + b) / 2))));
            add(std::max(0.0, b - a));
        }

        void addLinear(double a, double b)
        {
            const double cover = std::max(0.0, b - a);
            const double at = sourceOf((a + b) / 2) - 0.5;
            const double base = std::floor(at);
            const int first = bounded(base);
            start(first);
            if (bounded(base + 1) == first)
                return add(cover);
            add(cover * (1 - (at - base)));
            add(cover * (at - base));
        }

        int length_;
        Stretch stretch_;
        double scale_;
        double low_ = 0;
        double high_ = 0;
        std::vector<Taps> taps_;
        std::vector<float> weights_;
    };

    void scaleRow(const Pixel* source, const Axis& axis, std::vector<Parts>& out)
    {
        for (std::size_t i = 0; i < out.size(); ++i) {
            const Taps& taps = axis[static_cast<int>(i)];
            const float* weight = axis.weights(taps);
            Parts sum {};
            for (int k = 0; k < taps.count; ++k)
                sum += partsOf(source[taps.first + k]) * weight[k];
            out[i] = sum;
        }
    }

    /// The rows of the image at their new width; enlarging asks for the same two again and again.
    class Rows {
    public:
        Rows(const raster::Bitmap& image, const Axis& axis, std::size_t width)
            : image_(image)
            , axis_(axis)
            , kept_ { { -1, std::vector<Parts>(width) }, { -1, std::vector<Parts>(width) } }
        {
        }
        const std::vector<Parts>& operator[](int y)
        {
            Kept& kept = kept_[static_cast<std::size_t>(y & 1)];
            if (kept.row != y) {
                scaleRow(image_.row(y), axis_, kept.parts);
                kept.row = y;
            }
            return kept.parts;
        }

    private:
        struct Kept {
            int row;
            std::vector<Parts> parts;
        };
        const raster::Bitmap& image_;
        const Axis& axis_;
        Kept kept_[2];
    };

}

namespace {

    /// Answers whether every new pixel is made of two by two of the image.
    bool isHalving(const raster::Bitmap& image, Stretch across, Stretch down, Sampling sampling)
    {
        const auto isHalf = [](Stretch stretch, int length) {
            return stretch.to - stretch.from == length / 2.0 && length % 2 == 0
                && stretch.from == std::floor(stretch.from) && std::abs(stretch.from) < 1 << 20;
        };
        return sampling == Sampling::area && isHalf(across, image.width)
            && isHalf(down, image.height);
    }

    /// Four sums of two by two pixels, a part in each half of a word.
    struct Sums {
        raster::Pixels4 even;
        raster::Pixels4 odd;

        static Sums of(const Pixel* upper, const Pixel* lower)
        {
            constexpr Pixel kEven = 0x00FF00FF;
            const auto columns = [&](int at) {
                const raster::Pixels4 a = raster::loadPixels(upper + at);
                const raster::Pixels4 b = raster::loadPixels(lower + at);
                return Sums { (a & kEven) + (b & kEven), (a >> 8 & kEven) + (b >> 8 & kEven) };
            };
            const auto neighbours = [](raster::Pixels4 one, raster::Pixels4 other) {
                return __builtin_shufflevector(one, other, 0, 2, 4, 6)
                    + __builtin_shufflevector(one, other, 1, 3, 5, 7);
            };
            const Sums left = columns(0);
            const Sums right = columns(4);
            return { neighbours(left.even, right.even), neighbours(left.odd, right.odd) };
        }
        raster::Pixels4 means() const
        {
            constexpr Pixel kEven = 0x00FF00FF;
            constexpr Pixel kHalf = 0x00020002;
            return (((even + kHalf) >> 2) & kEven) | ((((odd + kHalf) >> 2) & kEven) << 8);
        }
    };

    Pixel meanOf(Pixel a, Pixel b, Pixel c, Pixel d)
    {
        const Pixel upper[] = { a, b, 0, 0, 0, 0, 0, 0 };
        const Pixel lower[] = { c, d, 0, 0, 0, 0, 0, 0 };
        return Sums::of(upper, lower).means()[0];
    }

    void halve(const raster::Bitmap& image, int left, int top, ScaledImage& out)
    {
        out.pixels.resize(
            static_cast<std::size_t>(out.width) * static_cast<std::size_t>(out.height));
        Pixel* to = out.pixels.data();
        for (int y = 0; y < out.height; ++y) {
            const Pixel* upper = image.row(2 * (top + y)) + 2 * left;
            const Pixel* lower = image.row(2 * (top + y) + 1) + 2 * left;
            int x = 0;
            for (; x + 4 <= out.width; x += 4, to += 4)
                raster::storePixels(to, Sums::of(upper + 2 * x, lower + 2 * x).means());
            for (; x < out.width; ++x, ++to)
                *to = meanOf(upper[2 * x], upper[2 * x + 1], lower[2 * x], lower[2 * x + 1]);
        }
    }

}

ScaledImage scaleImage(const raster::Bitmap& image, Stretch across, Stretch down,
    raster::PixelRect visible, Sampling sampling)
{
    ScaledImage scaled { {}, visible.left, visible.top, visible.right - visible.left,
        visible.bottom - visible.top };
    if (visible.isEmpty())
        return {};
    if (isHalving(image, across, down, sampling)) {
        halve(image, visible.left - static_cast<int>(across.from),
            visible.top - static_cast<int>(down.from), scaled);
        return scaled;
    }
    const Axis horizontal(image.width, across, visible.left, visible.right, sampling);
    const Axis vertical(image.height, down, visible.top, visible.bottom, sampling);
    const auto width = static_cast<std::size_t>(scaled.width);
    scaled.pixels.resize(width * static_cast<std::size_t>(scaled.height));
    Rows rows(image, horizontal, width);
    std::vector<Parts> sum(width);
    for (int y = 0; y < scaled.height; ++y) {
        std::fill(sum.begin(), sum.end(), Parts {});
        const Taps& taps = vertical[y];
        for (int k = 0; k < taps.count; ++k) {
            const std::vector<Parts>& row = rows[taps.first + k];
            const float weight = vertical.weights(taps)[k];
            for (std::size_t x = 0; x < width; ++x)
                sum[x] += row[x] * weight;
        }
        Pixel* out = scaled.pixels.data() + static_cast<std::size_t>(y) * width;
        std::transform(sum.begin(), sum.end(), out, pixelOf);
    }
    return scaled;
}

}
