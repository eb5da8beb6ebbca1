// SPDX-License-Identifier: Apache-2.0
#include "MenuTitle.h"

#include "appkit/NSEvent.h"
#include "appkit/NSMenu.h"
#include "appkit/NSWindow.h"
#include "runtime/Table.h"

namespace brindle {

int MenuTitle::presses() const { return presses_; }

template <> struct MenuTitle::Methods<struct Bar> {

    static void mouseDown(MenuTitle& self, NSEvent* event)
    {
        ++self.presses_;
        const NSPoint below = self.convertPoint_toView({ 0, -5 }, nullptr);
        const Ref<NSEvent> moved
            = NSEvent::cls()
                  .mouseEventWithType_location_modifierFlags_timestamp_windowNumber_context_eventNumber_clickCount_pressure(
                      event->type(), below, event->modifierFlags(), event->timestamp(),
                      event->windowNumber(), nullptr, event->eventNumber(), 1, 1);
        NSMenu::cls().popUpContextMenu_withEvent_forView(self.menu().get(), moved.get(), &self);
    }
    static Ref<NSView> atPoint(MenuTitle& self, NSPoint place)
    {
        const NSPoint inWindow = self.window()->convertPointFromScreen(place);
        for (const Ref<NSView>& view : { self.left_, self.right_ }) {
            if (view && NSPointInRect(inWindow, view->frame()))
                return view;
        }
        return nullptr;
    }
    static Ref<NSView> toward(MenuTitle& self, NSInteger direction)
    {
        return direction < 0 ? self.left_ : self.right_;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "mouseDown:", imp<mouseDown> },
            { "menuNeighbourAtPoint:", imp<atPoint> },
            { "menuNeighbourInDirection:", imp<toward> },
        });
    }
};
BRINDLE_RECORD(MenuTitle, Bar)

}
