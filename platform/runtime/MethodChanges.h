// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <cstdint>

#include "Export.h"

namespace brindle {

/// Grows with every change of a method table: whoever keeps what classes answer looks again when it has moved.
///
/// It is read before looking; what was found is good as long as the number stays.
BRINDLE_EXPORT extern std::atomic<std::uint64_t> methodChanges;

}
