// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSView.h"

namespace brindle {

/// A view that is told of its own frame changes when its class overrides `frameDidChange`.
///
/// One that comes from an interface file by way of `initWithFrame:` and gets `awakeFromNib` too is told twice.
class GWView : public NSView {
    BRINDLE_OBJECT(GWView, NSView)

public:
    /// Registers the view for its frame changes where it overrides `frameDidChange`. Sent by `initWithFrame:` and
    /// `awakeFromNib`; overrides call super.
    void setup() { send<"setup">(); }
    /// Told after each change of the frame. Empty here.
    void frameDidChange() { send<"frameDidChange">(); }
    void awakeFromNib() { send<"awakeFromNib">(); }
};

}
