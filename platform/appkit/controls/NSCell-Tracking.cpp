// SPDX-License-Identifier: Apache-2.0
#include "NSCellPrivate.h"
#include "appkit/NSApplication.h"
#include "appkit/NSControl.h"
#include "appkit/NSWindow.h"
#include "foundation/NSDate.h"
#include "runtime/Table.h"

#include <optional>

namespace brindle {

void CellAccess::sendAction(NSCell& cell, NSView* view)
{
    const SEL action = cell.action();
    if (!action)
        return;
    const Ref<NSObject> target = cell.target();
    if (view && view->isKindOfClass(NSControl::cls()))
        static_cast<NSControl*>(view)->sendAction_to(action, target.get());
    else
        NSApplication::cls().sharedApplication()->sendAction_to_from(action, target.get(), view);
}

namespace {

    /// Lets the clock send periodic events for as long as it lives.
    class PeriodicEvents {
    public:
        explicit PeriodicEvents(NSCell& cell)
        {
            float delay = 0;
            float interval = 0;
            cell.getPeriodicDelay_interval(&delay, &interval);
            NSEvent::cls().startPeriodicEventsAfterDelay_withPeriod(delay, interval);
        }
        ~PeriodicEvents() { NSEvent::cls().stopPeriodicEvents(); }
        PeriodicEvents(const PeriodicEvents&) = delete;
        PeriodicEvents& operator=(const PeriodicEvents&) = delete;
    };

    /// One press, from start to end.
    struct Gesture {
        NSCell& cell;
        NSView& view;
        NSRect frame;
        bool untilMouseUp;
        NSPoint last {};
        bool goesOn = false; // the cell wants to hear of drags

        NSPoint pointOf(NSEvent& event) const
        {
            return view.convertPoint_fromView(event.locationInWindow(), nullptr);
        }
        bool sendsOn(NSEventType type) const
        {
            return static_cast<NSEventMask>(cell.mouseDownFlags()) & NSEventMaskFromType(type);
        }
        void send() { CellAccess::sendAction(cell, &view); }
        bool contains(NSPoint point) const { return view.mouse_inRect(point, frame); }

        void start(NSEvent& press)
        {
            last = pointOf(press);
            goesOn = cell.startTrackingAt_inView(last, &view);
            if (sendsOn(NSLeftMouseDown))
                send();
        }
        /// Answers false when the pointer has left.
        bool drag(NSEvent& event)
        {
            const NSPoint point = pointOf(event);
            if (goesOn)
                goesOn = cell.continueTracking_at_inView(last, point, &view);
            const NSPoint before = std::exchange(last, point);
            if (sendsOn(NSLeftMouseDragged))
                send();
            if (untilMouseUp || contains(point))
                return true;
            cell.stopTracking_at_inView_mouseIsUp(before, point, &view, false);
            return false;
        }
        /// Answers whether it was a click.
        bool release(NSEvent& event)
        {
            const NSPoint point = pointOf(event);
            cell.stopTracking_at_inView_mouseIsUp(last, point, &view, true);
            if (!untilMouseUp && !contains(point))
                return false;
            cell.setNextState();
            if (sendsOn(NSLeftMouseUp))
                send();
            return true;
        }
    };

    Ref<NSEvent> nextEvent(NSEventMask mask)
    {
        // What waits on the main queue goes on although the pointer may be faster than it.
        NSRunLoop::cls().mainRunLoop()->runUntilIdle(NSEventTrackingRunLoopMode);
        return NSApplication::cls()
            .sharedApplication()
            ->nextEventMatchingMask_untilDate_inMode_dequeue(
                mask, NSDate::cls().distantFuture().get(), NSEventTrackingRunLoopMode, true);
    }

}

template <> struct NSCell::Methods<struct Tracking> {

    static bool trackMouse(NSCell& self, NSEvent* press, NSRect frame, NSView* view, bool untilUp)
    {
        if (!press || !view)
            return false;
        const Ref<NSCell> alive(&self);
        const Ref<NSView> viewAlive(view);
        const bool right = press->type() == NSRightMouseDown;
        const NSEventMask ups = NSLeftMouseUpMask | (right ? NSRightMouseUpMask : 0);
        const NSEventMask drags = NSLeftMouseDraggedMask | (right ? NSRightMouseDraggedMask : 0);
        Gesture gesture { self, *view, frame, untilUp };
        gesture.start(*press);
        std::optional<PeriodicEvents> repeating;
        if (gesture.sendsOn(NSPeriodic))
            repeating.emplace(self);
        for (;;) {
            maybe(view->window())->displayIfNeeded();
            const Ref<NSEvent> event = nextEvent(ups | drags | NSPeriodicMask);
            if (!event) {
                self.stopTracking_at_inView_mouseIsUp(gesture.last, gesture.last, view, false);
                return false;
            }
            const NSEventMask type = NSEventMaskFromType(event->type());
            if (type & ups)
                return gesture.release(*event);
            if (type & NSPeriodicMask)
                gesture.send();
            else if (!gesture.drag(*event))
                return false;
        }
    }

    static bool startTracking(NSCell& self, NSPoint, NSView*) { return self.isContinuous(); }
    static bool continueTracking(NSCell& self, NSPoint, NSPoint, NSView*)
    {
        return self.isContinuous();
    }
    static void stopTracking(NSCell&, NSPoint, NSPoint, NSView*, bool) { }
    static NSCellHitResult hitTest(NSCell& self, NSEvent* event, NSRect frame, NSView* view)
    {
        if (!event || !view)
            return NSCellHitNone;
        const NSPoint point = view->convertPoint_fromView(event->locationInWindow(), nullptr);
        if (!view->mouse_inRect(point, frame))
            return NSCellHitNone;
        if (self.type() == NSTextCellType && self.isEditable())
            return NSCellHitContentArea | NSCellHitEditableTextArea;
        return NSCellHitContentArea | (self.isEnabled() ? NSCellHitTrackableArea : NSCellHitNone);
    }
    static void periodicDelay(NSCell&, float* delay, float* interval)
    {
        if (delay)
            *delay = 0.2F;
        if (interval)
            *interval = 0.025F;
    }

    static void performClick(NSCell& self, NSObject*)
    {
        if (!self.isEnabled())
            return;
        const Ref<NSCell> alive(&self);
        const Ref<NSView> view = self.controlView();
        const auto show = [&](bool pressed) {
            self.highlight_withFrame_inView(pressed, maybe(view)->bounds(), view.get());
        };
        show(true);
        maybe(view)->displayIfNeeded();
        try {
            self.setNextState();
            CellAccess::sendAction(self, view.get());
        } catch (...) {
            show(false);
            throw;
        }
        show(false);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "trackMouse:inRect:ofView:untilMouseUp:", imp<trackMouse> },
            { "startTrackingAt:inView:", imp<startTracking> },
            { "continueTracking:at:inView:", imp<continueTracking> },
            { "stopTracking:at:inView:mouseIsUp:", imp<stopTracking> },
            { "hitTestForEvent:inRect:ofView:", imp<hitTest> },
            { "getPeriodicDelay:interval:", imp<periodicDelay> },
            { "performClick:", imp<performClick> },
        });
    }
};
BRINDLE_RECORD(NSCell, Tracking)

}
