// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSTableRowView.h"
#include "appkit/NSTableView.h"

namespace brindle {

/// Answers the nearest table that the row lies in, or nil.
inline Ref<NSTableView> superTableView(To<NSTableRowView> row)
{
    return row.send<"superTableView", Ref<NSTableView>>();
}

}
