// SPDX-License-Identifier: Apache-2.0
#include "FilterPixelsPrivate.h"

#include <array>

namespace brindle::quartz {

void invert(FilterPixels& pixels)
{
    // (1 - c) times alpha is alpha minus the multiplied part, for all parts at once.
    for (std::uint32_t& word : pixels.words) {
        const std::uint32_t alpha = word >> 24;
        word = alpha << 24 | (alpha * 0x010101 - (word & 0xFFFFFF));
    }
}

namespace {

    /// Replaces each word of a line by the average of those within `reach`; beyond the ends lies nothing.
    void average(std::uint32_t* line, std::ptrdiff_t count, std::ptrdiff_t step,
        std::ptrdiff_t reach, std::vector<std::uint32_t>& copy)
    {
        copy.resize(static_cast<std::size_t>(count));
        for (std::ptrdiff_t i = 0; i < count; ++i)
            copy[static_cast<std::size_t>(i)] = line[i * step];
        std::array<std::uint64_t, 4> sums {};
        const auto add = [&](std::ptrdiff_t i, int sign) {
            if (i < 0 || i >= count)
                return;
            const std::uint32_t word = copy[static_cast<std::size_t>(i)];
            for (unsigned part = 0; part < 4; ++part) {
                const std::uint64_t level = word >> 8 * part & 0xFF;
                sums[part] += sign > 0 ? level : -level;
            }
        };
        for (std::ptrdiff_t i = 0; i < reach; ++i)
            add(i, 1);
        const auto width = static_cast<std::uint64_t>(2 * reach + 1);
        for (std::ptrdiff_t i = 0; i < count; ++i) {
            add(i + reach, 1);
            std::uint32_t word = 0;
            for (unsigned part = 0; part < 4; ++part)
                word |= static_cast<std::uint32_t>((sums[part] + width / 2) / width) << 8 * part;
            line[i * step] = word;
            add(i - reach, -1);
        }
    }

}

void blur(FilterPixels& pixels, double deviation)
{
    // Three averages of width w have the variance (w * w - 1) / 4. Widths are odd: some take the one below, the others
    // the one above, so that the variance is met as nearly as can be.
    const double variance = deviation * deviation;
    const auto below = static_cast<std::ptrdiff_t>((std::sqrt(4 * variance + 1) - 1) / 2);
    const auto width = static_cast<double>(2 * below + 1);
    const double narrow = (3 * width * width + 12 * width + 9 - 12 * variance) / (4 * width + 4);
    std::vector<std::uint32_t> copy;
    for (int pass = 0; pass < 3; ++pass) {
        const std::ptrdiff_t reach = pass < std::lround(narrow) ? below : below + 1;
        for (std::ptrdiff_t y = 0; y < pixels.height; ++y)
            average(pixels.words.data() + y * pixels.width, pixels.width, 1, reach, copy);
        for (std::ptrdiff_t x = 0; x < pixels.width; ++x)
            average(pixels.words.data() + x, pixels.height, pixels.width, reach, copy);
    }
}

}
