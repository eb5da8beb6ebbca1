// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "runtime/Export.h"

namespace brindle {
extern "C" {

/// The framework's version as a number: 1.0.
BRINDLE_EXPORT extern const double BrindleVersionNumber;
/// The framework's version as a text that tools find in a binary; it ends with a line feed.
BRINDLE_EXPORT extern const unsigned char BrindleVersionString[];
}

}
