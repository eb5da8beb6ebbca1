// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "ConnectionPrivate.h"
#include "display/Strut.h"

namespace brindle::display {

/// What is known of the window manager. It may come, go and change while we run.
class WindowManager {
public:
    explicit WindowManager(Connection& connection)
        : connection_(connection)
    {
    }

    /// Answers whether one is alive. A dead one leaves its properties on the root window, so only its own window counts.
    bool isAlive();
    /// Answers whether it is alive and says that it knows a protocol.
    bool supports(Atom protocol);
    /// Answers the work area of the present desktop; nothing without a living manager.
    std::optional<PixelRect> workArea();

    /// Answers what the windows that it manages keep free along the edges.
    std::vector<StrutValues> struts();

    /// Forgets what was read, because a property of the root window changed.
    /// - Returns: whether the property has to do with the manager.
    bool propertyChanged(xcb_atom_t property);
    /// - Returns: whether the window was the manager's own.
    bool windowDestroyed(xcb_window_t window);

private:
    void read();

    Connection& connection_;
    std::vector<std::uint32_t> supported_;
    xcb_window_t window_ = XCB_NONE;
    bool known_ = false;
};

}
