// SPDX-License-Identifier: Apache-2.0
#include "ScreenEdgePrivate.h"

#include <algorithm>

namespace brindle::display {

int ScreenEdge::depth(PixelRect screen, int left, int right, std::span<const TopPanel> panels,
    std::optional<int> workAreaTop, std::optional<int> ownBottom)
{
    int explained = reserved_;
    int deepest = 0;
    for (const TopPanel& panel : panels) {
        explained = std::max(explained, panel.reach);
        if (panel.left >= right || panel.right <= left)
            continue;
        if (panel.isBar)
            deepest = std::max(deepest, panel.hidden);
        else if (!ownBottom || panel.top < *ownBottom)
            deepest = std::max(deepest, panel.reach - screen.top);
    }
    // The work area is one rectangle for all screens: only those at the desktop's edge can be meant.
    if (workAreaTop && screen.top == 0) {
        if (*workAreaTop > explained || *workAreaTop < hidden_)
            hidden_ = std::max(0, *workAreaTop);
        deepest = std::max(deepest, hidden_);
    }
    return std::clamp(deepest, 0, screen.height() / 2);
}

}
