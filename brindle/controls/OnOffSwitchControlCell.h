// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "appkit/NSButtonCell.h"
#include "appkit/NSColor.h"

namespace brindle {

/// The colour pairs of a switch. Any other number means no tint.
enum : std::int32_t {
    OnOffSwitchControlCustomColors = 1, ///< `customOnColor` and `customOffColor`
    OnOffSwitchControlDefaultColors = 2, ///< blue when on, nothing when off
    OnOffSwitchControlGreenRedColors = 3,
    OnOffSwitchControlBlueRedColors = 4,
};

/// Draws the slide switch of `OnOffSwitchControl` and follows the pointer on it.
///
/// Use it through the control; make one directly only to draw a switch inside another cell. A gesture that is short and does not go
/// far to the right or towards greater y is a click, which the button handles; any other is a drag, and the switch takes the
/// position nearest to its thumb. How long it took counts from the last movement of the pointer, not from the press.
/// Setting a colour, a scheme or a label does not draw the control anew.
/// Thread: main; the six properties any.
class OnOffSwitchControlCell : public NSButtonCell {
    BRINDLE_OBJECT(OnOffSwitchControlCell, NSButtonCell)

public:
    /// Sets what every new cell begins with; each initialiser sends it once.
    void furtherInit() { send<"furtherInit">(); }

    /// Answers whether `tintBackgroundWithFrame:inView:` writes the labels. YES at first.
    bool showsOnOffLabels() const { return send<"showsOnOffLabels", bool>(); }
    void setShowsOnOffLabels(bool shows) { send<"setShowsOnOffLabels:">(shows); }
    /// The colour pair; `OnOffSwitchControlDefaultColors` at first.
    std::int32_t onOffSwitchControlColors() const
    {
        return send<"onOffSwitchControlColors", std::int32_t>();
    }
    void setOnOffSwitchControlColors(std::int32_t scheme)
    {
        send<"setOnOffSwitchControlColors:">(scheme);
    }
    Ref<NSColor> customOnColor() const { return send<"customOnColor", Ref<NSColor>>(); }
    void setCustomOnColor(NSColor* color) { send<"setCustomOnColor:">(color); }
    Ref<NSColor> customOffColor() const { return send<"customOffColor", Ref<NSColor>>(); }
    void setCustomOffColor(NSColor* color) { send<"setCustomOffColor:">(color); }
    /// Sets the custom pair; the scheme stays as it is.
    /// - Nil: either may be nil; there is no tint then.
    void setOnOffSwitchCustomOnColor_offColor(NSColor* on, NSColor* off)
    {
        send<"setOnOffSwitchCustomOnColor:offColor:">(on, off);
    }
    Ref<NSString> onSwitchLabel() const { return send<"onSwitchLabel", Ref<NSString>>(); } // "ON"
    void setOnSwitchLabel(NSString* label) { send<"setOnSwitchLabel:">(label); }
    Ref<NSString> offSwitchLabel() const
    {
        return send<"offSwitchLabel", Ref<NSString>>();
    } // "OFF"
    void setOffSwitchLabel(NSString* label) { send<"setOffSwitchLabel:">(label); }

    // ---- geometry: points in the control's coordinates, not rounded

    /// Answers the thumb's rectangle for the state, not moved by a drag in progress.
    ///
    /// It is 0.38 (in single precision) of the frame's inner width wide; the inner rectangle lies one point inside the frame. The
    /// mixed position counts from 0, not from the frame's origin.
    NSRect thumbRectInFrame(NSRect frame) const { return send<"thumbRectInFrame:", NSRect>(frame); }
    /// Answers the middle of the thumb, moved by a drag in progress and kept one point inside the frame.
    double centerXForThumbWithFrame(NSRect frame) const
    {
        return send<"centerXForThumbWithFrame:", double>(frame);
    }

    // ---- drawing

    /// Tints the track left and right of the thumb and writes the labels there. For callers and subclasses: the cell's own drawing
    /// does not send it.
    void tintBackgroundWithFrame_inView(NSRect frame, NSView* view)
    {
        send<"tintBackgroundWithFrame:inView:">(frame, view);
    }
    /// Writes a label in bold white in the middle of a rectangle.
    void drawText_withFrame(NSString* text, NSRect frame)
    {
        send<"drawText:withFrame:">(text, frame);
    }

private:
    bool tracking_ = false; // a drag is in progress
    NSPoint initialTrackingPoint_ {}; // where it began, control coordinates
    NSPoint trackingPoint_ {};
    double initialTrackingTime_
        = 0; // of its last start or movement, seconds since the reference date
    double trackingTime_ = 0; // of its last event
    NSRect trackingCellFrame_ {}; // drawn last during the drag
    double trackingThumbCenterX_ = 0;
    double* clickLimits_
        = nullptr; // seconds, points to the right, points towards greater y; a page, kept for ever
    bool showsOnOffLabels_ = false;
    std::int32_t onOffSwitchControlColors_ = 0;
    Ref<NSColor> customOnColor_;
    Ref<NSColor> customOffColor_;
    Ref<NSString> onSwitchLabel_;
    Ref<NSString> offSwitchLabel_;
};

}
