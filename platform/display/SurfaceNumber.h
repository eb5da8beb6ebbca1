// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Types.h"

namespace brindle::display {

/// Answers a number that no surface of this process has had. Two displays never share one.
SurfaceId nextSurfaceNumber();

}
