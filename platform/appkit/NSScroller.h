// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSControl.h"

namespace brindle {

/// How a scroller lies by what it scrolls: beside it, or above it and only while it is used.
enum NSScrollerStyle : NSInteger { NSScrollerStyleLegacy = 0, NSScrollerStyleOverlay = 1 };

/// The shade of an overlay knob: fit for the interface's ground, for a light one, for a dark one.
enum NSScrollerKnobStyle : NSInteger {
    NSScrollerKnobStyleDefault = 0,
    NSScrollerKnobStyleDark = 1,
    NSScrollerKnobStyleLight = 2,
};

/// A part of a scroller. There are no arrows; the line parts are kept for hosts that scroll by lines.
enum NSScrollerPart : NSUInteger {
    NSScrollerNoPart = 0,
    NSScrollerDecrementPage = 1, ///< the slot before the knob
    NSScrollerKnob = 2,
    NSScrollerIncrementPage = 3, ///< the slot after the knob
    NSScrollerDecrementLine = 4,
    NSScrollerIncrementLine = 5,
    NSScrollerKnobSlot = 6,
};

/// What of a scroller can be used.
enum NSUsableScrollerParts : NSUInteger {
    NSNoScrollerParts = 0,
    NSOnlyScrollerArrows = 1,
    NSAllScrollerParts = 2,
};

inline constexpr StringConstant<"NSPreferredScrollerStyleDidChangeNotification">
    NSPreferredScrollerStyleDidChangeNotification;

/// Shows which part of something is visible, and lets the user move it.
///
/// It stands upright when it is taller than wide. `doubleValue` is 0 at the top or left and 1 at the other end. A drag of the
/// knob sets the value and sends the action at each step; a press beside the knob sends the action page by page until the
/// knob is there, or with the Option key goes there at once. In the action `hitPart` says what happened.
/// Thread: main. Cost: changing the value allocates nothing.
class NSScroller : public NSControl {
    BRINDLE_OBJECT(NSScroller, NSControl)

public:
    struct Meta : NSControl::Meta {
        /// Answers how wide scrollers are, in points: 15, and 11 for small and mini ones.
        CGFloat scrollerWidthForControlSize_scrollerStyle(
            NSControlSize size, NSScrollerStyle style) const
        {
            return send<"scrollerWidthForControlSize:scrollerStyle:", CGFloat>(size, style);
        }
        CGFloat scrollerWidthForControlSize(NSControlSize size) const
        {
            return send<"scrollerWidthForControlSize:", CGFloat>(size);
        }
        CGFloat scrollerWidth() const { return send<"scrollerWidth", CGFloat>(); }
        /// Answers the style of new scroll views: overlay.
        NSScrollerStyle preferredScrollerStyle() const
        {
            return send<"preferredScrollerStyle", NSScrollerStyle>();
        }
        /// Answers YES; a subclass that draws its own slot may say NO, and lies beside the content then.
        bool isCompatibleWithOverlayScrollers() const
        {
            return send<"isCompatibleWithOverlayScrollers", bool>();
        }
    };

    /// Sets where it stands. - value: kept between 0 and 1; NaN changes nothing.
    void setDoubleValue(double value) { send<"setDoubleValue:">(value); }
    /// Answers which part of the whole is visible, 0 to 1.
    CGFloat knobProportion() const { return send<"knobProportion", CGFloat>(); }
    void setKnobProportion(CGFloat part) { send<"setKnobProportion:">(part); }

    NSScrollerStyle scrollerStyle() const { return send<"scrollerStyle", NSScrollerStyle>(); }
    void setScrollerStyle(NSScrollerStyle style) { send<"setScrollerStyle:">(style); }
    NSScrollerKnobStyle knobStyle() const { return send<"knobStyle", NSScrollerKnobStyle>(); }
    void setKnobStyle(NSScrollerKnobStyle style) { send<"setKnobStyle:">(style); }

    /// Answers what the user has in hand, `NSScrollerNoPart` otherwise.
    NSScrollerPart hitPart() const { return send<"hitPart", NSScrollerPart>(); }
    /// Answers the part at a point of the window.
    NSScrollerPart testPart(NSPoint point) const
    {
        return send<"testPart:", NSScrollerPart>(point);
    }
    /// Answers where a part lies, in the scroller's coordinates; empty for parts that are not there.
    NSRect rectForPart(NSScrollerPart part) const { return send<"rectForPart:", NSRect>(part); }
    /// Answers all parts where there is something to scroll and the scroller is enabled, otherwise none.
    NSUsableScrollerParts usableParts() const
    {
        return send<"usableParts", NSUsableScrollerParts>();
    }
    void checkSpaceForParts() { send<"checkSpaceForParts">(); }

    // ---- hooks for another look and feel

    void drawKnob() { send<"drawKnob">(); }
    void drawKnobSlotInRect_highlight(NSRect slot, bool highlight)
    {
        send<"drawKnobSlotInRect:highlight:">(slot, highlight);
    }
    /// Follows the pointer from a press on the knob until the button is released.
    void trackKnob(NSEvent* press) { send<"trackKnob:">(press); }

private:
    double value_ = 0;
    CGFloat knobProportion_ = 0;
    NSScrollerPart hitPart_ = NSScrollerNoPart;
    NSScrollerStyle scrollerStyle_ = NSScrollerStyleLegacy;
    NSScrollerKnobStyle knobStyle_ = NSScrollerKnobStyleDefault;
    bool hovered_ = false;
};

}
