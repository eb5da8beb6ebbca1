// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSControl.h"
#include "NSSegmentedCell.h"
#include "NSView+ToolTips.h"

namespace brindle {

/// Buttons in one bar, of which one is chosen, or any number, or none for longer than the press.
///
/// Each has a label or a picture. With the keyboard the arrows go from one to the next, which chooses it where one is chosen;
/// Space presses it. Segments are counted from 0. Thread: main.
class NSSegmentedControl : public NSControl {
    BRINDLE_OBJECT(NSSegmentedControl, NSControl)

public:
    struct Meta : NSControl::Meta {
        /// Makes a control of the size that it needs.
        Ref<NSSegmentedControl> segmentedControlWithLabels_trackingMode_target_action(
            NSArray* labels, NSSegmentSwitchTracking mode, NSObject* target, SEL action) const
        {
            return send<"segmentedControlWithLabels:trackingMode:target:action:",
                Ref<NSSegmentedControl>>(labels, mode, target, action);
        }
    };

    NSInteger segmentCount() const { return send<"segmentCount", NSInteger>(); }
    /// New segments are empty. Counts below 0 are 0, those past 1,000 are 1,000.
    void setSegmentCount(NSInteger count) { send<"setSegmentCount:">(count); }
    NSSegmentSwitchTracking trackingMode() const
    {
        return send<"trackingMode", NSSegmentSwitchTracking>();
    }
    void setTrackingMode(NSSegmentSwitchTracking mode) { send<"setTrackingMode:">(mode); }

    /// Answers the segment that was chosen last, in a momentary control the one pressed last; -1 without one.
    NSInteger selectedSegment() const { return send<"selectedSegment", NSInteger>(); }
    /// - Raises: `NSRangeException` outside; -1 chooses none.
    void setSelectedSegment(NSInteger index) { send<"setSelectedSegment:">(index); }
    /// - Returns: whether a segment has the tag.
    bool selectSegmentWithTag(NSInteger tag) { return send<"selectSegmentWithTag:", bool>(tag); }

    // What follows raises `NSRangeException` for a segment that is not there.

    bool isSelectedForSegment(NSInteger index) const
    {
        return send<"isSelectedForSegment:", bool>(index);
    }
    void setSelected_forSegment(bool selected, NSInteger index)
    {
        send<"setSelected:forSegment:">(selected, index);
    }
    /// - Nil: an empty label.
    void setLabel_forSegment(NSString* label, NSInteger index)
    {
        send<"setLabel:forSegment:">(label, index);
    }
    Ref<NSString> labelForSegment(NSInteger index) const
    {
        return send<"labelForSegment:", Ref<NSString>>(index);
    }
    /// A picture stands before the label.
    void setImage_forSegment(NSImage* image, NSInteger index)
    {
        send<"setImage:forSegment:">(image, index);
    }
    Ref<NSImage> imageForSegment(NSInteger index) const
    {
        return send<"imageForSegment:", Ref<NSImage>>(index);
    }
    /// Points; 0, as at first, is what the segment needs.
    void setWidth_forSegment(CGFloat width, NSInteger index)
    {
        send<"setWidth:forSegment:">(width, index);
    }
    CGFloat widthForSegment(NSInteger index) const
    {
        return send<"widthForSegment:", CGFloat>(index);
    }
    void setEnabled_forSegment(bool enabled, NSInteger index)
    {
        send<"setEnabled:forSegment:">(enabled, index);
    }
    bool isEnabledForSegment(NSInteger index) const
    {
        return send<"isEnabledForSegment:", bool>(index);
    }
    void setTag_forSegment(NSInteger tag, NSInteger index)
    {
        send<"setTag:forSegment:">(tag, index);
    }
    NSInteger tagForSegment(NSInteger index) const
    {
        return send<"tagForSegment:", NSInteger>(index);
    }
    void setToolTip_forSegment(NSString* text, NSInteger index)
    {
        send<"setToolTip:forSegment:">(text, index);
    }
    Ref<NSString> toolTipForSegment(NSInteger index) const
    {
        return send<"toolTipForSegment:", Ref<NSString>>(index);
    }

private:
    std::vector<NSToolTipTag> tips_; // of the segments
    bool focusedByPointer_ = false; // no ring then: a ring shows where the keyboard acts
};

}
