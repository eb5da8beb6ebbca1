// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSSlider.h"

#include "SliderPrivate.h"
#include "appkit/NSApplication.h"
#include "appkit/NSEvent.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct NSSlider::Methods<struct Basics> {

    static void initialize(Class& self)
    {
        if (&self == static_cast<Class*>(NSSlider::cls()))
            NSSlider::cls().setCellClass(NSSliderCell::cls());
    }

    // ---- ready-made

    static Ref<NSSlider> with(
        Class& self, double value, double min, double max, NSObject* target, SEL action)
    {
        const Ref<NSSlider> slider = cast<NSSlider>(NSObject::Meta { &self }.alloc()->init());
        slider->setMinValue(min);
        slider->setMaxValue(max);
        slider->setDoubleValue(value);
        slider->setTarget(target);
        slider->setAction(action);
        slider->setFrameSize({ 100, 0 });
        slider->sizeToFit();
        return slider;
    }
    static Ref<NSSlider> plain(Class& self, NSObject* target, SEL action)
    {
        return with(self, 0, 0, 1, target, action);
    }

    // ---- what the cell does

    template <Text S, class R> static R ask(NSSlider& self)
    {
        return maybe(self.cell())->send<S, R>();
    }
    template <Text S, class R, class A> static R askWith(NSSlider& self, A argument)
    {
        return maybe(self.cell())->send<S, R>(argument);
    }
    template <Text S, class T> static void tell(NSSlider& self, T value)
    {
        maybe(self.cell())->send<S>(value);
        self.setNeedsDisplay(true);
    }
    // The long side is the host's.
    static void sizeToFit(NSSlider& self)
    {
        const Ref<NSCell> cell = self.cell();
        if (!cell)
            return;
        const NSSize now = self.frame().size;
        const NSSize fits = cell->cellSize();
        if (self.sliderType() == NSCircularSlider)
            return self.setFrameSize(fits);
        self.setFrameSize(self.isVertical() ? NSSize { fits.width, now.height }
                                            : NSSize { now.width, fits.height });
    }

    // ---- keyboard

    static bool becomeFirstResponder(NSSlider& self)
    {
        const Ref<NSEvent> cause = NSApplication::cls().sharedApplication()->currentEvent();
        self.focusedByPointer_ = cause && cause->type() == NSLeftMouseDown;
        return super<NSSlider, "becomeFirstResponder", bool>(self);
    }
    static void moveTo(NSSlider& self, NSSliderCell& cell, double value)
    {
        const Ref<NSSlider> alive(&self);
        self.focusedByPointer_ = false;
        const double before = self.doubleValue();
        self.setDoubleValue(SliderAccess::allowed(cell, value));
        self.setNeedsDisplay(true);
        if (self.doubleValue() != before)
            self.sendAction_to(self.action(), self.target().get());
    }
    static double stepOf(NSSliderCell& cell, NSEvent& event)
    {
        const double way = cell.maxValue() - cell.minValue();
        const NSInteger marks = cell.numberOfTickMarks();
        if ((event.modifierFlags() & NSAlternateKeyMask) && cell.altIncrementValue() > 0)
            return cell.altIncrementValue();
        if (cell.allowsTickMarkValuesOnly() && marks > 1)
            return way / static_cast<double>(marks - 1);
        return way / 20;
    }
    static void keyDown(NSSlider& self, NSEvent* event)
    {
        const Ref<NSCell> cell = self.cell();
        const Ref<NSString> typed = maybe(event)->charactersIgnoringModifiers();
        if (!self.isEnabled() || !maybe(typed)->length() || !cell
            || !cell->isKindOfClass(NSSliderCell::cls()))
            return super<NSSlider, "keyDown:">(self, event);
        auto& slider = static_cast<NSSliderCell&>(*cell);
        const double value = self.doubleValue();
        const double step = stepOf(slider, *event);
        const double page = (slider.maxValue() - slider.minValue()) / 5;
        switch (typed->characterAtIndex(0)) {
        case NSLeftArrowFunctionKey:
        case NSDownArrowFunctionKey:
            return moveTo(self, slider, value - step);
        case NSRightArrowFunctionKey:
        case NSUpArrowFunctionKey:
            return moveTo(self, slider, value + step);
        case NSPageDownFunctionKey:
            return moveTo(self, slider, value - page);
        case NSPageUpFunctionKey:
            return moveTo(self, slider, value + page);
        case NSHomeFunctionKey:
            return moveTo(self, slider, slider.minValue());
        case NSEndFunctionKey:
            return moveTo(self, slider, slider.maxValue());
        default:
            super<NSSlider, "keyDown:">(self, event);
        }
    }
    static bool yes(NSSlider&, NSEvent*) { return true; }

    static void table(Builder& t)
    {
        t.classMethods({
            { "initialize", imp<initialize> },
            { "sliderWithTarget:action:", imp<plain> },
            { "sliderWithValue:minValue:maxValue:target:action:", imp<with> },
        });
        t.methods({
            { "minValue", imp<ask<"minValue", double>> },
            { "setMinValue:", imp<tell<"setMinValue:", double>> },
            { "maxValue", imp<ask<"maxValue", double>> },
            { "setMaxValue:", imp<tell<"setMaxValue:", double>> },
            { "sliderType", imp<ask<"sliderType", NSSliderType>> },
            { "setSliderType:", imp<tell<"setSliderType:", NSSliderType>> },
            { "isVertical", imp<ask<"isVertical", bool>> },
            { "setVertical:", imp<tell<"setVertical:", bool>> },
            { "altIncrementValue", imp<ask<"altIncrementValue", double>> },
            { "setAltIncrementValue:", imp<tell<"setAltIncrementValue:", double>> },
            { "trackFillColor", imp<ask<"trackFillColor", Ref<NSColor>>> },
            { "setTrackFillColor:", imp<tell<"setTrackFillColor:", NSColor*>> },
            { "knobThickness", imp<ask<"knobThickness", CGFloat>> },
            { "numberOfTickMarks", imp<ask<"numberOfTickMarks", NSInteger>> },
            { "setNumberOfTickMarks:", imp<tell<"setNumberOfTickMarks:", NSInteger>> },
            { "tickMarkPosition", imp<ask<"tickMarkPosition", NSTickMarkPosition>> },
            { "setTickMarkPosition:", imp<tell<"setTickMarkPosition:", NSTickMarkPosition>> },
            { "allowsTickMarkValuesOnly", imp<ask<"allowsTickMarkValuesOnly", bool>> },
            { "setAllowsTickMarkValuesOnly:", imp<tell<"setAllowsTickMarkValuesOnly:", bool>> },
            { "tickMarkValueAtIndex:", imp<askWith<"tickMarkValueAtIndex:", double, NSInteger>> },
            { "rectOfTickMarkAtIndex:", imp<askWith<"rectOfTickMarkAtIndex:", NSRect, NSInteger>> },
            { "indexOfTickMarkAtPoint:",
                imp<askWith<"indexOfTickMarkAtPoint:", NSInteger, NSPoint>> },
            { "closestTickMarkValueToValue:",
                imp<askWith<"closestTickMarkValueToValue:", double, double>> },
            { "sizeToFit", imp<sizeToFit> },
            { "becomeFirstResponder", imp<becomeFirstResponder> },
            { "keyDown:", imp<keyDown> },
            { "acceptsFirstMouse:", imp<yes> },
        });
    }
};
BRINDLE_RECORD(NSSlider, Basics)

}
