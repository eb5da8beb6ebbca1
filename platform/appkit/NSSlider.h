// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSControl.h"
#include "NSSliderCell.h"

namespace brindle {

/// Lets the user choose a number between two ends.
///
/// A slider that is higher than wide stands upright and grows upward. Arrow keys go a twentieth of the way, or from mark to
/// mark; Page Up and Page Down a fifth; Home and End to the ends. Keys send the action. The rest is its cell's.
/// Thread: main.
class NSSlider : public NSControl {
    BRINDLE_OBJECT(NSSlider, NSControl)

public:
    struct Meta : NSControl::Meta {
        Ref<NSSlider> sliderWithTarget_action(NSObject* target, SEL action) const
        {
            return send<"sliderWithTarget:action:", Ref<NSSlider>>(target, action);
        }
        Ref<NSSlider> sliderWithValue_minValue_maxValue_target_action(
            double value, double min, double max, NSObject* target, SEL action) const
        {
            return send<"sliderWithValue:minValue:maxValue:target:action:", Ref<NSSlider>>(
                value, min, max, target, action);
        }
    };

    double minValue() const { return send<"minValue", double>(); }
    void setMinValue(double value) { send<"setMinValue:">(value); }
    double maxValue() const { return send<"maxValue", double>(); }
    void setMaxValue(double value) { send<"setMaxValue:">(value); }
    NSSliderType sliderType() const { return send<"sliderType", NSSliderType>(); }
    void setSliderType(NSSliderType type) { send<"setSliderType:">(type); }
    bool isVertical() const { return send<"isVertical", bool>(); }
    void setVertical(bool vertical) { send<"setVertical:">(vertical); }
    double altIncrementValue() const { return send<"altIncrementValue", double>(); }
    void setAltIncrementValue(double step) { send<"setAltIncrementValue:">(step); }
    Ref<NSColor> trackFillColor() const { return send<"trackFillColor", Ref<NSColor>>(); }
    void setTrackFillColor(NSColor* color) { send<"setTrackFillColor:">(color); }
    CGFloat knobThickness() const { return send<"knobThickness", CGFloat>(); }
    NSInteger numberOfTickMarks() const { return send<"numberOfTickMarks", NSInteger>(); }
    void setNumberOfTickMarks(NSInteger count) { send<"setNumberOfTickMarks:">(count); }
    NSTickMarkPosition tickMarkPosition() const
    {
        return send<"tickMarkPosition", NSTickMarkPosition>();
    }
    void setTickMarkPosition(NSTickMarkPosition side) { send<"setTickMarkPosition:">(side); }
    bool allowsTickMarkValuesOnly() const { return send<"allowsTickMarkValuesOnly", bool>(); }
    void setAllowsTickMarkValuesOnly(bool only) { send<"setAllowsTickMarkValuesOnly:">(only); }
    double tickMarkValueAtIndex(NSInteger index) const
    {
        return send<"tickMarkValueAtIndex:", double>(index);
    }
    NSRect rectOfTickMarkAtIndex(NSInteger index) const
    {
        return send<"rectOfTickMarkAtIndex:", NSRect>(index);
    }
    NSInteger indexOfTickMarkAtPoint(NSPoint point) const
    {
        return send<"indexOfTickMarkAtPoint:", NSInteger>(point);
    }
    double closestTickMarkValueToValue(double value) const
    {
        return send<"closestTickMarkValueToValue:", double>(value);
    }

private:
    friend struct SliderAccess;

    bool focusedByPointer_ = false; // no ring then: a ring shows where the keyboard acts
};

}
