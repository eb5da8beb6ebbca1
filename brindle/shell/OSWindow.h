// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSWindow.h"

namespace brindle {

/// A window that may become key and main whatever its style, borderless ones included.
class OSWindow : public NSWindow {
    BRINDLE_OBJECT(OSWindow, NSWindow)

public:
    /// Sends `_setup`, as the initialiser did; nothing else.
    void awakeFromNib() { send<"awakeFromNib">(); }
    /// Does nothing; the place for a subclass to finish what was made.
    // NOLINTNEXTLINE(readability-identifier-naming): the hook is called so
    void _setup() { send<"_setup">(); }
};

}
