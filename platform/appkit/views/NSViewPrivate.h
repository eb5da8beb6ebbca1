// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "TrackingIndexPrivate.h"
#include "appkit/NSView.h"

namespace brindle {

class AllServed;

/// How a view's coordinates lie in others': each axis is scaled and moved.
struct AxisTransform {
    double scaleX = 1;
    double scaleY = 1; // negative where one side is flipped and the other is not
    double moveX = 0;
    double moveY = 0;

    NSPoint apply(NSPoint p) const { return { p.x * scaleX + moveX, p.y * scaleY + moveY }; }
    /// Answers the rectangle with positive sizes.
    NSRect apply(NSRect r) const;
    AxisTransform inverse() const;
    /// First this one, then `outer`.
    AxisTransform then(const AxisTransform& outer) const;
};

/// What the files of this folder do with views beside sending messages.
struct ViewAccess {
    static const std::vector<Ref<NSView>>& subviews(const NSView& view) { return view.subviews_; }
    static NSView* superview(const NSView& view) { return view.superview_; }
    static NSWindow* window(const NSView& view) { return view.window_; }
    static NSRect frame(const NSView& view) { return view.frame_; }
    static NSRect bounds(const NSView& view) { return view.bounds_; }
    static bool isHidden(const NSView& view) { return view.hidden_; }
    static CGFloat alpha(const NSView& view) { return view.alpha_; }
    static TrackingIndex* tracking(const NSView& view) { return view.tracking_.get(); }
    static bool hasTrackedViews(const NSView& view) { return view.trackedViews_ != 0; }
    /// Answers what shows the view's layer; null without one.
    static ViewLayer* layer(const NSView& view) { return view.layer_.get(); }
    static bool& needsDisplay(NSView& view) { return view.needsDisplay_; }
    /// Answers whether a view may paint in a rectangle of its superview's coordinates; NO is certain.
    static bool mayReach(const NSView& view, NSRect rect)
    {
        const NSRect frame = view.frame_;
        return !view.hidden_
            && (NSIntersectsRect(frame, rect) || view.layer_ || frame.size.width < 0
                || frame.size.height < 0);
    }

    /// Answers the transform from a view's coordinates to its superview's, or to the window's for the topmost one.
    static AxisTransform toSuperview(const NSView& view);
    static AxisTransform toWindow(const NSView& view);
    /// Makes a view the topmost one of a window, or none of any; sends the window hooks.
    static void setRootOf(NSView& view, NSWindow* window);
    /// Takes a view out of its superview, also when the end of editing in it raises, which then is over.
    static void takeOut(NSView& view, AllServed& all);
    /// Tells a view's window that tracking areas lie elsewhere now, and its layer where it is.
    static void geometryChanged(NSView& view);
    /// Moves the origin of the bounds; what shows is marked for drawing or left to the caller.
    static void moveBounds(NSView& view, NSPoint origin, bool marks);
    static void postBoundsChange(NSView& view);
    /// Marks a part as if it were drawn; `rect` is in the view's coordinates.
    static void invalidate(NSView& view, NSRect rect);
    /// Removes every mark from a view and what is in it.
    static void clearNeedsDisplay(NSView& view);
    static bool anyNeedsDisplay(const NSView& view);
    /// Sends `updateTrackingAreas` to a view and what is in it.
    static void updateTrackingAreas(NSView& view);
    /// Answers the rectangle that shows, in window coordinates; empty for hidden views.
    static NSRect visibleInWindow(const NSView& view);
    static void addTrackedViews(NSView& view, std::int64_t difference);
};

}
