// SPDX-License-Identifier: Apache-2.0
#include "MenuSessionPrivate.h"
#include "appkit/application/NSApplicationPrivate.h"
#include "appkit/application/NSEventPrivate.h"
#include "foundation/Exceptions.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSMenu::Methods<struct Opening> {

    template <class T> static void require(T* object, const char* what)
    {
        if (object && !object->isKindOfClass(T::cls()))
            raise("NSInvalidArgumentException",
                std::string("*** NSMenu: the ") + what + " is of another kind");
    }

    static void popUpContext(Class&, NSMenu* menu, NSEvent* event, NSView* view, NSFont* font)
    {
        require(menu, "menu");
        require(event, "event");
        require(view, "view");
        require(font, "font");
        MenuOpening opening;
        opening.menu = menu;
        opening.view = view;
        opening.event = event;
        opening.font = font;
        opening.location
            = event ? EventAccess::screenLocation(*event) : ApplicationAccess::pointerLocation();
        if (const Ref<NSMenuItem> item = MenuSession::run(opening))
            MenuAccess::perform(*item);
    }
    static void popUpPlain(Class& self, NSMenu* menu, NSEvent* event, NSView* view)
    {
        popUpContext(self, menu, event, view, nullptr);
    }
    static bool popUpPositioning(NSMenu& self, NSMenuItem* item, NSPoint location, NSView* view)
    {
        require(item, "item");
        require(view, "view");
        const Ref<NSMenu> alive(&self);
        const Ref<NSWindow> window = maybe(view)->window();
        MenuOpening opening;
        opening.menu = &self;
        opening.positioned = item;
        opening.view = view;
        // A press that is being handled may go on into the menu, and one that a key opens is used by keys.
        const Ref<NSEvent> current = ApplicationAccess::state().current;
        if (current && events::isIn(current->type(), events::kDowns | NSKeyDownMask))
            opening.event = current;
        opening.location = window
            ? window->convertPointToScreen(view->convertPoint_toView(location, nullptr))
            : location;
        const Ref<NSMenuItem> chosen = MenuSession::run(opening);
        if (chosen)
            MenuAccess::perform(*chosen);
        return chosen != nullptr;
    }
    static void cancel(NSMenu& self) { MenuSession::cancel(self); }
    static Ref<NSMenuItem> highlightedItem(NSMenu& self)
    {
        return MenuSession::highlightedItem(self);
    }
    static NSSize size(NSMenu& self) { return layOut(self, self.font().get(), 0).size; }

    static void table(Builder& t)
    {
        t.classMethods({
            { "popUpContextMenu:withEvent:forView:", imp<popUpPlain> },
            { "popUpContextMenu:withEvent:forView:withFont:", imp<popUpContext> },
        });
        t.methods({
            { "popUpMenuPositioningItem:atLocation:inView:", imp<popUpPositioning> },
            { "cancelTracking", imp<cancel> },
            { "cancelTrackingWithoutAnimation", imp<cancel> },
            { "highlightedItem", imp<highlightedItem> },
            { "size", imp<size> },
        });
    }
};
BRINDLE_RECORD(NSMenu, Opening)

}
