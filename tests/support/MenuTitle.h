// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSView.h"

namespace brindle {

/// A view in a row of such views, each with a menu that it opens below itself.
class MenuTitle : public NSView {
    BRINDLE_OBJECT(MenuTitle, NSView)

public:
    /// Answers how often a button was pressed on it.
    int presses() const;

    Ref<NSView> left_;
    Ref<NSView> right_;
    int presses_ = 0;
};

}
