// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "foundation/NSGeometry.h"

namespace brindle::splits {

/// One view of a split view, measured along it.
struct Pane {
    CGFloat size = 0;
    float priority = 250; // how strongly it keeps its size
    bool fixed = false; // the delegate does not want it changed
};

/// Shares a room out: the panes of the lowest priority give and take in proportion to their sizes; when they have nothing
/// left to give, those of the next. Sizes end whole, and their sum is the room where it holds any pane that may change.
void share(std::vector<Pane>& panes, CGFloat room);

}
