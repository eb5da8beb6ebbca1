// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>

#include "ConnectionPrivate.h"

namespace brindle::display {

/// What the desktop's settings program says. It may come, go and change its mind while we run.
class DesktopSettings {
public:
    explicit DesktopSettings(Connection& connection)
        : connection_(connection)
    {
    }

    /// Reads everything anew.
    /// - Returns: the scale that windows are to have; nothing where the program, or such a program, says none.
    std::optional<double> readScale();

    // Whether an event means that there is something to read.

    bool propertyChanged(const xcb_property_notify_event_t& event) const;
    bool windowDestroyed(xcb_window_t window) const;
    bool isAnnounced(const xcb_client_message_event_t& message) const;

private:
    Connection& connection_;
    xcb_window_t window_ = XCB_NONE; // the program's
};

}
