// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSView.h"
#include "appkit/NSWindow.h"
#include "foundation/NSNotificationCenter.h"

namespace brindle {

/// The window of which a view hears when it becomes key or resigns it.
class HeardWindow {
public:
    /// Follows a view to the window that it is in, whichever hooks it was moved by, and leaves alone what it observes
    /// besides. - message: sent to the view.
    void follow(NSView& view, SEL message)
    {
        const Ref<NSWindow> before = window_.get();
        const Ref<NSWindow> present = view.window();
        if (present == before)
            return;
        window_ = present.get();
        const Ref<NSNotificationCenter> center = NSNotificationCenter::cls().defaultCenter();
        for (NSString* name :
            { NSWindowDidBecomeKeyNotification.get(), NSWindowDidResignKeyNotification.get() }) {
            if (before)
                center->removeObserver_name_object(&view, name, before.get());
            if (present)
                center->addObserver_selector_name_object(&view, message, name, present.get());
        }
    }

private:
    WeakRef<NSWindow> window_;
};

}
