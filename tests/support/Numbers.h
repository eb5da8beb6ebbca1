// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <limits>

// Numbers that nobody expects.

namespace brindle {

inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
inline constexpr double kInfinity = std::numeric_limits<double>::infinity();

}
