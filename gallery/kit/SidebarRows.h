// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Sidebar.h"
#include "appkit/NSTableRowView.h"

namespace gallery {

/// The list itself: Return, Right and Escape are the sidebar's.
class SidebarList : public brindle::NSTableView {
    BRINDLE_OBJECT(SidebarList, brindle::NSTableView)
};

/// Marks the chosen row: in the accent colour while the list has the keyboard.
class SidebarRowView : public brindle::NSTableRowView {
    BRINDLE_OBJECT(SidebarRowView, brindle::NSTableRowView)
};

/// Draws the words of a row.
class SidebarCell : public brindle::NSTableCellView {
    BRINDLE_OBJECT(SidebarCell, brindle::NSTableCellView)

public:
    SidebarRow row_;
};

}
