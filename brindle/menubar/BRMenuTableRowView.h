// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSTableRowView.h"

namespace brindle {

/// A row of a `BRMenuTableView`. While the pointer chooses, the selection has the accent colour, once a row has been
/// clicked it is grey (white 0.86). Outside of a menu table it is drawn as while hovering.
class BRMenuTableRowView : public NSTableRowView {
    BRINDLE_OBJECT(BRMenuTableRowView, NSTableRowView)
};

}
