// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "PixelMapping.h"
#include "Types.h"
#include "runtime/Export.h"

namespace brindle::display {

/// Answers what is left of a screen's visible frame when a strut has taken its part.
BRINDLE_EXPORT CGRect frameWithoutStrut(CGRect screen, CGRect visible, const Strut& strut);

/// The twelve numbers that a window manager reads: left, right, top, bottom, then start and end of each in the same order.
using StrutValues = std::array<std::uint32_t, 12>;

/// Answers a strut in device pixels of the whole desktop, which may have many screens.
/// - screens: the frames of all screens in pixels, y down; the desktop is `desktop` pixels large.
/// - index: the screen that the strut belongs to.
/// - Nil: nothing when another screen lies between this edge and the desktop's: such a strut would reserve that
///   screen as well.
BRINDLE_EXPORT std::optional<StrutValues> strutValues(const Strut& strut,
    const std::vector<PixelRect>& screens, std::size_t index, PixelSize desktop,
    const PixelMapping& mapping);

}
