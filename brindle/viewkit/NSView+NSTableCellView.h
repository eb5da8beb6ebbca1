// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSView.h"

namespace brindle {

/// Answers the table cell that contains the view, or nil.
inline Ref<NSView> tableCellView(To<NSView> view)
{
    return view.send<"tableCellView", Ref<NSView>>();
}

}
