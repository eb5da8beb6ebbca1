// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSWindow.h"

namespace brindle {

/// A window for tools beside the main one: it hides while the application is inactive and does not become main.
class NSPanel : public NSWindow {
    BRINDLE_OBJECT(NSPanel, NSWindow)

public:
    /// A floating panel has the level of floating windows.
    bool isFloatingPanel() const { return send<"isFloatingPanel", bool>(); }
    void setFloatingPanel(bool floating) { send<"setFloatingPanel:">(floating); }
    /// Answers whether a press makes it key only where the pressed view wants the keyboard.
    bool becomesKeyOnlyIfNeeded() const { return send<"becomesKeyOnlyIfNeeded", bool>(); }
    void setBecomesKeyOnlyIfNeeded(bool onlyIfNeeded)
    {
        send<"setBecomesKeyOnlyIfNeeded:">(onlyIfNeeded);
    }
    void setWorksWhenModal(bool works) { send<"setWorksWhenModal:">(works); }

private:
    bool floating_ = false;
    bool keyOnlyIfNeeded_ = false;
    bool worksWhenModal_ = false;
};

}
