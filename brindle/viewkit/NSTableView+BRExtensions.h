// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSTableView.h"

namespace brindle {

/// Asks for the heights of these rows; they and what is below are at their new places at once.
inline void noteHeightOfRowsWithIndexesChangedWithoutAnimation(
    To<NSTableView> table, NSIndexSet* rows)
{
    table.send<"noteHeightOfRowsWithIndexesChangedWithoutAnimation:">(rows);
}

}
