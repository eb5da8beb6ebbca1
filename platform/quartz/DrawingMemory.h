// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

#include "runtime/Export.h"

namespace brindle {

/// Answers the bytes that hold what was drawn lately and may be drawn again: pictures of glyphs, outlines of shapes, shaped
/// words. Each kind is kept in bounded memory and fills it in time, some 8 MB together, so who looks whether a program grows
/// leaves them out.
/// Thread: any.
BRINDLE_EXPORT std::size_t drawingMemoryInUse();

}
