// SPDX-License-Identifier: Apache-2.0
#include "OnOffSwitchControlCell.h"
#include "appkit/NSControl.h"
#include "foundation/NSDate.h"
#include "runtime/Table.h"

namespace brindle {

template <> struct OnOffSwitchControlCell::Methods<struct Tracking> {

    static double now() { return NSDate::cls().timeIntervalSinceReferenceDate(); }
    static bool isControl(NSView* view) { return view && view->isKindOfClass(NSControl::cls()); }

    static NSCellHitResult hitTest(
        OnOffSwitchControlCell&, NSEvent* event, NSRect frame, NSView* view)
    {
        const NSPoint point
            = maybe(view)->convertPoint_fromView(maybe(event)->locationInWindow(), nullptr);
        return view && event && NSPointInRect(point, frame)
            ? NSCellHitContentArea | NSCellHitTrackableArea
            : NSCellHitNone;
    }
    static bool startTracking(OnOffSwitchControlCell& self, NSPoint point, NSView* view)
    {
        self.tracking_ = true;
        self.initialTrackingPoint_ = self.trackingPoint_ = point;
        self.initialTrackingTime_ = self.trackingTime_ = now();
        return isControl(view);
    }
    static bool continueTracking(OnOffSwitchControlCell& self, NSPoint, NSPoint point, NSView* view)
    {
        if (!isControl(view)) {
            self.tracking_ = false;
            return false;
        }
        self.trackingPoint_ = point;
        // Only a pause after the last movement makes a drag out of a short way.
        self.initialTrackingTime_ = self.trackingTime_ = now();
        static_cast<NSControl*>(view)->drawCell(&self);
        return true;
    }

    // The differences have signs: ways to the left and towards lesser y are always short.
    static bool isClick(OnOffSwitchControlCell& self, NSPoint point)
    {
        const double* const limits = self.clickLimits_;
        return limits && self.trackingTime_ - self.initialTrackingTime_ < limits[0]
            && point.y - self.initialTrackingPoint_.y < limits[2]
            && point.x - self.initialTrackingPoint_.x < limits[1];
    }
    // The button goes one state further when tracking ends, so this is the state before the wanted one.
    static NSCellStateValue stateBefore(OnOffSwitchControlCell& self, double position)
    {
        if (!self.allowsMixedState())
            return position < 0.5 ? NSOnState : NSOffState;
        if (position < 1.0 / 3)
            return NSOnState;
        return position >= 2.0 / 3 ? NSMixedState : NSOffState;
    }
    static void stopTracking(
        OnOffSwitchControlCell& self, NSPoint, NSPoint point, NSView* view, bool)
    {
        self.tracking_ = false;
        self.trackingTime_ = now();
        if (isControl(view) && !isClick(self, point))
            self.setState(
                stateBefore(self, self.trackingThumbCenterX_ / self.trackingCellFrame_.size.width));
    }

    static void table(Builder& t)
    {
        t.methods({
            { "hitTestForEvent:inRect:ofView:", imp<hitTest> },
            { "startTrackingAt:inView:", imp<startTracking> },
            { "continueTracking:at:inView:", imp<continueTracking> },
            { "stopTracking:at:inView:mouseIsUp:", imp<stopTracking> },
        });
    }
};
BRINDLE_RECORD(OnOffSwitchControlCell, Tracking)

}
