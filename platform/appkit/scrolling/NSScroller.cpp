// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSScroller.h"

#include <algorithm>
#include <cmath>

#include "appkit/NSColor.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/NSTrackingArea.h"
#include "appkit/controls/ControlDrawingPrivate.h"
#include "appkit/views/CodingPrivate.h"
#include "runtime/Table.h"

namespace brindle {

namespace {

    constexpr CGFloat kSlotMargin = 2; // before and after the knob's way
    constexpr CGFloat kShortestKnob = 24;

    CGFloat widthFor(NSControlSize size)
    {
        return size == NSControlSizeSmall || size == NSControlSizeMini ? 11 : 15;
    }

}

template <> struct NSScroller::Methods<struct Basics> {

    static CGFloat widthForSizeAndStyle(Class&, NSControlSize size, NSScrollerStyle)
    {
        return widthFor(size);
    }
    static CGFloat widthForSize(Class&, NSControlSize size) { return widthFor(size); }
    static CGFloat width(Class&) { return widthFor(NSControlSizeRegular); }
    static NSScrollerStyle preferredStyle(Class&) { return NSScrollerStyleOverlay; }
    static bool isCompatible(Class&) { return true; }

    static Ref<NSView> initWithFrame(NSScroller& self, NSRect frame)
    {
        Ref<NSView> made = super<NSScroller, "initWithFrame:", Ref<NSView>>(self, frame);
        if (made)
            feelPointer(self);
        return made;
    }
    static Ref<NSObject> initWithCoder(NSScroller& self, NSCoder* coder)
    {
        Ref<NSObject> made = super<NSScroller, "initWithCoder:", Ref<NSObject>>(self, coder);
        if (!made)
            return nullptr;
        code({ coder, true }, self);
        feelPointer(self);
        return made;
    }
    static void encode(NSScroller& self, NSCoder* coder)
    {
        super<NSScroller, "encodeWithCoder:">(self, coder);
        code({ coder, false }, self);
    }
    static void code(const NumberCoding& number, NSScroller& self)
    {
        number("NSCurValue"_ns, self.value_);
        number("NSPercent"_ns, self.knobProportion_);
        number("NSScrollerStyle"_ns, self.scrollerStyle_, NSScrollerStyleOverlay);
        number("NSKnobStyle"_ns, self.knobStyle_, NSScrollerKnobStyleLight);
    }
    static void feelPointer(NSScroller& self)
    {
        self.addTrackingArea(alloc<NSTrackingArea>()
                                 ->initWithRect_options_owner_userInfo(NSZeroRect,
                                     NSTrackingMouseEnteredAndExited | NSTrackingActiveAlways
                                         | NSTrackingInVisibleRect,
                                     &self, nullptr)
                                 .get());
    }

    // ---- value

    static void change(NSScroller& self, double& field, double value)
    {
        const double wanted = std::clamp(value, 0.0, 1.0);
        if (std::isnan(value) || field == wanted)
            return;
        field = wanted;
        self.setNeedsDisplay(true);
    }
    static double doubleValue(NSScroller& self) { return self.value_; }
    static void setDoubleValue(NSScroller& self, double value) { change(self, self.value_, value); }
    static float floatValue(NSScroller& self) { return static_cast<float>(self.doubleValue()); }
    static void setFloatValue(NSScroller& self, float value) { self.setDoubleValue(value); }
    static void setFloatValueAndPart(NSScroller& self, float value, CGFloat part)
    {
        self.setDoubleValue(value);
        self.setKnobProportion(part);
    }
    static void setKnobProportion(NSScroller& self, CGFloat part)
    {
        change(self, self.knobProportion_, part);
    }
    static void setStyle(NSScroller& self, NSScrollerStyle style)
    {
        if (self.scrollerStyle_ == style)
            return;
        self.scrollerStyle_ = style;
        self.setAlphaValue(1);
        self.setNeedsDisplay(true);
    }
    static void setKnobStyle(NSScroller& self, NSScrollerKnobStyle style)
    {
        self.knobStyle_ = style;
        self.setNeedsDisplay(true);
    }

    // ---- parts

    static bool isUpright(NSScroller& self)
    {
        const NSRect bounds = self.bounds();
        return bounds.size.height >= bounds.size.width;
    }
    /// A stretch of the scroller's length, from the top or left.
    struct Stretch {
        CGFloat start;
        CGFloat length;
    };
    static Stretch slot(NSScroller& self)
    {
        const NSRect bounds = self.bounds();
        const CGFloat whole = std::max(bounds.size.width, bounds.size.height);
        return { kSlotMargin, std::max(0.0, whole - 2 * kSlotMargin) };
    }
    static Stretch knob(NSScroller& self)
    {
        const Stretch way = slot(self);
        const CGFloat length = std::clamp(
            self.knobProportion() * way.length, std::min(kShortestKnob, way.length), way.length);
        return { way.start + (way.length - length) * self.doubleValue(), length };
    }
    static NSRect rectOf(NSScroller& self, Stretch stretch)
    {
        const NSRect b = self.bounds();
        if (!(stretch.length > 0))
            return NSZeroRect;
        return isUpright(self)
            ? NSMakeRect(NSMinX(b), NSMinY(b) + stretch.start, b.size.width, stretch.length)
            : NSMakeRect(NSMinX(b) + stretch.start, NSMinY(b), stretch.length, b.size.height);
    }
    static NSUsableScrollerParts usableParts(NSScroller& self)
    {
        const bool fits = slot(self).length >= 2 && !NSIsEmptyRect(self.bounds());
        return fits && self.knobProportion() < 1 && self.isEnabled() ? NSAllScrollerParts
                                                                     : NSNoScrollerParts;
    }
    static NSRect rectForPart(NSScroller& self, NSScrollerPart part)
    {
        const Stretch way = slot(self);
        if (part == NSScrollerKnobSlot)
            return rectOf(self, way);
        if (self.usableParts() == NSNoScrollerParts)
            return NSZeroRect;
        const Stretch held = knob(self);
        const CGFloat end = held.start + held.length;
        switch (part) {
        case NSScrollerKnob:
            return rectOf(self, held);
        case NSScrollerDecrementPage:
            return rectOf(self, { way.start, held.start - way.start });
        case NSScrollerIncrementPage:
            return rectOf(self, { end, way.start + way.length - end });
        default:
            return NSZeroRect;
        }
    }
    static NSScrollerPart testPart(NSScroller& self, NSPoint place)
    {
        const NSPoint point = self.convertPoint_fromView(place, nullptr);
        for (const NSScrollerPart part :
            { NSScrollerKnob, NSScrollerDecrementPage, NSScrollerIncrementPage }) {
            if (self.mouse_inRect(point, self.rectForPart(part)))
                return part;
        }
        return NSScrollerNoPart;
    }
    static void nothing(NSScroller&) { }

    // ---- drawing

    static bool isOverlay(NSScroller& self)
    {
        return self.scrollerStyle() == NSScrollerStyleOverlay;
    }
    static bool isOpaque(NSScroller& self) { return !isOverlay(self); }
    static bool isInUse(NSScroller& self)
    {
        return self.hovered_ || self.hitPart() != NSScrollerNoPart;
    }

    static bool isDark(NSScroller& self)
    {
        const NSScrollerKnobStyle style = self.knobStyle();
        return style == NSScrollerKnobStyleDefault ? controls::isDark()
                                                   : style == NSScrollerKnobStyleLight;
    }
    static void drawRect(NSScroller& self, NSRect)
    {
        if (!isOverlay(self)) {
            NSColor::cls().scrollBarColor()->set();
            NSRectFill(self.bounds());
        }
        self.drawKnobSlotInRect_highlight(
            self.rectForPart(NSScrollerKnobSlot), self.hitPart() != NSScrollerNoPart);
        if (self.usableParts() != NSNoScrollerParts)
            self.drawKnob();
    }
    // Beside the content a hair's line parts the slot from it; above the content the slot shows only while it is used.
    static void drawKnobSlot(NSScroller& self, NSRect, bool)
    {
        const NSRect bounds = self.bounds();
        const CGFloat hair = controls::pixel();
        const bool upright = isUpright(self);
        if (isOverlay(self) && !isInUse(self))
            return;
        if (isOverlay(self)) {
            const double level = isDark(self) ? 1 : 0;
            controls::fillRounded(bounds, 0, { 1 - level, 1 - level, 1 - level, 0.55 });
            controls::fillRounded(upright
                    ? NSMakeRect(NSMinX(bounds), NSMinY(bounds), hair, bounds.size.height)
                    : NSMakeRect(NSMinX(bounds), NSMinY(bounds), bounds.size.width, hair),
                0, { level, level, level, 0.14 });
            return;
        }
        NSColor::cls().gridColor()->set();
        NSRectFill(upright ? NSMakeRect(NSMinX(bounds), NSMinY(bounds), hair, bounds.size.height)
                           : NSMakeRect(NSMinX(bounds), NSMinY(bounds), bounds.size.width, hair));
    }
    /// How far the knob stands from the side of the content and from the other one.
    static std::pair<CGFloat, CGFloat> margins(NSScroller& self)
    {
        const NSRect bounds = self.bounds();
        const CGFloat width = std::min(bounds.size.width, bounds.size.height);
        if (isOverlay(self) && !isInUse(self))
            return { width - width * 0.4 - 2, 2 }; // slim, by the edge
        const CGFloat side = std::round(width * 0.23);
        return { side + 0.5, side - 0.5 };
    }
    static controls::Shade knobShade(NSScroller& self)
    {
        if (!isOverlay(self))
            return controls::shadeOf(
                isInUse(self) ? NSColor::cls().selectedKnobColor() : NSColor::cls().knobColor());
        const double level = isDark(self) ? 1 : 0;
        return { level, level, level, isInUse(self) ? 0.62 : 0.46 };
    }
    static void drawKnob(NSScroller& self)
    {
        const auto [inner, outer] = margins(self);
        const NSRect part = self.rectForPart(NSScrollerKnob);
        // On whole pixels: in a long document it moves by less than one.
        const NSRect knob = controls::onPixels(isUpright(self)
                ? NSMakeRect(NSMinX(part) + inner, NSMinY(part), part.size.width - inner - outer,
                    part.size.height)
                : NSMakeRect(NSMinX(part), NSMinY(part) + inner, part.size.width,
                    part.size.height - inner - outer));
        if (NSIsEmptyRect(knob))
            return;
        controls::fillRounded(
            knob, std::min(knob.size.width, knob.size.height) / 2, knobShade(self));
    }

    static void table(Builder& t)
    {
        t.classMethods({
            { "scrollerWidthForControlSize:scrollerStyle:", imp<widthForSizeAndStyle> },
            { "scrollerWidthForControlSize:", imp<widthForSize> },
            { "scrollerWidth", imp<width> },
            { "preferredScrollerStyle", imp<preferredStyle> },
            { "isCompatibleWithOverlayScrollers", imp<isCompatible> },
        });
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "initWithCoder:", imp<coding<initWithCoder>> },
            { "encodeWithCoder:", imp<coding<encode>> },
            { "doubleValue", imp<doubleValue> },
            { "setDoubleValue:", imp<setDoubleValue> },
            { "floatValue", imp<floatValue> },
            { "setFloatValue:", imp<setFloatValue> },
            { "setFloatValue:knobProportion:", imp<setFloatValueAndPart> },
            { "setKnobProportion:", imp<setKnobProportion> },
            { "setScrollerStyle:", imp<setStyle> },
            { "setKnobStyle:", imp<setKnobStyle> },
            { "usableParts", imp<usableParts> },
            { "rectForPart:", imp<rectForPart> },
            { "testPart:", imp<testPart> },
            { "checkSpaceForParts", imp<nothing> },
            { "isOpaque", imp<isOpaque> },
            { "drawRect:", imp<drawRect> },
            { "drawKnobSlotInRect:highlight:", imp<drawKnobSlot> },
            { "drawKnob", imp<drawKnob> },
        });
        t.properties({
            property<&NSScroller::knobProportion_>("knobProportion", nonatomic),
            property<&NSScroller::scrollerStyle_>("scrollerStyle", nonatomic),
            property<&NSScroller::knobStyle_>("knobStyle", nonatomic),
            property<&NSScroller::hitPart_>("hitPart", nonatomic, readonly),
        });
    }
};
BRINDLE_RECORD(NSScroller, Basics)

}
