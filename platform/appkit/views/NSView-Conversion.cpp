// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>

#include "NSViewPrivate.h"
#include "appkit/NSWindow.h"
#include "runtime/Table.h"

namespace brindle {

NSRect AxisTransform::apply(NSRect r) const
{
    const NSPoint a = apply(r.origin);
    const NSPoint b = apply(NSPoint { NSMaxX(r), NSMaxY(r) });
    // The extent is scaled by itself: a difference of corners would lose its last digits far from the origin.
    return { { std::min(a.x, b.x), std::min(a.y, b.y) },
        { std::fabs(r.size.width * scaleX), std::fabs(r.size.height * scaleY) } };
}

AxisTransform AxisTransform::inverse() const
{
    const double x = scaleX != 0 ? 1 / scaleX : 0;
    const double y = scaleY != 0 ? 1 / scaleY : 0;
    return { x, y, -moveX * x, -moveY * y };
}

AxisTransform AxisTransform::then(const AxisTransform& outer) const
{
    return { scaleX * outer.scaleX, scaleY * outer.scaleY, moveX * outer.scaleX + outer.moveX,
        moveY * outer.scaleY + outer.moveY };
}

AxisTransform ViewAccess::toSuperview(const NSView& view)
{
    const NSRect frame = view.frame_;
    const NSRect bounds = view.bounds_;
    const bool parentFlipped = view.superview_ && view.superview_->isFlipped();
    double scaleX = 1;
    double scaleY = 1;
    if (view.scaled_) {
        scaleX = bounds.size.width != 0 ? frame.size.width / bounds.size.width : 1;
        scaleY = bounds.size.height != 0 ? frame.size.height / bounds.size.height : 1;
    }
    const double moveX = frame.origin.x - bounds.origin.x * scaleX;
    if (view.isFlipped() == parentFlipped)
        return { scaleX, scaleY, moveX, frame.origin.y - bounds.origin.y * scaleY };
    return { scaleX, -scaleY, moveX, NSMaxY(frame) + bounds.origin.y * scaleY };
}

AxisTransform ViewAccess::toWindow(const NSView& view)
{
    AxisTransform transform = toSuperview(view);
    for (const NSView* above = view.superview_; above; above = above->superview_)
        transform = transform.then(toSuperview(*above));
    return transform;
}

template <> struct NSView::Methods<struct Conversion> {

    static bool contains(const NSView& ancestor, const NSView* view)
    {
        while (view && view != &ancestor)
            view = view->superview_;
        return view != nullptr;
    }

    // The transform from one view to another; a null one is the window. The way goes over the nearest view that
    // contains both, so that conversions between neighbours do not depend on where their window's corner is.
    static AxisTransform between(const NSView* from, const NSView* to)
    {
        AxisTransform up;
        const NSView* meeting = from;
        while (meeting && !(to && contains(*meeting, to))) {
            up = up.then(ViewAccess::toSuperview(*meeting));
            meeting = meeting->superview_;
        }
        AxisTransform down;
        for (const NSView* view = to; view && view != meeting; view = view->superview_)
            down = down.then(ViewAccess::toSuperview(*view));
        return up.then(down.inverse());
    }

    static NSSize scaled(NSSize size, const AxisTransform& t)
    {
        return { size.width * std::fabs(t.scaleX), size.height * std::fabs(t.scaleY) };
    }

    static NSPoint pointFrom(NSView& self, NSPoint p, NSView* v)
    {
        return between(v, &self).apply(p);
    }
    static NSPoint pointTo(NSView& self, NSPoint p, NSView* v)
    {
        return between(&self, v).apply(p);
    }
    static NSSize sizeFrom(NSView& self, NSSize s, NSView* v)
    {
        return scaled(s, between(v, &self));
    }
    static NSSize sizeTo(NSView& self, NSSize s, NSView* v) { return scaled(s, between(&self, v)); }
    static NSRect rectFrom(NSView& self, NSRect r, NSView* v) { return between(v, &self).apply(r); }
    static NSRect rectTo(NSView& self, NSRect r, NSView* v) { return between(&self, v).apply(r); }

    static NSRect centerScanRect(NSView& self, NSRect rect)
    {
        const AxisTransform t = ViewAccess::toWindow(self);
        const double scale = self.window_ ? self.window_->backingScaleFactor() : 1;
        const NSRect base = t.apply(rect);
        const auto snap = [scale](double value) { return std::round(value * scale) / scale; };
        const double left = snap(NSMinX(base));
        const double bottom = snap(NSMinY(base));
        const NSRect whole { { left, bottom },
            { snap(NSMaxX(base)) - left, snap(NSMaxY(base)) - bottom } };
        return t.inverse().apply(whole);
    }

    static void table(Builder& t)
    {
        t.methods({
            { "convertPoint:fromView:", imp<pointFrom> },
            { "convertPoint:toView:", imp<pointTo> },
            { "convertSize:fromView:", imp<sizeFrom> },
            { "convertSize:toView:", imp<sizeTo> },
            { "convertRect:fromView:", imp<rectFrom> },
            { "convertRect:toView:", imp<rectTo> },
            { "centerScanRect:", imp<centerScanRect> },
        });
    }
};
BRINDLE_RECORD(NSView, Conversion)

}
