// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSScrollView.h"

#include <algorithm>
#include <cmath>

#include "appkit/NSAnimationContext.h"
#include "appkit/NSEvent.h"
#include "appkit/NSWindow.h"
#include "appkit/views/NSViewPrivate.h"
#include "appkit/views/PropertyMovementPrivate.h"
#include "foundation/NSNotificationCenter.h"
#include "foundation/NSRunLoop.h"
#include "foundation/NSTimer.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSScrollView::Methods<struct Scrolling> {

    static constexpr double kShownSeconds = 0.7; // of overlay scrollers after the last movement
    static constexpr double kFadeSeconds = 0.25;
    static constexpr double kSettleSeconds = 0.15; // after which a wheel is at rest
    static constexpr CGFloat kWheelLine = 10; // points of a wheel's deltas that are a line

    // ---- where the content stands

    /// One direction of the content.
    struct Axis {
        CGFloat start; // of the document
        CGFloat whole;
        CGFloat place; // of what shows
        CGFloat shown;
        bool backward; // y of a document that is not flipped

        CGFloat room() const { return std::max(0.0, whole - shown); }
        CGFloat proportion() const { return whole > shown && whole > 0 ? shown / whole : 1; }
        double value() const
        {
            if (!(room() > 0))
                return 0;
            const double value = (place - start) / room();
            return backward ? 1 - value : value;
        }
        CGFloat placeFor(double value) const
        {
            return start + room() * (backward ? 1 - value : value);
        }
    };
    static NSRect documentFrame(NSScrollView& self)
    {
        const Ref<NSView> document = self.documentView();
        return document ? document->frame() : NSZeroRect;
    }
    static Axis across(NSScrollView& self)
    {
        const NSRect document = documentFrame(self);
        const NSRect shown = maybe(self.contentView_)->bounds();
        return { NSMinX(document), document.size.width, NSMinX(shown), shown.size.width, false };
    }
    static Axis along(NSScrollView& self)
    {
        const NSRect document = documentFrame(self);
        const NSRect shown = maybe(self.contentView_)->bounds();
        return { NSMinY(document), document.size.height, NSMinY(shown), shown.size.height,
            !maybe(self.contentView_)->isFlipped() };
    }

    static bool show(NSScroller* scroller, const Axis& axis)
    {
        if (!scroller)
            return false;
        const bool moves = scroller->doubleValue() != axis.value()
            || scroller->knobProportion() != axis.proportion();
        scroller->setKnobProportion(axis.proportion());
        scroller->setDoubleValue(axis.value());
        return moves;
    }
    static bool isStale(const Ref<NSScroller>& scroller, const Axis& axis)
    {
        return scroller && scroller->isHidden() == (axis.room() > 0);
    }
    static void reflect(NSScrollView& self, NSClipView* clip)
    {
        if (!clip || self.contentView_ != clip || self.tiling_)
            return;
        const Ref<NSScrollView> alive(&self);
        const Axis x = across(self);
        const Axis y = along(self);
        if (self.autohides_
            && (isStale(self.verticalScroller_, y) || isStale(self.horizontalScroller_, x)))
            return self.tile();
        const bool movedX = show(self.horizontalScroller_.get(), x);
        const bool movedY = show(self.verticalScroller_.get(), y);
        if (movedX || movedY)
            self.flashScrollers();
        if (self.headerClip_)
            self.headerClip_->scrollToPoint({ x.place, self.headerClip_->bounds().origin.y });
    }

    // ---- overlay scrollers come and go

    static Ref<NSTimer> later(double seconds, const Block<void(NSTimer*)>& code)
    {
        const Ref<NSTimer> timer
            = NSTimer::cls().timerWithTimeInterval_repeats_block(seconds, false, code);
        NSRunLoop::cls().mainRunLoop()->addTimer_forMode(timer.get(), NSRunLoopCommonModes);
        return timer;
    }
    /// Starts a countdown, or starts it anew.
    template <void (*Then)(NSScrollView&)>
    static void countDown(NSScrollView& self, Ref<NSTimer>& timer, double seconds)
    {
        if (timer && timer->isValid())
            return timer->restart(seconds);
        timer = later(seconds, [view = WeakRef<NSScrollView>(&self)](NSTimer*) {
            if (const Ref<NSScrollView> present = view.get())
                Then(*present);
        });
    }
    static void setAlphaSlowly(NSScrollView& self, CGFloat alpha, double seconds)
    {
        inAnimationGroup([&](NSAnimationContext& context) {
            context.setDuration(seconds);
            for (const Ref<NSScroller>& scroller :
                { self.verticalScroller_, self.horizontalScroller_ }) {
                if (scroller)
                    scroller->animator()->setAlphaValue(alpha);
            }
        });
    }
    static bool isHeld(const Ref<NSScroller>& scroller)
    {
        return scroller
            && (scroller->hitPart() != NSScrollerNoPart || scroller->send<"isHovered", bool>());
    }
    static void fade(NSScrollView& self)
    {
        if (self.faded_ || isHeld(self.verticalScroller_) || isHeld(self.horizontalScroller_))
            return;
        self.faded_ = true;
        setAlphaSlowly(self, 0, kFadeSeconds);
    }
    static void flash(NSScrollView& self)
    {
        if (self.scrollerStyle_ != NSScrollerStyleOverlay) {
            maybe(self.fade_)->invalidate();
            return;
        }
        if (!self.window() || !(self.verticalScroller_ || self.horizontalScroller_))
            return;
        if (std::exchange(self.faded_, false))
            setAlphaSlowly(self, 1, 0);
        countDown<fade>(self, self.fade_, kShownSeconds);
    }
    static void didMoveToWindow(NSScrollView& self)
    {
        super<NSScrollView, "viewDidMoveToWindow">(self);
        self.flashScrollers();
    }

    // ---- the user scrolls

    static void post(NSScrollView& self, NSString* name)
    {
        NSNotificationCenter::cls().defaultCenter()->postNotificationName_object(name, &self);
    }
    static void begin(NSScrollView& self)
    {
        if (!std::exchange(self.live_, true))
            post(self, NSScrollViewWillStartLiveScrollNotification);
    }
    static void end(NSScrollView& self)
    {
        if (!self.tracking_ && std::exchange(self.live_, false))
            post(self, NSScrollViewDidEndLiveScrollNotification);
    }
    static NSPoint adjusted(NSScrollView& self, NSClipView& clip, NSPoint wanted)
    {
        const Ref<NSView> document = self.documentView();
        if (!document)
            return wanted;
        const NSRect proposed
            = document->convertRect_fromView({ wanted, clip.bounds().size }, &clip);
        const NSRect taken = adjustScroll(document, proposed);
        return taken == proposed ? wanted : clip.convertRect_fromView(taken, document.get()).origin;
    }
    static void scrollTo(NSScrollView& self, NSPoint wanted)
    {
        const Ref<NSScrollView> alive(&self);
        const Ref<NSClipView> clip = self.contentView_;
        if (!clip)
            return;
        const NSPoint before = clip->bounds().origin;
        const NSPoint point = clip->constrainScrollPoint(adjusted(self, *clip, wanted));
        if (point == before)
            return;
        begin(self);
        // Content that moves by degrees stays where the user takes it over.
        PropertyMovements::stop(*clip, kMovingBoundsOrigin);
        clip->scrollToPoint(point);
        if (clip->bounds().origin != before)
            post(self, NSScrollViewDidLiveScrollNotification);
        if (!self.tracking_)
            countDown<end>(self, self.settle_, kSettleSeconds);
    }
    /// Moves what shows to the right and down, in points.
    static NSPoint moved(NSScrollView& self, CGFloat right, CGFloat down)
    {
        const Axis y = along(self);
        return { across(self).place + right, y.place + (y.backward ? -down : down) };
    }
    static void scrollBy(NSScrollView& self, CGFloat right, CGFloat down)
    {
        scrollTo(self, moved(self, right, down));
    }

    // ---- the wheel

    // Content lies on whole pixels; what is less waits for more.
    static CGFloat wholePixels(NSScrollView& self, CGFloat place, CGFloat& carry)
    {
        const Ref<NSWindow> window = self.window();
        const CGFloat scale = window ? window->backingScaleFactor() : 1;
        const CGFloat wanted = place + carry;
        const CGFloat whole = std::round(wanted * scale) / scale;
        carry = wanted - whole;
        return whole;
    }
    static NSSize deltaOf(NSScrollView& self, NSEvent& event)
    {
        NSSize delta { event.scrollingDeltaX(), event.scrollingDeltaY() };
        if ((event.modifierFlags() & NSShiftKeyMask) && delta.width == 0)
            std::swap(delta.width, delta.height);
        if (!event.hasPreciseScrollingDeltas()) {
            delta.width *= self.horizontalLine_ / kWheelLine;
            delta.height *= self.verticalLine_ / kWheelLine;
        }
        const bool sideways = std::abs(delta.width) > std::abs(delta.height);
        if (!std::isfinite(delta.width) || (self.predominantAxis_ && !sideways))
            delta.width = 0;
        if (!std::isfinite(delta.height) || (self.predominantAxis_ && sideways))
            delta.height = 0;
        return delta;
    }
    static void scrollWheel(NSScrollView& self, NSEvent* event)
    {
        if (!event)
            return;
        const NSSize delta = deltaOf(self, *event);
        const bool sideways = delta.width != 0 && across(self).room() > 0;
        const bool upAndDown = delta.height != 0 && along(self).room() > 0;
        if (!sideways && !upAndDown)
            return super<NSScrollView, "scrollWheel:">(self, event);
        NSPoint point = moved(self, -delta.width, -delta.height);
        point.x = wholePixels(self, point.x, self.carry_.width);
        point.y = wholePixels(self, point.y, self.carry_.height);
        scrollTo(self, point);
    }

    // ---- scrollers

    static CGFloat page(CGFloat shown, CGFloat kept) { return shown > kept ? shown - kept : shown; }
    static void scrollWithKnob(NSScrollView& self, NSScroller& scroller)
    {
        const Axis x = across(self);
        const Axis y = along(self);
        NSPoint point { x.place, y.place };
        CGFloat none = 0;
        if (self.verticalScroller_ == &scroller)
            point.y = wholePixels(self, y.placeFor(scroller.doubleValue()), none);
        else
            point.x = wholePixels(self, x.placeFor(scroller.doubleValue()), none);
        scrollTo(self, point);
    }
    static void scrollSteps(NSScrollView& self, bool vertical, CGFloat step)
    {
        scrollBy(self, vertical ? 0 : step, vertical ? step : 0);
    }
    static void scrollWithScroller(NSScrollView& self, NSObject* sender)
    {
        const Ref<NSScroller> scroller(static_cast<NSScroller*>(sender));
        const bool vertical = scroller && self.verticalScroller_ == scroller;
        if (!vertical && !(scroller && self.horizontalScroller_ == scroller))
            return;
        const CGFloat paged = vertical ? page(along(self).shown, self.verticalPage_)
                                       : page(across(self).shown, self.horizontalPage_);
        const CGFloat line = vertical ? self.verticalLine_ : self.horizontalLine_;
        switch (scroller->hitPart()) {
        case NSScrollerDecrementPage:
            return scrollSteps(self, vertical, -paged);
        case NSScrollerIncrementPage:
            return scrollSteps(self, vertical, paged);
        case NSScrollerDecrementLine:
            return scrollSteps(self, vertical, -line);
        case NSScrollerIncrementLine:
            return scrollSteps(self, vertical, line);
        case NSScrollerKnob:
            if (!self.dynamic_)
                return;
            [[fallthrough]];
        default:
            return scrollWithKnob(self, *scroller);
        }
    }
    static void scrollerWasTaken(NSScrollView& self, NSScroller*)
    {
        self.tracking_ = true;
        begin(self);
        self.flashScrollers();
    }
    static void scrollerWasReleased(NSScrollView& self, NSScroller* scroller)
    {
        if (!self.dynamic_ && scroller)
            scrollWithKnob(self, *scroller);
        self.tracking_ = false;
        end(self);
        self.flashScrollers();
    }
    static void scrollerWasHovered(NSScrollView& self, NSScroller*) { self.flashScrollers(); }

    // ---- the keyboard

    static void pageUp(NSScrollView& self, NSObject*)
    {
        scrollBy(self, 0, -page(along(self).shown, self.verticalPage_));
    }
    static void pageDown(NSScrollView& self, NSObject*)
    {
        scrollBy(self, 0, page(along(self).shown, self.verticalPage_));
    }
    static void lineUp(NSScrollView& self, NSObject*) { scrollBy(self, 0, -self.verticalLine_); }
    static void lineDown(NSScrollView& self, NSObject*) { scrollBy(self, 0, self.verticalLine_); }
    static void toBeginning(NSScrollView& self, NSObject*)
    {
        scrollTo(self, { across(self).place, along(self).placeFor(0) });
    }
    static void toEnd(NSScrollView& self, NSObject*)
    {
        scrollTo(self, { across(self).place, along(self).placeFor(1) });
    }
    static bool scrollsByKey(NSScrollView& self, unichar key)
    {
        const bool upAndDown = along(self).room() > 0;
        switch (key) {
        case NSPageUpFunctionKey:
            return upAndDown && (pageUp(self, nullptr), true);
        case NSPageDownFunctionKey:
            return upAndDown && (pageDown(self, nullptr), true);
        case NSHomeFunctionKey:
            return upAndDown && (toBeginning(self, nullptr), true);
        case NSEndFunctionKey:
            return upAndDown && (toEnd(self, nullptr), true);
        case NSUpArrowFunctionKey:
            return upAndDown && (lineUp(self, nullptr), true);
        case NSDownArrowFunctionKey:
            return upAndDown && (lineDown(self, nullptr), true);
        case NSLeftArrowFunctionKey:
            return across(self).room() > 0 && (scrollBy(self, -self.horizontalLine_, 0), true);
        case NSRightArrowFunctionKey:
            return across(self).room() > 0 && (scrollBy(self, self.horizontalLine_, 0), true);
        default:
            return false;
        }
    }
    static void keyDown(NSScrollView& self, NSEvent* event)
    {
        const Ref<NSString> typed = maybe(event)->charactersIgnoringModifiers();
        const NSEventModifierFlags held
            = NSShiftKeyMask | NSControlKeyMask | NSAlternateKeyMask | NSCommandKeyMask;
        const bool plain = typed && typed->length() == 1 && !(event->modifierFlags() & held);
        if (!plain || !scrollsByKey(self, typed->characterAtIndex(0)))
            super<NSScrollView, "keyDown:">(self, event);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "reflectScrolledClipView:", imp<reflect> },
            { "flashScrollers", imp<flash> },
            { "viewDidMoveToWindow", imp<didMoveToWindow> },
            { "scrollWheel:", imp<scrollWheel> },
            { "scrollWithScroller:", imp<scrollWithScroller> },
            { "scrollerWasTaken:", imp<scrollerWasTaken> },
            { "scrollerWasReleased:", imp<scrollerWasReleased> },
            { "scrollerWasHovered:", imp<scrollerWasHovered> },
            { "keyDown:", imp<keyDown> },
            { "pageUp:", imp<pageUp> },
            { "pageDown:", imp<pageDown> },
            { "scrollPageUp:", imp<pageUp> },
            { "scrollPageDown:", imp<pageDown> },
            { "scrollLineUp:", imp<lineUp> },
            { "scrollLineDown:", imp<lineDown> },
            { "scrollToBeginningOfDocument:", imp<toBeginning> },
            { "scrollToEndOfDocument:", imp<toEnd> },
        });
    }
};
BRINDLE_RECORD(NSScrollView, Scrolling)

}
