// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cmath>

namespace brindle::menubar {

/// A whole point, in single precision as every position that is drawn.
inline double rounded(double value) { return std::round(static_cast<float>(value)); }

}
