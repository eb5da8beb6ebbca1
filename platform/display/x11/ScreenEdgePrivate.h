// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <limits>
#include <optional>
#include <span>

#include "display/Types.h"

namespace brindle::display {

/// A window of another program that keeps part of the desktop's top edge free. Device pixels of the whole desktop, y down.
struct TopPanel {
    int reach = 0; ///< how far down from the desktop's top
    int left = 0;
    int right = 0; ///< just outside
    int top = 0; ///< of the window itself
    bool isBar
        = false; ///< of the same kind as ours: it takes our place while its program is active
    int hidden = 0; ///< of such a bar: what its program found there that has no window
};

/// Where a bar at the top of a screen has room, below panels that were there before it.
///
/// Panels that are windows say what they reserve. What a desktop draws by itself shows only in the work area, which
/// our own strut changes as well; so what was found there is kept in mind.
class ScreenEdge {
public:
    /// Answers how many pixels below the top of its screen a bar is to stand; at most half the screen.
    /// - left, right: the bar's extent. - ownBottom: its lower edge as it is shown now, nothing before it is shown.
    ///   A panel that begins below it came later, and gives way itself.
    /// - workAreaTop: nothing when nobody tells.
    int depth(PixelRect screen, int left, int right, std::span<const TopPanel> panels,
        std::optional<int> workAreaTop, std::optional<int> ownBottom);

    /// Takes note of what a strut of ours reserves from now on.
    void reserved(int reach) { reserved_ = reach > reserved_ ? reach : reserved_; }
    /// Answers how much of the top has no window.
    int hidden() const { return hidden_; }

private:
    int hidden_ = 0;
    int reserved_ = 0; // the most we ever had; a work area may still tell of it
};

}
