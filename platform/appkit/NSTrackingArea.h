// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "foundation/NSGeometry.h"
#include "runtime/NSObject.h"

namespace brindle {

class NSDictionary;

/// What a tracking area reports and when; bits that are added together.
using NSTrackingAreaOptions = NSUInteger;
enum : NSUInteger {
    NSTrackingMouseEnteredAndExited = 0x01,
    NSTrackingMouseMoved = 0x02,
    NSTrackingCursorUpdate = 0x04,
    NSTrackingActiveWhenFirstResponder = 0x10,
    NSTrackingActiveInKeyWindow = 0x20,
    NSTrackingActiveInActiveApp = 0x40,
    NSTrackingActiveAlways = 0x80,
    NSTrackingAssumeInside
    = 0x100, ///< the pointer counts as inside at first: the first event is the exit
    NSTrackingInVisibleRect
    = 0x200, ///< the rectangle is the view's visible one, whatever `rect` says
    NSTrackingEnabledDuringMouseDrag = 0x400,
};

/// A rectangle of a view whose owner is told when the pointer enters, leaves or moves. Does not change once made.
class NSTrackingArea : public NSObject {
    BRINDLE_OBJECT(NSTrackingArea, NSObject)

public:
    /// - rect: in the coordinates of the view it is added to. - owner: not retained.
    /// - Raises: `NSInternalInconsistencyException` unless exactly one of the four "active" bits is set, or when
    ///   nothing is to be reported.
    Ref<NSTrackingArea> initWithRect_options_owner_userInfo(
        NSRect rect, NSTrackingAreaOptions options, NSObject* owner, NSDictionary* userInfo)
    {
        return send<"initWithRect:options:owner:userInfo:", Ref<NSTrackingArea>>(
            rect, options, owner, userInfo);
    }
    NSRect rect() const { return send<"rect", NSRect>(); }
    NSTrackingAreaOptions options() const { return send<"options", NSTrackingAreaOptions>(); }
    /// Answers the owner; nil once it has gone.
    Ref<NSObject> owner() const { return send<"owner", Ref<NSObject>>(); }
    Ref<NSDictionary> userInfo() const { return send<"userInfo", Ref<NSDictionary>>(); }

private:
    friend struct TrackingAccess;

    NSRect rect_ {};
    NSTrackingAreaOptions options_ = 0;
    WeakRef<NSObject> owner_;
    Ref<NSObject> userInfo_; // NSDictionary
    NSObject* view_ = nullptr; // where it is added; the view owns the area
    NSUInteger number_ = 0; // position in the view's list
    bool inside_ = false;
    bool silent_ = false; // the next entry is not reported
    bool hover_ = false; // a button's own: not listed, and told to the button alone
};

}
