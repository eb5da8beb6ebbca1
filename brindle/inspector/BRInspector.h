// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "appkit/NSView.h"

namespace brindle {

class NSEvent;
class NSWindow;
struct InspectorState;

/// Shows the views of a running application, what they declare, and who answers their events.
///
/// Off unless asked for: by `setEnabled:`, or by BRINDLE_INSPECTOR in the environment (any value but "" and "0"), which enables it when
/// the application has finished launching. Then Command-Option-I opens and closes the window, with Pick on: the frame follows the
/// pointer, a click inspects the view below it and does not reach the application, Escape ends it.
///
/// At the left stand all windows but its own, with their views; at the right what the chosen one is, its properties by the
/// runtime, its responder chain, and all key equivalents of the application. The window can also be used without the key.
/// Thread: main. Cost: while it is off, none; enabled and closed, one more message an event.
class BRInspector : public NSObject {
    BRINDLE_OBJECT(BRInspector, NSObject)

public:
    struct Meta : NSObject::Meta {
        Ref<BRInspector> sharedInspector() const
        {
            return send<"sharedInspector", Ref<BRInspector>>();
        }
    };

    bool isEnabled() const { return send<"isEnabled", bool>(); }
    /// Lets the inspector see the application's events first, or no longer; that closes it. The application object must be the
    /// one that stays: it is made when there is none.
    void setEnabled(bool enabled) { send<"setEnabled:">(enabled); }

    bool isVisible() const { return send<"isVisible", bool>(); }
    void show() { send<"show">(); }
    void close() { send<"close">(); }
    /// Answers its window, made when it is first wanted.
    Ref<NSWindow> window() { return send<"window", Ref<NSWindow>>(); }

    /// Answers the view or window that is shown at the right; nil when there is none or it has gone.
    Ref<NSObject> inspectedObject() const { return send<"inspectedObject", Ref<NSObject>>(); }
    /// Chooses a view or window and reads everything anew. - Nil: none, as is every other object.
    void inspectObject(NSObject* object) { send<"inspectObject:">(object); }
    /// Reads everything anew.
    void reload() { send<"reload">(); }

    bool isPicking() const { return send<"isPicking", bool>(); }
    /// Lets the pointer choose. It works while the inspector is enabled and visible.
    void setPicking(bool picking) { send<"setPicking:">(picking); }

    /// Answers what stands at the left, a line a view, indented by its depth. For logs and tests.
    Ref<NSString> treeDescription() { return send<"treeDescription", Ref<NSString>>(); }
    /// Answers what stands at the right, a line a row, name and value parted by ": ", by a space in headings.
    Ref<NSString> detailDescription() { return send<"detailDescription", Ref<NSString>>(); }

private:
    friend InspectorState& stateOf(BRInspector& self);
    std::shared_ptr<InspectorState> state_;
};

}
