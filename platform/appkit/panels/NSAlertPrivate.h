// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSAlert.h"

namespace brindle {

/// What the sources of alerts share.
struct AlertAccess {
    /// Arranges the content of the alert's window; NSAlert-Layout.cpp.
    static void arrange(NSAlert& alert);
    /// Answers the sign of a style; AlertPictures.cpp.
    static Ref<NSImage> iconFor(NSAlertStyle style);

    static const std::vector<Ref<NSButton>>& buttons(const NSAlert& alert)
    {
        return alert.buttons_;
    }
};

}
