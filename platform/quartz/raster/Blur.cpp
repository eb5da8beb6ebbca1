// SPDX-License-Identifier: Apache-2.0
#include "Blur.h"

#include <algorithm>
#include <cmath>

namespace brindle::raster {

namespace {

    constexpr int kPasses = 3;

    /// A running average of a length that need not be whole.
    class Box {
    public:
        explicit Box(double sigma)
        {
            const double variance = sigma * sigma / kPasses;
            reach_ = static_cast<int>(std::sqrt(12 * variance + 1) / 2 - 0.5);
            const double full = 2.0 * reach_ + 1;
            const double next = reach_ + 1;
            edge_ = full * (reach_ * next - 3 * variance) / (6 * (variance - next * next));
            weight_ = 1 / (full + 2 * edge_);
        }
        int reach() const { return reach_ + 1; }

        /// Nothing lies beyond the ends.
        void run(const float* in, float* out, int count) const
        {
            const auto at = [&](int i) { return i >= 0 && i < count ? double { in[i] } : 0.0; };
            double sum = 0;
            for (int i = 0; i < reach_; ++i)
                sum += at(i);
            for (int i = 0; i < count; ++i) {
                sum += at(i + reach_);
                const double ends = at(i - reach_ - 1) + at(i + reach_ + 1);
                out[i] = static_cast<float>((sum + edge_ * ends) * weight_);
                sum -= at(i - reach_);
            }
        }

    private:
        int reach_ = 0; // whole pixels on each side
        double edge_ = 0; // how much the next ones count
        double weight_ = 1;
    };

    struct Plane {
        std::vector<float> values;
        int width;
        int height;

        float* row(int y)
        {
            return values.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
        }
    };

    /// Blurs along the rows and answers the plane turned over its diagonal, so that columns are next.
    Plane blurredAcross(Plane plane, const Box& box)
    {
        Plane turned { std::vector<float>(plane.values.size()), plane.height, plane.width };
        std::vector<float> other(static_cast<std::size_t>(plane.width));
        for (int y = 0; y < plane.height; ++y) {
            float* row = plane.row(y);
            if (std::all_of(row, row + plane.width, [](float value) { return value == 0; }))
                continue;
            box.run(row, other.data(), plane.width);
            box.run(other.data(), row, plane.width);
            box.run(row, other.data(), plane.width);
            for (int x = 0; x < plane.width; ++x)
                turned.row(x)[y] = other[static_cast<std::size_t>(x)];
        }
        return turned;
    }

}

int blurReach(double sigma) { return sigma > 0 ? kPasses * Box(sigma).reach() : 0; }

Stencil blurred(const Stencil& stencil, double sigma)
{
    if (stencil.isEmpty() || !(sigma > 0))
        return stencil;
    const Box box(sigma);
    const int reach = blurReach(sigma);
    Stencil result { {}, stencil.left - reach, stencil.top - reach, stencil.width + 2 * reach,
        stencil.height + 2 * reach };
    const std::size_t count
        = static_cast<std::size_t>(result.width) * static_cast<std::size_t>(result.height);
    Plane plane { std::vector<float>(count), result.width, result.height };
    for (int y = 0; y < stencil.height; ++y) {
        const std::uint8_t* from = stencil.coverage.data()
            + static_cast<std::size_t>(y) * static_cast<std::size_t>(stencil.width);
        std::copy(from, from + stencil.width, plane.row(y + reach) + reach);
    }
    plane = blurredAcross(blurredAcross(std::move(plane), box), box);
    result.coverage.resize(count);
    std::transform(plane.values.begin(), plane.values.end(), result.coverage.begin(),
        [](float value) { return static_cast<std::uint8_t>(std::min(value + 0.5F, 255.0F)); });
    return result;
}

void findSolid(Stencil& stencil)
{
    stencil.solid.resize(static_cast<std::size_t>(std::max(stencil.height, 0)));
    const std::uint8_t* row = stencil.coverage.data();
    for (Stretch& longest : stencil.solid) {
        for (int from = 0, at = 0; at < stencil.width; ++at) {
            if (row[at] != 255)
                from = at + 1;
            else if (at + 1 - from > longest.to - longest.from)
                longest = { from, at + 1 };
        }
        row += stencil.width;
    }
}

Stencil trimmed(const Stencil& stencil)
{
    PixelRect ink { stencil.width, stencil.height, 0, 0 };
    for (int y = 0; y < stencil.height; ++y) {
        const std::uint8_t* row = stencil.coverage.data()
            + static_cast<std::size_t>(y) * static_cast<std::size_t>(stencil.width);
        const auto covers = [](std::uint8_t value) { return value != 0; };
        const auto first = static_cast<int>(std::find_if(row, row + stencil.width, covers) - row);
        if (first == stencil.width)
            continue;
        int last = stencil.width;
        while (row[last - 1] == 0)
            --last;
        ink = { std::min(ink.left, first), std::min(ink.top, y), std::max(ink.right, last), y + 1 };
    }
    if (ink.isEmpty())
        return {};
    Stencil result { {}, stencil.left + ink.left, stencil.top + ink.top, ink.right - ink.left,
        ink.bottom - ink.top };
    for (int y = ink.top; y < ink.bottom; ++y) {
        const auto row = stencil.coverage.begin() + std::ptrdiff_t { y } * stencil.width;
        result.coverage.insert(result.coverage.end(), row + ink.left, row + ink.right);
    }
    return result;
}

}
