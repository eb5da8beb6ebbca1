// SPDX-License-Identifier: Apache-2.0
#include "foundation/lists/BlockRowPrivate.h"

#include <gtest/gtest.h>

using brindle::kObjectBlock;
using brindle::lists::BlockRow;

namespace {

constexpr std::size_t kEach = kObjectBlock / sizeof(int);

BlockRow<int> counting(std::size_t count)
{
    BlockRow<int> row;
    for (std::size_t i = 0; i < count; ++i)
        row.add(static_cast<int>(i));
    return row;
}

std::size_t firstThatIsNot(const BlockRow<int>& row)
{
    std::size_t i = 0;
    while (i < row.size() && row[i] == static_cast<int>(i))
        ++i;
    return i;
}

}

TEST(BlockRow, KeepsElementsOverSeveralBlocks)
{
    const BlockRow<int> row = counting(2 * kEach + 100);
    ASSERT_EQ(row.size(), 2 * kEach + 100);
    EXPECT_EQ(firstThatIsNot(row), row.size());
}

TEST(BlockRow, GoesOnWhereItWasCut)
{
    for (const std::size_t cut : { std::size_t { 0 }, std::size_t { 3 }, kEach - 1, kEach }) {
        BlockRow<int> row = counting(kEach + 5);
        row.cutTo(cut);
        while (row.size() < kEach + 9)
            row.add(static_cast<int>(row.size()));
        EXPECT_EQ(firstThatIsNot(row), kEach + 9) << cut;
    }
}

TEST(BlockRow, WipesWhatItBeginsWith)
{
    for (const std::size_t count : { std::size_t { 0 }, std::size_t { 1 }, kEach, kEach + 1 }) {
        BlockRow<int> row(count);
        ASSERT_EQ(row.size(), count);
        row.wipe();
        for (std::size_t i = 0; i < count; ++i)
            ASSERT_EQ(row[i], 0);
    }
}

TEST(BlockRow, GivesAllOfItAway)
{
    BlockRow<int> row = counting(10);
    BlockRow<int> other = std::move(row);
    other.add(10);
    EXPECT_EQ(firstThatIsNot(other), 11u);
}
