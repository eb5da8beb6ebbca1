// SPDX-License-Identifier: Apache-2.0
#include "appkit/tables/RowHeightsPrivate.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace brindle {

namespace {

    TEST(RowHeights, NoRowsTakeNoRoom)
    {
        const RowHeights rows;
        EXPECT_EQ(rows.total(), 0);
        EXPECT_EQ(rows.rowAt(0), 0U);
        EXPECT_EQ(rows.rowAt(5), 0U);
    }

    TEST(RowHeights, RowsOfOneHeightTakeNoMemory)
    {
        RowHeights rows;
        rows.setUniform(1'000'000'000, 0.1);
        EXPECT_TRUE(rows.isUniform());
        for (const std::size_t row : { 0U, 7U, 12'345'678U, 999'999'999U })
            EXPECT_EQ(rows.rowAt(rows.top(row)), row);
        EXPECT_EQ(rows.rowAt(rows.total()), 1'000'000'000U);
    }

    TEST(RowHeights, WhatIsNoNumberIsBehindTheLastRow)
    {
        RowHeights rows;
        rows.setUniform(3, 10);
        EXPECT_EQ(rows.rowAt(std::nan("")), 3U);
        EXPECT_EQ(rows.rowAt(std::numeric_limits<double>::infinity()), 3U);
        EXPECT_EQ(rows.rowAt(-std::numeric_limits<double>::infinity()), 0U);
    }

    TEST(RowHeights, AgreeWithAPlainListThroughChanges)
    {
        std::mt19937 dice(7);
        std::uniform_real_distribution<double> height(0.1, 40);
        std::vector<double> model(777);
        for (double& h : model)
            h = height(dice);
        RowHeights rows;
        rows.set(model);
        for (int round = 0; round < 500; ++round) {
            const std::size_t changed = dice() % model.size();
            model[changed] = height(dice);
            rows.setHeight(changed, model[changed]);
            const std::size_t asked = dice() % model.size();
            double top = 0;
            for (std::size_t i = 0; i < asked; ++i)
                top += model[i];
            EXPECT_NEAR(rows.top(asked), top, 1e-8);
            EXPECT_EQ(rows.height(asked), model[asked]);
            EXPECT_EQ(rows.rowAt(rows.top(asked)), asked);
            EXPECT_EQ(rows.rowAt(rows.top(asked) + model[asked] / 2), asked);
        }
    }

    TEST(RowHeights, OneOtherHeightSpreadsRowsThatWereAlike)
    {
        RowHeights rows;
        rows.setUniform(100, 20);
        rows.setHeight(50, 30);
        EXPECT_FALSE(rows.isUniform());
        EXPECT_EQ(rows.top(50), 1000);
        EXPECT_EQ(rows.top(51), 1030);
        EXPECT_EQ(rows.total(), 2010);
        rows.setHeight(100, 5);
        EXPECT_EQ(rows.total(), 2010);
    }

}

}
