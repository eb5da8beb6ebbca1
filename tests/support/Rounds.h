// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdlib>

namespace brindle::test {

/// Answers how many rounds a test of endurance makes: all of them for `./run harden`, which sets BRINDLE_ENDURANCE, and
/// a hundredth in every other run.
inline int rounds(int full)
{
    static const bool all = std::getenv("BRINDLE_ENDURANCE") != nullptr;
    return all ? full : full / 100;
}

}
