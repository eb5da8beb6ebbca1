// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSScrollView.h"
#include "appkit/NSTableView.h"

namespace brindle {

/// Makes the table together with a scroll view around it and one column, whose identifier is a space. The column is as wide
/// as the table, and both follow the scroll view's size. Logs "scrollView %@ enc: %@" with the scroll view and what the
/// table says is around it.
/// - scrollView: gets the scroll view; null where nobody wants it, and then nobody but its own views keeps it.
/// - Returns: the table.
inline Ref<NSTableView> initIncScrollView(To<NSTableView> table, Ref<NSScrollView>* scrollView)
{
    return table.send<"initIncScrollView:", Ref<NSTableView>>(scrollView);
}

}
