// SPDX-License-Identifier: Apache-2.0
#include "BRInspector.h"

#include <cstdlib>
#include <string_view>

#include "InspectorStatePrivate.h"
#include "appkit/NSApplication.h"
#include "core/MethodPatching.h"
#include "foundation/NSNotification.h"
#include "foundation/NSNotificationCenter.h"
#include "runtime/Table.h"

namespace brindle {

using inspector::DetailRow;
using inspector::TreeRow;

InspectorState& stateOf(BRInspector& self)
{
    if (!self.state_)
        self.state_ = std::make_shared<InspectorState>();
    return *self.state_;
}

namespace {

    constexpr NSEventModifierFlags kAllModifiers
        = NSCommandKeyMask | NSAlternateKeyMask | NSShiftKeyMask | NSControlKeyMask;

    BRInspector* shared = nullptr; // made once, never let go
    bool isWatching = false; // an event asks for no object while it is off

    bool isOpeningKey(const NSEvent& event)
    {
        return event.type() == NSKeyDown
            && (event.modifierFlags() & kAllModifiers) == (NSCommandKeyMask | NSAlternateKeyMask)
            && maybe(event.charactersIgnoringModifiers())->isEqual("i"_ns);
    }

    bool isEscape(NSEvent& event)
    {
        return event.type() == NSKeyDown && maybe(event.characters())->isEqual("\x1b"_ns);
    }

    bool isPress(const NSEvent& event)
    {
        switch (event.type()) {
        case NSLeftMouseDown:
        case NSLeftMouseUp:
        case NSLeftMouseDragged:
            return true;
        default:
            return false;
        }
    }

    /// Answers the view of another window that an event of the pointer is over.
    Ref<NSView> viewUnder(BRInspector& self, NSEvent& event)
    {
        const Ref<NSWindow> window = event.window();
        if (!window || stateOf(self).owns(*window))
            return nullptr;
        const Ref<NSView> content = window->contentView();
        const Ref<NSView> root = maybe(content)->superview();
        return maybe(root ? root : content)->hitTest(event.locationInWindow());
    }

    /// - Returns: whether the event was the inspector's and goes no further.
    bool pick(BRInspector& self, NSEvent& event)
    {
        if (isEscape(event)) {
            self.setPicking(false);
            return true;
        }
        if (event.type() != NSMouseMoved && !isPress(event))
            return false;
        const Ref<NSView> view = viewUnder(self, event);
        if (!view)
            return false;
        stateOf(self).frame.show(inspector::placeOf(view.get()));
        if (event.type() == NSLeftMouseUp) {
            self.inspectObject(view.get());
            self.setPicking(false);
        }
        return isPress(event);
    }

    bool takes(BRInspector& self, NSEvent& event)
    {
        if (isOpeningKey(event)) {
            if (self.isVisible())
                self.close();
            else
                self.show();
            self.setPicking(self.isVisible());
            return true;
        }
        return self.isPicking() && pick(self, event);
    }

    /// What the application's `sendEvent:` is exchanged with while the inspector is enabled.
    struct InspectedEvents {

        static void sendEvent(NSApplication& self, NSEvent* event)
        {
            if (!isWatching) // sent by its own name while nothing is exchanged, it would reach itself for ever
                return self.sendEvent(event);
            Ref<NSEvent> alive = event;
            if (event && takes(*shared, *event))
                return;
            self.send<"inspector_sendEvent:">(event); // the application's own
            if (isWatching && shared->isVisible() && !shared->isPicking())
                stateOf(*shared).follow();
        }
        static void table(Builder& t) { t.methods({ { "inspector_sendEvent:", imp<sendEvent> } }); }
    };

}

BRINDLE_EXTENSION(NSApplication, InspectedEvents)

template <> struct BRInspector::Methods<struct Watching> {

    static void load(Class& self)
    {
        const char* const value = std::getenv("BRINDLE_INSPECTOR");
        const std::string_view asked = value ? value : "";
        if (asked.empty() || asked == "0")
            return;
        NSNotificationCenter::cls().defaultCenter()->addObserverForName_object_queue_usingBlock(
            NSApplicationDidFinishLaunchingNotification, nullptr, nullptr,
            [cls = &self](NSNotification*) {
                cls->send<"sharedInspector", Ref<BRInspector>>()->setEnabled(true);
            });
    }

    static Ref<BRInspector> sharedInspector(Class&)
    {
        if (!shared)
            shared = make<BRInspector>().leak();
        return shared;
    }

    static bool isEnabled(BRInspector& self) { return &self == shared && isWatching; }
    static void setEnabled(BRInspector& self, bool enabled)
    {
        if (&self != shared || enabled == isWatching)
            return;
        // The application's own class; what it inherits stays what its parents run.
        static Class* watched = nullptr;
        if (enabled)
            watched = NSApplication::cls().sharedApplication()->classObject();
        XUISwizzleMethod(watched, '-', selector<"sendEvent:">, selector<"inspector_sendEvent:">);
        isWatching = enabled;
        if (!enabled)
            self.close();
    }

    static bool isPicking(BRInspector& self) { return stateOf(self).isPicking; }
    static void setPicking(BRInspector& self, bool picking)
    {
        InspectorState& state = stateOf(self);
        state.isPicking = picking && self.isEnabled() && self.isVisible();
        if (state.pick)
            state.pick->setState(state.isPicking ? NSOnState : NSOffState);
        if (!state.isPicking)
            state.follow();
    }

    static void table(Builder& t)
    {
        t.classMethods({ { "sharedInspector", imp<sharedInspector> } });
        t.methods({
            { "isEnabled", imp<isEnabled> },
            { "setEnabled:", imp<setEnabled> },
            { "isPicking", imp<isPicking> },
            { "setPicking:", imp<setPicking> },
        });
    }
};
BRINDLE_RECORD(BRInspector, Watching)

}
