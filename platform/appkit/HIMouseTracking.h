// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSGeometry.h"
#include "runtime/Export.h"

#include <cstdint>

namespace brindle {

/// Asks for how long and how far a press may last and wander to count as a click ('stic').
///
/// No desktop says it the same way, so nothing is answered and gestures are the same everywhere.
/// - time: seconds. - distance: points. Both stay as they are.
/// - Returns: -50: the caller uses its own numbers.
BRINDLE_EXPORT std::int32_t HIMouseTrackingGetParameters(
    std::uint32_t selector, double* time, NSSize* distance);

}
