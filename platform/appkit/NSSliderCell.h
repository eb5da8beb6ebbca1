// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSActionCell.h"

namespace brindle {

class NSColor;

enum NSSliderType : NSUInteger {
    NSLinearSlider = 0,
    NSCircularSlider = 1,
};

/// On which side of the bar the tick marks stand.
enum NSTickMarkPosition : NSUInteger {
    NSTickMarkBelow = 0,
    NSTickMarkAbove = 1,
    NSTickMarkLeft = 1,
    NSTickMarkRight = 0,
};

/// Draws and tracks a slider: a bar with a knob that stands for a number, or a dial with a dot.
///
/// The value stays between the two ends; an end that is set beyond it moves it, and ends the wrong way round count as the
/// same number. A press on the knob takes it as it is, one beside it brings it there. A dial's value grows clockwise from
/// the top. NaN is ignored everywhere. Drags send the action all the time unless `setContinuous:` NO.
/// Thread: main.
class NSSliderCell : public NSActionCell {
    BRINDLE_OBJECT(NSSliderCell, NSActionCell)

public:
    double minValue() const { return send<"minValue", double>(); }
    void setMinValue(double value) { send<"setMinValue:">(value); }
    double maxValue() const { return send<"maxValue", double>(); }
    void setMaxValue(double value) { send<"setMaxValue:">(value); }
    NSSliderType sliderType() const { return send<"sliderType", NSSliderType>(); }
    void setSliderType(NSSliderType type) { send<"setSliderType:">(type); }
    /// Answers whether the bar stands upright: as it was set, else when the cell was last drawn higher than wide.
    bool isVertical() const { return send<"isVertical", bool>(); }
    void setVertical(bool vertical) { send<"setVertical:">(vertical); }
    /// How far one arrow key goes with Option, and a drag with Option in steps; 0 for none.
    double altIncrementValue() const { return send<"altIncrementValue", double>(); }
    void setAltIncrementValue(double step) { send<"setAltIncrementValue:">(step); }
    /// The colour of the bar up to the knob. - Nil: the accent.
    Ref<NSColor> trackFillColor() const { return send<"trackFillColor", Ref<NSColor>>(); }
    void setTrackFillColor(NSColor* color) { send<"setTrackFillColor:">(color); }

    // ---- tick marks

    NSInteger numberOfTickMarks() const { return send<"numberOfTickMarks", NSInteger>(); }
    /// - count: kept between 0 and 10,000.
    void setNumberOfTickMarks(NSInteger count) { send<"setNumberOfTickMarks:">(count); }
    NSTickMarkPosition tickMarkPosition() const
    {
        return send<"tickMarkPosition", NSTickMarkPosition>();
    }
    void setTickMarkPosition(NSTickMarkPosition side) { send<"setTickMarkPosition:">(side); }
    bool allowsTickMarkValuesOnly() const { return send<"allowsTickMarkValuesOnly", bool>(); }
    void setAllowsTickMarkValuesOnly(bool only) { send<"setAllowsTickMarkValuesOnly:">(only); }
    /// - Returns: the first mark's value for less than 0, the last one's beyond them; the least value without marks.
    double tickMarkValueAtIndex(NSInteger index) const
    {
        return send<"tickMarkValueAtIndex:", double>(index);
    }
    /// Answers where a mark is drawn. - Raises: `NSRangeException` where there is none.
    NSRect rectOfTickMarkAtIndex(NSInteger index) const
    {
        return send<"rectOfTickMarkAtIndex:", NSRect>(index);
    }
    /// Answers the mark at a point, or `NSNotFound`.
    NSInteger indexOfTickMarkAtPoint(NSPoint point) const
    {
        return send<"indexOfTickMarkAtPoint:", NSInteger>(point);
    }
    /// Answers the value of the nearest mark; without marks the value itself.
    double closestTickMarkValueToValue(double value) const
    {
        return send<"closestTickMarkValueToValue:", double>(value);
    }

    // ---- parts, in the coordinates of the view; hooks for another look

    CGFloat knobThickness() const { return send<"knobThickness", CGFloat>(); }
    /// Answers where the cell was last drawn or pressed.
    NSRect trackRect() const { return send<"trackRect", NSRect>(); }
    NSRect barRectFlipped(bool flipped) const { return send<"barRectFlipped:", NSRect>(flipped); }
    NSRect knobRectFlipped(bool flipped) const { return send<"knobRectFlipped:", NSRect>(flipped); }
    void drawBarInside_flipped(NSRect rect, bool flipped)
    {
        send<"drawBarInside:flipped:">(rect, flipped);
    }
    void drawKnob(NSRect rect) { send<"drawKnob:">(rect); }
    void drawTickMarks() { send<"drawTickMarks">(); }

private:
    double min_ = 0;
    double max_ = 1;
    double altStep_ = 0;
    NSRect track_ {};
    Ref<NSColor> fill_;
    NSInteger ticks_ = 0;
    NSSliderType type_ = NSLinearSlider;
    NSTickMarkPosition tickSide_ = NSTickMarkBelow;
    bool ticksOnly_ = false;
    bool vertical_ = false;
    bool fixedDirection_ = false; // was set by the host
    CGFloat grip_ = 0; // from the knob's middle to where it was taken
};

}
