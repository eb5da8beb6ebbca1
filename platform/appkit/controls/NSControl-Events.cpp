// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSControl.h"
#include "appkit/NSApplication.h"
#include "appkit/NSWindow.h"
#include "foundation/NSDate.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSControl::Methods<struct Events> {

    static bool yes(NSControl&) { return true; }
    static bool no(NSControl&) { return false; }
    static bool isOpaque(NSControl& self) { return maybe(self.cell())->isOpaque(); }

    // ---- drawing

    static void setNeedsDisplay(NSControl& self) { self.setNeedsDisplay(true); }
    // With a text being typed in, the editor is the first responder in the control's place.
    static bool hasKeyboard(NSControl& self)
    {
        const Ref<NSWindow> window = self.window();
        return window && window->isKeyWindow()
            && (window->firstResponder() == &self || self.send<"currentEditor", Ref<NSObject>>());
    }
    static void drawRect(NSControl& self, NSRect)
    {
        const Ref<NSCell> cell = self.cell();
        if (!cell)
            return;
        cell->setShowsFirstResponder(hasKeyboard(self));
        cell->drawWithFrame_inView(self.bounds(), &self);
    }
    static Ref<NSObject> currentEditor(NSControl&) { return nullptr; }

    // ---- keyboard focus

    static bool acceptsFirstResponder(NSControl& self)
    {
        return maybe(self.cell())->acceptsFirstResponder();
    }
    static bool becomeFirstResponder(NSControl& self)
    {
        self.setNeedsDisplay(true);
        return super<NSControl, "becomeFirstResponder", bool>(self);
    }
    static bool resignFirstResponder(NSControl& self)
    {
        self.setNeedsDisplay(true);
        return super<NSControl, "resignFirstResponder", bool>(self);
    }

    // ---- the pointer

    static bool isRelease(NSEvent& event)
    {
        return event.type() == NSLeftMouseUp || event.type() == NSRightMouseUp;
    }
    static Ref<NSEvent> nextEvent(NSEvent& press)
    {
        NSEventMask mask = NSLeftMouseDraggedMask | NSLeftMouseUpMask;
        if (press.type() == NSRightMouseDown)
            mask |= NSRightMouseDraggedMask | NSRightMouseUpMask;
        return NSApplication::cls()
            .sharedApplication()
            ->nextEventMatchingMask_untilDate_inMode_dequeue(
                mask, NSDate::cls().distantFuture().get(), NSEventTrackingRunLoopMode, true);
    }
    // Highlighted while it tracks, whatever its action does.
    static bool track(NSControl& self, NSCell& cell, NSEvent& event, bool untilMouseUp)
    {
        const NSRect bounds = self.bounds();
        cell.highlight_withFrame_inView(true, bounds, &self);
        bool done = false;
        try {
            done = cell.trackMouse_inRect_ofView_untilMouseUp(&event, bounds, &self, untilMouseUp);
        } catch (...) {
            cell.highlight_withFrame_inView(false, bounds, &self);
            throw;
        }
        cell.highlight_withFrame_inView(false, bounds, &self);
        return done;
    }
    static void mouseDown(NSControl& self, NSEvent* press)
    {
        if (!press || !self.isEnabled())
            return;
        if (self.ignoresMultiClick() && press->clickCount() > 1)
            return super<NSControl, "mouseDown:">(self, press);
        const Ref<NSControl> alive(&self);
        const Ref<NSCell> cell = self.cell();
        const bool untilUp = cell->classObject()->send<"prefersTrackingUntilMouseUp", bool>();
        const Ref<NSApplication> app = NSApplication::cls().sharedApplication();
        // The pointer that has left may come back before it is released.
        for (Ref<NSEvent> event(press); event && !isRelease(*event); event = nextEvent(*press)) {
            const NSPoint point = self.convertPoint_fromView(event->locationInWindow(), nullptr);
            if (!untilUp && !self.mouse_inRect(point, self.bounds()))
                continue;
            if (track(self, *cell, *event, untilUp))
                return;
            const Ref<NSEvent> last = app->currentEvent();
            if (last && isRelease(*last))
                return;
        }
    }

    static void table(Builder& t)
    {
        t.methods({
            { "isFlipped", imp<yes> },
            { "isOpaque", imp<isOpaque> },
            { "mouseDownCanMoveWindow", imp<no> },
            { "setNeedsDisplay", imp<setNeedsDisplay> },
            { "drawRect:", imp<drawRect> },
            { "currentEditor", imp<currentEditor> },
            { "acceptsFirstResponder", imp<acceptsFirstResponder> },
            { "becomeFirstResponder", imp<becomeFirstResponder> },
            { "resignFirstResponder", imp<resignFirstResponder> },
            { "mouseDown:", imp<mouseDown> },
        });
    }
};
BRINDLE_RECORD(NSControl, Events)

}
