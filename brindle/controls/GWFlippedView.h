// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "GWBackgroundColorView.h"

namespace brindle {

/// A view of one colour whose y grows downward. It always answers YES to `isOpaque`, whatever its background is set to,
/// and a press on it can move the window.
class GWFlippedView : public GWBackgroundColorView {
    BRINDLE_OBJECT(GWFlippedView, GWBackgroundColorView)
};

}
