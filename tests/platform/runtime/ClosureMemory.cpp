// SPDX-License-Identifier: Apache-2.0
#include "runtime/ClosureMemory.h"

#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <thread>
#include <vector>

#include "support/Memory.h"

using namespace brindle;

namespace {

struct Piece {
    unsigned char* memory;
    std::size_t size;
    unsigned char mark;
};

Piece take(std::size_t size, unsigned char mark)
{
    auto* const memory = static_cast<unsigned char*>(takeClosureMemory(size));
    std::memset(memory, mark, size);
    return { memory, size, mark };
}

/// Gives a piece back. - Returns: whether nobody else wrote on it.
bool give(const Piece& piece)
{
    bool isWhole = true;
    for (std::size_t i = 0; i < piece.size; ++i)
        isWhole = isWhole && piece.memory[i] == piece.mark;
    giveClosureMemory(piece.memory, piece.size);
    return isWhole;
}

/// Takes and gives in a random order, with sizes on both sides of every boundary.
bool takeAndGive(unsigned seed, std::size_t steps)
{
    std::mt19937 random(seed);
    std::vector<Piece> held;
    bool isWhole = true;
    for (std::size_t i = 0; i < steps; ++i) {
        if (held.empty() || random() % 5 < 3) {
            held.push_back(take(40 + random() % 120, static_cast<unsigned char>(random())));
        } else {
            std::swap(held[random() % held.size()], held.back());
            isWhole = give(held.back()) && isWhole;
            held.pop_back();
        }
    }
    for (const Piece& piece : held)
        isWhole = give(piece) && isWhole;
    return isWhole;
}

TEST(ClosureMemory, IsAlignedForAnyCapture)
{
    for (const std::size_t size : { 40u, 41u, 63u, 64u, 65u, 128u, 129u, 4096u }) {
        const Piece piece = take(size, 1);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(piece.memory) % 16, 0u) << size;
        EXPECT_TRUE(give(piece));
    }
}

TEST(ClosureMemory, NeverHandsOutABlockTwice) { EXPECT_TRUE(takeAndGive(1, 50'000)); }

TEST(ClosureMemory, ServesManyThreadsAtOnce)
{
    std::vector<std::thread> threads;
    std::vector<char> isWhole(4, 0);
    for (unsigned i = 0; i < isWhole.size(); ++i)
        threads.emplace_back([&isWhole, i] { isWhole[i] = takeAndGive(i, 20'000); });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(isWhole, std::vector<char>(4, 1));
}

TEST(ClosureMemory, TakesBackWhatAnotherThreadMadeAfterThatThreadHasEnded)
{
    for (int round = 0; round < 20; ++round) {
        std::vector<Piece> made;
        std::thread([&made] {
            for (int i = 0; i < 5'000; ++i)
                made.push_back(take(48, static_cast<unsigned char>(i)));
        }).join();
        bool isWhole = true;
        for (const Piece& piece : made)
            isWhole = give(piece) && isWhole;
        EXPECT_TRUE(isWhole);
    }
}

struct GivesAtTheEnd {
    std::vector<Piece> pieces;

    ~GivesAtTheEnd()
    {
        const Piece late = take(48, 9); // also still possible
        give(late);
        for (const Piece& piece : pieces)
            give(piece);
    }
};

TEST(ClosureMemory, WorksWhileAThreadsVariablesEnd)
{
    std::thread([] {
        thread_local GivesAtTheEnd
            atTheEnd; // ends last: it was made before the first block was taken
        for (int i = 0; i < 3'000; ++i)
            atTheEnd.pieces.push_back(take(48, 1));
    }).join();
}

TEST(ClosureMemory, GoesBackToTheSystemWhenALoopRests)
{
    std::vector<Piece> held;
    held.reserve(500'000);
    for (int i = 0; i < 500'000; ++i) // 23 MiB
        held.push_back(take(48, 1));
    const std::size_t during = test::residentBytes();
    for (const Piece& piece : held)
        give(piece);
    trimClosureMemory();
    const std::size_t after = test::residentBytes();
    if (test::growthCanBeMeasured()) {
        EXPECT_GT(during, after + (std::size_t { 18 } << 20));
    }
}

}
