// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSResponder.h"

#include "appkit/NSMenu.h"
#include "foundation/Exceptions.h"
#include "foundation/NSBeep.h"
#include "foundation/NSUndoManager.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSResponder::Methods<struct Chain> {

    // Hands a message of one argument to the next responder, or ends the chain.
    template <Text S, class Argument> static void forward(NSResponder& self, Argument* argument)
    {
        if (const Ref<NSResponder> next = self.nextResponder())
            next->send<S>(argument);
        else
            self.noResponderFor(selector<S>);
    }
    template <Text S> static void event(NSResponder& self, NSEvent* event)
    {
        forward<S, NSEvent>(self, event);
    }

    static Ref<NSResponder> nextResponder(NSResponder& self) { return self.nextResponder_.get(); }
    static void setNextResponder(NSResponder& self, NSResponder* next)
    {
        self.nextResponder_ = next;
    }

    static bool tryToPerform(NSResponder& self, SEL action, NSObject* argument)
    {
        if (self.respondsToSelector(action)) {
            self.performSelector_withObject(action, argument);
            return true;
        }
        return maybe(self.nextResponder())->tryToPerform_with(action, argument);
    }
    static void noResponderFor(NSResponder&, SEL message)
    {
        if (message == selector<"keyDown:">)
            NSBeep();
    }
    static Ref<NSResponder> supplementalTarget(NSResponder& self, SEL action, NSObject* sender)
    {
        return maybe(self.nextResponder())->supplementalTargetForAction_sender(action, sender);
    }

    static bool acceptsFirstResponder(NSResponder&) { return false; }
    static bool yes(NSResponder&) { return true; }
    static bool performKeyEquivalent(NSResponder&, NSEvent*) { return false; }

    static void doCommandBySelector(NSResponder& self, SEL command)
    {
        if (!self.tryToPerform_with(command, nullptr))
            NSBeep();
    }
    static void insertText(NSResponder& self, NSObject* text)
    {
        if (const Ref<NSResponder> next = self.nextResponder())
            next->insertText(text);
        else
            NSBeep();
    }

    static Ref<NSUndoManager> undoManager(NSResponder& self)
    {
        return maybe(self.nextResponder())->undoManager();
    }

    static Ref<NSMenu> menu(NSResponder& self) { return cast<NSMenu>(self.menu_); }
    static void setMenu(NSResponder& self, NSMenu* menu)
    {
        if (menu && !menu->isKindOfClass(NSMenu::cls()))
            raise("NSInvalidArgumentException",
                "*** -[NSResponder setMenu:]: the menu is of another kind");
        self.menu_ = menu;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "nextResponder", imp<nextResponder> },
            { "setNextResponder:", imp<setNextResponder> },
            { "tryToPerform:with:", imp<tryToPerform> },
            { "noResponderFor:", imp<noResponderFor> },
            { "supplementalTargetForAction:sender:", imp<supplementalTarget> },
            { "acceptsFirstResponder", imp<acceptsFirstResponder> },
            { "becomeFirstResponder", imp<yes> },
            { "resignFirstResponder", imp<yes> },
            { "mouseDown:", imp<event<"mouseDown:">> },
            { "mouseUp:", imp<event<"mouseUp:">> },
            { "mouseDragged:", imp<event<"mouseDragged:">> },
            { "mouseMoved:", imp<event<"mouseMoved:">> },
            { "mouseEntered:", imp<event<"mouseEntered:">> },
            { "mouseExited:", imp<event<"mouseExited:">> },
            { "rightMouseDown:", imp<event<"rightMouseDown:">> },
            { "rightMouseUp:", imp<event<"rightMouseUp:">> },
            { "rightMouseDragged:", imp<event<"rightMouseDragged:">> },
            { "otherMouseDown:", imp<event<"otherMouseDown:">> },
            { "otherMouseUp:", imp<event<"otherMouseUp:">> },
            { "otherMouseDragged:", imp<event<"otherMouseDragged:">> },
            { "scrollWheel:", imp<event<"scrollWheel:">> },
            { "keyDown:", imp<event<"keyDown:">> },
            { "keyUp:", imp<event<"keyUp:">> },
            { "flagsChanged:", imp<event<"flagsChanged:">> },
            { "cursorUpdate:", imp<event<"cursorUpdate:">> },
            { "performKeyEquivalent:", imp<performKeyEquivalent> },
            { "doCommandBySelector:", imp<doCommandBySelector> },
            { "insertText:", imp<insertText> },
            { "undoManager", imp<undoManager> },
            { "menu", imp<menu> },
            { "setMenu:", imp<setMenu> },
        });
    }
};
BRINDLE_RECORD(NSResponder, Chain)

}
