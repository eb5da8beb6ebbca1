// SPDX-License-Identifier: Apache-2.0
#include "quartz/raster/Blur.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

namespace brindle::raster {

namespace {

    Stencil block(int width, int height)
    {
        return { std::vector<std::uint8_t>(static_cast<std::size_t>(width * height), 255), 10, 20,
            width, height };
    }

    int at(const Stencil& stencil, int x, int y)
    {
        return stencil.coverage[static_cast<std::size_t>(
            (y - stencil.top) * stencil.width + x - stencil.left)];
    }

}

TEST(RasterBlur, EdgeIsThatOfAGaussian)
{
    for (const double sigma : { 0.5, 1.0, 1.5, 3.0, 6.82, 20.0 }) {
        const Stencil soft = blurred(block(300, 300), sigma);
        double sum = 0;
        for (int i = -140; i <= 140; ++i)
            sum += std::exp(-i * i / (2 * sigma * sigma));
        double covered = 0; // by the pixels from 10 on, as seen from the pixel x beside the edge
        for (int x = -140; x <= 20; ++x) {
            covered += 255 * std::exp(-x * x / (2 * sigma * sigma)) / sum;
            const bool reached = 10 + x >= soft.left;
            EXPECT_NEAR(reached ? at(soft, 10 + x, 170) : 0, covered, 3) << sigma << " " << x;
        }
    }
}

TEST(RasterBlur, KeepsTheWholeOfTheCoverage)
{
    const Stencil soft = blurred(block(20, 10), 2.5);
    const int sum = std::accumulate(soft.coverage.begin(), soft.coverage.end(), 0);
    EXPECT_NEAR(sum, 255 * 20 * 10, 255 * 20 * 10 / 100);
}

TEST(RasterBlur, IsTheSameInAllDirections)
{
    const Stencil soft = blurred(block(7, 7), 2);
    for (int y = 0; y < soft.height; ++y) {
        for (int x = 0; x < soft.width; ++x) {
            const int value = at(soft, soft.left + x, soft.top + y);
            EXPECT_EQ(value, at(soft, soft.left + y, soft.top + x));
            EXPECT_EQ(value, at(soft, soft.left + soft.width - 1 - x, soft.top + y));
        }
    }
}

TEST(RasterBlur, NothingReachesFurtherThanItSays)
{
    const Stencil soft = blurred(block(5, 5), 4);
    const int reach = blurReach(4);
    EXPECT_EQ(soft.left, 10 - reach);
    EXPECT_EQ(soft.width, 5 + 2 * reach);
    EXPECT_EQ(at(soft, soft.left, soft.top), 0);
}

TEST(RasterBlur, WithoutSigmaChangesNothing)
{
    const Stencil sharp = block(3, 3);
    EXPECT_EQ(blurred(sharp, 0).coverage, sharp.coverage);
    EXPECT_EQ(blurred(sharp, -1).coverage, sharp.coverage);
    EXPECT_EQ(blurred(sharp, std::nan("")).coverage, sharp.coverage);
}

TEST(RasterBlur, TrimmedStencilKeepsItsPlace)
{
    Stencil wide { std::vector<std::uint8_t>(100), 0, 0, 10, 10 };
    wide.coverage[34] = 9;
    wide.coverage[56] = 7;
    const Stencil small = trimmed(wide);
    EXPECT_EQ(small.left, 4);
    EXPECT_EQ(small.top, 3);
    EXPECT_EQ(small.width, 3);
    EXPECT_EQ(small.height, 3);
    EXPECT_EQ(at(small, 4, 3), 9);
    EXPECT_EQ(at(small, 6, 5), 7);
    EXPECT_TRUE(trimmed({ std::vector<std::uint8_t>(4), 0, 0, 2, 2 }).isEmpty());
}

}
