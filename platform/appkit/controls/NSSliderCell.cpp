// SPDX-License-Identifier: Apache-2.0
#include "appkit/NSSliderCell.h"

#include <algorithm>
#include <cmath>

#include "NSCellPrivate.h"
#include "SliderPrivate.h"
#include "appkit/NSApplication.h"
#include "appkit/NSColor.h"
#include "appkit/NSEvent.h"
#include "appkit/views/CodingPrivate.h"
#include "foundation/NSNumber.h"

namespace brindle {

template <> struct NSSliderCell::Methods<struct Values> {

    static constexpr NSInteger kMostTicks = 10000;
    static constexpr NSEventMask kContinuous = NSLeftMouseDownMask | NSLeftMouseDraggedMask;

    // ---- making

    static Ref<NSCell> initTextCell(NSSliderCell& self, NSString* text)
    {
        Ref<NSCell> made = super<NSSliderCell, "initTextCell:", Ref<NSCell>>(self, text);
        self.setContinuous(true);
        self.setDoubleValue(0);
        return made;
    }
    static Ref<NSObject> copyWithZone(NSSliderCell& self, void* zone)
    {
        const Ref<NSSliderCell> copy
            = cast<NSSliderCell>(super<NSSliderCell, "copyWithZone:", Ref<NSObject>>(self, zone));
        if (!copy)
            return nullptr;
        copy->min_ = self.min_;
        copy->max_ = self.max_;
        copy->altStep_ = self.altStep_;
        copy->track_ = self.track_;
        copy->fill_ = self.fill_;
        copy->ticks_ = self.ticks_;
        copy->type_ = self.type_;
        copy->tickSide_ = self.tickSide_;
        copy->ticksOnly_ = self.ticksOnly_;
        copy->vertical_ = self.vertical_;
        copy->fixedDirection_ = self.fixedDirection_;
        return copy;
    }
    static bool prefersTrackingUntilMouseUp(Class&) { return true; }

    // ---- the value lies between the ends

    static double inRange(NSSliderCell& self, double value)
    {
        return std::max(self.min_, std::min(value, std::max(self.min_, self.max_)));
    }
    static void setObjectValue(NSSliderCell& self, NSObject* object)
    {
        const bool isNumber = object && object->respondsToSelector(selector<"doubleValue">);
        const double value = isNumber ? object->send<"doubleValue", double>() : 0;
        if (std::isnan(value))
            return;
        super<NSSliderCell, "setObjectValue:">(
            self, NSNumber::cls().numberWithDouble(inRange(self, value)).get());
    }
    static void setStringValue(NSSliderCell& self, NSString* text) { self.setObjectValue(text); }
    static void setEnd(NSSliderCell& self, double NSSliderCell::*end, double value)
    {
        if (!std::isfinite(value))
            return;
        self.*end = value;
        self.setDoubleValue(self.doubleValue());
        CellAccess::changed(self);
    }
    static double min(NSSliderCell& self) { return self.min_; }
    static void setMin(NSSliderCell& self, double value)
    {
        setEnd(self, &NSSliderCell::min_, value);
    }
    static double max(NSSliderCell& self) { return self.max_; }
    static void setMax(NSSliderCell& self, double value)
    {
        setEnd(self, &NSSliderCell::max_, value);
    }

    // ---- settings

    static NSSliderType sliderType(NSSliderCell& self) { return self.type_; }
    static void setSliderType(NSSliderCell& self, NSSliderType type)
    {
        if (type > NSCircularSlider)
            return;
        self.type_ = type;
        CellAccess::changed(self);
    }
    static void setVertical(NSSliderCell& self, bool vertical)
    {
        self.vertical_ = vertical;
        self.fixedDirection_ = true;
        CellAccess::changed(self);
    }
    static double altStep(NSSliderCell& self) { return self.altStep_; }
    static void setAltStep(NSSliderCell& self, double step)
    {
        if (std::isfinite(step))
            self.altStep_ = std::max(step, 0.0);
    }
    static Ref<NSColor> fill(NSSliderCell& self) { return self.fill_; }
    static void setFill(NSSliderCell& self, NSColor* color)
    {
        self.fill_ = color;
        CellAccess::changed(self);
    }
    // The action of a slider follows the pointer, not a clock.
    static bool isContinuous(NSSliderCell& self)
    {
        return (CellAccess::of(self).sendsOn & NSLeftMouseDraggedMask) != 0;
    }
    static void setContinuous(NSSliderCell& self, bool continuous)
    {
        NSEventMask& mask = CellAccess::of(self).sendsOn;
        mask = continuous ? mask | kContinuous : mask & ~kContinuous;
    }
    static void nothing(NSSliderCell&) { }

    // ---- tick marks

    static NSInteger ticks(NSSliderCell& self) { return self.ticks_; }
    static void setTicks(NSSliderCell& self, NSInteger count)
    {
        self.ticks_ = std::clamp<NSInteger>(count, 0, kMostTicks);
        CellAccess::changed(self);
    }
    static NSTickMarkPosition tickSide(NSSliderCell& self) { return self.tickSide_; }
    static void setTickSide(NSSliderCell& self, NSTickMarkPosition side)
    {
        if (side > NSTickMarkAbove)
            return;
        self.tickSide_ = side;
        CellAccess::changed(self);
    }
    static bool ticksOnly(NSSliderCell& self) { return self.ticksOnly_; }
    static void setTicksOnly(NSSliderCell& self, bool only) { self.ticksOnly_ = only; }
    static double tickValue(NSSliderCell& self, NSInteger index)
    {
        const double width = std::max(self.max_ - self.min_, 0.0);
        if (self.ticks_ <= 1)
            return self.ticks_ == 1 ? self.min_ + width / 2 : self.min_;
        const auto place = static_cast<double>(std::clamp<NSInteger>(index, 0, self.ticks_ - 1));
        return inRange(self, self.min_ + width * (place / static_cast<double>(self.ticks_ - 1)));
    }
    static double closestTick(NSSliderCell& self, double value)
    {
        if (self.ticks_ == 0 || std::isnan(value))
            return inRange(self, std::isnan(value) ? self.doubleValue() : value);
        const double width = self.max_ - self.min_;
        if (self.ticks_ == 1 || !(width > 0))
            return tickValue(self, 0);
        const double part = (inRange(self, value) - self.min_) / width;
        return tickValue(self,
            static_cast<NSInteger>(std::llround(part * static_cast<double>(self.ticks_ - 1))));
    }

    // ---- archives

    static void code(const NumberCoding& number, NSSliderCell& self)
    {
        number("NSMinValue"_ns, self.min_);
        number("NSMaxValue"_ns, self.max_);
        number("NSAltIncValue"_ns, self.altStep_);
        number("NSNumberOfTickMarks"_ns, self.ticks_);
        number("NSSliderType"_ns, self.type_, NSCircularSlider);
        number("NSTickMarkPosition"_ns, self.tickSide_, NSTickMarkAbove);
        number("NSAllowsTickMarkValuesOnly"_ns, self.ticksOnly_);
        number("NSVertical"_ns, self.vertical_);
        number("NSFixedDirection"_ns, self.fixedDirection_);
    }
    static void encode(NSSliderCell& self, NSCoder* coder)
    {
        super<NSSliderCell, "encodeWithCoder:">(self, coder);
        coder->encodeObject_forKey(self.fill_.get(), "NSTrackFillColor"_ns);
        code({ coder, false }, self);
    }
    static Ref<NSObject> initWithCoder(NSSliderCell& self, NSCoder* coder)
    {
        Ref<NSObject> made = super<NSSliderCell, "initWithCoder:", Ref<NSObject>>(self, coder);
        self.fill_ = decode<NSColor>(coder, "NSTrackFillColor"_ns);
        code({ coder, true }, self);
        // What an archive says goes the way of what a host says.
        if (!std::isfinite(self.min_) || !std::isfinite(self.max_))
            self.min_ = 0, self.max_ = 1;
        self.setNumberOfTickMarks(self.ticks_);
        self.setAltIncrementValue(self.altStep_);
        self.setDoubleValue(self.doubleValue());
        return made;
    }

    static void table(Builder& t)
    {
        t.classMethods({ { "prefersTrackingUntilMouseUp", imp<prefersTrackingUntilMouseUp> } });
        t.methods({
            { "initTextCell:", imp<initTextCell> },
            { "copyWithZone:", imp<copyWithZone> },
            { "setObjectValue:", imp<setObjectValue> },
            { "setStringValue:", imp<setStringValue> },
            { "minValue", imp<min> },
            { "setMinValue:", imp<setMin> },
            { "maxValue", imp<max> },
            { "setMaxValue:", imp<setMax> },
            { "sliderType", imp<sliderType> },
            { "setSliderType:", imp<setSliderType> },
            { "setVertical:", imp<setVertical> },
            { "altIncrementValue", imp<altStep> },
            { "setAltIncrementValue:", imp<setAltStep> },
            { "trackFillColor", imp<fill> },
            { "setTrackFillColor:", imp<setFill> },
            { "isContinuous", imp<isContinuous> },
            { "setContinuous:", imp<setContinuous> },
            { "setNextState", imp<nothing> },
            { "numberOfTickMarks", imp<ticks> },
            { "setNumberOfTickMarks:", imp<setTicks> },
            { "tickMarkPosition", imp<tickSide> },
            { "setTickMarkPosition:", imp<setTickSide> },
            { "allowsTickMarkValuesOnly", imp<ticksOnly> },
            { "setAllowsTickMarkValuesOnly:", imp<setTicksOnly> },
            { "tickMarkValueAtIndex:", imp<tickValue> },
            { "closestTickMarkValueToValue:", imp<closestTick> },
        });
        extendCoding<encode, initWithCoder>(t);
    }
};
BRINDLE_RECORD(NSSliderCell, Values)

}
