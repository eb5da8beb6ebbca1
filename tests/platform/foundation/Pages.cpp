// SPDX-License-Identifier: Apache-2.0
#include "foundation/Pages.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>

using namespace brindle;

TEST(Pages, RoundToWholePages)
{
    EXPECT_EQ(NSRoundUpToMultipleOfPageSize(1), NSPageSize());
    EXPECT_EQ(NSRoundUpToMultipleOfPageSize(NSPageSize()), NSPageSize());
    EXPECT_EQ(NSRoundDownToMultipleOfPageSize(NSPageSize() + 1), NSPageSize());
    EXPECT_EQ(NSUInteger { 1 } << NSLogPageSize(), NSPageSize());
}

TEST(Pages, BeginAsZeroAndCanBeWrittenToTheirEnd)
{
    auto* const pages = static_cast<char*>(NSAllocateMemoryPages(10));
    ASSERT_NE(pages, nullptr);
    EXPECT_TRUE(std::all_of(pages, pages + NSPageSize(), [](char byte) { return byte == 0; }));
    std::memset(pages, 1, NSPageSize());
    NSDeallocateMemoryPages(pages, 10);
}

TEST(Pages, AreRefusedWhenThereIsNoRoom)
{
    EXPECT_EQ(NSAllocateMemoryPages(~NSUInteger { 0 } - 5), nullptr);
    NSDeallocateMemoryPages(nullptr, 10);
}
