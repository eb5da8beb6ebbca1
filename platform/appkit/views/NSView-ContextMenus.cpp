// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSView+ContextMenus.h"

#include "appkit/NSMenu.h"
#include "appkit/application/NSApplicationPrivate.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSView::Methods<struct ContextMenus> {

    static NSRect anchor(NSView& self)
    {
        const NSRect shown = self.visibleRect();
        return NSMakeRect(NSMidX(shown), NSMidY(shown), 0, 0);
    }
    static Ref<NSEvent> pressAt(NSView& self, NSPoint place)
    {
        return NSEvent::cls()
            .mouseEventWithType_location_modifierFlags_timestamp_windowNumber_context_eventNumber_clickCount_pressure(
                NSRightMouseDown, self.convertPoint_toView(place, nullptr), 0,
                ApplicationAccess::now(), maybe(self.window())->windowNumber(), nullptr, 0, 1, 1);
    }
    static void show(NSView& self, NSObject* sender)
    {
        const Ref<NSView> alive(&self);
        const NSRect selected = NSIntersectionRect(selectionAnchorRect(&self), self.visibleRect());
        const NSRect place = NSIsEmptyRect(selected) ? selectionAnchorRect(&self) : selected;
        const Ref<NSMenu> menu
            = self.menuForEvent(pressAt(self, { NSMidX(place), NSMidY(place) }).get());
        if (!menu) {
            maybe(self.nextResponder())
                ->tryToPerform_with(selector<"showContextMenuForSelection:">, sender);
            return;
        }
        const NSPoint corner { NSMinX(place), self.isFlipped() ? NSMaxY(place) : NSMinY(place) };
        menu->popUpMenuPositioningItem_atLocation_inView(nullptr, corner, &self);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "selectionAnchorRect", imp<anchor> },
            { "showContextMenuForSelection:", imp<show> },
        });
    }
};
BRINDLE_RECORD(NSView, ContextMenus)

}
