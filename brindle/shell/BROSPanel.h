// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSPanel.h"

namespace brindle {

/// A panel that may become main and never becomes key, whatever its style.
class BROSPanel : public NSPanel {
    BRINDLE_OBJECT(BROSPanel, NSPanel)

public:
    /// Sends `_setup`, as the initialiser did; nothing else.
    void awakeFromNib() { send<"awakeFromNib">(); }
    /// Does nothing; the place for a subclass to finish what was made.
    // NOLINTNEXTLINE(readability-identifier-naming): the hook is called so
    void _setup() { send<"_setup">(); }
};

}
