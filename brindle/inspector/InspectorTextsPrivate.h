// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "appkit/NSWindow.h"

namespace brindle::inspector {

/// A window or view of the tree.
struct TreeRow {
    WeakRef<NSObject> object;
    int depth = 0;
    std::string text;
};
/// Answers all windows that are wanted, each with its views from the frame down, in the order of drawing.
std::vector<TreeRow> treeRows(const std::function<bool(NSWindow&)>& isWanted);

struct DetailRow {
    std::string name;
    std::string value;
    bool isHeading = false;
};
/// Answers what is to be said about a view or window.
std::vector<DetailRow> detailRows(NSObject& object);

}
