// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSTabView.h"

namespace brindle {

/// What the files of tabs do with each other.
struct TabAccess {
    static void setTabView(NSTabViewItem& item, NSTabView* view) { item.tabView_ = view; }
    static void setState(NSTabViewItem& item, NSTabState state) { item.state_ = state; }
    /// Told when a label, a tip or the view of an item is another.
    static void itemChanged(NSTabView& view);
    /// Puts the tips of the items where their tabs are.
    static void placeTips(NSTabView& view);
};

}
