// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSTableView.h"

namespace brindle {

/// How a menu table's selection came about.
enum BRMenuHoverMode : std::int32_t {
    BRMenuHoverModeHover = 0, ///< it follows the pointer
    BRMenuHoverModeTapped = 1, ///< a row was clicked
};

/// A table that behaves like a menu: the row under the pointer is selected, and a click sends an action.
///
/// Set the delegate, `tapTarget` and `tapAction`, then call `reloadData`: the table then becomes its own delegate and target
/// and passes requests for cell views on. Whenever rows come or go call `reloadData` or `updateTrackingAreas`, so that
/// the rows' places are followed again. The last row that the pointer was on stays selected. Each row that is entered is
/// logged: "hover 3".
/// Rows are `BRMenuTableRowView` with the identifier "MENUROW".
/// Thread: main. Cost: following the pointer does not depend on the number of rows.
class BRMenuTableView : public NSTableView {
    BRINDLE_OBJECT(BRMenuTableView, NSTableView)

public:
    /// Kept for hosts; nothing depends on it.
    bool ourAlternatingRows() const { return send<"ourAlternatingRows", bool>(); }
    void setOurAlternatingRows(bool alternating) { send<"setOurAlternatingRows:">(alternating); }
    BRMenuHoverMode menuHoverMode() const { return send<"menuHoverMode", BRMenuHoverMode>(); }
    void setMenuHoverMode(BRMenuHoverMode mode) { send<"setMenuHoverMode:">(mode); }
    /// Gets the tap action, with the table as its argument. Kept.
    Ref<NSObject> tapTarget() const { return send<"tapTarget", Ref<NSObject>>(); }
    void setTapTarget(NSObject* target) { send<"setTapTarget:">(target); }
    SEL tapAction() const { return send<"tapAction", SEL>(); }
    void setTapAction(SEL action) { send<"setTapAction:">(action); }
    /// The delegate that gives the rows their content, kept: the one that was there when the table was loaded first.
    Ref<NSObject> tableDelegate() const { return send<"tableDelegate", Ref<NSObject>>(); }
    void setTableDelegate(NSObject* delegate) { send<"setTableDelegate:">(delegate); }

    /// The table's own action: marks the selected row as tapped and sends the tap action.
    void tapAction(NSObject* sender) { send<"tapAction:">(sender); }

private:
    bool ourAlternatingRows_ = false;
    BRMenuHoverMode menuHoverMode_ = BRMenuHoverModeHover;
    Ref<NSObject> tapTarget_;
    SEL tapAction_ {};
    Ref<NSObject> tableDelegate_;
    std::vector<Ref<NSTrackingArea>> rowAreas_; // by row, as they were added
    Ref<NSMutableIndexSet> entered_; // the row that was entered last
};

}
