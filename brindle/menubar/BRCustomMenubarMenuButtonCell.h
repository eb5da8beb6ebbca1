// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSButtonCell.h"

namespace brindle {

/// Draws the button of one menu in the menubar and opens the menu.
///
/// The left 35 points are the image's column, the title stands right of it, a thin line at each end of the column. What it draws
/// in white or in the accent colour depends on the `BRCustomMenubarMenuButton` it is drawn in; in any other view it is
/// neither dark nor a toggle.
///
/// The menu is the cell's `menu`, which the button sets before each press.
/// Thread: main. Cost: a title that is not plain is copied for every drawing.
class BRCustomMenubarMenuButtonCell : public NSButtonCell {
    BRINDLE_OBJECT(BRCustomMenubarMenuButtonCell, NSButtonCell)

public:
    /// Opens the cell's menu 5 points below the cell for a press of the left button, and answers YES when it is closed again.
    /// Everything else is tracked as in any button.
    bool trackMouse_inRect_ofView_untilMouseUp(
        NSEvent* event, NSRect frame, NSView* view, bool untilMouseUp)
    {
        return send<"trackMouse:inRect:ofView:untilMouseUp:", bool>(
            event, frame, view, untilMouseUp);
    }
};

}
