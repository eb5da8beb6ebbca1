// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSScroller.h"

#include "appkit/NSApplication.h"
#include "foundation/NSDate.h"
#include "foundation/NSRunLoop.h"
#include "foundation/NSTimer.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSScroller::Methods<struct Tracking> {

    static constexpr double kFirstRepeat = 0.35; // seconds until a held press turns the next page
    static constexpr double kRepeat = 0.08;

    static bool isUpright(NSScroller& self)
    {
        const NSRect bounds = self.bounds();
        return bounds.size.height >= bounds.size.width;
    }
    static CGFloat along(NSScroller& self, NSEvent& event)
    {
        const NSPoint point = self.convertPoint_fromView(event.locationInWindow(), nullptr);
        return isUpright(self) ? point.y : point.x;
    }
    static CGFloat startOf(NSScroller& self, NSRect rect)
    {
        return isUpright(self) ? NSMinY(rect) : NSMinX(rect);
    }
    static CGFloat lengthOf(NSScroller& self, NSRect rect)
    {
        return isUpright(self) ? rect.size.height : rect.size.width;
    }
    static Ref<NSEvent> nextEvent(NSDate* until)
    {
        return NSApplication::cls()
            .sharedApplication()
            ->nextEventMatchingMask_untilDate_inMode_dequeue(
                NSLeftMouseDraggedMask | NSLeftMouseUpMask, until, NSEventTrackingRunLoopMode,
                true);
    }
    static void sendAction(NSScroller& self)
    {
        self.sendAction_to(self.action(), self.target().get());
    }

    /// Whoever the scroller belongs to learns when the user takes it and lets it go.
    class Held {
    public:
        explicit Held(NSScroller& scroller, NSScrollerPart part)
            : scroller_(&scroller)
            , owner_(scroller.superview())
        {
            scroller.hitPart_ = part;
            scroller.setNeedsDisplay(true);
            tell<"scrollerWasTaken:">();
        }
        ~Held()
        {
            scroller_->hitPart_ = NSScrollerNoPart;
            scroller_->setNeedsDisplay(true);
            tell<"scrollerWasReleased:">();
        }
        Held(const Held&) = delete;
        Held& operator=(const Held&) = delete;

    private:
        template <Text S> void tell()
        {
            if (owner_ && owner_->respondsToSelector(selector<S>))
                owner_->send<S>(scroller_.get());
        }
        Ref<NSScroller> scroller_;
        Ref<NSView> owner_;
    };

    // ---- the knob

    static void followKnob(NSScroller& self, CGFloat grip)
    {
        while (const Ref<NSEvent> event = nextEvent(NSDate::cls().distantFuture().get())) {
            if (event->type() == NSLeftMouseUp)
                return;
            moveKnob(self, along(self, *event) - grip);
        }
    }
    static void moveKnob(NSScroller& self, CGFloat start)
    {
        const NSRect slot = self.rectForPart(NSScrollerKnobSlot);
        const CGFloat room
            = lengthOf(self, slot) - lengthOf(self, self.rectForPart(NSScrollerKnob));
        if (!(room > 0))
            return;
        self.setDoubleValue((start - startOf(self, slot)) / room);
        sendAction(self);
    }
    static void trackKnob(NSScroller& self, NSEvent* press)
    {
        if (!press)
            return;
        const Ref<NSScroller> alive(&self);
        const Held held(self, NSScrollerKnob);
        followKnob(self, along(self, *press) - startOf(self, self.rectForPart(NSScrollerKnob)));
    }

    // ---- the slot

    // With Option the knob comes to the pointer and stays with it.
    static void jump(NSScroller& self, NSEvent& press)
    {
        const Held held(self, NSScrollerKnob);
        const CGFloat grip = lengthOf(self, self.rectForPart(NSScrollerKnob)) / 2;
        moveKnob(self, along(self, press) - grip);
        followKnob(self, grip);
    }
    /// Turns pages again and again while it lives, until the knob is under the pointer.
    class PageTurner {
    public:
        PageTurner(NSScroller& scroller, NSScrollerPart part, NSPoint place)
            : scroller_(scroller)
            , part_(part)
            , place_(place)
            , timer_(alloc<NSTimer>()->initWithFireDate_interval_repeats_block(
                  NSDate::cls().dateWithTimeIntervalSinceNow(kFirstRepeat).get(), kRepeat, true,
                  [this](NSTimer*) { turn(); }))
        {
            NSRunLoop::cls().mainRunLoop()->addTimer_forMode(
                timer_.get(), NSEventTrackingRunLoopMode);
        }
        ~PageTurner() { timer_->invalidate(); }
        PageTurner(const PageTurner&) = delete;
        PageTurner& operator=(const PageTurner&) = delete;
        void moveTo(NSPoint place) { place_ = place; }

    private:
        void turn()
        {
            const double before = scroller_.doubleValue();
            if (scroller_.testPart(place_) == part_)
                sendAction(scroller_);
            if (scroller_.doubleValue() == before)
                timer_->invalidate(); // the knob is there, or at the end
        }
        NSScroller& scroller_;
        NSScrollerPart part_;
        NSPoint place_; // of the pointer, in the window
        Ref<NSTimer> timer_;
    };
    static void turnPages(NSScroller& self, NSEvent& press, NSScrollerPart part)
    {
        const Held held(self, part);
        sendAction(self);
        PageTurner turner(self, part, press.locationInWindow());
        while (const Ref<NSEvent> event = nextEvent(NSDate::cls().distantFuture().get())) {
            if (event->type() == NSLeftMouseUp)
                return;
            turner.moveTo(event->locationInWindow());
        }
    }
    static void mouseDown(NSScroller& self, NSEvent* press)
    {
        if (!press || self.usableParts() == NSNoScrollerParts)
            return;
        const Ref<NSScroller> alive(&self);
        const Ref<NSEvent> event(press);
        const NSScrollerPart part = self.testPart(press->locationInWindow());
        if (part == NSScrollerKnob)
            self.trackKnob(press);
        else if (part != NSScrollerNoPart && (press->modifierFlags() & NSAlternateKeyMask))
            jump(self, *press);
        else if (part != NSScrollerNoPart)
            turnPages(self, *press, part);
    }

    // ---- the pointer above

    static void setHovered(NSScroller& self, bool hovered)
    {
        self.hovered_ = hovered;
        self.setNeedsDisplay(true);
        const Ref<NSView> owner = self.superview();
        if (owner && owner->respondsToSelector(selector<"scrollerWasHovered:">))
            owner->send<"scrollerWasHovered:">(&self);
    }
    static void mouseEntered(NSScroller& self, NSEvent*) { setHovered(self, true); }
    static void mouseExited(NSScroller& self, NSEvent*) { setHovered(self, false); }
    static bool isHovered(NSScroller& self) { return self.hovered_; }
    static bool yes(NSScroller&, NSEvent*) { return true; }
    static bool no(NSScroller&) { return false; }

    static void table(Builder& t)
    {
        t.methods({
            { "trackKnob:", imp<trackKnob> },
            { "mouseDown:", imp<mouseDown> },
            { "mouseEntered:", imp<mouseEntered> },
            { "mouseExited:", imp<mouseExited> },
            { "acceptsFirstMouse:", imp<yes> },
            { "acceptsFirstResponder", imp<no> },
        });
        t.properties({ property<&NSScroller::hovered_>(
            "hovered", nonatomic, readonly, getter("isHovered")) });
    }
};
BRINDLE_RECORD(NSScroller, Tracking)

}
