// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

namespace brindle::test {

/// Answers how often this thread has asked for memory so far; always 0 under sanitizers, which have a `malloc` of their own.
std::size_t allocationsMade();

/// Answers how often a step asks for memory at most, once a few have gone before: what is kept between them is there then.
/// - prepare: what comes before each step and does not count.
template <class Prepare, class Step>
std::size_t mostAllocationsIn(int steps, const Prepare& prepare, const Step& step)
{
    constexpr int kBefore = 60;
    std::size_t most = 0;
    for (int i = 0; i < kBefore + steps; ++i) {
        prepare(i);
        const std::size_t before = allocationsMade();
        step();
        if (i >= kBefore && allocationsMade() - before > most)
            most = allocationsMade() - before;
    }
    return most;
}

}
