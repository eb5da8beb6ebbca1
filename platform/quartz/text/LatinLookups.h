// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "FontFile.h"

namespace brindle::text {

/// What of a table of rules acts on Latin text of no certain language for which nobody asks for features.
struct LatinLookups {
    std::vector<std::size_t> used; // their numbers in the table, in order
    bool haveKerning = false;
};

/// Chooses as the shaping library does.
/// - numbers: those of a font's table of substitutions or positions.
LatinLookups latinLookups(CheckedNumbers& numbers);

}
