// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdlib>

namespace brindle::test {

/// Answers whether this run makes all rounds of its tests of endurance.
inline bool allRounds()
{
    static const bool all = std::getenv("BRINDLE_ENDURANCE") != nullptr;
    return all;
}

/// Answers how many rounds a test of endurance makes: all of them for `./run harden`, which sets BRINDLE_ENDURANCE, and
/// a hundredth in every other run.
inline int rounds(int full) { return allRounds() ? full : full / 100; }

}
