// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSView.h"
#include "runtime/Block.h"

namespace gallery {

/// The list of pages at the window's left. Flipped.
class GallerySidebar : public brindle::NSView {
    BRINDLE_OBJECT(GallerySidebar, brindle::NSView)

public:
    /// Shows these names; `chosen` is called with the index of one that is clicked.
    void setNames_chosen(
        brindle::NSArray* names, const brindle::Block<void(brindle::NSUInteger)>& chosen)
    {
        send<"setNames:chosen:">(names, chosen.get());
    }
    brindle::NSUInteger selection() const { return send<"selection", brindle::NSUInteger>(); }
    void setSelection(brindle::NSUInteger index) { send<"setSelection:">(index); }

private:
    brindle::Ref<brindle::NSArray> names_;
    brindle::Block<void(brindle::NSUInteger)> chosen_;
    brindle::NSUInteger selection_ = 0;
};

}
