// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>
#include <numbers>

#include "ControlDrawingPrivate.h"
#include "SliderPrivate.h"
#include "appkit/NSApplication.h"
#include "appkit/NSColor.h"
#include "appkit/NSEvent.h"
#include "foundation/Exceptions.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSSliderCell::Methods<struct Drawing> {

    static constexpr CGFloat kBar = 4; // the bar's thickness
    static constexpr CGFloat kTick = 5; // a mark's length
    static constexpr CGFloat kTickGap = 2; // between knob and marks
    static constexpr double kTurn = 2 * std::numbers::pi;

    // ---- the cell's place

    static NSRect placeOf(NSSliderCell& self)
    {
        const Ref<NSView> view = self.controlView();
        const bool fills = view && view->isKindOfClass(NSSlider::cls());
        return fills ? view->bounds() : self.track_;
    }
    static bool isVertical(NSSliderCell& self)
    {
        const NSSize size = placeOf(self).size;
        return self.fixedDirection_ ? self.vertical_ : size.height > size.width;
    }
    static bool isDial(NSSliderCell& self) { return self.type_ == NSCircularSlider; }
    static bool isFlipped(NSSliderCell& self)
    {
        const Ref<NSView> view = self.controlView();
        return !view || view->isFlipped();
    }
    static CGFloat knobSide(NSSliderCell& self)
    {
        switch (self.controlSize()) {
        case NSControlSizeLarge:
            return 20;
        case NSControlSizeSmall:
            return 13;
        case NSControlSizeMini:
            return 11;
        default:
            return 16;
        }
    }
    static CGFloat dialSide(NSSliderCell& self) { return 1.5 * knobSide(self); }
    static double part(NSSliderCell& self)
    {
        const double min = self.minValue();
        // Halves, because the distance of two ends may be too large for a number.
        const double width = self.maxValue() / 2 - min / 2;
        return width > 0 ? (self.doubleValue() / 2 - min / 2) / width : 0;
    }
    static double valueAt(NSSliderCell& self, double part)
    {
        const double clamped = std::clamp(part, 0.0, 1.0);
        return self.minValue() * (1 - clamped) + self.maxValue() * clamped;
    }

    // ---- a bar. What follows counts along it, from the least value on, and across it, from the upper or left side

    static CGFloat tickRoom(NSSliderCell& self)
    {
        return self.numberOfTickMarks() > 0 ? kTick + kTickGap : 0;
    }
    struct Lane {
        NSRect place;
        bool upright;
        bool down; // y goes down
        CGFloat start; // the knob's middle at the least value, along
        CGFloat way; // how far it goes
        CGFloat middle; // of the bar, across
        bool ticksFirst; // the marks stand at the lesser coordinate

        NSRect rect(CGFloat along, CGFloat across, CGFloat length, CGFloat breadth) const
        {
            const CGFloat from = upright && down ? NSMaxY(place) - along - length : along;
            return upright
                ? NSMakeRect(
                    NSMinX(place) + across, down ? from : NSMinY(place) + along, breadth, length)
                : NSMakeRect(NSMinX(place) + along, NSMinY(place) + across, length, breadth);
        }
        CGFloat along(NSPoint point) const
        {
            if (!upright)
                return point.x - NSMinX(place);
            return down ? NSMaxY(place) - point.y : point.y - NSMinY(place);
        }
    };
    static Lane lane(NSSliderCell& self, bool down)
    {
        Lane lane {};
        lane.place = placeOf(self);
        lane.upright = isVertical(self);
        lane.down = down;
        const NSSize size = lane.place.size;
        const CGFloat length = lane.upright ? size.height : size.width;
        const CGFloat breadth = lane.upright ? size.width : size.height;
        const CGFloat ends = controls::kRingRoom + knobSide(self) / 2;
        lane.start = ends;
        lane.way = std::max(0.0, length - 2 * ends);
        // Above is where y is less in a flipped view; left is where x is less.
        const bool above = self.tickMarkPosition() == NSTickMarkAbove;
        lane.ticksFirst = lane.upright || down ? above : !above;
        const CGFloat room = tickRoom(self);
        lane.middle = (breadth - room) / 2 + (lane.ticksFirst ? room : 0);
        return lane;
    }
    static NSRect knobOnBar(NSSliderCell& self, const Lane& lane)
    {
        const CGFloat side = knobSide(self);
        const CGFloat at = lane.start + lane.way * part(self);
        return lane.rect(at - side / 2, lane.middle - side / 2, side, side);
    }
    static NSRect barRect(NSSliderCell& self, bool flipped)
    {
        if (isDial(self))
            return dialRect(self);
        const Lane bar = lane(self, flipped);
        const CGFloat side = knobSide(self) / 2;
        return bar.rect(bar.start - side, bar.middle - kBar / 2, bar.way + 2 * side, kBar);
    }

    // ---- a dial

    static NSRect dialRect(NSSliderCell& self)
    {
        const NSRect place = placeOf(self);
        const CGFloat room = self.numberOfTickMarks() > 0 ? kTick : 0;
        const CGFloat side = std::max(0.0,
            std::min({ dialSide(self), place.size.width - 2 * (controls::kRingRoom + room),
                place.size.height - 2 * (controls::kRingRoom + room) }));
        return NSMakeRect(NSMidX(place) - side / 2, NSMidY(place) - side / 2, side, side);
    }
    static NSPoint onDial(NSSliderCell& self, double part, CGFloat radius, bool down)
    {
        const NSRect dial = dialRect(self);
        const double angle = part * kTurn;
        return { NSMidX(dial) + std::sin(angle) * radius,
            NSMidY(dial) + std::cos(angle) * radius * (down ? -1 : 1) };
    }
    static NSRect dot(NSSliderCell& self, bool down)
    {
        const CGFloat side = std::max(3.0, std::round(dialRect(self).size.width / 5));
        const NSPoint middle = onDial(self, part(self), dialRect(self).size.width / 2 - side, down);
        return NSMakeRect(middle.x - side / 2, middle.y - side / 2, side, side);
    }

    // ---- parts for others

    static NSRect knobRect(NSSliderCell& self, bool flipped)
    {
        return isDial(self) ? dot(self, flipped) : knobOnBar(self, lane(self, flipped));
    }
    static CGFloat knobThickness(NSSliderCell& self) { return knobSide(self); }
    static NSRect trackRect(NSSliderCell& self) { return placeOf(self); }
    static double tickPart(NSSliderCell& self, NSInteger index)
    {
        const NSInteger count = self.numberOfTickMarks();
        if (count == 1)
            return 0.5;
        // The last mark of a dial would lie on the first.
        return static_cast<double>(index) / static_cast<double>(isDial(self) ? count : count - 1);
    }
    static NSRect tickRect(NSSliderCell& self, NSInteger index)
    {
        if (index < 0 || index >= self.numberOfTickMarks())
            raise("NSRangeException",
                "*** -[NSSliderCell rectOfTickMarkAtIndex:]: there is no such mark");
        const bool down = isFlipped(self);
        if (isDial(self)) {
            const NSPoint at = onDial(
                self, tickPart(self, index), dialRect(self).size.width / 2 + kTick - 1, down);
            return NSMakeRect(at.x - 1, at.y - 1, 2, 2);
        }
        const Lane bar = lane(self, down);
        const CGFloat half = knobSide(self) / 2 + kTickGap;
        const CGFloat across = bar.ticksFirst ? bar.middle - half - kTick : bar.middle + half;
        return bar.rect(bar.start + bar.way * tickPart(self, index) - 0.5, across, 1, kTick);
    }
    static NSInteger tickAt(NSSliderCell& self, NSPoint point)
    {
        constexpr CGFloat kReach = 2;
        for (NSInteger i = 0; i < self.numberOfTickMarks(); ++i) {
            if (NSPointInRect(point, NSInsetRect(tickRect(self, i), -kReach, -kReach)))
                return i;
        }
        return NSNotFound;
    }
    static NSSize cellSizeForBounds(NSSliderCell& self, NSRect bounds)
    {
        const CGFloat breadth = knobSide(self) + 2 * controls::kRingRoom + tickRoom(self);
        if (isDial(self)) {
            const CGFloat side = dialSide(self) + 2 * controls::kRingRoom
                + (self.numberOfTickMarks() > 0 ? 2 * kTick : 0);
            return { side, side };
        }
        const CGFloat length = 100;
        const NSSize wanted
            = isVertical(self) ? NSSize { breadth, length } : NSSize { length, breadth };
        return { std::min(wanted.width, bounds.size.width),
            std::min(wanted.height, bounds.size.height) };
    }

    // ---- drawing

    static controls::Shade groundShade(NSSliderCell& self)
    {
        const double level = controls::isDark() ? 1 : 0;
        return { level, level, level,
            (controls::isDark() ? 0.20 : 0.14) * (self.isEnabled() ? 1 : 0.5) };
    }
    static controls::Shade fillShade(NSSliderCell& self)
    {
        const Ref<NSView> view = self.controlView();
        const bool active = controls::isActive(view.get());
        controls::Shade shade = controls::shadeOf(self.fill_ ? self.fill_
                : active                                     ? NSColor::cls().controlAccentColor()
                                                             : NSColor::cls().knobColor());
        if (!self.isEnabled())
            shade.alpha *= 0.4;
        return shade;
    }
    static controls::Look look(NSSliderCell& self)
    {
        return { .enabled = self.isEnabled(), .pressed = self.isHighlighted() };
    }
    static void drawBar(NSSliderCell& self, NSRect rect, bool flipped)
    {
        if (isDial(self))
            return controls::drawBezel(controls::onPixels(rect), rect.size.width / 2, look(self));
        const NSRect bar = controls::onPixels(rect);
        controls::fillRounded(bar, kBar / 2, groundShade(self));
        const Lane of = lane(self, flipped);
        const CGFloat side = knobSide(self) / 2;
        const NSRect filled
            = of.rect(of.start - side, of.middle - kBar / 2, of.way * part(self) + side, kBar);
        // Marks ask where it stands, not how far it has come.
        if (self.numberOfTickMarks() == 0)
            controls::fillRounded(controls::onPixels(filled), kBar / 2, fillShade(self));
    }
    static void drawKnobIn(NSSliderCell& self, NSRect rect)
    {
        if (isDial(self))
            return controls::fillRounded(
                rect, rect.size.width / 2, controls::inkOn({ .enabled = self.isEnabled() }));
        const NSRect knob = controls::onPixels(rect);
        // Opaque below: the bar must not shine through a knob that is faint.
        controls::fillRounded(
            knob, knob.size.width / 2, controls::shadeOf(NSColor::cls().windowBackgroundColor()));
        controls::drawBezel(knob, knob.size.width / 2, look(self));
    }
    static void drawKnob(NSSliderCell& self)
    {
        self.drawKnob(self.knobRectFlipped(isFlipped(self)));
    }
    static void drawTicks(NSSliderCell& self)
    {
        const auto shade
            = controls::shadeOf(self.isEnabled() ? NSColor::cls().tertiaryLabelColor()
                                                 : NSColor::cls().quaternaryLabelColor());
        for (NSInteger i = 0; i < self.numberOfTickMarks(); ++i) {
            const NSRect mark = self.rectOfTickMarkAtIndex(i);
            controls::fillRounded(controls::onPixels(mark), isDial(self) ? 1 : 0, shade);
        }
    }
    static bool showsRing(NSSliderCell& self, NSView* view)
    {
        const bool byPointer = view && view->isKindOfClass(NSSlider::cls())
            && SliderAccess::focusedByPointer(static_cast<NSSlider&>(*view));
        return self.showsFirstResponder() && !byPointer
            && self.focusRingType() != NSFocusRingTypeNone;
    }
    static void drawWithFrame(NSSliderCell& self, NSRect frame, NSView* view)
    {
        self.track_ = frame;
        self.drawInteriorWithFrame_inView(frame, view);
        if (!showsRing(self, view))
            return;
        const NSRect around = controls::onPixels(
            isDial(self) ? dialRect(self) : self.knobRectFlipped(isFlipped(self)));
        controls::drawRing(around, around.size.height / 2);
    }
    static void drawInterior(NSSliderCell& self, NSRect, NSView* view)
    {
        const bool flipped = !view || view->isFlipped();
        if (NSIsEmptyRect(placeOf(self)))
            return;
        self.drawBarInside_flipped(self.barRectFlipped(flipped), flipped);
        self.drawTickMarks();
        self.drawKnob(self.knobRectFlipped(flipped));
    }

    // ---- the pointer

    static double partAt(NSSliderCell& self, NSPoint point)
    {
        const bool down = isFlipped(self);
        if (!isDial(self)) {
            const Lane bar = lane(self, down);
            return bar.way > 0 ? (bar.along(point) - self.grip_ - bar.start) / bar.way : 0;
        }
        const NSRect dial = dialRect(self);
        const double up = (point.y - NSMidY(dial)) * (down ? -1 : 1);
        const double turn = std::atan2(point.x - NSMidX(dial), up) / kTurn;
        return turn < 0 ? turn + 1 : turn;
    }
    static void moveTo(NSSliderCell& self, NSPoint point)
    {
        if (std::isnan(point.x) || std::isnan(point.y))
            return;
        double value = valueAt(self, partAt(self, point));
        const Ref<NSEvent> event = NSApplication::cls().sharedApplication()->currentEvent();
        const double step = self.altIncrementValue();
        if (step > 0 && event && (event->modifierFlags() & NSAlternateKeyMask))
            value = self.minValue() + std::round((value - self.minValue()) / step) * step;
        self.setDoubleValue(SliderAccess::allowed(self, value));
    }
    static bool startTracking(NSSliderCell& self, NSPoint point, NSView*)
    {
        const Lane bar = lane(self, isFlipped(self));
        const NSRect knob = knobOnBar(self, bar);
        const bool taken = !isDial(self) && NSPointInRect(point, knob);
        self.grip_ = taken ? bar.along(point) - bar.along({ NSMidX(knob), NSMidY(knob) }) : 0;
        if (!taken)
            moveTo(self, point);
        return true;
    }
    static bool continueTracking(NSSliderCell& self, NSPoint, NSPoint point, NSView*)
    {
        moveTo(self, point);
        return true;
    }

    static void table(Builder& t)
    {
        t.methods({
            { "isVertical", imp<isVertical> },
            { "knobThickness", imp<knobThickness> },
            { "trackRect", imp<trackRect> },
            { "barRectFlipped:", imp<barRect> },
            { "knobRectFlipped:", imp<knobRect> },
            { "drawBarInside:flipped:", imp<drawBar> },
            { "drawKnob:", imp<drawKnobIn> },
            { "drawKnob", imp<drawKnob> },
            { "drawTickMarks", imp<drawTicks> },
            { "rectOfTickMarkAtIndex:", imp<tickRect> },
            { "indexOfTickMarkAtPoint:", imp<tickAt> },
            { "cellSizeForBounds:", imp<cellSizeForBounds> },
            { "drawWithFrame:inView:", imp<drawWithFrame> },
            { "drawInteriorWithFrame:inView:", imp<drawInterior> },
            { "startTrackingAt:inView:", imp<startTracking> },
            { "continueTracking:at:inView:", imp<continueTracking> },
        });
    }
};
BRINDLE_RECORD(NSSliderCell, Drawing)

}
