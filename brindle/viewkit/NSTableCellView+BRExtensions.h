// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSColor.h"
#include "appkit/NSTableCellView.h"
#include "appkit/NSTableView.h"

/// What a cell of a table knows of its row, and the colours of texts on it.

namespace brindle {

/// Answers whether the row around the cell is selected; NO outside of a row.
inline bool isSelected(To<NSTableCellView> cell) { return cell.send<"isSelected", bool>(); }
/// Answers 1, the dark style, in a selected row, else 0.
inline NSBackgroundStyle relevantBackgroundStyle(To<NSTableCellView> cell)
{
    return cell.send<"relevantBackgroundStyle", NSBackgroundStyle>();
}
/// Answers white for style 1 and black for every other one.
inline Ref<NSColor> textColorForBackgroundStyle(To<Class> cls, NSBackgroundStyle style)
{
    return cls.send<"textColorForBackgroundStyle:", Ref<NSColor>>(style);
}
/// Answers the nearest table that the cell lies in, or nil.
inline Ref<NSTableView> superTableView(To<NSTableCellView> cell)
{
    return cell.send<"superTableView", Ref<NSTableView>>();
}

}
