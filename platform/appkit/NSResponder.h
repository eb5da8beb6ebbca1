// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSGeometry.h"
#include "foundation/NSString.h"
#include "runtime/NSObject.h"

namespace brindle {

class NSArray;
class NSEvent;
class NSMenu;
class NSUndoManager;

/// Anything that can be asked to handle an event or an action: views, windows, the application.
///
/// Whoever does not override a message hands it to `nextResponder`. At the end of the chain a key press beeps and
/// everything else is dropped.
/// Thread: main.
class NSResponder : public NSObject {
    BRINDLE_OBJECT(NSResponder, NSObject)

public:
    /// Answers who is asked after this one; not retained.
    Ref<NSResponder> nextResponder() const { return send<"nextResponder", Ref<NSResponder>>(); }
    void setNextResponder(NSResponder* next) { send<"setNextResponder:">(next); }

    /// Performs the selector on the first of the chain that responds to it.
    /// - Returns: whether somebody did.
    bool tryToPerform_with(SEL action, NSObject* argument)
    {
        return send<"tryToPerform:with:", bool>(action, argument);
    }
    /// Ends the chain for a message that nobody handled: beeps for `keyDown:`, else does nothing.
    void noResponderFor(SEL message) { send<"noResponderFor:">(message); }
    /// Answers an object of the chain that could stand for the request, or nil.
    Ref<NSResponder> supplementalTargetForAction_sender(SEL action, NSObject* sender)
    {
        return send<"supplementalTargetForAction:sender:", Ref<NSResponder>>(action, sender);
    }

    // Keyboard focus.

    /// Answers whether it wants keys and actions first. NO unless overridden.
    bool acceptsFirstResponder() const { return send<"acceptsFirstResponder", bool>(); }
    /// Asked when it is about to become the first responder; NO refuses. YES unless overridden.
    bool becomeFirstResponder() { return send<"becomeFirstResponder", bool>(); }
    /// Asked when it is about to lose that place; NO keeps it. YES unless overridden.
    bool resignFirstResponder() { return send<"resignFirstResponder", bool>(); }

    // Events.

    void mouseDown(NSEvent* event) { send<"mouseDown:">(event); }
    void mouseUp(NSEvent* event) { send<"mouseUp:">(event); }
    void mouseDragged(NSEvent* event) { send<"mouseDragged:">(event); }
    void mouseMoved(NSEvent* event) { send<"mouseMoved:">(event); }
    void mouseEntered(NSEvent* event) { send<"mouseEntered:">(event); }
    void mouseExited(NSEvent* event) { send<"mouseExited:">(event); }
    void rightMouseDown(NSEvent* event) { send<"rightMouseDown:">(event); }
    void rightMouseUp(NSEvent* event) { send<"rightMouseUp:">(event); }
    void rightMouseDragged(NSEvent* event) { send<"rightMouseDragged:">(event); }
    void otherMouseDown(NSEvent* event) { send<"otherMouseDown:">(event); }
    void otherMouseUp(NSEvent* event) { send<"otherMouseUp:">(event); }
    void otherMouseDragged(NSEvent* event) { send<"otherMouseDragged:">(event); }
    void scrollWheel(NSEvent* event) { send<"scrollWheel:">(event); }
    void keyDown(NSEvent* event) { send<"keyDown:">(event); }
    void keyUp(NSEvent* event) { send<"keyUp:">(event); }
    void flagsChanged(NSEvent* event) { send<"flagsChanged:">(event); }
    void cursorUpdate(NSEvent* event) { send<"cursorUpdate:">(event); }
    /// Answers whether it handled a key press that is offered before the first responder gets it. NO unless overridden.
    bool performKeyEquivalent(NSEvent* event) { return send<"performKeyEquivalent:", bool>(event); }
    /// Performs the action of a command key: on itself when it responds, else along the chain, else a beep.
    void doCommandBySelector(SEL command) { send<"doCommandBySelector:">(command); }
    /// Inserts typed text; the base hands it on along the chain.
    void insertText(NSObject* text) { send<"insertText:">(text); }
    /// Turns key presses into `insertText:` and into commands such as `moveLeft:` or `deleteBackward:`.
    /// - events: an array of `NSEvent`.
    void interpretKeyEvents(NSArray* events) { send<"interpretKeyEvents:">(events); }

    /// Answers what takes changes back here: the next responder's unless overridden; windows have one.
    Ref<NSUndoManager> undoManager() const { return send<"undoManager", Ref<NSUndoManager>>(); }

    Ref<NSMenu> menu() const { return send<"menu", Ref<NSMenu>>(); }
    void setMenu(NSMenu* menu) { send<"setMenu:">(menu); }

private:
    WeakRef<NSResponder> nextResponder_;
    Ref<NSObject> menu_; // NSMenu
};

}
