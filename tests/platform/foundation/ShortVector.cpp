// SPDX-License-Identifier: Apache-2.0
#include "foundation/ShortVector.h"

#include <numeric>

#include <gtest/gtest.h>

#include "support/Allocations.h"

namespace brindle {

namespace {

    TEST(ShortVector, AFewElementsAskForNoMemory)
    {
        const std::size_t before = test::allocationsMade();
        ShortVector<double, 8> numbers;
        for (int i = 0; i < 8; ++i)
            numbers.push_back(i);
        EXPECT_EQ(test::allocationsMade(), before);
        EXPECT_EQ(numbers.size(), 8u);
    }

    TEST(ShortVector, MoreThanAFewStandToo)
    {
        ShortVector<int, 4> numbers;
        for (int i = 0; i < 1000; ++i)
            numbers.push_back(i);
        EXPECT_EQ(std::accumulate(numbers.begin(), numbers.end(), 0), 499'500);
    }

    TEST(ShortVector, ElementsComeBackIntoItsOwnRoom)
    {
        ShortVector<int, 4> numbers;
        numbers.resize(5, 7);
        numbers.resize(2);
        const std::size_t before = test::allocationsMade();
        numbers.shrink_to_fit();
        EXPECT_EQ(test::allocationsMade(), before);
        EXPECT_EQ(numbers.size(), 2u);
        EXPECT_EQ(numbers.back(), 7);
    }

    TEST(ShortVector, TakesTheElementsOfAnotherList)
    {
        const std::vector<int> list { 3, 1, 2 };
        const ShortVector<int, 2> copy(list.begin(), list.end());
        EXPECT_TRUE(std::equal(copy.begin(), copy.end(), list.begin(), list.end()));
    }

}

}
