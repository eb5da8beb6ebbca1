// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "NSActionCell.h"

namespace brindle {

/// What a press on a segment does: chooses it alone, turns it on or off, or only sends the action.
enum NSSegmentSwitchTracking : NSUInteger {
    NSSegmentSwitchTrackingSelectOne = 0,
    NSSegmentSwitchTrackingSelectAny = 1,
    NSSegmentSwitchTrackingMomentary = 2,
};

/// Buttons in one bar. `NSSegmentedControl` documents the operations that both have.
///
/// Thread: main.
class NSSegmentedCell : public NSActionCell {
    BRINDLE_OBJECT(NSSegmentedCell, NSActionCell)

public:
    NSInteger segmentCount() const { return send<"segmentCount", NSInteger>(); }
    void setSegmentCount(NSInteger count) { send<"setSegmentCount:">(count); }
    NSInteger selectedSegment() const { return send<"selectedSegment", NSInteger>(); }
    void setSelectedSegment(NSInteger index) { send<"setSelectedSegment:">(index); }
    NSSegmentSwitchTracking trackingMode() const
    {
        return send<"trackingMode", NSSegmentSwitchTracking>();
    }
    void setTrackingMode(NSSegmentSwitchTracking mode) { send<"setTrackingMode:">(mode); }
    /// Does what a press on the segment does, without sending the action. Nothing happens where it is not enabled.
    void pressSegment(NSInteger index) { send<"pressSegment:">(index); }
    /// Answers the segment that the keyboard acts on, or -1.
    NSInteger keySegment() const { return send<"keySegment", NSInteger>(); }
    void setKeySegment(NSInteger index) { send<"setKeySegment:">(index); }
    void makeNextSegmentKey() { send<"makeNextSegmentKey">(); }
    void makePreviousSegmentKey() { send<"makePreviousSegmentKey">(); }
    /// Answers where a segment lies in a frame; the bar is in the middle of its height.
    NSRect rectOfSegment_inFrame(NSInteger index, NSRect frame) const
    {
        return send<"rectOfSegment:inFrame:", NSRect>(index, frame);
    }
    /// Answers the segment at a place, or -1.
    NSInteger segmentAtPoint_inFrame(NSPoint point, NSRect frame) const
    {
        return send<"segmentAtPoint:inFrame:", NSInteger>(point, frame);
    }

private:
    struct Segment {
        Ref<NSString> label;
        Ref<NSImage> image;
        Ref<NSString> toolTip;
        CGFloat width = 0; // 0: as wide as what it shows
        NSInteger tag = 0;
        bool enabled = true;
        bool selected = false;
    };
    std::vector<Segment> segments_;
    std::vector<CGFloat> ends_; // of segments, while several are placed; else empty
    NSSegmentSwitchTracking mode_ = NSSegmentSwitchTrackingSelectOne;
    NSInteger last_ = -1; // the segment that was chosen or pressed last
    NSInteger key_ = -1;
    NSInteger pressed_ = -1; // under the button that is down
};

}
