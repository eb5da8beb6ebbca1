// SPDX-License-Identifier: Apache-2.0
#include "runtime/ObjectMemory.h"

#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

#include "runtime/Runtime.h"
#include "runtime/Table.h"
#include "support/Sanitizers.h"

using namespace brindle;

namespace {

constexpr std::size_t kBlock = std::size_t { 2 } << 20;

/// Takes pieces of 64 bytes and writes on them.
std::vector<unsigned char*> take(std::size_t count)
{
    std::vector<unsigned char*> pieces;
    for (std::size_t i = 0; i < count; ++i) {
        pieces.push_back(static_cast<unsigned char*>(takeObjectMemory(64)));
        std::memset(pieces.back(), static_cast<int>(i & 255), 64);
    }
    return pieces;
}

/// Gives pieces back. - Returns: whether nobody else wrote on them.
bool give(const std::vector<unsigned char*>& pieces)
{
    bool isWhole = true;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        isWhole = isWhole && pieces[i][0] == (i & 255) && pieces[i][63] == (i & 255);
        giveObjectMemory(pieces[i]);
    }
    return isWhole;
}

TEST(ObjectMemory, OfARunIsAlignedAndItsOwn)
{
    const ObjectRun run;
    const auto pieces = take(3 * kBlock / 64);
    for (const unsigned char* piece : pieces)
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(piece) % 16, 0u);
    EXPECT_TRUE(give(pieces));
}

TEST(ObjectMemory, OutlivesItsRun)
{
    std::vector<unsigned char*> pieces;
    {
        const ObjectRun run;
        pieces = take(1000);
    }
    const auto others = take(1000);
    EXPECT_TRUE(give(others));
    EXPECT_TRUE(give(pieces));
}

TEST(ObjectMemory, MayComeBackOnAnotherThread)
{
    const ObjectRun run;
    const auto pieces = take(100000);
    bool isWhole = false;
    std::thread([&] { isWhole = give(pieces); }).join();
    EXPECT_TRUE(isWhole);
    EXPECT_TRUE(give(take(100000)));
}

TEST(ObjectMemory, OfARunInARunIsOfTheSameBlock)
{
    if constexpr (test::memoryIsWatched)
        return; // there are no blocks
    const ObjectRun outer;
    const auto before = take(1);
    std::vector<unsigned char*> inside;
    {
        const ObjectRun inner;
        inside = take(1);
    }
    const auto after = take(1);
    EXPECT_EQ(inside[0], before[0] + 64);
    EXPECT_EQ(after[0], inside[0] + 64);
    EXPECT_TRUE(give(before) && give(inside) && give(after));
}

TEST(ObjectMemory, OfFreeBlocksIsTakenAgainAndGivenBackWhenALoopTrims)
{
    if constexpr (test::memoryIsWatched)
        return; // there are no blocks
    trimObjectMemory();
    EXPECT_FALSE(hasSpareObjectMemory());
    for (int round = 0; round < 3; ++round) {
        const ObjectRun run;
        EXPECT_TRUE(give(take(4 * kBlock / 64)));
    }
    EXPECT_TRUE(hasSpareObjectMemory());
    trimObjectMemory();
    EXPECT_FALSE(hasSpareObjectMemory());
    const ObjectRun run;
    EXPECT_TRUE(give(take(4 * kBlock / 64)));
}

TEST(ObjectMemory, OfLargeObjectsIsNotOfABlock)
{
    const ObjectRun run;
    const auto small = take(1);
    void* const large = takeObjectMemory(4096);
    const auto next = take(1);
    std::memset(large, 1, 4096);
    if constexpr (!test::memoryIsWatched) {
        EXPECT_EQ(next[0], small[0] + 64);
    }
    giveObjectMemory(large);
    EXPECT_TRUE(give(small) && give(next));
}

TEST(ObjectMemory, OfObjectsStartsAsZerosWhateverStoodThere)
{
    for (int round = 0; round < 2; ++round) {
        const ObjectRun run;
        std::vector<Ref<NSObject>> objects;
        for (int i = 0; i < 1000; ++i) {
            objects.push_back(make<NSObject>());
            EXPECT_EQ(headerOf(objects.back().get()).extras.load(), 0u);
            EXPECT_EQ(headerOf(objects.back().get()).count.load(), 1);
        }
        for (const auto& object : objects)
            WeakRef<NSObject> weak(object);
    }
}

}
